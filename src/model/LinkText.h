#pragma once

#include <cstdint>
#include <set>
#include <string>

/// The dependencies and the assignments of a task as one line of text that can be typed:
///
///     4; 7 50%-0% +2d; (House) 12; 9/3/2001 8:00:00 AM
///     Ann; Bob @4 MoTu; (Crew) 3 50%
///
/// A dependency begins with the number of a task, with its project in front if that is another one, or with a
/// date. Percents follow if they are not 100%-0%: of the task waited for, and of the one that waits; then the
/// offset, with its sign. An assignment begins with the name or number of a resource, with its template in
/// front if that is not the active one; hours a day and days follow if they are not those of the resource,
/// hours also as a part of its day.
namespace vortan {

class Vassignment;
class Vdependency;
class Vproject;
class Vtask;
class Workspace;

/// What the task has in the journal in force. Read back, it changes nothing.
std::string DependencyLine(const Vtask& task);
std::string AssignmentLine(const Vtask& task);

/// Why the line cannot be taken, as a sentence; empty if it can. Of `task`, or of one that is to join
/// `project` if there is none yet. Changes nothing. `coming` has the numbers of tasks that join with it.
std::string DependencyRefusal(const Vtask* task, const Vproject& project, const std::string& line,
                              const std::set<std::int32_t>& coming = {});
std::string AssignmentRefusal(const Vtask* task, const Workspace& workspace, const std::string& line);

/// Makes the line that of the task: what stands in it as before is not touched, one with the same other end
/// is changed, the rest is made or deleted. Faults for a line that is refused.
void TakeDependencyLine(Vtask& task, const std::string& line);
void TakeAssignmentLine(Vtask& task, const std::string& line);

}  // namespace vortan
