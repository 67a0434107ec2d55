#include "cli/SolveJson.h"

#include <algorithm>

#include "cli/JsonWriter.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"

namespace vortan {

namespace {

/// The members that name a task.
void WriteTask(JsonWriter& json, const Vtask* task) {
    const Vproject* project = task ? task->Project() : nullptr;
    json.MemberIf(project, "project", project ? project->ProjectName() : "");
    json.MemberIf(task, "task", task ? task->TaskID() : 0);
}

template <class T>
std::ptrdiff_t Place(const std::vector<T*>& list, const T* item) {
    return std::find(list.begin(), list.end(), item) - list.begin();
}

void WriteProblem(JsonWriter& json, const Solver& solver) {
    const auto& problem = solver.Problem();
    const Vtask* task = problem ? problem->task.Get() : nullptr;
    const Vdependency* dependency = problem ? problem->dependency.Get() : nullptr;
    const Vassignment* assignment = problem ? problem->assignment.Get() : nullptr;
    if (!task && !dependency && !assignment) {
        json.Member("problem", nullptr);
    } else {
        json.ObjectMember("problem", [&] {
            json.Member("kind", task ? "task" : dependency ? "dependency" : "assignment");
            if (task) {
                WriteTask(json, task);
            } else if (dependency) {
                WriteTask(json, dependency->Task());
                json.Member("index", Place<Vdependency>(dependency->Task()->DependencyList(), dependency));
            } else {
                WriteTask(json, assignment->Task());
                json.Member("index", Place<Vassignment>(assignment->Task()->AssignmentList(), assignment));
            }
        });
    }
    json.MemberIf(assignment, "problemDate", assignment ? problem->problemDate : DateTime());
    json.MemberIf(assignment, "requestedHours", assignment ? problem->requestedHours : 0);
    json.MemberIf(assignment, "assignedHours", assignment ? problem->assignedHours : 0);
}

void WriteSlice(JsonWriter& json, const Vslice& slice) {
    json.Object([&] {
        WriteTask(json, slice.task);
        json.Member("from", slice.fromPercent);
        json.Member("to", slice.toPercent);
        json.Member("earlyStart", slice.earlyStart);
        json.Member("earlyFinish", slice.earlyFinish);
        json.Member("lateStart", slice.lateStart);
        json.Member("lateFinish", slice.lateFinish);
        json.Member("laborCost", slice.laborCost);
    });
}

void WriteTaskResult(JsonWriter& json, const Vtask& task) {
    json.Object([&] {
        WriteTask(json, &task);
        json.Member("included", task.Include());
        json.Member("earlyStart", task.EarlyStart());
        json.Member("earlyFinish", task.EarlyFinish());
        json.Member("lateStart", task.LateStart());
        json.Member("lateFinish", task.LateFinish());
        json.Member("laborCost", task.LaborCost());
        json.Member("materialCost", task.MaterialCost());
    });
}

void WriteSlot(JsonWriter& json, const Vresource& resource, const Vslot& slot) {
    json.Object([&] {
        json.Member("template", resource.Template()->TemplateName());
        json.Member("resource", resource.ResourceID());
        json.Member("start", slot.startTime);
        json.Member("end", slot.endTime);
        json.Member("type", slot.slotType);
        WriteTask(json, slot.taskRequired);
        json.Member("cost", slot.laborCost);
    });
}

void WriteSlots(JsonWriter& json, const Workspace& workspace, const Solver& solver) {
    for (const Vtemplate* owner : workspace.TemplateList()) {
        for (const Vresource* resource : owner->ResourceList()) {
            for (const Vslot& slot : solver.HeldSlots(*resource)) WriteSlot(json, *resource, slot);
        }
    }
}

}  // namespace

std::string SolveJson(const Workspace& workspace, const Solver& solver) {
    JsonWriter json;
    json.Object([&] {
        json.Member("status", solver.SolveMessage());
        json.Member("mode", static_cast<int>(solver.Mode()));
        WriteProblem(json, solver);
        json.ArrayMember("order", [&] {
            for (std::int32_t i = 0; i < solver.SliceCount(); ++i) WriteSlice(json, solver.Slice(i));
        });
        json.ArrayMember("tasks", [&] {
            for (const Vproject* project : workspace.ProjectList()) {
                for (const Vtask* task : project->TaskList()) WriteTaskResult(json, *task);
            }
        });
        json.ArrayMember("slots", [&] { WriteSlots(json, workspace, solver); });
    });
    return json.Line();
}

}  // namespace vortan
