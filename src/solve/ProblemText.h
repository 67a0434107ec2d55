#pragma once

#include <string>
#include <vector>

#include "solve/Solver.h"

namespace vortan {

/// What halted the solve and what a planner can do about it, in full sentences. Empty when nothing did.
std::string ExplainProblem(const Workspace& workspace, const Solver& solver);

/// "task 4: Roof (project House)", for messages.
std::string NameTask(const Vtask& task);
std::string NameResource(const Vresource& resource);

/// The tasks that hold time of a resource on a day, in the order of their slots, each once.
std::vector<Vtask*> HoldersOf(const Solver& solver, const Vresource& resource, DateTime day);

}  // namespace vortan
