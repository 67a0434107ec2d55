#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/Link.h"
#include "model/SolveService.h"
#include "solve/Problem.h"
#include "solve/Views.h"

namespace vortan {

class Network;
class Workspace;
struct Solution;

/// The background solve of everything in a Workspace. Any change throws the solution away and asks for a new
/// one (RestartSolve); the one-shot timer of the platform then runs a whole solve inside SolveTimerTick. The
/// solve comes up for air in AbortSolve, which lets user events run on the same thread: what they change is
/// the model and the mode, never the solver's arrays, and the solve gives up and begins again.
///
/// The model's result fields are written when the passes have ended or halted, in the journal in force; a
/// pass that gave up leaves no trace. A solve that halts before its forward pass leaves the bookings of the
/// last one standing, on the network that they were made on.
class Solver : public SolveService {
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
    /// The tasks of the circle, after a problem of that kind: each is required by the next, the last by the
    /// first.
    const std::vector<Link<Vtask>>& Circle() const;
    /// Slices that nothing waits for, after a problem of that kind.
    const std::vector<std::int32_t>& DanglingList() const { return dangling_; }

    /// The slices of the last order, by their places in it; without dates if no pass was made on it.
    std::int32_t SliceCount() const;
    Vslice Slice(std::int32_t index) const;
    SliceArrows Arrows() const;
    /// Whether a pass was made on the last order.
    bool Placed() const { return !orderIsNext_; }
    /// The resources that tasks want, in the order in which they are first wanted.
    std::vector<Vresource*> WantedResources() const;
    /// All slots of a resource on these days, in time order, free ones included; none on days that nothing
    /// looked at.
    std::vector<Vslot> Slots(const Vresource& resource, DaySpan days) const;
    /// The slots that tasks hold of a resource on these days, in time order.
    std::vector<Vslot> HeldSlots(const Vresource& resource, DaySpan days = {}) const;

    /// Records what this task finds in the next solves; none records nothing.
    void Watch(const Vtask* task);
    /// The slots of the watched task's resources on the days of its slices, slice by slice, resource by
    /// resource, day by day.
    std::vector<SlotSighting> Sightings() const;

    /// For the other solves of this folder.
    const Solution& Standing() const { return *standing_; }

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
    bool StopAt(std::int32_t slice);
    bool MayStop();
    bool Pause();
    const Network& Order() const;
    void SetMode(SolveMode mode) { mode_ = mode; }

    Workspace& workspace_;
    SolveMode mode_ = SolveMode::Idle;
    std::string message_;
    std::optional<SolveProblem> problem_;
    bool onStack_ = false;  ///< a solve runs in SolveTimerTick
    std::unique_ptr<Solution> standing_;
    std::unique_ptr<Network> next_;
    bool orderIsNext_ = false;  ///< the last order is that of next_, on which no pass was made
    std::vector<std::int32_t> dangling_;
    std::vector<double> planFinish_;
    Link<const Vtask> watched_;
    int untilLook_ = 0;
    std::chrono::microseconds serviceInterval_{5000};
    std::chrono::steady_clock::time_point lastService_;
};

}  // namespace vortan
