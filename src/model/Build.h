#pragma once

#include <string>

namespace vortan {

/// What tells one build from another, beside GetAppVersion: "commit 0123456789ab, GCC 12.2.0".
std::string GetBuildText();

}  // namespace vortan
