#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "solve/Rnd.h"

namespace vortan {

/// A plan whose people all work the same hours, in minutes of working time: the calendar is gone. An
/// operation takes its machine, which is a person, from when it is ready on, around what was placed before.
struct FlatPlan {
    struct Operation {
        std::int32_t minutes = 0;
        std::int32_t machine = -1;  ///< -1: takes none
        std::int32_t release = 0;   ///< the earliest start
        std::int32_t group = -1;    ///< whose finish it counts for, -1 for none
        std::int32_t firstBefore = 0, beforeCount = 0;
        std::int32_t firstAfter = 0, afterCount = 0;
    };
    std::vector<Operation> operations;
    std::vector<std::int32_t> before, after;  ///< operations, by the ranges above
    std::int32_t machines = 0;
    /// The finish that a group may not pass. The finish of group 0 is the one sought, its limit means
    /// nothing.
    std::vector<std::int32_t> limits;

    std::span<const std::int32_t> BeforeOf(const Operation& o) const {
        return {before.data() + o.firstBefore, static_cast<std::size_t>(o.beforeCount)};
    }
    std::span<const std::int32_t> AfterOf(const Operation& o) const {
        return {after.data() + o.firstAfter, static_cast<std::size_t>(o.afterCount)};
    }
    /// Fills `before` and `after` from pairs of operations.
    void SetArrows(std::span<const std::pair<std::int32_t, std::int32_t>> arrows);
};

/// The search for the order of operations that ends group 0 earliest.
///
/// Simulated annealing over the order. What is on a critical chain and had to wait for its machine is placed
/// ahead of what held it, with those of its predecessors that stand in between; a schedule that is taken is
/// sorted by finish, which changes nothing in it and keeps neighbours in time neighbours in the order.
/// Nothing depends on the clock: the same plan, seed and number of moves give the same order.
class FlatSearch {
  public:
    using Order = std::vector<std::int32_t>;

    FlatSearch(const FlatPlan& plan, std::uint64_t seed);

    /// No order can end group 0 earlier: the longest chain, and for each machine the best that it could do
    /// alone with what must come before and behind each operation.
    std::int32_t LowerBound() const { return bound_; }
    /// Takes an order as a start, if it is better than what is known.
    void Try(const Order& order);
    /// Tries orders by the longest chain behind each operation, and improves them by scheduling backwards
    /// and forwards in turn.
    void TryRules();
    /// Goes on for `moves` of an annealing of `total` moves that begins at the first call. Ends early when
    /// the bound is met. Returns the moves made.
    std::int64_t Anneal(std::int64_t moves, std::int64_t total);

    bool Optimal() const { return best_.late == 0 && best_.finish <= bound_; }
    std::int32_t Finish() const { return best_.finish; }
    /// By how much the groups but the first pass their limits in all.
    std::int64_t Late() const { return best_.late; }
    const Order& BestOrder() const { return bestOrder_; }

  private:
    struct Stretch {
        std::int32_t start, end;
    };
    struct Value {
        std::int32_t finish = INT32_MAX;
        std::int64_t late = 0;

        std::int64_t Energy() const { return finish + 4 * late; }
    };
    static constexpr std::int64_t kNoLimit = INT64_MAX;

    void ComputeTails();
    std::int32_t MachineBound(std::int32_t machine) const;
    std::int32_t Place(std::int32_t machine, std::int32_t ready, std::int32_t minutes);
    Value Evaluate(const Order& order, std::int64_t limit);
    void Take(const Order& order, const Value& value);
    void SortByFinish(Order& order, const std::vector<std::int32_t>& finish);
    void Renew();
    Order ByKey(const std::vector<std::int64_t>& key, bool backwards) const;
    void ScheduleBackwards(const Order& order, std::vector<std::int32_t>& finish);
    void ImproveByTurns();
    bool PickMove(std::int32_t& moved, std::int32_t& ahead);
    bool MakeCandidate(std::int32_t moved, std::int32_t ahead);
    double Uniform() { return rnd_.Below(1 << 24) * 0x1p-24; }

    const FlatPlan& plan_;
    Rnd rnd_;
    std::int32_t bound_ = 0;
    std::vector<std::int32_t> head_,
        tail_;  ///< longest chain before an operation, and behind it to group 0's end
    std::vector<std::int32_t> firstStretch_;
    std::vector<Stretch> stretches_;
    std::vector<std::int32_t> stretchCount_;
    std::vector<std::int32_t> groupFinish_;
    std::vector<std::int32_t> finish_;  ///< of the order evaluated last
    // The order that the annealing stands at.
    Order current_, candidate_;
    Value value_;
    std::vector<std::int32_t> currentFinish_, place_, machineBefore_, ends_;
    std::vector<std::int32_t> lastOf_;
    std::vector<std::int32_t> stamp_, stack_;
    std::int32_t stampNow_ = 0;
    std::int64_t made_ = 0;
    // The best so far.
    Order bestOrder_;
    Value best_;
};

}  // namespace vortan
