// Writing of the marked texts.

#include "transfer/VortanText.h"

#include <algorithm>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "transfer/VortanParts.h"

namespace vortan {

namespace {

/// Writes the fields of an object that do not hold what is usual, as a visitor of its list.
class FieldsOut {
  public:
    FieldsOut(std::string& out, const ExportedPlan& plan, FieldSet skipped = {})
        : out_(out), plan_(plan), skipped_(skipped) {}

    /// Of the template whose resources are written.
    void SetShifts(const std::vector<const Vshift*>& shifts) { shifts_ = shifts; }

    template <class T, class Usual>
    void operator()(const char*, const Journaled<T>& field, const Usual& usual) {
        if (Skipped() || (field.AllEqual() && field.At(0) == T(usual))) return;
        Begin();
        const int count = field.AllEqual() ? 1 : field.Count();
        for (int i = 0; i < count; ++i) {
            if (i > 0) out_ += kJournalEnd;
            Value(field.At(i));
        }
    }
    template <class Usual>
    void operator()(const char* name, const JournaledInclude& field, const Usual& usual) {
        // A single value stands for true, whatever it holds, and a row for what it holds.
        if (field.IsArray()) return (*this)(name, static_cast<const Journaled<bool>&>(field), usual);
        ++place_;
    }
    template <class T, class Usual>
    void operator()(const char*, const T& value, const Usual& usual) {
        if (Skipped() || value == T(usual)) return;
        Begin();
        Value(value);
    }

  private:
    bool Skipped() {
        ++place_;
        return skipped_.Has(place_);
    }
    void Begin() {
        out_ += kFieldEnd;
        out_ += FieldLetter(place_);
    }
    template <class T>
    void Value(const T& value) {
        AppendCode(out_, value);
    }
    void Value(const Link<Vproject>& link) { Number(plan_.projects, link.Get()); }
    void Value(const Link<Vresource>& link) { Number(plan_.resources, link.Get()); }
    void Value(const Link<Vtask>& link) {
        const Vtask* task = link.Get();
        if (link.IsDeleted()) {
            out_ += '!';
        } else if (task && !plan_.tasks.contains(task) && task->Project()) {
            out_ += 'x' + std::to_string(task->TaskID()) + ":";
            AppendEscaped(out_, task->Project()->ProjectName());
        } else {
            Number(plan_.tasks, task);
        }
    }
    void Value(const Link<Vshift>& link) {
        const auto at = std::find(shifts_.begin(), shifts_.end(), link.Get());
        if (at != shifts_.end()) out_ += std::to_string(at - shifts_.begin());
    }
    /// Nothing for an object that is not in the file.
    template <class T>
    void Number(const std::unordered_map<const T*, std::int32_t>& numbers, const T* object) {
        const auto at = numbers.find(object);
        if (at != numbers.end()) out_ += std::to_string(at->second);
    }

    std::string& out_;
    const ExportedPlan& plan_;
    std::vector<const Vshift*> shifts_;
    FieldSet skipped_;
    int place_ = -1;
};

void AddSection(std::string& body, char letter, const std::string& rest) {
    if (!body.empty()) body += kSectionEnd;
    body += letter;
    body += rest;
}

/// A name or notes that the row shows otherwise than they are.
void AddShown(std::string& body, char letter, const std::string& shown, const std::string& exact) {
    if (shown == exact) return;
    std::string rest = HashText(NameSum(shown)) + kFieldEnd;
    AppendEscaped(rest, exact);
    AddSection(body, letter, rest);
}

std::string DateList(const std::vector<DateTime>& dates) {
    std::string text;
    for (const DateTime date : dates) {
        if (!text.empty()) text += kJournalEnd;
        AppendCode(text, date);
    }
    return text;
}

void AddProject(std::string& body, const ExportedPlan& plan, const Vproject& project) {
    std::string rest = std::to_string(project.PlanIndex()) + kFieldEnd +
                       std::to_string(project.CurrentIndex()) + kFieldEnd + DateList(project.JournalDates());
    project.ForEachFieldUsual(FieldsOut(rest, plan));
    AddSection(body, 'p', rest);
}

/// Whether the next solve finds the results of the task again, in its only journal.
bool Found(const ExportedPlan& plan, const Vtask& task) {
    return plan.solved && task.Include() && task.Project()->NumJournals() <= 1;
}

void AddDependencies(std::string& body, const ExportedPlan& plan, const MTask& row, const Vtask& task) {
    std::string rest = HashText(LinkSum(row));
    const bool found = Found(plan, task) && !task.Subproject();
    for (const Vdependency* dependency : task.DependencyList()) {
        rest += kItemEnd;
        FieldSet skipped;
        // The date is one that the next solve finds.
        if (found && dependency->Include() && plan.tasks.contains(dependency->TaskRequired()))
            skipped.Add(kDependencyDate, kDependencyDate);
        dependency->ForEachFieldUsual(FieldsOut(rest, plan, skipped));
    }
    AddSection(body, 'd', rest);
}

void AddAssignments(std::string& body, const ExportedPlan& plan, const Vtask& task,
                    const std::vector<const MAssignment*>& assignments) {
    std::string rest = HashText(AssignmentSum(assignments));
    for (const Vassignment* assignment : task.AssignmentList()) {
        rest += kItemEnd;
        assignment->ForEachFieldUsual(FieldsOut(rest, plan));
    }
    AddSection(body, 'a', rest);
}

/// Runs of letters with how many they are, or the hours as they are where one does not have its twelve.
std::string MatrixCode(const Vshift& shift) {
    std::string all;
    bool regular = true;
    for (int hour = 0; hour < Vshift::kHours; ++hour) {
        const std::string& letters = shift.Matrix(hour);
        all += letters;
        regular = regular && letters.size() == Vshift::kPeriodsPerHour;
    }
    regular = regular && std::all_of(all.begin(), all.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
    std::string code = regular ? "M" : "L";
    if (!regular) {
        for (int hour = 0; hour < Vshift::kHours; ++hour) {
            if (hour > 0) code += kJournalEnd;
            AppendEscaped(code, shift.Matrix(hour));
        }
        return code;
    }
    for (std::size_t i = 0; i < all.size();) {
        const std::size_t end = std::min(all.find_first_not_of(all[i], i), all.size());
        code += std::to_string(end - i) + all[i];
        i = end;
    }
    return code;
}

/// The name that a shift has, or had before it was deleted, made free among those before it.
std::string SavedName(const std::vector<const Vshift*>& shifts, std::size_t place) {
    std::string name =
        shifts[place]->ShiftName().empty() ? shifts[place]->FormerName() : shifts[place]->ShiftName();
    const auto taken = [&] {
        for (std::size_t i = 0; i < place; ++i) {
            if (SavedName(shifts, i) == name) return true;
        }
        return false;
    };
    while (shifts[place]->ShiftName().empty() && !name.empty() && taken()) Workspace::FixNameConflict(name);
    return name;
}

void AddTemplate(std::string& body, const ExportedPlan& plan, std::size_t place) {
    const Vtemplate& owner = *plan.templates[place];
    std::string rest = std::to_string(place) + kFieldEnd;
    AppendEscaped(rest, owner.TemplateName());
    rest += kFieldEnd;
    AppendEscaped(rest, owner.Description());
    rest += kFieldEnd + std::to_string(owner.CurrentIndex()) + kFieldEnd + DateList(owner.JournalDates());
    AddSection(body, 'm', rest);
    const std::vector<const Vshift*>& shifts = plan.shifts[place];
    for (std::size_t i = 0; i < shifts.size(); ++i) {
        rest = std::to_string(place) + kFieldEnd;
        AppendEscaped(rest, SavedName(shifts, i));
        const Vshift& shift = *shifts[i];
        for (const float multiplier :
             {shift.BurdenedMultiplier(), shift.OvertimeMultiplier(), shift.OffDayMultiplier()}) {
            rest += kFieldEnd;
            AppendCode(rest, multiplier);
        }
        rest += kFieldEnd;
        AppendEscaped(rest, shift.HolidayMultiplier());
        AddSection(body, 'h', rest + kFieldEnd + MatrixCode(shift));
    }
}

}  // namespace

std::string EncodeTask(const ExportedPlan& plan, const MTask& row, const Vtask& task, bool ownsSubproject,
                       const std::vector<const MAssignment*>& assignments) {
    const Vproject* subproject = task.Subproject();
    std::string body = "n" + std::to_string(task.TaskID());
    AddShown(body, 'b', row.Name, subproject ? subproject->ProjectName() : task.Description());
    if (subproject) AddShown(body, 'c', row.Notes, subproject->Description());
    std::string rest = HashText(EstimateSum(row, assignments));
    FieldSet skipped = NotOfTask(subproject != nullptr, ownsSubproject);
    if (Found(plan, task)) skipped.Add(kTaskLaborCost, kTaskLateFinish);
    task.ForEachFieldUsual(FieldsOut(rest, plan, skipped));
    AddSection(body, 't', rest);
    AddDependencies(body, plan, row, task);
    AddAssignments(body, plan, task, assignments);
    if (ownsSubproject) AddProject(body, plan, *subproject);
    return SealVortan(body);
}

std::string EncodeTop(const ExportedPlan& plan, const MTask& row, const Vproject& project) {
    std::string body;
    AddProject(body, plan, project);
    AddShown(body, 'b', row.Name, project.ProjectName());
    AddShown(body, 'c', ShownName(plan.file->Title), project.Description());
    for (std::size_t i = 0; i < plan.templates.size(); ++i) AddTemplate(body, plan, i);
    return SealVortan(body);
}

std::string EncodeResource(const ExportedPlan& plan, const MResource& row, const Vresource& resource) {
    const auto at = std::find(plan.templates.begin(), plan.templates.end(), resource.Template());
    const std::size_t place = at == plan.templates.end() ? 0 : std::size_t(at - plan.templates.begin());
    std::string body = "n" + std::to_string(resource.ResourceID());
    AddShown(body, 'b', row.Name, resource.Description());
    if (place > 0) AddSection(body, 'k', std::to_string(place));
    std::string rest = HashText(ResourceSum(row));
    resource.ForEachFieldUsual(FieldsOut(rest, plan, NotOfResource()));
    AddSection(body, 'r', rest);
    rest = HashText(CalendarSum(BaseCalendar(*plan.file, row)));
    FieldsOut days(rest, plan, NotOfResourceDays());
    if (place < plan.shifts.size()) days.SetShifts(plan.shifts[place]);
    resource.ForEachFieldUsual(days);
    AddSection(body, 'w', rest);
    return SealVortan(body);
}

}  // namespace vortan
