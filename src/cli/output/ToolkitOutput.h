#pragma once

#include "cli/Output.h"

namespace vortan {

Output& OutputByToolkit();

/// The one name by which a program finds the module's object.
inline constexpr const char* kOutputEntry = "VortanOutput";

}  // namespace vortan
