#pragma once

#include <vector>

#include "shell/forms/TableForm.h"
#include "solve/IterativeResults.h"

namespace vortan {

/// The multipliers that bring the project to an earlier finish.
class CrashDataForm : public TableForm {
  public:
    /// `multipliers` in the order of the rows; tasks that are deleted meanwhile are left out.
    static void Start(Desktop& desktop, DateTime finish, std::vector<Vcrash> multipliers);

    void NewThisProject() override { Unload(); }

  private:
    CrashDataForm(Desktop& desktop, DateTime finish, std::vector<Vcrash> multipliers);
    void RedoLayout(Vwindow& table) override;

    std::vector<Vcrash> multipliers_;
};

}  // namespace vortan
