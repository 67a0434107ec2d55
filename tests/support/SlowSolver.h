#pragma once

#include <algorithm>
#include <cmath>
#include <deque>
#include <list>
#include <map>
#include <optional>
#include <stdexcept>
#include <unordered_map>

#include "model/Rounding.h"
#include "support/CheckModel.h"

namespace vortan {

inline double Plus(double date, std::int64_t minutes) {
    return AddMinutes(DateTime(date), minutes).Days();
}
inline bool IsLink(const Vtask* task) {
    return task->Subproject() != nullptr;
}

/// A second solver for comparison with the real one, made to be plain rather than quick: it walks every day
/// of every slice, keeps each day of a resource as a linked chain of slots that are split where a booking
/// begins or ends, and has no short cuts. It reads the model and writes nothing into it.
///
/// It does not look for what halts a solve before it begins, and for tasks that can never work.
class SlowSolver {
  public:
    struct Slice {
        Vtask* task = nullptr;
        double earlyStart = 0, earlyFinish = 0, lateStart = 0, lateFinish = 0;  ///< days
        int fromPercent = 0, toPercent = 100;
        int count = 0;  ///< predecessors not yet in order
        std::int32_t useMinutes = 0;
        Money laborCost;
        std::list<Slice*> forward;  ///< the next slice of the same task is the last
        std::list<Slice*> backward;
    };
    struct Slot {
        double start = 0, end = 1;  ///< days
        const Vtask* task = nullptr;
        int type = 0;
        Money laborCost;
        Slot* next = nullptr;
    };
    /// What the solve finds out about a task.
    struct TaskResult {
        double earlyStart = 0, earlyFinish = 0, lateStart = 0, lateFinish = 0;  ///< days
        Money laborCost, materialCost;
    };
    struct Problem {
        std::string message;  ///< empty: no problem
        const Vtask* task = nullptr;
        const Vdependency* dependency = nullptr;
        const Vassignment* assignment = nullptr;
        double date = 0, requestedHours = 0, assignedHours = 0;
    };

    explicit SlowSolver(const Workspace& workspace) : workspace_(workspace) {}

    const Problem& TheProblem() const { return problem_; }
    const std::vector<Slice*>& OrderList() const { return order_; }
    /// Whether the late dates were computed.
    bool Reversed() const { return reversed_; }
    const TaskResult& ResultOf(const Vtask* task) { return Result(task); }
    /// When the pass last found a dependency's prerequisite to end, days; none if it never looked.
    std::optional<double> DepDateOf(const Vdependency* dependency) const {
        const auto found = depDates_.find(dependency);
        return found == depDates_.end() ? std::nullopt : std::optional(found->second);
    }

    /// Solves in the journal in force. Call it after the real solver: the plan finishes from which the late
    /// dates come are read from the model.
    void Solve() {
        ComputeOrder();
        for (Slice* slice : order_) {
            const std::int32_t share = slice->task->MostLikely() * (slice->toPercent - slice->fromPercent);
            slice->useMinutes = RoundToInt32(share / 100.0);
        }
        for (Slice* slice : order_) {
            SolveOneSlice(slice);
            if (Halted()) return;
        }
        ReverseSolve();
    }
    std::vector<Slot> HeldSlots(const Vresource* resource) const {
        std::vector<Slot> held;
        const auto state = resources_.find(resource);
        if (state == resources_.end()) return held;
        for (const auto& [day, first] : state->second.schedule) {
            for (const Slot* slot = first; slot; slot = slot->next) {
                if (slot->task) held.push_back(*slot);
            }
        }
        return held;
    }

  private:
    bool Halted() const { return !problem_.message.empty(); }
    struct ResourceState {
        std::map<std::int64_t, Slot*> schedule;  ///< first slot of each day
        std::int32_t minutesLeft = 0;
        bool interference = false;
    };
    using Resources = std::vector<const Vresource*>;

    template <class Visit>
    void ForEachTask(Visit&& visit) {
        for (Vproject* project : workspace_.ProjectList()) {
            for (Vtask* task : project->TaskList()) {
                if (task->Include()) visit(task);
            }
        }
    }

    TaskResult& Result(const Vtask* task) {
        auto [at, added] = results_.try_emplace(task);
        if (added) at->second.materialCost = task->MaterialCost();
        return at->second;
    }

    void SolveError(const std::string& message, const Vtask* task, const Vdependency* dependency,
                    const Vassignment* assignment) {
        problem_.message = message;
        problem_.task = task;
        problem_.dependency = dependency;
        problem_.assignment = assignment;
    }

    // Slices and their order

    void ComputeOrder() {
        ForEachTask([&](Vtask* task) {
            slices_.emplace_back().task = task;
            firstSlice_[task] = &slices_.back();
        });
        ForEachTask([&](Vtask* task) { SearchForSplits(task); });
        ForEachTask([&](Vtask* task) {
            if (IsLink(task)) {
                HookUpSubproject(task);
            } else {
                HookUpDependencies(task);
            }
        });
        for (Slice& slice : slices_) {
            if (slice.count == 0) AddReadyList(&slice);
        }
        while (!ready_.empty()) {
            std::list<Slice*> wave;
            wave.swap(ready_);
            for (Slice* slice : wave) AddOrderList(slice);
        }
    }

    void SearchForSplits(const Vtask* task) {
        for (const Vdependency* dependency : task->DependencyList()) {
            if (!dependency->Include()) continue;
            const int to = dependency->ToPercent(), from = dependency->FromPercent();
            if (to > 0) {
                Slice* slice = FindFromSlice(task, to);
                if (slice->fromPercent < to) SplitSlice(slice, to);
            }
            if (dependency->TaskRequired() && from < 100) {
                Slice* slice = FindToSlice(dependency->TaskRequired(), from);
                if (slice->toPercent > from) SplitSlice(slice, from);
            }
        }
    }

    void SplitSlice(Slice* slice, int percent) {
        Slice& behind = slices_.emplace_back();
        behind.task = slice->task;
        behind.fromPercent = percent;
        behind.toPercent = slice->toPercent;
        behind.count = 1;
        behind.forward.swap(slice->forward);
        slice->toPercent = percent;
        slice->forward = {&behind};
    }

    static Slice* NextOfTask(const Slice* slice) {
        if (slice->forward.empty() || slice->forward.back()->task != slice->task) return nullptr;
        return slice->forward.back();
    }

    Slice* FindFromSlice(const Vtask* task, int percent) {
        for (Slice* slice = firstSlice_.at(task);; slice = NextOfTask(slice)) {
            if (slice->fromPercent == percent || slice->toPercent > percent || !NextOfTask(slice))
                return slice;
        }
    }

    Slice* FindToSlice(const Vtask* task, int percent) {
        for (Slice* slice = firstSlice_.at(task);; slice = NextOfTask(slice)) {
            const Slice* next = NextOfTask(slice);
            if (slice->toPercent > percent) return slice;
            if (slice->toPercent == percent && (!next || next->toPercent > percent)) return slice;
        }
    }

    static void AddSuccessor(Slice* source, Slice* target) {
        ++target->count;
        source->forward.push_front(target);
    }

    void HookUpDependencies(const Vtask* task) {
        for (const Vdependency* dependency : task->DependencyList()) {
            const Vtask* required = dependency->TaskRequired();
            if (!dependency->Include() || !required) continue;
            const int from = dependency->FromPercent();
            AddSuccessor(from == 100 ? FindFromSlice(required, 100) : FindToSlice(required, from),
                         FindFromSlice(task, dependency->ToPercent()));
        }
    }

    void HookUpSubproject(const Vtask* task) {
        for (const Vtask* inner : task->Subproject()->TaskList()) {
            if (inner->Include()) AddSuccessor(FindToSlice(inner, 100), FindFromSlice(task, 0));
        }
    }

    void AddReadyList(Slice* slice) {
        const Vproject* own = slice->task->Project();
        const auto behind = [&](const Slice* other) {
            const Vproject* project = other->task->Project();
            if (project == own) return other->task->TaskID() > slice->task->TaskID();
            if (project->Priority() != own->Priority()) return project->Priority() > own->Priority();
            return project->ProjectName() > own->ProjectName();
        };
        ready_.insert(std::find_if(ready_.begin(), ready_.end(), behind), slice);
    }

    void AddOrderList(Slice* slice) {
        order_.push_back(slice);
        for (Slice* successor : slice->forward) {
            successor->backward.push_back(slice);
            if (--successor->count == 0) AddReadyList(successor);
        }
    }

    // Schedules

    Slot* PrepareDay(const Vresource* resource, double day) {
        const Vshift* shift = resource->Shift();
        const bool workDay = resource->WorkDay(Weekday(DateTime(day)));
        const auto letterOf = [&](int cell) { return cell == 288 ? '\0' : shift->Period(cell); };
        Slot* first = &slots_.emplace_back();
        Slot* slot = first;
        slot->start = day;
        char current = letterOf(0);
        for (int cell = 1;; ++cell) {
            const char next = letterOf(cell);
            if (next == current) continue;
            slot->end = day + (cell / 12.0) / 24;
            slot->type = current == 'N' ? (workDay ? 3 : 4) : current == 'O' ? 5 : 9;
            if (next == '\0') return first;
            Slot* behind = &slots_.emplace_back();
            behind->start = slot->end;
            slot->next = behind;
            slot = behind;
            current = next;
        }
    }

    Slot* FindOrCreateSlot(const Vresource* resource, double when) {
        const double day = std::floor(when);
        Slot*& first = resources_[resource].schedule[static_cast<std::int64_t>(day)];
        if (!first) first = PrepareDay(resource, day);
        Slot* slot = first;
        while (slot->end <= when) slot = slot->next;
        return slot;
    }

    static bool Allowed(const Slot* slot, int pass) {
        if (pass == 0) return slot->type == 3 || slot->type == 4;
        return pass == 2 ? slot->type == 5 : true;
    }

    Slot* Split(Slot* slot, double when) {
        Slot* right = &slots_.emplace_back();
        right->start = when;
        right->end = slot->end;
        right->type = slot->type;
        right->next = slot->next;
        slot->end = when;
        slot->next = right;
        return right;
    }

    std::int32_t Allocate(Slice* slice, const Vresource* resource, double start, std::int32_t minutes,
                          int pass) {
        TaskResult& task = Result(slice->task);
        const double day = std::floor(start);
        std::int32_t booked = 0;
        Slot* slot = FindOrCreateSlot(resource, start);
        while (minutes > 0 && slot && slot->start < day + 1) {
            if (Allowed(slot, pass)) {
                if (slot->task) {
                    resources_[resource].interference = true;
                    slot = slot->next;
                    continue;
                }
                if (slot->start < start) slot = Split(slot, start);
                const double end = Plus(slot->start, minutes);
                if (slot->end > end) Split(slot, end);
                const std::int32_t used = RoundToInt32((slot->end - slot->start) * 1440);
                booked += used;
                minutes -= used;
                const Money rate = slot->type == 3   ? resource->BurdenedRate()
                                   : slot->type == 4 ? resource->OffDayRate()
                                   : slot->type == 5 ? resource->OvertimeRate()
                                                     : resource->HolidayRate();
                slot->task = slice->task;
                slot->laborCost = Money::FromDouble(rate.ToDouble() * (slot->end - slot->start) * 24 * 1.0);
                slice->laborCost += slot->laborCost;
                task.laborCost += slot->laborCost;
                task.earlyFinish = std::max(task.earlyFinish, slot->end);
            }
            slot = slot->next;
        }
        return booked;
    }

    // Forward pass

    double FindLatestDate(const Vtask* task, int percent) {
        double latest = 0;
        for (const Vdependency* dependency : task->DependencyList()) {
            if (!dependency->Include() || dependency->ToPercent() > percent) continue;
            const Vtask* required = dependency->TaskRequired();
            double date = dependency->DepDate().Days();
            if (required) {
                date = FindToSlice(required, dependency->FromPercent())->earlyFinish;
                depDates_[dependency] = date;
            }
            latest = std::max(latest, date + dependency->Offset());
        }
        return latest;
    }

    void SolveOneSlice(Slice* slice) {
        const Vtask* task = slice->task;
        if (IsLink(task)) return SolveSubproject(slice);
        TaskResult& result = Result(task);
        slice->earlyStart = FindLatestDate(task, slice->fromPercent);
        if (result.earlyStart == 0) {
            result.earlyStart = result.earlyFinish = slice->earlyStart;
        } else if (result.earlyFinish > slice->earlyStart) {
            slice->earlyStart = result.earlyFinish;
        } else {
            result.earlyFinish = slice->earlyStart;
        }
        std::int32_t remaining = 0;
        double targetFinish = 0;
        if (task->EffortUnits() < 0) {
            remaining = slice->useMinutes;
        } else if (task->EffortUnits() == 0) {
            targetFinish = FindLatestDate(task, 100);
            if (targetFinish == std::floor(targetFinish)) targetFinish += 1;
        } else {
            targetFinish = Plus(result.earlyFinish, slice->useMinutes);
        }
        Resources resources;
        for (const Vassignment* assignment : task->AssignmentList()) {
            const Vresource* resource = assignment->ResourceRequired();
            if (std::find(resources.begin(), resources.end(), resource) == resources.end())
                resources.push_back(resource);
        }
        while (result.earlyFinish < targetFinish || remaining > 0) {
            if (Halted()) return;
            SolveSomeMore(slice, resources, remaining, targetFinish);
        }
        slice->earlyFinish = result.earlyFinish;
    }

    void SolveSubproject(Slice* slice) {
        TaskResult& link = Result(slice->task);
        bool first = true;
        for (const Vtask* inner : slice->task->Subproject()->TaskList()) {
            if (!inner->Include()) continue;
            const TaskResult& result = Result(inner);
            if (first) {
                link = result;
                first = false;
                continue;
            }
            link.earlyStart = std::min(link.earlyStart, result.earlyStart);
            link.earlyFinish = std::max(link.earlyFinish, result.earlyFinish);
            link.laborCost += result.laborCost;
            link.materialCost += result.materialCost;
        }
        slice->earlyStart = link.earlyStart;
        slice->earlyFinish = link.earlyFinish;
    }

    void SolveSomeMore(Slice* slice, const Resources& resources, std::int32_t& remaining,
                       double targetFinish) {
        if (++daySteps_ > 2'000'000) throw std::runtime_error("A slice that never ends");
        const Vtask* task = slice->task;
        TaskResult& result = Result(task);
        const double stepStart = result.earlyFinish;
        const double day = std::floor(stepStart);
        const int weekday = Weekday(DateTime(day));
        for (const Vresource* resource : resources) {
            resources_[resource].minutesLeft = 0;
            resources_[resource].interference = false;
        }
        std::int32_t todayMinutes = 0;
        for (const Vassignment* assignment : task->AssignmentList()) {
            if (!assignment->Include() || !assignment->WorkDay(weekday)) continue;
            const std::int32_t minutes = RoundToInt32(assignment->Hours() * 60);
            resources_[assignment->ResourceRequired()].minutesLeft += minutes;
            todayMinutes += minutes;
        }
        if (!resources.empty()) {
            if (remaining > todayMinutes) {
                TeamSolve(slice, remaining, resources, todayMinutes);
            } else {
                PiecemealSolve(slice, remaining, resources, todayMinutes);
            }
        }
        if (remaining > 0 || result.earlyFinish < targetFinish) {
            result.earlyFinish = day + 1;
            if (targetFinish != 0 && result.earlyFinish > targetFinish) result.earlyFinish = targetFinish;
        }
        if (todayMinutes <= 0) return;
        const auto rule = static_cast<int>(task->Project()->SolveRules());
        if (rule == 6) {
            for (const Vresource* resource : resources) {
                if (resources_[resource].interference) remaining -= resources_[resource].minutesLeft;
            }
        } else if (rule % 2 == 0) {
            ReportShortage(task, resources, weekday, stepStart);
        }
    }

    void ReportShortage(const Vtask* task, const Resources& resources, int weekday, double stepStart) {
        const auto hindered =
            std::find_if(resources.begin(), resources.end(), [&](const Vresource* resource) {
                return resources_[resource].interference && resources_[resource].minutesLeft > 0;
            });
        if (hindered == resources.end()) return;
        const Vassignment* last = nullptr;
        for (const Vassignment* assignment : task->AssignmentList()) {
            if (!assignment->Include() || !assignment->WorkDay(weekday)) continue;
            if (assignment->ResourceRequired() != *hindered) continue;
            last = assignment;
            problem_.requestedHours += assignment->Hours();
        }
        problem_.assignedHours = problem_.requestedHours - resources_[*hindered].minutesLeft / 60.0;
        problem_.date = stepStart;
        const auto rule = static_cast<int>(task->Project()->SolveRules());
        SolveError(rule == 0   ? "Overtime needed"
                   : rule == 2 ? "Overload detected"
                               : "Overload > 24 hours",
                   nullptr, nullptr, last);
    }

    void TeamSolve(Slice* slice, std::int32_t& remaining, const Resources& resources,
                   std::int32_t& todayMinutes) {
        const double start = Result(slice->task).earlyFinish;
        for (const int pass : {0, 2, 4}) {
            if (pass > static_cast<int>(slice->task->Project()->SolveRules())) return;
            for (const Vresource* resource : resources) {
                ResourceState& state = resources_[resource];
                if (state.minutesLeft <= 0 || (pass > 0 && !state.interference)) continue;
                const std::int32_t got = Allocate(slice, resource, start, state.minutesLeft, pass);
                state.minutesLeft -= got;
                remaining -= got;
                todayMinutes -= got;
            }
            if (todayMinutes <= 0) return;
        }
    }

    void PiecemealSolve(Slice* slice, std::int32_t& remaining, const Resources& resources,
                        std::int32_t& todayMinutes) {
        const double start = Result(slice->task).earlyFinish;
        const double midnight = std::floor(start) + 1;
        for (const int pass : {0, 2}) {
            if (pass > static_cast<int>(slice->task->Project()->SolveRules())) return;
            double cursor = start;
            do {
                double limit = midnight;
                Resources free;
                for (const Vresource* resource : resources) {
                    ResourceState& state = resources_[resource];
                    if (state.minutesLeft <= 0 || (pass == 2 && !state.interference)) continue;
                    const Slot* slot = FindOrCreateSlot(resource, cursor);
                    limit = std::min(limit, slot->end);
                    if (!Allowed(slot, pass) || slot->task) continue;
                    free.push_back(resource);
                    limit = std::min(limit, Plus(cursor, state.minutesLeft));
                }
                const auto members = static_cast<std::int32_t>(free.size());
                std::int32_t each = RoundToInt32((limit - cursor) * 1440);
                if (members > 0 && each * members > remaining) each = (remaining + members - 1) / members;
                for (const Vresource* resource : free) {
                    const std::int32_t got = Allocate(slice, resource, cursor, each, pass);
                    resources_[resource].minutesLeft -= got;
                    remaining -= got;
                    todayMinutes -= got;
                }
                cursor = limit;
            } while (remaining > 0 && cursor < midnight);
            if (remaining <= 0) return;
        }
    }

    // Reverse pass

    static double FindOffset(const Vtask* required, int fromPercent, const Vtask* dependent, int toPercent) {
        for (const Vdependency* dependency : dependent->DependencyList()) {
            if (dependency->Include() && dependency->TaskRequired() == required &&
                dependency->FromPercent() == fromPercent && dependency->ToPercent() == toPercent) {
                return dependency->Offset();
            }
        }
        return 0;
    }

    void ReverseSolve() {
        for (Slice* slice : order_) {
            const Vproject* master = slice->task->Project()->Master();
            slice->lateFinish = master->EarlyFinishAt(master->PlanIndex()).Days();
        }
        for (auto at = order_.rbegin(); at != order_.rend(); ++at) {
            Slice* slice = *at;
            slice->lateStart = slice->lateFinish;
            if (!IsLink(slice->task)) slice->lateStart -= slice->earlyFinish - slice->earlyStart;
            for (Slice* before : slice->backward) {
                const double offset =
                    FindOffset(before->task, before->toPercent, slice->task, slice->fromPercent);
                before->lateFinish = std::min(before->lateFinish, slice->lateStart - offset);
            }
        }
        for (const Slice* slice : order_) {
            if (IsLink(slice->task)) continue;
            if (slice->fromPercent == 0) Result(slice->task).lateStart = slice->lateStart;
            if (slice->toPercent == 100) Result(slice->task).lateFinish = slice->lateFinish;
        }
        for (const Slice* slice : order_) {
            if (IsLink(slice->task) && slice->toPercent == 100) LateDatesOfLink(slice->task);
        }
        reversed_ = true;
    }

    void LateDatesOfLink(const Vtask* link) {
        double start = 0, finish = 0, slack = 0;
        bool first = true;
        for (const Vtask* inner : link->Subproject()->TaskList()) {
            if (!inner->Include()) continue;
            const TaskResult& result = Result(inner);
            const double room = result.lateFinish - result.earlyFinish;
            start = first ? result.earlyStart : std::min(start, result.earlyStart);
            finish = first ? result.earlyFinish : std::max(finish, result.earlyFinish);
            slack = first ? room : std::min(slack, room);
            first = false;
        }
        Result(link).lateStart = first ? 0 : start + slack;
        Result(link).lateFinish = first ? 0 : finish + slack;
    }

    const Workspace& workspace_;
    std::deque<Slice> slices_;
    std::deque<Slot> slots_;
    std::unordered_map<const Vtask*, Slice*> firstSlice_;
    std::unordered_map<const Vtask*, TaskResult> results_;
    std::unordered_map<const Vresource*, ResourceState> resources_;
    std::unordered_map<const Vdependency*, double> depDates_;
    std::list<Slice*> ready_;
    std::vector<Slice*> order_;
    Problem problem_;
    bool reversed_ = false;
    std::int64_t daySteps_ = 0;
};

}  // namespace vortan
