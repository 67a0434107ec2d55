// The import of the outline, of tasks, and of their assignments.

#include <algorithm>
#include <cmath>
#include <limits>

#include "model/Rounding.h"
#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "transfer/ImportPlan.h"

namespace vortan {
namespace {

constexpr std::size_t kDeepest = 250;  // levels of an outline
constexpr std::int32_t kNobody = -65535;
constexpr std::int32_t kCalendarDays = 1440, kEffortDays = -480;  // EffortUnits
constexpr float kWholeWeek = 7.0F / 5 * 24 / 8;                   // of calendar time in a week of work

}  // namespace

/// Which rows are imported, and which is within which. A row that is left out leaves its place to those below
/// it.
void PlanImport::FindRows() {
    std::vector<std::pair<std::int32_t, std::int32_t>>
        open;  // level and row of the tasks that a row may be in
    for (const MTask& each : file_.Tasks) {
        if (each.OutlineLevel == 0 && !each.IsNull) continue;  // the project itself
        const char* why = each.IsNull                              ? "It holds nothing"
                          : each.ExternalTask                      ? "It stands for a task of another file"
                          : !each.Active && !IsVortan(each.Text30) ? "An inactive task is no part of the plan"
                                                                   : nullptr;
        if (why) {
            Lose(Name(each),
                 each.IsNull         ? "Empty row"
                 : each.ExternalTask ? "External task"
                                     : "Inactive task",
                 why, "Left out");
            continue;
        }
        const auto index = static_cast<std::int32_t>(rows_.size());
        while (!open.empty() && open.back().first >= each.OutlineLevel) open.pop_back();
        if (open.size() >= kDeepest) {
            Lose(Name(each), "Outline level " + std::to_string(each.OutlineLevel),
                 "There are at most " + std::to_string(kDeepest) + " levels", "One level higher");
            open.pop_back();
        }
        Row& row = rows_.emplace_back();
        row.source = &each;
        row.parent = open.empty() ? -1 : open.back().second;
        row.end = index + 1;
        row.inserted = !each.Subproject.empty();
        open.emplace_back(each.OutlineLevel, index);
        if (!rowOf_.try_emplace(each.UID, index).second)
            Lose(Name(each), "UID " + std::to_string(each.UID), "Another task has it too",
                 "Links and assignments of it are those of the first");
    }
    for (std::size_t i = rows_.size(); i-- > 0;) {
        const std::int32_t parent = rows_[i].parent;
        if (parent >= 0)
            rows_[static_cast<std::size_t>(parent)].end =
                std::max(rows_[static_cast<std::size_t>(parent)].end, rows_[i].end);
    }
}

/// Every row has a number of its own in the file, whatever its IDs are like.
void PlanImport::NumberRows() {
    std::unordered_set<std::int32_t> taken;
    std::int64_t next = 1;
    for (const Row& row : rows_)
        if (row.source->ID < std::numeric_limits<std::int32_t>::max())
            next = std::max<std::int64_t>(next, row.source->ID + std::int64_t{1});
    next = std::min<std::int64_t>(
        next, std::numeric_limits<std::int32_t>::max() - static_cast<std::int64_t>(rows_.size()));
    for (Row& row : rows_) {
        if (row.source->ID > 0 && taken.insert(row.source->ID).second) {
            row.number = row.source->ID;
            continue;
        }
        while (!taken.insert(static_cast<std::int32_t>(next)).second) ++next;
        row.number = static_cast<std::int32_t>(next);
        Lose(Name(*row.source), "ID " + std::to_string(row.source->ID),
             row.source->ID > 0 ? "Another task has it too" : "Numbers begin at 1",
             "Its number is " + std::to_string(next));
    }
}

void PlanImport::ImportTasks() {
    std::unordered_set<std::int32_t> inFile;
    for (const MTask& each : file_.Tasks) inFile.insert(each.UID);
    for (std::size_t i = 0; i < file_.Assignments.size(); ++i) {
        const MAssignment& each = file_.Assignments[i];
        if (each.ResourceUID == kNobody) continue;
        const auto row = rowOf_.find(each.TaskUID);
        const bool known = sources_.contains(each.ResourceUID);
        if (row != rowOf_.end() && known) {
            rows_[static_cast<std::size_t>(row->second)].assignments.push_back(static_cast<std::int32_t>(i));
            continue;
        }
        // A task that was left out has been listed with all that it had.
        if (row == rowOf_.end() && inFile.contains(each.TaskUID)) continue;
        Lose("Assignment " + std::to_string(each.UID),
             "Resource UID " + std::to_string(each.ResourceUID) + " on task UID " +
                 std::to_string(each.TaskUID),
             row == rowOf_.end() ? "There is no such task" : "There is no such resource", "Left out");
    }
    plan_.assignments.assign(file_.Assignments.size(), nullptr);
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        ImportOneTask(static_cast<std::int32_t>(i));
        constexpr std::size_t often = 512;
        if (i % often == 0) CheckCancel();
    }
}

void PlanImport::ImportOneTask(std::int32_t index) {
    Row& row = rows_[static_cast<std::size_t>(index)];
    const MTask& source = *row.source;
    row.holder = row.parent < 0 ? plan_.projects.front().project
                                : rows_[static_cast<std::size_t>(row.parent)].subproject;
    row.task = workspace_.NewVObject<Vtask>();
    row.task->SetProject(row.holder);
    const std::int32_t marked = IsVortan(source.Text30) ? VortanNumber(source.Text30) : 0;
    std::int32_t number = marked > 0 ? marked : row.number;
    if (row.holder->FindTask(number)) number = std::max(row.number, row.holder->HighestTaskID() + 1);
    row.task->SetTaskID(number);
    row.task->SetDescription(source.Name);
    keys_.try_emplace(file_.Name + "\\" + std::to_string(row.number), row.task);
    plan_.tasks.try_emplace(source.UID, row.task);
    const bool emptied = source.Summary && IsVortan(source.Text30);  // a subproject of ours without tasks
    if (row.inserted || emptied || row.end > index + 1) {
        ImportLink(index);
    } else {
        ImportPlainTask(row);
    }
    if (source.Start.IsSet() && source.Start < plan_.importDate)
        plan_.importDate = DateTime(source.Start.WholeDay());
    ListTask(row);
}

bool PlanImport::IsWork(const MAssignment& assignment) const {
    return plan_.resourceOf.contains(assignment.ResourceUID);
}

float PlanImport::UnitsOf(const Row& row) const {
    float units = 0;
    for (const std::int32_t i : row.assignments) {
        const MAssignment& each = file_.Assignments[static_cast<std::size_t>(i)];
        if (IsWork(each)) units += static_cast<float>(each.Units);
    }
    return units;
}

void PlanImport::ImportPlainTask(Row& row) {
    const MTask& source = *row.source;
    const bool one = source.Duration2 == 0;
    double estimates[] = {one ? source.Duration : source.Duration1, one ? source.Duration : source.Duration2,
                          one ? source.Duration : source.Duration3};
    float units = UnitsOf(row);
    const bool elapsed = IsElapsed(PlainFormat(source.DurationFormat)) && one;
    std::int32_t effortUnits = units == 0 || elapsed ? kCalendarDays : kEffortDays;
    const bool effort = source.Number1 < 0;
    // Work that nobody does would halt the solve.
    if (source.Number1 != 0 && (!effort || units != 0 || IsVortan(source.Text30)))
        effortUnits = RoundToInt32(std::trunc(source.Number1));
    if (units == 0) units = kWholeWeek;
    if (elapsed) units = 1;
    for (double& minutes : estimates) {
        const bool negative = minutes < 0;
        minutes = std::max(RoundToInt32(minutes), 0) * static_cast<double>(units);
        if (negative || minutes > std::numeric_limits<std::int32_t>::max())
            Lose(Name(source), "Duration", negative ? "It is negative" : "It is longer than the calendar",
                 negative ? "It is 0" : "As long as can be");
    }
    Vtask& task = *row.task;
    task.SetEffortUnits(effortUnits);
    task.SetOptimistic(RoundToInt32(estimates[0]));
    task.SetMostLikely(RoundToInt32(estimates[1]));
    task.SetPessimistic(RoundToInt32(estimates[2]));
    task.SetMaterialCost(Money::FromDouble(source.FixedCost));
    AddMaterial(row);
}

/// What is used up, and what a use costs.
void PlanImport::AddMaterial(Row& row) {
    Money cost = row.task->MaterialCost();
    for (const std::int32_t i : row.assignments) {
        const MAssignment& each = file_.Assignments[static_cast<std::size_t>(i)];
        const MResource& resource = *sources_.at(each.ResourceUID);
        const bool work = resource.Type == static_cast<std::int32_t>(MResourceType::Work);
        const double use = resource.CostPerUse * (work ? each.Units : 1);
        const double used = work ? 0 : each.Cost != 0 ? each.Cost - use : each.Units * resource.StandardRate;
        cost += Money::FromDouble(use + used);
        if (!IsWork(each))
            Lose(Name(*row.source), "Assignment of " + Name(resource), "It does no work",
                 "Its cost is material cost of the task");
    }
    row.task->SetMaterialCost(cost);
}

void PlanImport::ImportLink(std::int32_t index) {
    Row& row = rows_[static_cast<std::size_t>(index)];
    const MTask& source = *row.source;
    auto* project = workspace_.NewVObject<Vproject>();
    row.subproject = project;
    const std::string name =
        FreeProjectName(source.Name.empty() ? "Summary " + std::to_string(row.number) : source.Name);
    plan_.projects.push_back({project, name, &source});
    plan_.subprojects.try_emplace(source.UID, project);
    project->SetDescription(source.Notes);
    project->AddJournal(row.holder->Journal());
    project->SetParent(row.holder);
    row.task->SetSubproject(project);
    workspace_.ThePlatform().StatusMessage("Importing " + name +
                                           (source.Notes.empty() ? "" : ": " + source.Notes));
    for (const std::int32_t i : row.assignments) {
        const MAssignment& each = file_.Assignments[static_cast<std::size_t>(i)];
        Lose(Name(source), "Assignment of " + Name(*sources_.at(each.ResourceUID)),
             "Work is done by the tasks in it", "Left out");
    }
    row.assignments.clear();
    if (row.inserted && row.end == index + 1) AddInsertedProject(row);
}

/// The tasks of an inserted project are in a file of its own: one task stands for all of them.
void PlanImport::AddInsertedProject(Row& row) {
    const MTask& source = *row.source;
    Lose(Name(source), "Tasks of the inserted project " + source.Subproject,
         "They are in a file of their own", "One task stands for them");
    Row inner;
    inner.source = &source;
    inner.task = workspace_.NewVObject<Vtask>();
    inner.task->SetProject(row.subproject);
    inner.task->SetTaskID(1);
    inner.task->SetDescription(source.Name);
    ImportPlainTask(inner);
    AddDate(*inner.task, StartOf(inner), 0);
    row.inner = inner.task;
}

// ---- what is lost

void PlanImport::ListTask(const Row& row) {
    const MTask& source = *row.source;
    const std::string name = Name(source);
    const bool plain = !row.subproject;
    if (source.Deadline.IsSet())
        Lose(name, "Deadline " + FormatDate(source.Deadline), "Tasks have no deadlines", "Left out");
    if (source.ConstraintType == static_cast<std::int32_t>(MConstraint::AsLateAsPossible))
        Lose(name, "As late as possible", "Tasks start as soon as they can", "As soon as possible");
    if (source.CalendarUID > 0) {
        const MCalendar* calendar = FindCalendar(source.CalendarUID);
        Lose(name, "Calendar " + (calendar ? calendar->Name : std::to_string(source.CalendarUID)),
             "Tasks have no calendars", "The hours are those of its resources");
    }
    if (source.Priority != 500)
        Lose(name, "Priority " + std::to_string(source.Priority), "Projects have priorities, tasks do not",
             "Left out");
    if (plain && !source.Notes.empty()) Lose(name, "Notes", "Tasks have none", "Left out");
    if (plain && source.Milestone && source.Duration != 0)
        Lose(name, "Mark as a milestone", "What takes time is none", "Left out");
    if (plain && source.Recurring)
        Lose(name, "Recurrence", "A task is done once", "It is a task as any other");
    if (plain && source.LevelingDelay != 0)
        Lose(name, "Levelling delay", "Resources are levelled by the solve", "Left out");
    ListTracking(row);
}

void PlanImport::ListTracking(const Row& row) {
    const MTask& source = *row.source;
    const std::string name = Name(source);
    for (const MBaseline& baseline : source.Baselines) {
        if (baseline.Number == 0 && IsVortan(source.Text30)) continue;  // the journal that is the plan
        if (baseline.Start.IsSet() || baseline.Finish.IsSet())
            Lose(name,
                 "Baseline" + (baseline.Number == 0 ? "" : " " + std::to_string(baseline.Number)) + ": " +
                     FormatDate(baseline.Start) + " to " + FormatDate(baseline.Finish),
                 "Plans are kept as journals", "Left out");
    }
    if (row.subproject) return;  // sums of what is in it
    if (source.PercentComplete != 0 || source.PercentWorkComplete != 0)
        Lose(name,
             std::to_string(std::max(source.PercentComplete, source.PercentWorkComplete)) + "% complete",
             "Progress is kept as journals", "All of it is planned");
    if (source.ActualStart.IsSet())
        Lose(name, "Actual start " + FormatDate(source.ActualStart), "Progress is kept as journals",
             "Left out");
    if (source.ActualFinish.IsSet())
        Lose(name, "Actual finish " + FormatDate(source.ActualFinish), "Progress is kept as journals",
             "Left out");
    double work = 0;
    for (const std::int32_t i : row.assignments) {
        const MAssignment& each = file_.Assignments[static_cast<std::size_t>(i)];
        if (IsWork(each)) work += each.Work;
    }
    constexpr double noise = 0.01;
    const double effort = row.task->MostLikely();
    if (row.task->EffortUnits() < 0 && work > 0 && std::abs(work - effort) > 1 + noise * effort)
        Lose(name, "Work " + PlainNumber(std::round(work / 6) / 10) + " hours",
             "Work is duration times units", "It is " + PlainNumber(std::round(effort / 6) / 10) + " hours");
}

void PlanImport::ListPlan() {
    if (!file_.ScheduleFromStart)
        Lose("Plan", "Scheduling from its finish", "Plans are solved from the start",
             "Scheduled from the start");
    for (const MUnread& each : file_.Unread)
        Lose("Plan", each.What + " (" + std::to_string(each.Count) + " times)", "There is no such field",
             "Left out");
}

// ---- assignments

void PlanImport::ImportTaskAssignments(Row& row) {
    for (const std::int32_t index : row.assignments)
        if (IsWork(file_.Assignments[static_cast<std::size_t>(index)])) ImportAssignment(row, index);
}

void PlanImport::ImportAssignment(Row& row, std::int32_t index) {
    const MAssignment& source = file_.Assignments[static_cast<std::size_t>(index)];
    auto* assignment = workspace_.NewVObject<Vassignment>();
    plan_.assignments[static_cast<std::size_t>(index)] = assignment;
    assignment->SetTask(row.task);
    assignment->SetResourceRequired(plan_.resourceOf.at(source.ResourceUID));  // with its hours and days
    int normalDays = 0, flagged = 0;
    for (int day = 0; day < kDayKinds; ++day) normalDays += assignment->WorkDay(day);
    double hours = assignment->Hours() * source.Units;
    if (source.HasDays()) {
        for (int day = 0; day < kDayKinds; ++day) {
            assignment->SetWorkDay(day, source.Flag[static_cast<std::size_t>(day) + 1]);
            flagged += assignment->WorkDay(day);
        }
        hours = hours * normalDays / flagged;
    }
    assignment->SetHours(hours);
    ListAssignment(row, source);
}

void PlanImport::ListAssignment(const Row& row, const MAssignment& source) {
    const std::string name = Name(*row.source) + ", " + Name(*sources_.at(source.ResourceUID));
    if (source.WorkContour != 0)
        Lose(name, "Contour of the work", "Work is the same on all days", "Left out");
    if (source.OvertimeWork != 0)
        Lose(name, "Overtime " + PlainNumber(std::round(source.OvertimeWork / 6) / 10) + " hours",
             "Overtime is the solve rule of a project", "Left out");
    if (source.Delay != 0 || source.LevelingDelay != 0)
        Lose(name, "Delay of the assignment", "All resources of a task begin with it", "Left out");
    if (source.CostRateTable != 0)
        Lose(name,
             std::string("Rate table ") + static_cast<char>('A' + std::clamp(source.CostRateTable, 0, 4)),
             "There are no tables of rates", "The standard rate");
    if (source.Units <= 0)
        Lose(name, "Units " + PlainNumber(source.Units * 100) + "%", "Nobody works so little", "No hours");
}

}  // namespace vortan
