#include "shell/References.h"

#include <functional>

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
    return "It is used by " + Count(found, "assignment", "assignments") + ".";
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
    return "It is the shift of " + Count(found, "resource", "resources") + ".";
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
        if (project->Master() == removed.Master() && project != removed.Master()) ++subprojects;
    }
    ForEachTask(workspace, [&](const Vtask& task) {
        if (task.Project()->Master() == removed.Master()) ++tasks;
    });
    if (tasks == 0 && subprojects == 0) return {};
    std::string text = "It has " + Count(tasks, "task", "tasks");
    if (subprojects > 0) text += ", with those of " + Count(subprojects, "subproject", "subprojects");
    return text + ".";
}

}  // namespace

std::string TellReferences(const Workspace& workspace, const NodeObject& object) {
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
