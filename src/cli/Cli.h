#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace vortan {

/// Where a run of the batch tool writes.
struct CliStreams {
    std::ostream& out;      ///< results
    std::ostream& err;      ///< complaints and progress
    bool progress = false;  ///< `err` is a terminal: long work shows a progress line there
    int width = 0;          ///< columns that a table may take; 0 for no limit
};

// Exit codes.
constexpr int kExitDone = 0;
constexpr int kExitHalted = 1;    ///< the solve halted on a problem
constexpr int kExitUsage = 2;     ///< bad usage, or a file that cannot be read or written
constexpr int kExitInternal = 3;  ///< internal fault

/// Runs the batch tool with the arguments behind the program's name. Returns the exit code.
int RunCli(const std::vector<std::string>& arguments, const CliStreams& streams);

}  // namespace vortan
