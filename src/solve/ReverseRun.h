#pragma once

#include <vector>

#include "solve/ForwardRun.h"
#include "solve/Network.h"

namespace vortan {

/// The reverse pass: how late each slice and task may start and finish without moving the end of the plan.
/// Works on the elapsed times that a forward pass gave, and books nothing.
class ReverseRun {
  public:
    struct Late {
        double start = 0, finish = 0;  ///< days
    };

    /// `planFinish` is, by project, the finish of its master in the plan journal, in days. False: `stop` said
    /// so, and there is no result.
    bool Run(const Network& network, const ForwardRun& forward, const std::vector<double>& planFinish,
             const Network::Stop& stop);

    const std::vector<Late>& Slices() const { return slices_; }
    const std::vector<Late>& Tasks() const { return tasks_; }

  private:
    void LinkDates(const Network& network, const ForwardRun& forward);

    std::vector<Late> slices_, tasks_;
};

}  // namespace vortan
