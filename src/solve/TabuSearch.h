#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "solve/Rnd.h"
#include "solve/ShortenFlat.h"

namespace vortan {

/// A tabu search over the sequences of the machines of a flat plan, where no operation is interrupted. Each
/// step takes an operation of a critical block to the front or the end of the block, the one that seems best
/// among those that do not undo what was done lately. Sorted by start, such a schedule is an order of
/// FlatSearch, which may only end earlier: what had to wait fills the gaps.
///
/// It looks at group 0 alone.
class TabuSearch {
  public:
    TabuSearch(const FlatPlan& plan, std::uint64_t seed);

    /// Whether what it remembers of the pairs of operations of each machine has room in memory.
    static bool Fits(const FlatPlan& plan);

    /// Starts from the sequences of an order.
    void Begin(const FlatSearch::Order& order);
    /// Makes up to `steps` steps, fewer if `bound` is met or nothing can be moved. Returns how many.
    std::int64_t Run(std::int64_t steps, std::int32_t bound);

    std::int32_t Finish() const { return bestFinish_; }
    /// The best schedule's operations by their start.
    FlatSearch::Order BestOrder();

  private:
    struct Move {
        std::int32_t machine, from, to;  ///< places in the sequence
    };
    struct Job {
        std::int32_t minutes, release, machine, tailStart;
        std::int32_t firstBefore, endBefore, firstAfter, endAfter;
    };

    bool Schedule();
    void WalkBlocks();
    void AddMoves(std::int32_t machine, std::int32_t first, std::int32_t last);
    bool MayFollow(std::int32_t moved, std::int32_t last) const;
    bool MayPrecede(std::int32_t moved, std::int32_t first) const;
    std::int32_t Estimate(const Move& move);
    bool IsTabu(const Move& move) const;
    void Make(const Move& move);
    void Perturb();
    std::int32_t& TabuOf(std::int32_t machine, std::int32_t a, std::int32_t b) {
        return tabu_[static_cast<std::size_t>(firstTabu_[static_cast<std::size_t>(machine)]) +
                     static_cast<std::size_t>(local_[static_cast<std::size_t>(a)]) *
                         sequences_[static_cast<std::size_t>(machine)].size() +
                     static_cast<std::size_t>(local_[static_cast<std::size_t>(b)])];
    }

    const FlatPlan& plan_;
    Rnd rnd_;
    std::vector<Job> jobs_;
    std::vector<std::vector<std::int32_t>> sequences_, bestSequences_;  ///< by machine
    std::vector<std::int32_t> machineBefore_, machineAfter_, placeIn_, local_;
    std::vector<std::int32_t> head_, tail_;  ///< the longest way to an operation, and behind it
    std::vector<std::int32_t> order_, waits_;
    std::vector<std::int32_t> criticalEnds_, path_;
    std::vector<Move> moves_;
    std::vector<std::int32_t> newHead_, row_;
    std::vector<std::int64_t> firstTabu_;
    std::vector<std::int32_t> tabu_;  ///< by machine and pair: until when the first may not come ahead again
    std::int32_t finish_ = 0, bestFinish_ = INT32_MAX, leastTenure_ = 10;
    std::int32_t step_ = 0, bestStep_ = 0;
};

}  // namespace vortan
