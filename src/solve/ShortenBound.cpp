// ShortenSolve: the finish that no order can beat.

#include <algorithm>

#include "solve/ShortenSolve.h"

namespace vortan {

namespace {

bool Gives(SlotClass kind, Reach reach) {
    return reach == Reach::WholeDay || kind <= SlotClass::OffDay ||
           (reach == Reach::Overtime && kind == SlotClass::Overtime);
}

/// When `minutes` of the time that the reach allows are through, of a day from `from` on, both fractions of
/// the day. What is missing stays in `minutes`.
double TakeOfDay(const Network& network, const Network::DayPattern& day, Reach reach, double from,
                 double& minutes) {
    double start = 0, reached = from;
    for (const auto& period : network.PeriodsOf(day)) {
        const double begin = std::max(start, from);
        start = period.end;
        if (!Gives(period.kind, reach) || period.end <= begin) continue;
        const double length = (period.end - begin) * kMinutesPerDay;
        if (length >= minutes - 1e-6) {
            reached = begin + minutes / kMinutesPerDay;
            minutes = 0;
            return reached;
        }
        minutes -= length;
        reached = period.end;
    }
    return reached;
}

constexpr double kRounding = 1;  ///< minutes by which the shares of a team may be rounded up, each

}  // namespace

/// A moment that a task of that many minutes cannot end before if it begins at `start`, whatever is booked.
/// A person works no more than wanted on a day, and in time that the rule allows.
double ShortenSolve::EarliestFinish(const Network::Task& task, std::int32_t minutes, double start) const {
    const SolveRule rule = network_.Projects()[Index(task.project)].rule;
    if (minutes <= 0 || task.wantCount == 0 || rule == SolveRule::Unlimited) return start;
    const auto wants = network_.WantsOf(task);
    double left = minutes;
    if (wants.size() > 1) left -= kRounding * static_cast<double>(wants.size());
    if (!network_.OnMinuteGrid()) left -= 2 + left / 100;  // every slot is rounded on its own
    double from = start - DateTime(start).WholeDay();
    for (auto day = static_cast<std::int32_t>(start); day <= kLastDay; ++day, from = 0) {
        const int weekday = WeekdayIndex(day);
        double all = 0, end = from;
        for (const auto& want : wants) {
            double mine = std::min<double>(want.minutes[Index(weekday)], left);
            if (mine <= 0) continue;
            const double wanted = mine;
            end = std::max(end,
                           TakeOfDay(network_, network_.DayOf(network_.WeekOf(want.resource), Index(weekday)),
                                     ReachOf(rule), from, mine));
            all += wanted - mine;
        }
        if (all >= left - 1e-6) return day + (wants.size() == 1 ? end : from);
        left -= all;
    }
    return start;
}

/// All slices on their dependencies alone, each as if it had its people to itself.
double ShortenSolve::ChainBound(std::vector<double>& starts) const {
    const auto slices = network_.Slices();
    const auto tasks = network_.Tasks();
    std::vector<double> finishes(slices.size());
    starts.assign(slices.size(), 0);
    double bound = 0;
    for (std::size_t s = 0; s < slices.size(); ++s) {
        const auto& task = tasks[Index(slices[s].task)];
        double start = 0, onDates = 0;
        bool onTasks = task.subproject >= 0;
        for (const auto& source : network_.SourcesOf(task)) {
            onTasks = onTasks || source.slice >= 0;
            if (task.subproject >= 0 || source.slice >= 0) continue;
            onDates = std::max(onDates, source.date + source.offset);
            if (source.toPercent <= slices[s].from) start = std::max(start, source.date + source.offset);
        }
        for (std::int32_t k = firstBefore_[s]; k < firstBefore_[s + 1]; ++k) {
            const auto b = Index(before_[Index(k)]);
            // Two dependencies between the same points may have other offsets: those of sources count.
            const bool own = slices[b].task == slices[s].task || task.subproject >= 0;
            if (own) start = std::max(start, finishes[b]);
        }
        if (task.subproject < 0) {
            for (const auto& source : network_.SourcesOf(task)) {
                if (source.slice >= 0 && source.toPercent <= slices[s].from)
                    start = std::max(start, finishes[Index(source.slice)] + source.offset);
            }
        }
        starts[s] = start;
        if (task.subproject >= 0) {
            finishes[s] = start;
        } else if (task.effortUnits < 0) {
            finishes[s] = EarliestFinish(task, slices[s].useMinutes, start);
        } else if (task.effortUnits > 0) {
            finishes[s] = AddMinutes(DateTime(start), slices[s].useMinutes).Days();
        } else {
            // Only a fixed date is sure to mean the end of its day.
            const bool endOfDay = !onTasks && onDates == DateTime(onDates).WholeDay();
            finishes[s] = std::max(start, onDates + (endOfDay ? 1 : 0));
        }
        if (task.project == project_) bound = std::max(bound, finishes[s]);
    }
    return bound;
}

/// For each person, all the work that the project cannot end without, from when the first of it may begin.
double ShortenSolve::ResourceBound(const std::vector<double>& starts) const {
    const auto slices = network_.Slices();
    const auto tasks = network_.Tasks();
    std::vector<char> needed(slices.size());
    struct Load {
        double minutes = 0, start = 1e300;
        Reach reach = Reach::NormalTime;
    };
    std::vector<Load> loads(network_.Resources().size());
    for (std::size_t s = slices.size(); s-- > 0;) {
        const auto& task = tasks[Index(slices[s].task)];
        needed[s] = task.project == project_ ? 1 : 0;
        for (const auto& edge : network_.EdgesOf(slices[s])) {
            // With a negative offset, what follows may begin before this ends.
            if (edge.offset >= 0 && needed[Index(edge.slice)] != 0) needed[s] = 1;
        }
        const SolveRule rule = network_.Projects()[Index(task.project)].rule;
        if (needed[s] == 0 || task.effortUnits >= 0 || task.wantCount != 1 || rule == SolveRule::Unlimited)
            continue;
        Load& load = loads[Index(network_.WantsOf(task).front().resource)];
        load.minutes += slices[s].useMinutes;
        if (slices[s].useMinutes > 0) load.start = std::min(load.start, starts[s]);
        load.reach = std::max(load.reach, ReachOf(rule));
    }
    double bound = 0;
    for (std::size_t r = 0; r < loads.size(); ++r) {
        double left = loads[r].minutes;
        if (left <= 0) continue;
        double from = loads[r].start - DateTime(loads[r].start).WholeDay();
        for (auto day = static_cast<std::int32_t>(loads[r].start); day <= kLastDay; ++day, from = 0) {
            const auto& hours =
                network_.DayOf(network_.WeekOf(static_cast<std::int32_t>(r)), Index(WeekdayIndex(day)));
            const double end = TakeOfDay(network_, hours, loads[r].reach, from, left);
            if (left > 0) continue;
            bound = std::max(bound, day + end);
            break;
        }
    }
    return bound;
}

double ShortenSolve::LowerBound() const {
    std::vector<double> starts;
    const double chain = ChainBound(starts);
    return std::max(chain, ResourceBound(starts));
}

}  // namespace vortan
