#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/SolveService.h"
#include "model/Vtask.h"
#include "model/Workspace.h"
#include "solve/Bookings.h"
#include "solve/ForwardRun.h"
#include "solve/Network.h"
#include "solve/Problem.h"
#include "solve/ReverseRun.h"

namespace vortan {

/// A slice as screens see it: a piece of a task between two percentages, with its dates and cost.
struct Vslice {
    Vtask* task = nullptr;  ///< none if it was deleted since the solve
    int fromPercent = 0, toPercent = 100;
    DateTime earlyStart, earlyFinish, lateStart, lateFinish;
    Money laborCost;

    std::string BuildNodeText() const;
};

/// A stretch of one day of a resource as screens see it.
struct Vslot {
    DateTime startTime, endTime;
    int slotType = 0;               ///< 3 normal, 4 normal on an off day, 5 overtime, 9 break or overload
    Vtask* taskRequired = nullptr;  ///< the task that holds it; none: free
    Money laborCost;

    std::string BuildNodeText() const;
};

/// The background solve of everything in a Workspace. Any change throws the solution away and asks for a new
/// one (RestartSolve); the one-shot timer of the platform then runs a whole solve inside SolveTimerTick. The
/// solve comes up for air in AbortSolve, which lets user events run on the same thread: what they change is
/// the model and the mode, never the solver's arrays, and the solve gives up and begins again.
///
/// The model's result fields are written when the passes have ended or halted, in the journal in force; a
/// pass that gave up leaves no trace. A solve that halts before its forward pass leaves the bookings of the
/// last one standing, on the network that they were made on.
class Solver : public SolveService, private ForwardRun::Poll {
  public:
    /// Registers with the workspace, which must outlive the solver.
    explicit Solver(Workspace& workspace);
    ~Solver() override;
    Solver(const Solver&) = delete;
    Solver& operator=(const Solver&) = delete;

    SolveMode Mode() const override { return mode_; }
    void RestartSolve() override;
    void SuspendSolve() override;
    void ResumeSolve() override;
    void Clear() override;
    std::int32_t CountMinutes(const Vresource& resource, const Vtask& task, DateTime from,
                              DateTime to) const override;

    /// The event of the solve timer: solves, again as long as a restart is asked for meanwhile. One that
    /// comes while a solve is on the stack does nothing: what it came for is done before that solve ends. A
    /// fault leaves the mode Halted with the text "Internal error" and is passed on.
    void SolveTimerTick();
    /// A risk or crash solve takes over from a complete solution: nothing is solved and no events are served
    /// until its end. It works on runs of its own and leaves the arrays here alone.
    void BeginIterating();
    /// With `restart`, a new solve is asked for.
    void EndIterating(bool restart);
    /// Serves events, unless an iterative solve runs. True: the solve must stop now.
    bool AbortSolve();

    /// The text about the solve.
    const std::string& SolveMessage() const { return message_; }
    void SetSolveMessage(std::string_view text);
    /// What halted the last solve; none unless the mode is Halted.
    const std::optional<SolveProblem>& Problem() const { return problem_; }
    /// Halts: the running solve stops at its next AbortSolve.
    void SolveError(const SolveProblem& problem);
    /// The tasks of the circle, after "Circular dependency": each is required by the next, the last by the
    /// first.
    const std::vector<Link<Vtask>>& Circle() const { return Order().Circle(); }
    /// Slices that nothing waits for, after "Dangling tasks".
    const std::vector<std::int32_t>& DanglingList() const { return dangling_; }

    /// The slices of the last network, in solve order; without dates if no pass was made on it.
    std::int32_t SliceCount() const { return static_cast<std::int32_t>(Order().Slices().size()); }
    Vslice Slice(std::int32_t index) const;
    /// Whether a pass was made on the last network.
    bool Placed() const { return !orderIsNext_; }
    /// The slots of one day of a resource, free ones included; none for a day that nothing looked at.
    std::vector<Vslot> Slots(const Vresource& resource, std::int32_t day) const;
    /// All held slots of a resource, in time order.
    std::vector<Vslot> HeldSlots(const Vresource& resource) const;

    /// Records what this task finds in the next solves, for ExplainTask; none records nothing.
    void Watch(const Vtask* task) { watched_ = const_cast<Vtask*>(task); }

    /// The network of the run and the bookings below.
    const Network& TheNetwork() const { return network_; }
    const ForwardRun& Run() const { return run_; }
    const ReverseRun& Late() const { return reverse_; }
    /// By project, the finish of its master in the plan journal if a run gives these dates to the tasks;
    /// days.
    void PlanFinishes(const std::vector<ForwardRun::Clock>& clocks, std::vector<double>& finishes) const;
    const Bookings& TheBookings() const { return bookings_; }

    /// Shortest time between two services of events in a running solve. Zero serves at every opportunity.
    void SetServiceInterval(std::chrono::microseconds interval) { serviceInterval_ = interval; }

  private:
    void TrySolve();
    void DoEverything();
    void VerifyJournalSync();
    bool CheckAllTasks();
    bool ComputeOrder();
    bool CheckOpenEnds();
    bool ResetPriorToSolve();
    bool ForwardPass();
    bool ReversePass();
    void ReportShortage();
    void WriteResults();
    void WriteDependencyDates(const Network::Task& task);
    double PlanFinish(const Network::Project& project, const std::vector<ForwardRun::Clock>& clocks) const;
    bool Stop(std::int32_t slice) override;
    bool MayStop();
    bool Pause();
    const Network& Order() const { return orderIsNext_ ? nextNetwork_ : network_; }
    void SetMode(SolveMode mode) { mode_ = mode; }
    Vslot ViewOf(const SlotView& slot) const;

    Workspace& workspace_;
    SolveMode mode_ = SolveMode::Idle;
    std::string message_;
    std::optional<SolveProblem> problem_;
    bool onStack_ = false;  ///< a solve runs in SolveTimerTick
    Network network_, nextNetwork_;
    bool orderIsNext_ = false;  ///< the last order is nextNetwork_, on which no pass was made
    Bookings bookings_;
    ForwardRun run_;
    ReverseRun reverse_;
    bool reversed_ = false;  ///< the late dates belong to the present network
    std::vector<std::int32_t> dangling_;
    std::vector<double> planFinish_;
    Link<Vtask> watched_;
    int untilLook_ = 0;
    std::chrono::microseconds serviceInterval_{5000};
    std::chrono::steady_clock::time_point lastService_;
};

}  // namespace vortan
