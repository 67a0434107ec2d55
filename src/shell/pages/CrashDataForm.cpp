#include "shell/pages/CrashDataForm.h"

#include <utility>

#include "model/Conventions.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "paint/Text.h"

namespace vortan {

void CrashDataForm::Start(Desktop& desktop, DateTime finish, std::vector<Vcrash> multipliers) {
    auto* form = new CrashDataForm(desktop, finish, std::move(multipliers));
    form->Refill();
    form->ShowTable();
}

CrashDataForm::CrashDataForm(Desktop& desktop, DateTime finish, std::vector<Vcrash> multipliers)
    : TableForm(desktop, "CrashDataForm"), multipliers_(std::move(multipliers)) {
    setWindowTitle(Q("Crash to " + FormatDate(finish)));
}

void CrashDataForm::RedoLayout(Vwindow& table) {
    table.ClearLayout();
    table.AddColumn("Project", Alignment::Left);
    table.AddColumn("Task", Alignment::Left);
    table.AddColumn("Multiplier", Alignment::Right);
    table.EndColumns();
    for (const Vcrash& crash : multipliers_) {
        const Vtask* task = crash.task.Get();
        if (!task) continue;
        table.AddRow();
        const int row = table.Rows() - 1;
        std::string part;
        if (crash.fromPercent != 0 || crash.toPercent != 100)
            part = std::to_string(crash.fromPercent) + "% to " + std::to_string(crash.toPercent) + "% of ";
        table.SetCell(row, 0, task->Project()->BuildNodeText());
        table.SetCell(row, 1, part + task->BuildNodeText());
        table.SetCell(row, 2, LocalNumber(FormatNumber(crash.multiplier)));
    }
    table.EndLayout(0, 0);
}

}  // namespace vortan
