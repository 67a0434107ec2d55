#pragma once

#include <string>

#include "model/Workspace.h"
#include "persist/Settings.h"
#include "solve/IterativeResults.h"
#include "solve/Solver.h"

namespace vortan {

/// What a page is made of. The plan and its solution are read and not changed.
struct WebPageSource {
    Workspace& workspace;  ///< with an active project
    Settings& settings;    ///< the preferences say how the chart looks
    const Solver& solver;
    const IterativeResults& results;
    bool costs = true;  ///< without: no amount of money is anywhere in the page
};

/// The active project and those below it as one web page, complete in itself, for people without this
/// program: what it is, its problems in words, the Gantt chart, the tasks with the plan beside them, the
/// people and what they are booked for, and the risk curve if there is one of this solution. It asks for
/// nothing from any other place, and all can be read without its script, which sorts and filters.
///
/// Rates of pay and passwords are never in it, other projects only where a problem or a dependency names
/// them. Of a solve that halted it shows what was found until then, says so first, and has no chart.
std::string WebPageOf(const WebPageSource& source);

}  // namespace vortan
