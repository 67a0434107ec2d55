// When the rows take place, in that program's terms.

#include <algorithm>
#include <cmath>

#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "transfer/PlanExport.h"

namespace vortan {

namespace {

constexpr double kFullWeek = 40;

// What the format can tell.
const DateTime kFirstDate = FromParts({1984, 1, 1, 0, 0, 0});
const DateTime kLastDate = FromParts({2149, 12, 31, 23, 59, 0});

/// Effort minutes into the working minutes of a week of 40 hours.
double FactorOf(const Vtask& task) {
    float weekly = 0;
    for (const Vassignment* each : task.AssignmentList()) {
        for (int day = 1; day <= 7; ++day) {
            if (each->Include() && each->WorkDay(day)) weekly += static_cast<float>(each->Hours());
        }
    }
    return weekly > 0 ? kFullWeek / static_cast<double>(weekly) : 1.0;
}

}  // namespace

DateTime PlanExport::InRange(const Vtask* task, DateTime date) {
    if (!date.IsSet() || (date >= kFirstDate && date <= kLastDate)) return date;
    const DateTime near = date < kFirstDate ? kFirstDate : kLastDate;
    losses_.Add(task ? ObjectText(*task) : "Project " + projects_.front()->ProjectName(),
                "Date " + FormatDate(date), "dates there lie between 1984 and 2149",
                "Written as " + FormatDate(near));
    return near;
}

const WorkingTime& PlanExport::HoursOfCalendar(std::int32_t uid) {
    const auto at = hours_.find(uid);
    if (at != hours_.end()) return at->second;
    const auto calendar = std::find_if(file_.Calendars.begin(), file_.Calendars.end(),
                                       [uid](const MCalendar& each) { return each.UID == uid; });
    return hours_.emplace(uid, WorkingTime(calendar->Weekday)).first->second;
}

/// Those of the people who work on it where they share a calendar, else those of the project.
const WorkingTime& PlanExport::HoursOf(const Vtask& task) {
    std::int32_t calendar = 0;
    for (const Vassignment* each : task.AssignmentList()) {
        const auto at = each->Include() ? calendarOf_.find(each->ResourceRequired()) : calendarOf_.end();
        if (at == calendarOf_.end()) continue;
        if (calendar != 0 && calendar != at->second) return HoursOfCalendar(file_.CalendarUID);
        calendar = at->second;
    }
    return HoursOfCalendar(calendar == 0 ? file_.CalendarUID : calendar);
}

void PlanExport::ExportDurations() {
    ExportSummaries();
    earliest_.assign(rows_.size(), WorkingTime::Of(file_.ProjectStart));
    for (std::size_t at = 1; at < rows_.size(); ++at) {
        if (rows_[at].ownsSubproject) {
            earliest_[at] = EarliestStart(at, HoursOfCalendar(file_.CalendarUID));
        } else {
            ExportDuration(at);
        }
        ExportBaseline(*rows_[at].task, FileRow(at));
    }
    for (MAssignment& each : file_.Assignments) {
        const MTask& task = FileRow(static_cast<std::size_t>(each.TaskUID));
        each.Start = task.Start;
        each.Finish = task.Finish;
    }
}

/// Before the rows below, which are scheduled from them.
void PlanExport::ExportSummaries() {
    const auto set = [this](MTask& row, const Vproject& project) {
        row.Start = InRange(nullptr, project.EarlyStart());
        row.Finish = InRange(nullptr, project.EarlyFinish());
        row.Duration =
            static_cast<double>(HoursOfCalendar(file_.CalendarUID)
                                    .Between(WorkingTime::Of(row.Start), WorkingTime::Of(row.Finish)));
    };
    for (std::size_t at = rows_.size() - 1; at > 0; --at) {
        if (rows_[at].ownsSubproject) set(FileRow(at), *rows_[at].task->Subproject());
    }
    MTask& top = FileRow(0);
    set(top, *projects_.front());
    for (std::size_t at = 1; at < rows_.size(); ++at) {
        const Vtask& task = *rows_[at].task;
        if (rows_[at].ownsSubproject || !task.Include() || !task.EarlyStart().IsSet()) continue;
        if (!top.Start.IsSet() || task.EarlyStart() < top.Start) top.Start = task.EarlyStart();
        if (task.EarlyFinish() > top.Finish) top.Finish = task.EarlyFinish();
    }
    file_.ProjectStart = InRange(nullptr, top.Start.IsSet() ? top.Start : projects_.front()->Journal());
    file_.ProjectFinish = InRange(nullptr, top.Finish);
    top.Start = file_.ProjectStart;
    top.Finish = file_.ProjectFinish;
}

/// As it is told, from the estimates; then from the solution, where the two may differ.
void PlanExport::ExportDuration(std::size_t at) {
    const Vtask& task = *rows_[at].task;
    MTask& row = FileRow(at);
    const double factor = task.EffortUnits() < 0 ? FactorOf(task) : 1.0;
    row.DurationFormat = static_cast<int>(task.EffortUnits() < 0 ? MFormat::Days : MFormat::ElapsedDays);
    row.Duration = std::round(task.MostLikely() * factor);
    ExportSchedule(at);
    const bool estimated = task.EffortUnits() != 0;
    const bool one = task.Optimistic() == task.Pessimistic() && task.Optimistic() == task.MostLikely();
    if (estimated && (!one || std::fabs(row.Duration - task.MostLikely() * factor) > 0.5)) {
        row.Duration1 = task.Optimistic() * factor;
        row.Duration2 = task.MostLikely() * factor;
        row.Duration3 = task.Pessimistic() * factor;
    }
    row.Milestone = row.Duration == 0;
    row.Work = task.EffortUnits() < 0 ? task.MostLikely() : 0;
    row.Cost = (task.LaborCost() + task.MaterialCost()).ToDouble();
}

/// The duration that leads from start to finish, and what holds the task at its start there: a delay, or,
/// where that program would have it earlier, or at other hours than people work, scheduling by hand.
void PlanExport::ExportSchedule(std::size_t at) {
    const Vtask& task = *rows_[at].task;
    MTask& row = FileRow(at);
    if (!task.Include() || !task.EarlyStart().IsSet()) return;
    row.Start = InRange(&task, task.EarlyStart());
    row.Finish = InRange(&task, task.EarlyFinish());
    const Minute start = WorkingTime::Of(row.Start), finish = WorkingTime::Of(row.Finish);
    const bool elapsed = task.EffortUnits() >= 0;
    const WorkingTime& hours = HoursOf(task);
    row.Duration = static_cast<double>(elapsed ? finish - start : hours.Between(start, finish));
    const bool atWork =
        elapsed || start == finish || (hours.Forward(start) == start && hours.Back(finish) == finish);
    const Minute earliest = EarliestStart(at, hours);
    row.Manual = !atWork || earliest > start || finish < start;
    if (!row.Manual && earliest < start) row.LevelingDelay = static_cast<double>(start - earliest);
}

/// From which moment on the links and the constraint of a row let it start there.
PlanExport::Minute PlanExport::EarliestStart(std::size_t at, const WorkingTime& hours) {
    const MTask& row = FileRow(at);
    const bool elapsed = IsElapsed(PlainFormat(row.DurationFormat));
    const auto duration = static_cast<Minute>(row.Duration);
    const auto startFor = [&](Minute finish) {
        return elapsed ? finish - duration : hours.StartOf(finish, duration);
    };
    Minute earliest = earliest_[rows_[at].parent];
    const auto constraint = static_cast<MConstraint>(row.ConstraintType);
    const Minute date = WorkingTime::Of(row.ConstraintDate);
    if (constraint == MConstraint::StartNoEarlierThan) earliest = std::max(earliest, date);
    if (constraint == MConstraint::FinishNoEarlierThan) earliest = std::max(earliest, startFor(date));
    for (const MLink& link : row.Links) {
        const MTask& before = FileRow(static_cast<std::size_t>(link.PredecessorUID));
        if (!before.Start.IsSet() || !before.Active) continue;
        const bool fromFinish = link.Type == MLinkType::FS || link.Type == MLinkType::FF;
        const bool percent = IsPercent(PlainFormat(link.LagFormat));
        const Minute lag = std::llround(percent ? before.Duration * link.Lag / 100 : link.Lag);
        Minute from = WorkingTime::Of(fromFinish ? before.Finish : before.Start);
        // Of percentages of working time, the days of which that program counts by its calendar.
        if (percent && !IsElapsed(PlainFormat(before.DurationFormat)) && lag != 0) {
            const WorkingTime& standard = HoursOfCalendar(file_.CalendarUID);
            from = lag < 0 ? standard.StartOf(from, -lag) : standard.EndOf(from, lag);
        } else {
            from += lag;
        }
        const bool toFinish = link.Type == MLinkType::FF || link.Type == MLinkType::SF;
        earliest = std::max(earliest, toFinish ? startFor(from) : from);
    }
    return elapsed || row.Duration == 0 ? earliest : hours.Forward(earliest);
}

/// As it stands in the journal of the plan.
void PlanExport::ExportBaseline(const Vtask& task, MTask& row) {
    const std::int32_t plan = task.Project()->PlanIndex();
    if (!task.IncludeAt(plan) || !task.EarlyStartAt(plan).IsSet()) return;
    MBaseline baseline;
    baseline.Start = InRange(&task, task.EarlyStartAt(plan));
    baseline.Finish = InRange(&task, task.EarlyFinishAt(plan));
    const bool elapsed = task.EffortUnitsAt(plan) >= 0 && !task.Subproject();
    const Minute start = WorkingTime::Of(baseline.Start), finish = WorkingTime::Of(baseline.Finish);
    baseline.Duration = static_cast<double>(elapsed ? finish - start : HoursOf(task).Between(start, finish));
    baseline.DurationFormat = static_cast<int>(elapsed ? MFormat::ElapsedDays : MFormat::Days);
    if (task.EffortUnitsAt(plan) < 0 && !task.Subproject()) baseline.Work = task.MostLikelyAt(plan);
    baseline.Cost = (task.LaborCostAt(plan) + task.MaterialCostAt(plan)).ToDouble();
    row.Baselines.push_back(baseline);
}

}  // namespace vortan
