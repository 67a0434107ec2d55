#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "solve/IterationWatch.h"
#include "solve/IterativeResults.h"
#include "solve/Rnd.h"
#include "solve/Solution.h"

namespace vortan {

class Solver;

/// The normal score of a probability above 0 and below 1, good to 4.5e-4 (Abramowitz and Stegun, 26.2.23).
float PtoZ(float p);

/// Normal scores for `slices` slices in `iterations` iterations, slice by slice. The first row holds the
/// middles of as many strata of equal probability, rising; each other row the same in random order.
std::vector<float> BuildPermuteTable(std::size_t slices, std::int32_t iterations, Rnd& rnd);

/// One risk solve: repeats the plan with other estimates and collects finish and cost of a project. Works on
/// the network of a complete solution; trials have bookings of their own, so neither the model nor the solver
/// is touched. Trials run on several threads, with the same result for any number of them.
class RiskSolve {
  public:
    /// How a trial failed, first of all in the order of iterations.
    struct Failure {
        std::int32_t iteration = 0;  ///< from 1
        ForwardRun::Outcome outcome = ForwardRun::Outcome::Done;
        std::int32_t task = -1;
    };

    /// `project` is an index in the network of `solver`; a thread more than one is started for each of
    /// `workers` beyond the first.
    RiskSolve(const Solver& solver, std::int32_t project, std::int32_t iterations, int workers);

    /// What the solve will take of memory.
    static double MemoryNeeded(const Solver& solver, std::int32_t iterations, int workers);

    /// Also find out what drives the spread. To be called before the solve.
    void WithDrivers() { withDrivers_ = true; }
    void PrepareRiskSolve(Rnd& rnd);
    // Each ends early when it is cancelled or a trial fails; the results mean nothing then.
    void DetailedRiskSolve(IterationWatch& watch) { Solve(false, watch); }
    void QuickRiskSolve(IterationWatch& watch) { Solve(true, watch); }

    const std::optional<Failure>& FirstFailure() const { return failure_; }
    /// Sorts what the trials recorded and hands it over.
    void MoveResults(IterativeResults& results);

  private:
    class Worker;
    /// What a slice's samples and quick trials are made of.
    struct Baseline {
        std::int32_t optimistic, mostLikely, pessimistic;  ///< minutes of the whole task
        std::int32_t percent;                              ///< width of the slice
        double mostLikelyDuration;                         ///< days
        Money mostLikelyCost;
    };
    struct Trial {
        double finish = 0;  ///< days
        Money cost;
    };

    static std::int32_t Sample(const Baseline& slice, float score);
    void Solve(bool quick, IterationWatch& watch);
    /// The trials of `chosen_`, with the task `fixed_` at its optimistic estimate if there is one.
    void RunTrials(bool quick, IterationWatch& watch);
    // What drives the spread, in RiskDrivers.cpp.
    void FindDrivers();
    bool IsDriver(std::int32_t task) const;
    /// The sampled minutes of a task, trial by trial.
    std::vector<double> SampledMinutes(const Network::Task& task) const;
    void MeasureGains(bool quick, IterationWatch& watch);
    int PercentDone() const;
    double PartDone() const;
    void Fail(const Failure& failure);

    const Solution& standing_;
    const Network& network_;
    std::int32_t project_;
    std::int32_t iterations_;
    int workers_;
    std::int32_t block_;  ///< iterations that a worker takes at a time
    std::vector<float> permuteTable_;
    std::vector<Baseline> baseline_;
    std::vector<Trial> trials_;  ///< 0 is the solution that stands, then in the order of iterations
    bool withDrivers_ = false;
    std::vector<std::int32_t> chosen_;         ///< iterations to run
    std::int32_t fixed_ = -1;                  ///< a task that always takes one of its estimates
    bool fixedPessimistic_ = false;            ///< which of both
    std::vector<double> finishes_;             ///< of the chosen trials, while a task is fixed
    std::vector<std::int32_t> criticalCount_;  ///< by task: trials in which it had no slack
    std::vector<RiskDriver> drivers_;
    std::int32_t gainTrials_ = 0;
    std::int32_t runBefore_ = 0, runInAll_ = 0;  ///< trials, for the progress

    // Shared by the workers.
    std::atomic<std::int32_t> next_{0}, done_{0};
    std::atomic<std::int32_t> end_{0};  ///< iterations from here on need not be run
    std::atomic<bool> cancel_{false};
    std::mutex mutex_;
    std::optional<Failure> failure_;
};

}  // namespace vortan
