#include "shell/trees/References.h"

#include <functional>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"

namespace vortan {
namespace {

/// "1 task", "2 tasks".
std::string Count(int count, const std::string& noun, const std::string& plural) {
    return std::to_string(count) + " " + (count == 1 ? noun : plural);
}

void ForEachTask(const Workspace& workspace, const std::function<void(const Vtask&)>& action) {
    for (const Vproject* project : workspace.ProjectList()) {
        for (const Vtask* task : project->TaskList()) {
            if (task->Include()) action(*task);
        }
    }
}

int CountAssignments(const Workspace& workspace, const std::function<bool(const Vresource&)>& counts) {
    int found = 0;
    ForEachTask(workspace, [&](const Vtask& task) {
        for (const Vassignment* assignment : task.AssignmentList()) {
            const Vresource* resource = assignment->ResourceRequired();
            if (assignment->Include() && resource && counts(*resource)) ++found;
        }
    });
    return found;
}

std::string Tell(const Workspace& workspace, const Vresource& resource) {
    const int found = CountAssignments(workspace, [&](const Vresource& used) { return &used == &resource; });
    if (found == 0) return {};
    return "It is used by " + Count(found, "assignment", "assignments") +
           (found == 1 ? ", which stays and goes on being planned until it is removed."
                       : ", which stay and go on being planned until they are removed.");
}

std::string Tell(const Workspace& workspace, const Vtemplate& removed) {
    const int found =
        CountAssignments(workspace, [&](const Vresource& used) { return used.Template() == &removed; });
    if (found == 0) return {};
    return "Its resources are used by " + Count(found, "assignment", "assignments") + ".";
}

std::string Tell(const Workspace&, const Vshift& shift) {
    int found = 0;
    for (const Vresource* resource : shift.Template()->ResourceList()) {
        if (resource->Include() && resource->Shift() == &shift) ++found;
    }
    if (found == 0) return {};
    return "It is the shift of " + Count(found, "resource", "resources") +
           (found == 1 ? ", which keeps it." : ", which keep it.");
}

std::string Tell(const Workspace& workspace, const Vtask& removed) {
    int found = 0;
    ForEachTask(workspace, [&](const Vtask& task) {
        if (&task == &removed) return;
        for (const Vdependency* dependency : task.DependencyList()) {
            if (dependency->Include() && dependency->TaskRequired() == &removed) ++found;
        }
    });
    std::string text;
    if (found > 0)
        text = "It is required by " + Count(found, "dependency", "dependencies") + " of other tasks.";
    if (const Vproject* subproject = removed.Subproject()) {
        if (!text.empty()) text += "  ";
        text += "The project " + subproject->ProjectName() + " stays in memory as a master project.";
    }
    return text;
}

std::string Tell(const Workspace& workspace, const Vproject& removed) {
    int tasks = 0, subprojects = 0;
    for (const Vproject* project : workspace.ProjectList()) {
        if (project->Parent() == &removed) ++subprojects;
    }
    ForEachTask(workspace, [&](const Vtask& task) {
        if (task.Project() == &removed) ++tasks;
    });
    std::string text;
    if (tasks > 0) text = "It has " + Count(tasks, "task", "tasks") + ".";
    if (subprojects > 0) {
        text += (tasks > 0 ? "  " : "") + Count(subprojects, "subproject", "subprojects") +
                (subprojects == 1 ? " stays in memory as a master project."
                                  : " stay in memory as master projects.");
    }
    return text;
}

}  // namespace

std::string TellReferences(const Workspace& workspace, const PlanObject& object) {
    return std::visit(
        [&](auto of) -> std::string {
            if constexpr (std::is_same_v<decltype(of), Vresource*> ||
                          std::is_same_v<decltype(of), Vtemplate*> || std::is_same_v<decltype(of), Vshift*> ||
                          std::is_same_v<decltype(of), Vtask*> || std::is_same_v<decltype(of), Vproject*>) {
                return Tell(workspace, *of);
            } else {
                return {};
            }
        },
        object);
}

}  // namespace vortan
