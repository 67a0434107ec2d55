#pragma once

#include <string>

#include "solve/Solver.h"

namespace vortan {

/// The result of a solve as one JSON object: status and problem, slices in solve order, all tasks in list
/// order, all held slots by template, resource and time. Dates are day numbers that read back to the same
/// value, money plain numbers, missing values null.
std::string SolveJson(const Workspace& workspace, const Solver& solver);

}  // namespace vortan
