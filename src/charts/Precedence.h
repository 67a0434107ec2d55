#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "model/DateTime.h"
#include "model/Link.h"
#include "model/Vtask.h"
#include "model/Workspace.h"

namespace vortan {

class Solver;

/// The network of the solution as boxes in columns and rows, one for each slice: each stands to the right of
/// all that it waits for. A copy, which stays as it is when the plan goes on.
struct Precedence {
    struct Box {
        Link<Vtask> task;
        std::string projectName;
        std::int32_t taskID = 0;
        std::string project, title;  ///< as a user reads them
        std::string why;             ///< it starts when it does
        int fromPercent = 0, toPercent = 100;
        DateTime earlyStart, earlyFinish, lateStart, lateFinish;
        int col = 0, row = 0;  ///< from 0 up; no two boxes have both in common
    };

    std::vector<Box> boxes;  ///< in solve order; a box has the number of its place plus 1
    /// Which box waits for which, by their places, each once and in order: the first comes before the second.
    std::vector<std::pair<std::int32_t, std::int32_t>> links;
    bool showProject = false;  ///< some box belongs to another project than the active one

    int Columns() const;
    int Rows() const;
};

/// Of the slices of the active project and its subprojects, with their neighbours in other projects.
Precedence BuildPrecedence(const Workspace& workspace, const Solver& solver);

/// What a box tells, by the index of its button.
enum class PrecedenceStyle { Index, Elapsed, Date, DateTime };
/// Of elapsed times.
enum class PrecedenceUnits { Minutes, Hours, Days, Weeks, Months };

/// The texts of a box: its number alone; or its titles (the project if it is to be shown, the task), then
/// start, duration, finish, latest start, slack and latest finish.
std::vector<std::string> BoxTexts(const Precedence& precedence, std::size_t place, PrecedenceStyle style,
                                  PrecedenceUnits units);

}  // namespace vortan
