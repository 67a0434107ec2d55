#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "model/Conventions.h"

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

/// What the system knows of a country, such as "de_DE"; "user" is what the environment says.
struct CountryHabits {
    Conventions conventions;
    std::string currencySymbol;  ///< empty if there is none
};
/// None if the system does not know it.
std::optional<CountryHabits> HabitsOf(const std::string& locale);

}  // namespace vortan
