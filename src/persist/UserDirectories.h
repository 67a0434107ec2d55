#pragma once

#include <string>

namespace vortan {

/// Where the files of a user are kept: the platform's own directories, made if they are missing, or beside
/// the program if a Vortan.cfg stands there (portable use). The present directory if nothing can be made.
std::string SettingsDirectory(const std::string& programFile);
std::string LogDirectory(const std::string& programFile);

}  // namespace vortan
