#include "cli/SolveJson.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"

namespace vortan {

namespace {

/// Appends members and elements with their commas.
class JsonWriter {
  public:
    explicit JsonWriter(std::string& out) : out_(out) {}

    JsonWriter& Open(char bracket) {
        out_ += bracket;
        first_ = true;
        return *this;
    }
    void Close(char bracket) {
        out_ += bracket;
        first_ = false;
    }
    void Next() {
        if (!first_) out_ += ',';
        first_ = false;
    }
    JsonWriter& Name(const char* name) {
        Next();
        out_ += '"';
        out_ += name;
        out_ += "\":";
        return *this;
    }
    void Member(const char* name, const std::string& text) { Name(name).out_ += JsonText(text); }
    void Raw(const char* name, const std::string& value) { Name(name).out_ += value; }
    void Date(const char* name, DateTime value) { Raw(name, JsonNumber(value.Days())); }
    void Number(const char* name, double value) { Raw(name, JsonNumber(value)); }
    void Cost(const char* name, Money value) { Raw(name, JsonMoney(value)); }
    void Task(const Vtask* task) {
        const Vproject* project = task ? task->Project() : nullptr;
        Raw("project", project ? JsonText(project->ProjectName()) : "null");
        Raw("task", task ? std::to_string(task->TaskID()) : "null");
    }

  private:
    std::string& out_;
    bool first_ = true;
};

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
        json.Raw("problem", "null");
    } else {
        json.Name("problem").Open('{');
        json.Member("kind", task ? "task" : dependency ? "dependency" : "assignment");
        if (task) {
            json.Task(task);
        } else if (dependency) {
            json.Task(dependency->Task());
            json.Raw("index",
                     std::to_string(Place<Vdependency>(dependency->Task()->DependencyList(), dependency)));
        } else {
            json.Task(assignment->Task());
            json.Raw("index",
                     std::to_string(Place<Vassignment>(assignment->Task()->AssignmentList(), assignment)));
        }
        json.Close('}');
    }
    json.Raw("problemDate", assignment ? JsonNumber(problem->problemDate.Days()) : "null");
    json.Raw("requestedHours", assignment ? JsonNumber(problem->requestedHours) : "null");
    json.Raw("assignedHours", assignment ? JsonNumber(problem->assignedHours) : "null");
}

void WriteOrder(JsonWriter& json, const Solver& solver) {
    json.Name("order").Open('[');
    for (std::int32_t i = 0; i < solver.SliceCount(); ++i) {
        const Vslice slice = solver.Slice(i);
        json.Next();
        json.Open('{').Task(slice.task);
        json.Number("from", slice.fromPercent);
        json.Number("to", slice.toPercent);
        json.Date("earlyStart", slice.earlyStart);
        json.Date("earlyFinish", slice.earlyFinish);
        json.Date("lateStart", slice.lateStart);
        json.Date("lateFinish", slice.lateFinish);
        json.Cost("laborCost", slice.laborCost);
        json.Close('}');
    }
    json.Close(']');
}

void WriteTasks(JsonWriter& json, const Workspace& workspace) {
    json.Name("tasks").Open('[');
    for (const Vproject* project : workspace.ProjectList()) {
        for (const Vtask* task : project->TaskList()) {
            json.Next();
            json.Open('{').Task(task);
            json.Raw("included", task->Include() ? "true" : "false");
            json.Date("earlyStart", task->EarlyStart());
            json.Date("earlyFinish", task->EarlyFinish());
            json.Date("lateStart", task->LateStart());
            json.Date("lateFinish", task->LateFinish());
            json.Cost("laborCost", task->LaborCost());
            json.Cost("materialCost", task->MaterialCost());
            json.Close('}');
        }
    }
    json.Close(']');
}

void WriteSlots(JsonWriter& json, const Workspace& workspace, const Solver& solver) {
    json.Name("slots").Open('[');
    for (const Vtemplate* owner : workspace.TemplateList()) {
        for (const Vresource* resource : owner->ResourceList()) {
            for (const Vslot& slot : solver.HeldSlots(*resource)) {
                json.Next();
                json.Open('{').Member("template", owner->TemplateName());
                json.Raw("resource", std::to_string(resource->ResourceID()));
                json.Date("start", slot.startTime);
                json.Date("end", slot.endTime);
                json.Number("type", slot.slotType);
                json.Task(slot.taskRequired);
                json.Cost("cost", slot.laborCost);
                json.Close('}');
            }
        }
    }
    json.Close(']');
}

}  // namespace

std::string JsonText(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (static_cast<unsigned char>(c) < 32) {
            char code[8];
            std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(c));
            out += code;
        } else {
            out += c;
        }
    }
    return out + '"';
}

std::string JsonNumber(double value) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    return {text, end};
}

std::string JsonMoney(Money value) {
    return JsonNumber(value.ToDouble());
}

std::string SolveJson(const Workspace& workspace, const Solver& solver) {
    std::string out;
    JsonWriter json(out);
    json.Open('{').Member("status", solver.SolveMessage());
    json.Number("mode", static_cast<int>(solver.Mode()));
    WriteProblem(json, solver);
    WriteOrder(json, solver);
    WriteTasks(json, workspace);
    WriteSlots(json, workspace, solver);
    json.Close('}');
    return out + "\n";
}

}  // namespace vortan
