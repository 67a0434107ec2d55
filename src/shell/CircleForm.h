#pragma once

#include <QListWidget>
#include <QRadioButton>
#include <vector>

#include "shell/EntryForm.h"

namespace vortan {

/// Lists a circle of dependencies that halted the solve, and leads on to one of them.
class CircleForm : public EntryForm {
  public:
    /// Asks for a new solve instead if the circle is gone.
    static void Start(Desktop& desktop);

    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }
    void NewSolution() override { Unload(); }

  private:
    explicit CircleForm(Desktop& desktop);
    void AddStep(const Vtask& task, const Vtask& required);
    bool Finish() override;

    std::vector<Link<Vdependency>> dependencies_;  // by line; none where a link waits for its subproject
    QListWidget* list_;
    QRadioButton *open_, *delete_;
};

}  // namespace vortan
