#pragma once

#include <QRadioButton>

#include "shell/forms/EntryForm.h"
#include "shell/widgets/TableView.h"

namespace vortan {

class Trees;

/// Shows a shortage that halted the solve: who wants how much of whom, and what else is booked on that day.
/// Leads on to the assignment or to the project's solve rule.
class OverageForm : public EntryForm {
  public:
    /// The last solve halted for a shortage, and the assignment at fault is still there.
    static void Start(Desktop& desktop, Trees& trees);

    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }
    void NewSolution() override { Unload(); }

  private:
    OverageForm(Desktop& desktop, Trees& trees, const SolveProblem& problem);
    void AddText(const QString& label, const QString& name, const std::string& value);
    void RedoLayout(Vwindow& window);
    bool Finish() override;
    void DoModify(Vassignment& assignment);
    void DoAuthorize(Vassignment& assignment);

    Trees& trees_;
    Link<Vassignment> assignment_;
    DateTime problemDate_;
    QRadioButton *modifyAssignment_, *changeSolveRules_;
    TableView* table_;
};

}  // namespace vortan
