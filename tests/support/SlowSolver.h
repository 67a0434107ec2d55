#pragma once

#include <cstdint>
#include <deque>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/Money.h"
#include "model/Workspace.h"

namespace vortan {

/// A second solver for comparison with the real one, made to be plain rather than quick: it walks every day
/// of every slice, keeps each day of a resource as a linked chain of slots that are split where a booking
/// begins or ends, and has no short cuts. It reads the model and writes nothing into it.
///
/// It does not look for circles, for prerequisites that are gone, or for tasks that can never work.
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

    /// Solves in the journal in force. Call it after the real solver: the plan finishes from which the late
    /// dates come are read from the model.
    void Solve();

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
    std::vector<Slot> HeldSlots(const Vresource* resource) const;

  private:
    struct ResourceState {
        std::map<std::int64_t, Slot*> schedule;  ///< first slot of each day
        std::int32_t minutesLeft = 0;
        bool interference = false;
    };
    using Resources = std::vector<const Vresource*>;

    template <class Visit>
    void ForEachTask(Visit&& visit);
    TaskResult& Result(const Vtask* task);
    void SolveError(const std::string& message, const Vtask* task, const Vdependency* dependency = nullptr,
                    const Vassignment* assignment = nullptr);
    bool Halted() const { return !problem_.message.empty(); }

    // Slices and their order
    void VerifyJournalSync();
    void CheckOneTask(const Vtask* task);
    void ComputeOrder();
    void SearchForSplits(const Vtask* task);
    void SplitSlice(Slice* slice, int percent);
    static Slice* NextOfTask(const Slice* slice);
    Slice* FindFromSlice(const Vtask* task, int percent);
    Slice* FindToSlice(const Vtask* task, int percent);
    void HookUpDependencies(const Vtask* task);
    void HookUpSubproject(const Vtask* task);
    static void AddSuccessor(Slice* source, Slice* target);
    void AddReadyList(Slice* slice);
    void AddOrderList(Slice* slice);
    void BuildDanglingList();

    // Schedules
    Slot* FindOrCreateSlot(const Vresource* resource, double when);
    Slot* PrepareDay(const Vresource* resource, double day);
    static bool Allowed(const Slot* slot, int pass);
    Slot* Split(Slot* slot, double when);
    std::int32_t Allocate(Slice* slice, const Vresource* resource, double start, std::int32_t minutes,
                          int pass);

    // Forward pass
    double FindLatestDate(const Vtask* task, int percent);
    void SolveOneSlice(Slice* slice);
    void SolveSubproject(Slice* slice);
    void SolveSomeMore(Slice* slice, const Resources& resources, std::int32_t& remaining,
                       double targetFinish);
    void ReportShortage(const Vtask* task, const Resources& resources, int weekday, double stepStart);
    void TeamSolve(Slice* slice, std::int32_t& remaining, const Resources& resources,
                   std::int32_t& todayMinutes);
    void PiecemealSolve(Slice* slice, std::int32_t& remaining, const Resources& resources,
                        std::int32_t& todayMinutes);

    // Reverse pass
    void ReverseSolve();
    static double FindOffset(const Vtask* required, int fromPercent, const Vtask* dependent, int toPercent);
    void LateDatesOfLink(const Vtask* link);

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
