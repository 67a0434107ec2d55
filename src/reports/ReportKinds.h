#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "model/Workspace.h"
#include "reports/Table.h"
#include "solve/Solver.h"

namespace vortan {

/// What a report is built from. All are read and not changed.
struct ReportSource {
    const Workspace& workspace;
    const Solver& solver;
    /// A day of the month that a report of one month shows; not set: the month in which the active project
    /// starts, or else the first in which the template's resources are booked, or else today's.
    DateTime month{};
    /// Places of the journals that a report of changes goes from and to; negative: the plan, the active one.
    std::int32_t from = -1, to = -1;
};

/// What must be there before a report is built.
enum class ReportNeeds { Template, Project, Solution, SolutionBesidePlan };

/// A report, for whoever offers reports by name.
struct ReportKind {
    const char* name;     ///< in commands
    const char* caption;  ///< in the menu
    ReportNeeds needs;
    Table (*build)(const ReportSource& source);
    bool showsBookings = false;  ///< and so tells half of them when a solve has halted
    bool byMonth = false;        ///< of one month; its rows belong together and are not sorted
    bool twoJournals = false;    ///< compares journals, whichever are chosen
};

/// In the order of the menu.
std::span<const ReportKind> ReportKinds();
/// Fault if there is none of that name.
const ReportKind& ReportKindOf(std::string_view name);
/// Whether there is what the report needs; tells the user what is missing.
bool MayBuild(Workspace& workspace, const ReportKind& kind);
/// Whether the report would set a journal beside itself.
bool PlanIsCurrent(const Workspace& workspace);

/// Whether all tasks that a project has in a journal have results there, if only those of the journal that it
/// was copied from.
bool HasResults(const Vproject& project, std::int32_t journalIndex);

/// The name of the settings of the screen that shows reports, and of their font.
inline constexpr const char* kReportForm = "SpreadsheetForm";

/// The first days of the month before and after that of `month`, as far as the calendar goes.
DateTime MonthBefore(DateTime month);
DateTime MonthAfter(DateTime month);
/// "July 2002"
std::string MonthText(DateTime month);

}  // namespace vortan
