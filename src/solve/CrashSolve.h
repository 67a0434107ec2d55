#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "solve/IterationWatch.h"
#include "solve/IterativeResults.h"
#include "solve/Solution.h"

namespace vortan {

class Solver;

/// One crash solve: step by step raises the team of the critical slice that gains time for the least money,
/// until none gains anything. Works on the network of a complete solution, with bookings of its own, so
/// neither the model nor the solver is touched.
class CrashSolve : private ForwardRun::Poll {
  public:
    /// `project` is an index in the network of `solver`.
    CrashSolve(const Solver& solver, std::int32_t project, float teamIncrement);

    // Each ends early when it is cancelled or a slice cannot be placed; the records mean nothing then.
    void QuickCrashSolve(IterationWatch& watch) { Run(true, watch); }
    void DetailedCrashSolve(IterationWatch& watch) { Run(false, watch); }

    /// How placing failed; none: it did not.
    const std::optional<ForwardRun::Outcome>& Failure() const { return failure_; }
    std::int32_t FailedTask() const { return run_.ProblemTask(); }
    std::vector<Vcrash>& CrashList() { return crashList_; }

  private:
    struct Slice {
        bool mayCrash = false;   ///< but for its slack
        bool crashable = false;  ///< in this step
        float multiplier = 1;
        double efficiency = 1;
        double hundredths = 0;  ///< minutes of a team of 1, times 100
        double mostLikelyDuration = 0;
        Money mostLikelyCost;
    };

    /// Working days on the clock and cost of a quick step.
    struct Scaled {
        double days;
        Money cost;
    };

    void PrepareSlices();
    void Run(bool quick, IterationWatch& watch);
    bool SetCrashableFlags(const ForwardRun& forward, const ReverseRun& reverse);
    void ResetPriorToSolve(bool quick);
    std::int32_t TrialWalk(bool quick);
    bool FinalWalk(bool quick);
    bool TryAndPlace(bool quick, std::int32_t slice, double& crashedFinish, Money& extraCost);
    bool Place(bool quick, std::int32_t slice);
    static Scaled ScaleTo(const Slice& slice, float multiplier);
    bool SetTeam(std::int32_t slice, float multiplier);
    void Record(const ForwardRun& forward, std::int32_t slice);
    bool Stop(std::int32_t slice) override;

    const Solution& standing_;
    const Network& network_;
    std::int32_t project_;
    float teamIncrement_;
    std::vector<Slice> slices_;
    Bookings bookings_;
    ForwardRun run_;
    ReverseRun reverse_;
    std::vector<double> planFinish_;
    std::vector<Vcrash> crashList_;
    std::optional<ForwardRun::Outcome> failure_;
    IterationWatch* watch_ = nullptr;
    /// How near the candidates of the step are to their best team, on average; 0 to 1, and at the first step.
    double nearness_ = 0, firstNearness_ = 0;
};

}  // namespace vortan
