#include "support/LoadedPlan.h"

#include <cstdio>
#include <sstream>

#include "model/Fault.h"

namespace vortan {

void LoadedPlan::Load(std::string_view text) {
    try {
        LoadText(workspace, text);
    } catch (const Fault& fault) {
        ADD_FAILURE() << fault.what();
    }
    EXPECT_EQ(ModelFaults(workspace), "");
    if (!workspace.ProjectList().empty()) workspace.SetThisProject(workspace.ProjectList()[0]);
    if (!workspace.TemplateList().empty()) workspace.SetThisTemplate(workspace.TemplateList()[0]);
}

void LoadedPlan::Solve() {
    solver.RestartSolve();
    solver.SolveTimerTick();
}

Vtask* LoadedPlan::Task(const std::string& project, std::int32_t id) const {
    Vproject* found = workspace.ProjectList().Find(project);
    return found ? found->FindTask(id) : nullptr;
}

Vresource* LoadedPlan::Resource(const std::string& templateName, std::int32_t id) const {
    Vtemplate* found = workspace.TemplateList().Find(templateName);
    return found ? found->FindResource(id) : nullptr;
}

std::string NameOf(const Vtask* task) {
    return task ? task->Project()->ProjectName() + "/" + task->Key() : "-";
}

std::string FactLine(const std::string& name, std::initializer_list<double> values) {
    std::string text = name;
    for (const double value : values) {
        char digits[40];
        std::snprintf(digits, sizeof digits, " %.17g", value);
        text += digits;
    }
    return text + "\n";
}

std::string FirstDifference(const std::string& is, const std::string& should) {
    std::istringstream left(is), right(should);
    for (std::string a, b;;) {
        const bool ended = !std::getline(left, a);
        if (ended != !std::getline(right, b) || (!ended && a != b)) return a + ", but should be " + b;
        if (ended) return "";
    }
}

std::string ResultText(const LoadedPlan& plan) {
    std::string text = plan.solver.SolveMessage() + "\n";
    for (std::int32_t i = 0; i < plan.solver.SliceCount(); ++i) {
        const Vslice slice = plan.solver.Slice(i);
        text += FactLine("slice " + NameOf(slice.task),
                         {double(slice.fromPercent), double(slice.toPercent), slice.earlyStart.Days(),
                          slice.earlyFinish.Days(), slice.lateStart.Days(), slice.lateFinish.Days(),
                          slice.laborCost.ToDouble()});
    }
    for (const Vproject* project : SortedByKey(plan.workspace.ProjectList())) {
        for (const Vtask* task : project->TaskList()) {
            text += FactLine(
                "task " + NameOf(task),
                {task->EarlyStart().Days(), task->EarlyFinish().Days(), task->LateStart().Days(),
                 task->LateFinish().Days(), task->LaborCost().ToDouble(), task->MaterialCost().ToDouble()});
            for (const Vdependency* dependency : task->DependencyList())
                text += FactLine("dependency of " + NameOf(task), {dependency->DepDate().Days()});
        }
    }
    for (const Vtemplate* pool : SortedByKey(plan.workspace.TemplateList())) {
        for (const Vresource* resource : pool->ResourceList()) {
            text += "resource " + pool->TemplateName() + "/" + resource->Key() + "\n";
            for (const Vslot& slot : plan.solver.HeldSlots(*resource)) {
                text += FactLine("slot of " + NameOf(slot.taskRequired),
                                 {double(slot.slotType), slot.startTime.Days(), slot.endTime.Days(),
                                  slot.laborCost.ToDouble()});
            }
        }
    }
    return text;
}

std::string DateText(DateTime date) {
    const DateParts parts = ToParts(date);
    char text[80];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d", parts.year, parts.month, parts.day,
                  parts.hour, parts.minute);
    return text;
}

}  // namespace vortan
