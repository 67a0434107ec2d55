#pragma once

#include <string>

#include "model/Workspace.h"
#include "shell/desk/PlanObject.h"

namespace vortan {

/// A sentence about what goes or is left without its object when `object` is deleted, over all projects in
/// memory as they stand in their active journals. Empty if nothing does.
std::string TellReferences(const Workspace& workspace, const PlanObject& object);

}  // namespace vortan
