#pragma once

#include <string>

#include "model/Workspace.h"

namespace vortan {

/// Makes the plan that `text` tells, in words that stand in lines or between semicolons:
///
///   journals 9/3/2001 9/6/2001   those of what comes after, the first active; without it, the one of
///   9/3/2001 at 9/6/2001                  makes that journal active everywhere template Crew; shift Night;
///   resource 1 "Ann" in yard $50 on Night project Road "To the bridge" rule 2 task 2 "Pour" work 480 start
///   after 1 by 1
///
/// A template has the shift Standard. What is there is changed. The first project and template are active.
///
/// Of a task: "work 480", "clock 480" and "days 480" are minutes of effort, time by the hour and by the day,
/// also as three estimates "60/480/960"; "dates" drive it. "start" is on the first journal,
/// "start=9/3/2001_8:00" on a date; "after 4" or "after Road/4". Behind both may stand parts and days, as in
/// "after 4:50>25-1.5": when 4 is half done, but a day and a half earlier, for what is behind 25 %. "by 1@4"
/// is an assignment of four hours, "is Road" a subproject. Gives back the workspace.
Workspace& MakePlan(Workspace& workspace, const std::string& text);

/// The file of such a plan.
std::string PlanText(const std::string& text);

}  // namespace vortan
