#pragma once

#include <string>
#include <vector>

#include "solve/Solver.h"

namespace vortan {

/// What is wrong with a completed schedule, one sentence for each rule broken: the order of what waits for
/// what, the bounds of times, and the sums of costs. Works from the model and the public views of the solver
/// alone, and says nothing of how a schedule is to be found. Empty: all is well.
std::vector<std::string> ScheduleViolations(const Workspace& workspace, const Solver& solver);

}  // namespace vortan
