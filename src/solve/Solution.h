#pragma once

#include <vector>

#include "solve/Bookings.h"
#include "solve/ForwardRun.h"
#include "solve/Network.h"
#include "solve/ReverseRun.h"

namespace vortan {

/// The last passes of a Solver: the network that they went over, what they booked and found. For this folder
/// alone; others ask the Solver.
struct Solution {
    Network network;
    Bookings bookings;
    ForwardRun run;
    ReverseRun reverse;
    bool reversed = false;  ///< the late dates belong to the network

    /// By project, the finish of its master in the plan journal if a run gives these dates to the tasks;
    /// days.
    void PlanFinishes(const std::vector<ForwardRun::Clock>& clocks, std::vector<double>& finishes) const;
    /// Writes what the passes found into the model: the late dates only when the reverse pass has run.
    void WriteResults() const;

  private:
    void WriteDependencyDates(const Network::Task& task) const;
    double PlanFinish(const Network::Project& project, const std::vector<ForwardRun::Clock>& clocks) const;
};

}  // namespace vortan
