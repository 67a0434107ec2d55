#pragma once

#include <string>

#include "model/DateTime.h"
#include "model/Link.h"
#include "model/Workspace.h"

namespace vortan {

/// Why a solve halted: the status text and the object at fault, at most one of the three.
struct SolveProblem {
    std::string message;
    Link<Vtask> task;
    Link<Vdependency> dependency;
    Link<Vassignment> assignment;
    /// For a shortage: when the day step that failed began, the hours that the task wanted of the resource
    /// that day, and how many of them it could have.
    DateTime problemDate;
    double requestedHours = 0, assignedHours = 0;
};

}  // namespace vortan
