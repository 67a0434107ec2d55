#pragma once

#include <ctime>
#include <string>
#include <vector>

/// What surrounds a run of the batch tool, from the operating system.
namespace vortan {

/// Columns of the terminal that results go to; 0 if they go elsewhere.
int TerminalWidth();
bool ErrorsAreOnTerminal();
/// What stands behind the program's name, in UTF-8.
std::vector<std::string> ProgramArguments(int argc, char** argv);
/// Full name of the program's file, in UTF-8; empty if that cannot be told.
std::string ProgramFileName();
std::tm LocalTime(std::time_t time);

}  // namespace vortan
