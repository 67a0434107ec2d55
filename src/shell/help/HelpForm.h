#pragma once

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QWidget>
#include <string>

#include "help/HelpHistory.h"
#include "shell/desk/Desktop.h"
#include "shell/help/HelpView.h"

namespace vortan {

/// The manual in a window of its own, which stands beside the others and blocks none. It is made at its first
/// use, and lives as long as the main window; to close it is to hide it.
class HelpForm : public QWidget {
  public:
    /// The window is above `mainWindow` and belongs to it.
    HelpForm(Desktop& desktop, QWidget& mainWindow);

    /// Goes to a page, "-" being the Back button and "+" the Next button, and shows the window.
    void DisplayHelpPage(const std::string& page);
    /// Sets a form in front of the main window and this window beside each other, so that neither covers the
    /// other; where the screen has no room for both, this window leaves the control free that has the focus.
    void SplitScreen(QWidget& form);

    const HelpHistory& History() const { return history_; }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    void BuildLayout();
    void Connect();
    void AddShortcut(const QKeySequence& keys, const std::function<void()>& run);
    void ShowCurrent(const HelpPage* page);
    void Search();
    void OpenResult();
    void Mark();
    void ShowFind(bool shown);
    void FindNext(bool backward);
    void Print();
    void LeaveFree(const QRect& field, const QRect& screen);

    Desktop& desktop_;
    QWidget& mainWindow_;
    HelpHistory history_;
    const HelpPage* page_ = nullptr;  // on show, or none
    HelpView* text_;
    QLineEdit *search_, *find_;
    QListWidget* results_;
    QWidget* findRow_;
    QPushButton *back_, *next_, *print_;
};

}  // namespace vortan
