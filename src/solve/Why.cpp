#include "solve/Why.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtask.h"

namespace vortan {

namespace {

constexpr int kOffDaySlot = 4;                         // the last type of normal time
constexpr double kMoment = 1.0 / kMinutesPerDay / 60;  // shorter stretches are noise

using Cause = WhyReport::Cause;

struct Booking {
    double from, to;
};

/// Builds the report of one task.
class Explainer {
  public:
    Explainer(const Solver& solver, const Vtask& task)
        : solver_(solver), task_(task), sightings_(solver.Sightings()) {}

    WhyReport Explain() {
        if (!solver_.Placed()) return report_;
        CollectSlices();
        if (!partOfSolve_) return report_;
        CollectBookings();
        CollectSightings();
        for (std::size_t i = 0; i < slices_.size(); ++i) ExplainStart(i);
        for (std::size_t i = 0; i < slices_.size(); ++i) ExplainSlice(i);
        std::stable_sort(report_.stretches.begin(), report_.stretches.end(),
                         [](const auto& a, const auto& b) { return a.from < b.from; });
        ExplainFollowers();
        report_.solved = !slices_.empty() && slices_.back().earlyFinish.IsSet();
        report_.slackDays = DaysBetween(task_.EarlyFinish(), task_.LateFinish());
        return report_;
    }

  private:
    void CollectSlices() {
        for (std::int32_t i = 0; i < solver_.SliceCount(); ++i) {
            const Vslice slice = solver_.Slice(i);
            if (slice.task != &task_) continue;
            partOfSolve_ = true;
            if (slice.earlyStart.IsSet()) slices_.push_back(slice);
        }
    }

    void CollectBookings() {
        for (const Vassignment* assignment : task_.AssignmentList()) {
            Vresource* resource = assignment->ResourceRequired();
            if (!assignment->Include() || !resource) continue;
            if (std::find(team_.begin(), team_.end(), resource) != team_.end()) continue;
            team_.push_back(resource);
            for (const Vslot& slot : solver_.HeldSlots(*resource)) {
                if (slot.taskRequired == &task_)
                    bookings_.push_back({slot.startTime.Days(), slot.endTime.Days()});
            }
        }
        std::sort(bookings_.begin(), bookings_.end(),
                  [](const Booking& a, const Booking& b) { return a.from < b.from; });
    }

    /// When a dependency lets the task go on, before its offset.
    DateTime DateOf(const Vdependency& dependency) const {
        // For a prerequisite, the solve has stored the finish of the slice that counts.
        return dependency.DepDate();
    }

    /// The dependency up to `percent` that is met last.
    Vdependency* LatestDependency(int percent) const {
        Vdependency* latest = nullptr;
        for (Vdependency* dependency : task_.DependencyList()) {
            if (!dependency->Include() || dependency->ToPercent() > percent) continue;
            if (!latest || Allows(*dependency) > Allows(*latest)) latest = dependency;
        }
        return latest;
    }
    double Allows(const Vdependency& dependency) const {
        return DateOf(dependency).Days() + dependency.Offset();
    }

    void ExplainStart(std::size_t i) {
        const Vslice& slice = slices_[i];
        WhyReport::Start start;
        start.fromPercent = slice.fromPercent;
        start.toPercent = slice.toPercent;
        start.at = slice.earlyStart;
        if (!task_.Subproject()) {
            Vdependency* latest = LatestDependency(slice.fromPercent);
            if (latest && std::abs(Allows(*latest) - slice.earlyStart.Days()) < kMoment) {
                start.dependency = latest;
                start.dependencyDate = DateOf(*latest);
                start.offset = latest->Offset();
            } else {
                start.afterSliceBefore = i > 0;
            }
            if (i > 0 && start.dependency) {
                const DateTime before = slices_[i - 1].earlyFinish;
                start.afterSliceBefore = DaysBetween(before, slice.earlyStart) < kMoment;
                if (!start.afterSliceBefore) {
                    report_.stretches.push_back({before, slice.earlyStart, Cause::Waiting, nullptr, nullptr,
                                                 slice.fromPercent, latest});
                }
            }
        }
        report_.starts.push_back(start);
    }

    /// The stretches within a slice: what lies between its bookings.
    void ExplainSlice(std::size_t i) {
        if (task_.Subproject() || task_.EffortUnits() >= 0) return;
        double at = slices_[i].earlyStart.Days();
        const double end = i + 1 == slices_.size() && !slices_[i].earlyFinish.IsSet()
                               ? task_.EarlyFinish().Days()
                               : slices_[i].earlyFinish.Days();
        for (const Booking& booking : bookings_) {
            if (booking.to <= at) continue;
            if (booking.from >= end) break;
            ExplainGap(at, booking.from);
            at = std::max(at, booking.to);
        }
        ExplainGap(at, end);
    }

    void ExplainGap(double from, double to) {
        for (double day = std::floor(from); from < to - kMoment; ++day) {
            const double until = std::min(to, day + 1);
            ExplainDay(static_cast<std::int32_t>(day), from, until);
            from = until;
        }
    }

    /// What the team could not do on one day from `from` to `to`.
    void ExplainDay(std::int32_t day, double from, double to) {
        const int weekday = Weekday(DateTime(day));
        bool wanted = false;
        std::vector<double> cuts = {from, to};
        for (Vresource* resource : team_) {
            if (MinutesWanted(*resource, weekday) <= 0) continue;
            wanted = true;
            for (const auto& sighting : Seen(*resource, day)) {
                for (const double edge : {sighting.slot.startTime.Days(), sighting.slot.endTime.Days()}) {
                    if (edge > from && edge < to) cuts.push_back(edge);
                }
            }
        }
        if (!wanted) {
            Add({DateTime(from), DateTime(to), Cause::NoWorkDay});
            return;
        }
        std::sort(cuts.begin(), cuts.end());
        for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
            if (cuts[i + 1] - cuts[i] > kMoment) Add(CauseBetween(day, weekday, cuts[i], cuts[i + 1]));
        }
    }

    WhyReport::Stretch CauseBetween(std::int32_t day, int weekday, double from, double to) {
        WhyReport::Stretch stretch{DateTime(from), DateTime(to), Cause::OutsideShift};
        const double middle = (from + to) / 2;
        for (Vresource* resource : team_) {
            const std::int32_t asked = MinutesWanted(*resource, weekday);
            if (asked <= 0) continue;
            const auto sightings = Seen(*resource, day);
            std::int32_t given = 0;
            for (const auto& [slice, who, slot] : sightings) {
                if (slot.taskRequired == &task_)
                    given += RoundToInt32(DaysBetween(slot.startTime, slot.endTime) * kMinutesPerDay);
            }
            for (const auto& [slice, who, slot] : sightings) {
                if (slot.startTime.Days() > middle || slot.endTime.Days() < middle) continue;
                if (slot.slotType > kOffDaySlot) continue;
                if (given < asked && slot.taskRequired && slot.taskRequired != &task_) {
                    const bool counts = task_.Project()->SolveRules() == SolveRule::Unlimited;
                    stretch.cause = counts ? Cause::Unbooked : Cause::Held;
                    stretch.resource = resource;
                    stretch.holder = slot.taskRequired;
                } else if (stretch.cause == Cause::OutsideShift) {
                    stretch.cause = Cause::HoursUsed;
                }
            }
        }
        return stretch;
    }

    /// The slots of a day as the task found them: what later tasks booked is not in the way of this one. Of a
    /// day that several slices saw, the last sight counts.
    void CollectSightings() {
        for (std::size_t first = 0, end; first < sightings_.size(); first = end) {
            const auto& one = sightings_[first];
            const std::int32_t day = DayOf(one.slot);
            for (end = first + 1; end < sightings_.size(); ++end) {
                const auto& next = sightings_[end];
                if (next.slice != one.slice || next.resource != one.resource || DayOf(next.slot) != day)
                    break;
            }
            seen_[{one.resource, day}] = {sightings_.data() + first, end - first};
        }
    }
    static std::int32_t DayOf(const Vslot& slot) { return static_cast<std::int32_t>(slot.startTime.Days()); }
    std::span<const SlotSighting> Seen(const Vresource& resource, std::int32_t day) const {
        const auto found = seen_.find({&resource, day});
        if (found == seen_.end()) return {};
        return found->second;
    }

    std::int32_t MinutesWanted(const Vresource& resource, int weekday) const {
        std::int32_t minutes = 0;
        for (const Vassignment* assignment : task_.AssignmentList()) {
            if (assignment->Include() && assignment->ResourceRequired() == &resource &&
                assignment->WorkDay(weekday)) {
                minutes += RoundToInt32(assignment->Hours() * 60);
            }
        }
        return minutes;
    }

    /// Joins neighbours of one cause.
    void Add(const WhyReport::Stretch& stretch) {
        if (!report_.stretches.empty()) {
            WhyReport::Stretch& last = report_.stretches.back();
            if (std::abs(DaysBetween(last.to, stretch.from)) < kMoment && last.cause == stretch.cause &&
                last.resource == stretch.resource && last.holder == stretch.holder) {
                last.to = stretch.to;
                return;
            }
        }
        report_.stretches.push_back(stretch);
    }

    void ExplainFollowers() {
        const SliceArrows arrows = solver_.Arrows();
        for (std::int32_t i = 0; i < solver_.SliceCount(); ++i) {
            const Vslice slice = solver_.Slice(i);
            if (slice.task != &task_) continue;
            const auto arrowsOut = arrows.ForwardList(i);
            for (auto at = arrowsOut.rbegin(); at != arrowsOut.rend(); ++at) {
                const SliceArrow& arrow = *at;
                const Vslice follower = solver_.Slice(arrow.slice);
                if (follower.task == &task_ || !follower.task) continue;
                const double allowed = slice.earlyFinish.Days() + arrow.offset;
                // What stands for a subproject begins with its first task; it is the end that waits.
                const DateTime waits =
                    follower.task->Subproject() ? follower.task->EarlyFinish() : follower.earlyStart;
                report_.followers.push_back(
                    {follower.task, waits, follower.fromPercent, waits.Days() - allowed});
            }
        }
        std::stable_sort(report_.followers.begin(), report_.followers.end(),
                         [](const auto& a, const auto& b) { return a.roomDays < b.roomDays; });
    }

    const Solver& solver_;
    const Vtask& task_;
    const std::vector<SlotSighting> sightings_;
    bool partOfSolve_ = false;
    std::vector<Vslice> slices_;
    std::vector<Vresource*> team_;
    std::vector<Booking> bookings_;
    std::map<std::pair<const Vresource*, std::int32_t>, std::span<const SlotSighting>> seen_;  ///< by day
    WhyReport report_;
};

}  // namespace

WhyReport ExplainTask(const Solver& solver, const Vtask& task) {
    return Explainer(solver, task).Explain();
}

}  // namespace vortan
