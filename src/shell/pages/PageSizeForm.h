#pragma once

#include <array>
#include <initializer_list>

#include "charts/PageCuts.h"
#include "shell/forms/EntryForm.h"

namespace vortan {

/// Stands between the print command and the printer: shows how a surface falls on a page, and offers what can
/// be done about the fit.
class PageSizeForm : public EntryForm {
  public:
    /// `source` has a surface and stays until the form is unloaded.
    static void Wakeup(Desktop& desktop, ChildForm& source);

    void NewThisProject() override { Unload(); }
    void NewThisTemplate() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewSolution() override;

    QSize sizeHint() const override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    using Choice = PageCuts::Choice;

    PageSizeForm(Desktop& desktop, ChildForm& source);
    QWidget* NewFrame(int index, const QString& caption,
                      std::initializer_list<std::pair<Choice, const char*>> buttons);
    /// Enables what fits the surface as it is now.
    void Refresh();
    void ContinueCommandClick(Choice choice);
    bool Finish() override { return true; }

    ChildForm& source_;
    std::array<QPushButton*, 8> buttons_{};
    QWidget* preview_;
};

}  // namespace vortan
