#pragma once

#include <QMainWindow>
#include <QStackedWidget>
#include <functional>
#include <vector>

#include "shell/desk/ChildForm.h"

namespace vortan {

/// The open forms of the main window: which may be open together, where they stand, and which one is in
/// charge. Knows them by their class alone.
class FormStack {
  public:
    /// Becomes the work area of the window.
    explicit FormStack(QMainWindow& window);
    ~FormStack();
    FormStack(const FormStack&) = delete;
    FormStack& operator=(const FormStack&) = delete;

    /// What stands behind every page, with the panes in it.
    void SetWorkArea(QWidget& workArea, std::vector<ChildForm*> panes);
    /// Places and shows a form by its class.
    void Show(ChildForm& form);
    /// The form is gone.
    void Closed(ChildForm& form);
    /// Closes every form but the panes.
    void UnloadScreens();

    /// The page in front of the panes, or none.
    ChildForm* FullPage() const { return fullPage_; }
    /// The entry form in charge, or none.
    ChildForm* EntryForm() const;
    /// The dialog on top, else the page in front, else the pane that was used last.
    ChildForm* Active() const;

    // Set by the main window.
    /// What the user has left an entry form of that name at, and is to be kept; invalid: none.
    std::function<QSize(const QString& name)> SizeOf = [](const QString&) { return QSize(); };
    std::function<void(const QString& name, const QSize&)> KeepSize = [](const QString&, const QSize&) {};
    std::function<void()> PageChanged;  ///< another page is in front, or it has another title
    std::function<void(QWidget&)> EntryFormShown = [](QWidget&) {
    };                                       ///< to be placed where it is in nobody's way
    std::function<void()> EntryFormChanged;  ///< another entry form is in charge, or none any more

  private:
    void Place(QWidget& form);
    void LockOthers(const ChildForm& entryForm);

    QMainWindow& window_;
    QStackedWidget* pages_;
    QWidget* workArea_ = nullptr;
    std::vector<ChildForm*> forms_;  // open ones, the panes included
    ChildForm* fullPage_ = nullptr;
    ChildForm* lastPane_ = nullptr;  // that had the focus last
};

}  // namespace vortan
