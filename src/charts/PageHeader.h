#pragma once

#include <string>

#include "model/Workspace.h"

namespace vortan {

/// What the captions and printed pages of the active project's charts say of it; with `manager`, also who
/// manages it, if anybody does. Empty without a project.
std::string GetPageHeader(const Workspace& workspace, bool manager);

}  // namespace vortan
