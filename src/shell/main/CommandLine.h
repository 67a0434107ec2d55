#pragma once

/// The command line of the desktop program, for its own help text and for the manual pages.
namespace vortan {

struct ProgramOption {
    const char* name;
    const char* help;
};

inline constexpr const char* kProgramUse = "vortan [FILE]";
inline constexpr const char* kProgramPurpose =
    "VORTAN plans projects: tasks, dependencies and assignments become calendar dates.";
inline constexpr ProgramOption kProgramOptions[] = {
    {"FILE", "Plan file (.vta, .vtb) to open. The whole command line is one name, blanks included"},
    {"--help", "Print this help message and exit"},
    {"--version", "Display program version information and exit"}};

}  // namespace vortan
