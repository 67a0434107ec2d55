#pragma once

#include <string>

#include "model/Workspace.h"

namespace vortan {

/// What the captions of the active project's charts say of it, and who manages it, if anybody does. Empty
/// without a project.
std::string GetPageHeader(const Workspace& workspace);

}  // namespace vortan
