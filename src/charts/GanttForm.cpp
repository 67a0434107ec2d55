#include "charts/GanttForm.h"

#include <algorithm>

#include "charts/PageHeader.h"
#include "model/ErrTrap.h"
#include "model/Rounding.h"
#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"

namespace vortan {

GanttForm::GanttForm(Workspace& workspace, Settings& settings, const TextMetrics& metrics)
    : ChartForm(Vwindow::Style::Time, metrics), workspace_(workspace), settings_(settings) {}

void GanttForm::Start() {
    const Section section("Gantt:Start");
    GetDateRange(workspace_, startDate_, endDate_, true);
    vwindow_.SetDateRange(startDate_, endDate_);
}

std::string GanttForm::Caption() const {
    return "Mechanized Gantt chart for " + GetPageHeader(workspace_);
}

ChartForm::OptionsFrame GanttForm::Frame() {
    return {"OptionsFrame",
            "Gantt chart options",
            {{Option::Kind::Button, "PreferencesCommand", "Preferences", false,
              [this](bool) {
                  if (PreferencesCommandClick) PreferencesCommandClick();
              }},
             {Option::Kind::Check, "CriticalPathCheck", "Critical path in red",
              settings_.ThePreferences().criticalRed,
              [this](bool on) { settings_.WriteSettings("CriticalPathRedCheck", on ? "X" : "-"); }}}};
}

void GanttForm::LayOut() {
    const Section section("Gantt:Vwindow_RedoLayout");
    workspace_.ThePlatform().StatusMessage("Building GANTT chart");
    options_ = settings_.ThePreferences();
    options_.criticalRed |= criticalRed_;
    vwindow_.WrapText = options_.wrapText;
    vwindow_.ClearLayout();
    vwindow_.AddColumn("Task", Alignment::Left);
    vwindow_.AddColumn("Dependencies", Alignment::Left);
    vwindow_.AddTimeColumns();
    vwindow_.AddColumn("Slack", Alignment::Right);
    vwindow_.AddColumn("Time\r\nleft", Alignment::Right);

    taskCol_.clear();
    rowList_.clear();
    rowTasks_.clear();
    standsFor_.clear();
    projectRows_.clear();
    if (const Vproject* project = workspace_.ThisProject()) {
        std::unordered_set<const Vproject*> within;
        BuildTaskList(*project, within);
    }
    if (options_.sortByDate && options_.subprojects == Subprojects::Flat) SortTaskList(taskCol_);
    for (Vtask* task : taskCol_) {
        if (IncludeTask(*task)) BuildTaskRow(*task);
    }
    vwindow_.EndLayout(2, options_.taskLeader ? 8 : 5);
}

/// A project that several tasks stand for is listed behind each of them; one that holds itself ends there.
void GanttForm::BuildTaskList(const Vproject& project, std::unordered_set<const Vproject*>& within) {
    if (!within.insert(&project).second) return;
    Tasks tasks;
    for (Vtask* task : project.TaskList()) {
        if (task->Include()) tasks.push_back(task);
    }
    if (!options_.sortByDate || options_.subprojects != Subprojects::Flat) SortTaskList(tasks);
    for (Vtask* task : tasks) {
        taskCol_.push_back(task);
        const Vproject* subproject = task->Subproject();
        if (!subproject) continue;
        if (subproject->Parent() == &project) standsFor_.emplace(subproject, task);
        BuildTaskList(*subproject, within);
    }
    within.erase(&project);
}

void GanttForm::SortTaskList(Tasks& tasks) const {
    std::stable_sort(tasks.begin(), tasks.end(),
                     [this](const Vtask* a, const Vtask* b) { return CheckOrder(*a, *b); });
}

bool GanttForm::CheckOrder(const Vtask& a, const Vtask& b) const {
    if (!options_.sortByDate) return a.TaskID() < b.TaskID();
    if (a.EarlyStart() != b.EarlyStart()) return a.EarlyStart() < b.EarlyStart();
    return a.EarlyFinish() < b.EarlyFinish();
}

bool GanttForm::IncludeTask(const Vtask& task) const {
    if (options_.subprojects == Subprojects::Flat) return !task.Subproject();
    return task.Project() == workspace_.ThisProject() ||
           (options_.subprojects == Subprojects::All && task.Subproject());
}

void GanttForm::BuildTaskRow(Vtask& task) {
    vwindow_.AddRow();
    const int row = vwindow_.Rows() - 1;
    rowList_.emplace(&task, row);
    rowTasks_.emplace_back(&task);
    vwindow_.SetCell(row, 0, TaskCell(task));
    vwindow_.SetCell(row, 1, DependencyCell(task));
    const DateTime finish = task.EarlyFinish(), journal = task.Project()->Journal();
    vwindow_.SetCell(row, vwindow_.Cols() - 2, FormatDuration(DaysBetween(finish, task.LateFinish()), false));
    vwindow_.SetCell(row, vwindow_.Cols() - 1,
                     finish < journal ? "Done" : FormatDuration(DaysBetween(journal, finish), false));
}

std::string GanttForm::TaskCell(const Vtask& task) const {
    std::string text = task.BuildNodeText();
    if (!options_.taskLeader) return text;
    text += "\r\n";
    const Vresource* leader = task.Subproject() ? task.Subproject()->Manager() : nullptr;
    if (!leader) {
        const auto& all = task.AssignmentList();
        const auto first =
            std::find_if(all.begin(), all.end(), [](const Vassignment* one) { return one->Include(); });
        if (first != all.end()) leader = (*first)->ResourceRequired();
    }
    if (leader) text += "  " + leader->Description();
    return text;
}

std::string GanttForm::DependencyCell(const Vtask& task) const {
    if (task.Subproject() || !options_.allDeps) {
        const Vdependency* control = task.ControlDependency();
        return control ? control->BuildNodeText() : "";
    }
    std::string text;
    bool first = true;
    for (const Vdependency* dependency : task.DependencyList()) {
        if (!dependency->Include()) continue;
        if (!first) text += "\r\n";
        text += dependency->BuildNodeText();
        first = false;
    }
    return text;
}

int GanttForm::FindRow(const Vtask* task) {
    if (!task) return 0;
    if (const auto at = rowList_.find(task); at != rowList_.end()) return at->second;
    return task->Project() ? RowOfProject(*task->Project()) : 0;
}

int GanttForm::RowOfProject(const Vproject& project) {
    // The 0 that is filed first also ends a circle of parents.
    const auto [place, isNew] = projectRows_.emplace(&project, 0);
    if (!isNew) return place->second;
    const Vproject* parent = project.Parent();
    if (!parent) return 0;
    const auto standing = standsFor_.find(&project);
    const int row = standing == standsFor_.end() ? RowOfProject(*parent) : FindRow(standing->second);
    projectRows_[&project] = row;
    return row;
}

int GanttForm::GetY(int row, float ninth) const {
    const double middle = (vwindow_.RowPos(row) + vwindow_.RowPos(row + 1)) / 2.0;
    return RoundToInt32(middle + (ninth - 4.5) * Unit() / 9);
}

double GanttForm::Unit() const {
    return (options_.taskLeader ? 2.75 : 1.75) * vwindow_.TextHeight();
}

namespace {

/// What its bar in a journal tells.
std::string TextOfBar(const Vtask& task, std::int32_t journal) {
    const DateTime finish = task.EarlyFinishAt(journal);
    std::string resources;
    for (const Vassignment* assignment : task.AssignmentList()) {
        const Vresource* resource = assignment->Include() ? assignment->ResourceRequired() : nullptr;
        if (resource) resources += (resources.empty() ? "" : ", ") + resource->Description();
    }
    return task.BuildNodeText() + "\nStart: " + FormatDate(task.EarlyStartAt(journal)) +
           "\nFinish: " + FormatDate(finish) +
           "\nSlack: " + FormatDuration(DaysBetween(finish, task.LateFinishAt(journal)), true) +
           (resources.empty() ? "" : "\nResources: " + resources);
}

}  // namespace

std::string GanttForm::TipAt(int x, int y) const {
    const int row = vwindow_.RowAt(y);
    if (row < 1 || row > static_cast<int>(rowTasks_.size())) return {};
    const Vtask* task = rowTasks_[static_cast<std::size_t>(row) - 1].Get();
    if (!task || !task->Project()) return {};
    const Vproject& project = *task->Project();
    std::int32_t journal = 0;
    if (project.PlanIndex() != project.CurrentIndex() && Covers(CurrentBar(*task, row), x, y)) {
        journal = project.CurrentIndex();
    } else if (HasPlan(*task) && Covers(PlanBar(*task, row), x, y)) {
        journal = project.PlanIndex();
    } else {
        return {};
    }

    return TextOfBar(*task, journal);
}

std::string GanttForm::RowText(int row) const {
    if (row < 1 || row > static_cast<int>(rowTasks_.size())) return {};
    const Vtask* task = rowTasks_[static_cast<std::size_t>(row) - 1].Get();
    return task && task->Project() ? TextOfBar(*task, task->Project()->CurrentIndex()) : std::string();
}

}  // namespace vortan
