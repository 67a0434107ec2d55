#include "reports/ReportKinds.h"

#include <algorithm>

#include "model/Fault.h"
#include "model/Vproject.h"
#include "reports/Builders.h"

namespace vortan {
namespace {

constexpr ReportKind kKinds[] = {
    {"resources", "Resource entry", ReportNeeds::Template, BuildResourceEntrySpreadsheet},
    {"tasks", "Task entry", ReportNeeds::Project, BuildTaskEntrySpreadsheet},
    {"summary", "Project summary", ReportNeeds::Solution, BuildProjectSummarySpreadsheet},
    {"update", "Project update", ReportNeeds::SolutionBesidePlan, BuildProjectUpdateSpreadsheet},
    {"loading-by-resource", "Loading by resource", ReportNeeds::Template,
     [](const ReportSource& source) { return BuildLoadingSummary(source, true); }, true},
    {"loading-by-project", "Loading by project", ReportNeeds::Template,
     [](const ReportSource& source) { return BuildLoadingSummary(source, false); }, true},
    {"loading-by-day", "Loading by day", ReportNeeds::Template, BuildLoadingByDay, true, true},
    {"overtime", "Overtime and overload", ReportNeeds::Solution,
     [](const ReportSource& source) { return BuildOverageSpreadsheet(source, true); }, true},
    {"overload", "Overload", ReportNeeds::Solution,
     [](const ReportSource& source) { return BuildOverageSpreadsheet(source, false); }, true},
    {"date-dependencies", "Date dependency", ReportNeeds::Project, BuildDateDependencySpreadsheet},
    {"changes", "Changes", ReportNeeds::SolutionBesidePlan, BuildChangesSpreadsheet, false, false, true},
};

}  // namespace

std::span<const ReportKind> ReportKinds() {
    return kKinds;
}

const ReportKind& ReportKindOf(std::string_view name) {
    const auto* const kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                          [&](const ReportKind& each) { return each.name == name; });
    if (kind == std::end(kKinds)) AssertionFailed();
    return *kind;
}

bool PlanIsCurrent(const Workspace& workspace) {
    const Vproject* project = workspace.ThisProject();
    return project && project->PlanIndex() == project->CurrentIndex();
}

bool HasResults(const Vproject& project, std::int32_t journalIndex) {
    const auto& tasks = project.TaskList();
    return std::all_of(tasks.begin(), tasks.end(), [&](const Vtask* task) {
        return !task->IncludeAt(journalIndex) ||
               (task->EarlyStartAt(journalIndex).IsSet() && task->EarlyFinishAt(journalIndex).IsSet());
    });
}

bool MayBuild(Workspace& workspace, const ReportKind& kind) {
    switch (kind.needs) {
        case ReportNeeds::Template:
            return workspace.ThisTemplateSet();
        case ReportNeeds::Project:
            return workspace.ThisProjectSet();
        case ReportNeeds::Solution:
            return workspace.ThisProjectSolved();
        case ReportNeeds::SolutionBesidePlan:
            break;
    }
    if (!workspace.ThisProjectSolved()) return false;
    if (!PlanIsCurrent(workspace)) return true;
    workspace.ThePlatform().MessageBox(
        "This spreadsheet requires the current journal to be different from the plan journal.",
        "Plan Equals Current", BoxIcon::Warning, BoxButtons::Ok);
    return false;
}

}  // namespace vortan
