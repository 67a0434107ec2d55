#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "solve/IterationWatch.h"
#include "solve/IterativeResults.h"
#include "solve/IterativeSolve.h"
#include "solve/Solution.h"

namespace vortan {

/// One search for an order of the tasks that ends a project earlier. Works on the network of a complete
/// solution, with bookings of its own, so neither the model nor the solver is touched. Whatever is found is
/// judged by a forward pass like the one of an ordinary solve.
///
/// Two ways: where all people that matter work the same hours, orders are tried in working time (FlatSearch),
/// thousands in the time of one pass; else each order tried is a pass. Two orders are compared by the finish
/// of the project, its cost, and the sum of finishes of the other projects, none of which may end later than
/// it does.
class ShortenSolve : private ForwardRun::Poll {
  public:
    /// `project` is an index in the network of `solver`.
    ShortenSolve(const Solver& solver, std::int32_t project, const ShortenOptions& options);

    /// Ends early when it is cancelled; the best so far is kept.
    void Run(IterationWatch& watch);

    ShortenResult Result() const;
    /// Whether it found an order, and one better than what the other found.
    bool IsBetterThan(const ShortenSolve& other) const {
        return found_ && (!other.found_ || Better(best_, other.best_));
    }
    /// A rank for each task that has a part in the matter; none if nothing better was found.
    std::vector<std::pair<Link<Vtask>, std::int32_t>> Ranks() const;

  private:
    using Clock = std::chrono::steady_clock;
    /// Tasks, the first to be placed in front.
    using Order = std::vector<std::int32_t>;
    struct Value {
        bool valid = false;  ///< everything could be placed, and no other project ends later than before
        double finish = 0, others = 0, late = 0;  ///< days
        Money cost;
    };

    void FindFamily();
    void CollectArrows();
    double LowerBound() const;
    double ChainBound(std::vector<double>& starts) const;
    double ResourceBound(const std::vector<double>& starts) const;
    double EarliestFinish(const Network::Task& task, std::int32_t minutes, double start) const;
    static bool IsSteady(SolveRule rule) {
        return rule == SolveRule::NormalHalt || rule == SolveRule::NormalExtend;
    }

    void SearchFlat(IterationWatch& watch);
    struct FlatSolve;
    bool RunFlat(FlatSolve& flat, IterationWatch& watch);
    void SearchPasses(IterationWatch& watch);
    void AnnealPasses(IterationWatch& watch, std::int64_t total);

    Value ValueOf(const ForwardRun& run) const;
    Value Evaluate(const Order& order);
    void Decode(const Order& order);
    bool Better(const Value& a, const Value& b) const;
    double Energy(const Value& value) const;
    Value Try(const Order& order);
    Order OrderBy(const std::vector<double>& key) const;
    bool PickMove(std::int32_t& moved, std::int32_t& ahead);
    bool MakeCandidate(std::int32_t moved, std::int32_t ahead);
    void Adopt(const Value& value);
    double Uniform() { return rnd_.Below(1 << 24) * 0x1p-24; }
    bool Stop(std::int32_t slice) override;
    double Passed() const { return std::chrono::duration<double>(Clock::now() - begin_).count(); }
    bool Cancelled(IterationWatch& watch, double done, double finish);

    const Solution& standing_;
    const Network& network_;
    std::int32_t project_;
    ShortenOptions options_;
    Rnd rnd_;
    std::vector<char> inFamily_;  ///< by project: it shares people or dependencies with the active one
    // Arrows between slices, backwards.
    std::vector<std::int32_t> firstBefore_, before_;
    std::vector<double> beforeOffset_;
    std::vector<double> limits_;  ///< by project: the finish that it may not pass
    Value start_, best_, value_;
    bool found_ = false;
    Order bestOrder_;
    double bound_ = 0;
    bool proven_ = false;  ///< in working time, where the bound is sharper
    std::int64_t moves_ = 0;
    Clock::time_point begin_;
    bool stopped_ = false;

    // Of passes.
    Bookings bookings_;
    ForwardRun run_;
    Order current_, candidate_;
    std::vector<std::int32_t> sliceOrder_, waits_, rank_, place_, stamp_, stack_;
    std::vector<std::pair<std::int32_t, std::int32_t>> heap_;
    std::int32_t stampNow_ = 0;
    std::vector<double> sliceStart_, sliceFinish_;  ///< of `current_`
    std::vector<std::int32_t> slicePlace_;
    std::vector<std::vector<std::int32_t>> slicesOf_;  ///< by resource
    std::vector<ForwardRun::Clock> clocks_;
};

}  // namespace vortan
