#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "model/Workspace.h"

namespace vortan {

/// What is wrong with the objects in memory, a line each; empty: every list is in order and holds live
/// objects that know their owner, every row has a value for each journal, and links lead to objects in those
/// lists.
inline std::string ModelFaults(const Workspace& workspace) {
    std::string faults;
    const auto check = [&](bool good, const auto& object, const char* what) {
        if (!good || object.Id() == 0) faults += object.Tag() + ": " + what + "\n";
    };
    const auto rows = [&](const JournalOwner& owner, const auto& object) {
        object.ForEachField([&](const char* name, const auto& field) {
            if constexpr (IsJournaled<std::decay_t<decltype(field)>>::value)
                check(!field.IsArray() || field.Count() == std::max(owner.NumJournals(), 1), object, name);
        });
    };
    const auto journals = [&](const auto& owner) {
        const auto count = static_cast<std::size_t>(std::max(owner.NumJournals(), 1));
        check(owner.JournalDates().size() == count, owner, "JournalDates");
        check(owner.CurrentIndex() >= 0 && owner.CurrentIndex() < static_cast<int>(count), owner,
              "CurrentIndex");
    };
    for (const Vtemplate* pool : workspace.TemplateList()) {
        check(workspace.TemplateList().Find(pool->TemplateName()) == pool, *pool, "TemplateList");
        journals(*pool);
        std::int32_t last = 0;
        for (const Vresource* resource : pool->ResourceList()) {
            check(resource->ResourceID() > std::exchange(last, resource->ResourceID()), *resource, "order");
            check(resource->Template() == pool, *resource, "Template");
            rows(*pool, *resource);
        }
        for (const Vshift* shift : pool->ShiftList())
            check(pool->ShiftList().Find(shift->ShiftName()) == shift && shift->Template() == pool, *shift,
                  "ShiftList");
    }
    const auto inMemory = [&](const Vproject* project) {
        return !project || workspace.ProjectList().Find(project->ProjectName()) == project;
    };
    for (const Vproject* project : workspace.ProjectList()) {
        check(inMemory(project) && inMemory(project->Parent()), *project, "ProjectList");
        journals(*project);
        rows(*project, *project);
        std::int32_t last = 0;
        for (const Vtask* task : project->TaskList()) {
            check(task->TaskID() > std::exchange(last, task->TaskID()), *task, "order");
            check(task->Project() == project && inMemory(task->Subproject()), *task, "projects");
            rows(*project, *task);
            for (const Vdependency* dependency : task->DependencyList()) {
                const Vtask* required = dependency->TaskRequired();
                check(dependency->Task() == task, *dependency, "Task");
                check(!required || (required->Project() && inMemory(required->Project()) &&
                                    required->Project()->FindTask(required->TaskID()) == required),
                      *dependency, "TaskRequired");
                rows(*project, *dependency);
            }
            for (const Vassignment* assignment : task->AssignmentList()) {
                const Vresource* resource = assignment->ResourceRequired();
                check(assignment->Task() == task, *assignment, "Task");
                check(!resource || (resource->Template() &&
                                    resource->Template()->FindResource(resource->ResourceID()) == resource),
                      *assignment, "ResourceRequired");
                rows(*project, *assignment);
            }
        }
    }
    return faults;
}

}  // namespace vortan
