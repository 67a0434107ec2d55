#include "persist/UserDirectories.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace vortan {
namespace {

/// A directory of the user's own below `variable`, or below the home directory.
std::string UserDirectory(const char* variable, const char* belowHome) {
    const char* base = std::getenv(variable);
    const char* home = std::getenv("HOME");
    std::filesystem::path path;
    if (base && *base) {
        path = base;
    } else if (home && *home) {
        path = std::filesystem::path(home) / belowHome;
    } else {
        return ".";
    }
    path /= "vortan";
    std::error_code failed;
    std::filesystem::create_directories(path, failed);
    return failed ? "." : path.string();
}

std::string OwnDirectory(const std::string& programFile, const char* variable, const char* belowHome) {
    const auto beside = std::filesystem::path(programFile).parent_path();
    std::error_code failed;
    if (!beside.empty() && std::filesystem::exists(beside / "Vortan.cfg", failed)) return beside.string();
    return UserDirectory(variable, belowHome);
}

}  // namespace

std::string SettingsDirectory(const std::string& programFile) {
    return OwnDirectory(programFile, "XDG_CONFIG_HOME", ".config");
}

std::string LogDirectory(const std::string& programFile) {
    return OwnDirectory(programFile, "XDG_STATE_HOME", ".local/state");
}

}  // namespace vortan
