#pragma once

#include <string>
#include <vector>

#include "solve/Solver.h"

namespace vortan {

/// Why a task lies where it does, told from a solve that watched it (Solver::Watch).
struct WhyReport {
    /// What decided when a slice of the task starts.
    struct Start {
        int fromPercent = 0, toPercent = 100;
        DateTime at;
        Vdependency* dependency = nullptr;  ///< none: the slice before it, or nothing at all
        DateTime dependencyDate;            ///< before the offset
        double offset = 0;                  ///< days
        bool afterSliceBefore = false;
    };
    enum class Cause {
        NoWorkDay,     ///< none of the assignments works on that weekday
        OutsideShift,  ///< outside the normal time of the shifts
        Held,          ///< another task holds the resource
        HoursUsed,     ///< the hours assigned for the day were worked
        Waiting,       ///< for a dependency, at `percent`
        Unbooked,      ///< counted as worked though another task holds the resource
    };
    /// A stretch of time in which the task stood still.
    struct Stretch {
        DateTime from, to;
        Cause cause = Cause::OutsideShift;
        Vresource* resource = nullptr;      ///< of Held
        Vtask* holder = nullptr;            ///< of Held
        int percent = 0;                    ///< of Waiting
        Vdependency* dependency = nullptr;  ///< of Waiting
    };
    /// A task that waits for this one.
    struct Follower {
        Vtask* task = nullptr;
        DateTime start;       ///< of its slice that waits; of a subproject's task, the end
        int percent = 0;      ///< of it that waits
        double roomDays = 0;  ///< between the moment that this task allows and `start`; 0 is held back
    };

    bool solved = false;  ///< the task was placed to its end
    std::vector<Start> starts;
    std::vector<Stretch> stretches;
    std::vector<Follower> followers;  ///< the ones held back first
    double slackDays = 0;
};

/// Valid while the solver's last solve stands. A task that is not part of it gives an empty report.
WhyReport ExplainTask(const Solver& solver, const Vtask& task);

}  // namespace vortan
