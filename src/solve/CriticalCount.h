#pragma once

#include <cstdint>
#include <vector>

#include "solve/ForwardRun.h"
#include "solve/Network.h"

namespace vortan {

/// Counts in how many of many forward passes each task had no slack. Gives what the reverse pass would, but
/// goes back from the end of the plan along what has no slack alone, which is a small part of most plans.
class CriticalCount {
  public:
    /// `network` must outlive this.
    explicit CriticalCount(const Network& network);

    /// Adds a complete pass. Late dates count from the finish of each master project in that very pass.
    void Add(const ForwardRun& run);
    /// Passes by task.
    const std::vector<std::int32_t>& Counts() const { return counts_; }

  private:
    struct Incoming {
        std::int32_t slice;
        double offset;  ///< days
    };

    void Reach(std::int32_t slice, double slack);
    void GoBackFrom(std::int32_t slice, const ForwardRun& run);
    void CountTask(std::int32_t task);

    const Network& network_;
    std::vector<std::int32_t> firstIncoming_;  ///< by slice; one more at the end
    std::vector<Incoming> incoming_;
    std::vector<std::int32_t> projectOf_;  ///< by slice
    std::vector<std::int32_t> links_;      ///< tasks that stand for subprojects, inner ones first
    std::vector<std::int32_t> counts_;

    // Of one pass. What was reached in it has its number.
    std::int32_t pass_ = 0;
    std::vector<std::int32_t> reachedIn_, countedIn_;  ///< by slice, by task
    std::vector<double> slack_;                        ///< by slice, days
    std::vector<std::int32_t> open_;                   ///< heap of slices to go back from, the last in front
    std::vector<double> latest_;                       ///< by project: its end, less what counts as no slack
};

}  // namespace vortan
