#pragma once

#include <memory>
#include <vector>

#include "solve/ShortenSolve.h"

namespace vortan {

/// Searches for a shorter order on several threads at once: each has a search of its own, from other random
/// numbers, and the best of all counts, the first of equal ones. All end when one has found what no order can
/// beat.
///
/// The first search is the one that a single thread would make, as far as the machine gives it the same time.
/// Where a number of moves decides, there is one search alone: what it finds must not depend on the machine.
class ShortenCrew {
  public:
    ShortenCrew(const Solver& solver, std::int32_t project, const ShortenOptions& options, int workers);

    /// On the calling thread, which alone reports to `watch`, and those that it starts.
    void Run(Solver& solver, IterationWatch& watch);

    ShortenResult Result() const;
    std::vector<std::pair<Link<Vtask>, std::int32_t>> Ranks() const { return Best().Ranks(); }

  private:
    const ShortenSolve& Best() const;

    std::vector<std::unique_ptr<ShortenSolve>> searches_;
};

}  // namespace vortan
