#pragma once

#include <string>

#include "model/DateTime.h"
#include "model/Link.h"

namespace vortan {

class Vassignment;
class Vdependency;
class Vtask;

/// Why a solve halted, and the object at fault, at most one of the three.
struct SolveProblem {
    enum class Kind {
        JournalSync,             ///< projects that are not at one journal
        ClaimedSubproject,       ///< of `task`, whose subproject belongs to another project
        PartOfSubproject,        ///< `dependency` wants a percentage of what stands for a subproject
        MissingPrerequisite,     ///< of `dependency`
        MissingToStart,          ///< nothing says when `task` starts
        EffortWithoutResources,  ///< of `task`
        NoWorkingTime,           ///< `task` can never be worked, or not before the calendar ends
        Circle,                  ///< `task` is one of it
        Dangling,                ///< `task` is the first of them
        OvertimeNeeded,          ///< a shortage of `assignment`, as are the next two
        Overload,
        OverloadOfDay,
    };
    Kind kind = Kind::JournalSync;
    Link<Vtask> task{};
    Link<Vdependency> dependency{};
    Link<Vassignment> assignment{};
    /// For a shortage: when the day step that failed began, the hours that the task wanted of the resource
    /// that day, and how many of them it could have.
    DateTime problemDate{};
    double requestedHours = 0, assignedHours = 0;

    bool IsShortage() const { return kind >= Kind::OvertimeNeeded; }
    /// The status text.
    std::string Message() const;
};

/// The status text of a kind. That of ClaimedSubproject goes on with the name of the other project.
const char* TextOf(SolveProblem::Kind kind);

}  // namespace vortan
