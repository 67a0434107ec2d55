#include "reports/CellEntry.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>

#include "model/Characters.h"
#include "model/Estimates.h"
#include "model/Fault.h"
#include "model/LinkText.h"
#include "model/TypedValues.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"

namespace vortan {
namespace {

namespace task_column {
enum { Id, Description, Duration, Cost, Efficiency, Dependencies, Assignments, Rank };
}
namespace resource_column {
enum { Id, Description, Department, Title, FirstRate, Shift = 8, FirstDay, Count = 18 };
}

/// Of columns 9 on: Monday to Sunday, then holiday and shutdown.
constexpr int kDays[] = {2, 3, 4, 5, 6, 7, 1, 0, 8};
int DayOf(int column) {
    return kDays[column - resource_column::FirstDay];
}

struct RateColumn {
    const char* what;
    void (Vresource::*set)(Money);
};
constexpr RateColumn kRateColumns[] = {{"burdened rate", &Vresource::SetBurdenedRate},
                                       {"overtime rate", &Vresource::SetOvertimeRate},
                                       {"off day rate", &Vresource::SetOffDayRate},
                                       {"holiday rate", &Vresource::SetHolidayRate}};

Vtask* TaskOf(const RowSubject& subject) {
    const auto* link = std::get_if<Link<Vtask>>(&subject);
    return link ? link->Get() : nullptr;
}
Vresource* ResourceOf(const RowSubject& subject) {
    const auto* link = std::get_if<Link<Vresource>>(&subject);
    return link ? link->Get() : nullptr;
}
bool IsNew(const RowSubject& subject) {
    return std::holds_alternative<std::monostate>(subject);
}

constexpr int kTotalBox = 7;  // the most likely estimate of the whole task

/// The estimates with the text in place of what there was. What dates drive becomes driven by effort.
Estimates TypedEstimates(const Vtask* task, const std::string& text) {
    Estimates estimates;
    const std::int32_t units = task ? task->EffortUnits() : 0;
    estimates.effortDriven = units <= 0;
    estimates.unit = Estimates::UnitOf(units);
    if (task) estimates.minutes = {0, task->Optimistic(), task->MostLikely(), task->Pessimistic()};
    estimates.Type(kTotalBox, text);
    return estimates;
}

bool SaysYes(std::string_view text) {
    return SameText(text, "Y");
}

}  // namespace

CellEntry::Control CellEntry::ControlOf(const RowSubject& subject, int column) const {
    if (sheet_ == Sheet::Tasks) {
        const Vtask* task = TaskOf(subject);
        if (!task && !IsNew(subject)) return Control::None;
        const bool ofOwn =
            column == task_column::Id || column == task_column::Cost || column >= task_column::Dependencies;
        return task && task->Subproject() && !ofOwn ? Control::None : Control::Text;
    }
    if (!ResourceOf(subject) && !IsNew(subject)) return Control::None;
    if (column == resource_column::Department) return Control::Combo;
    return column >= resource_column::Shift ? Control::List : Control::Text;
}

std::vector<std::string> CellEntry::Choices(int column) const {
    if (column >= resource_column::FirstDay) return {"Y", "n"};
    std::vector<std::string> all;
    const Vtemplate* owner = workspace_.ThisTemplate();
    if (!owner) return all;
    if (column == resource_column::Shift) {
        for (const Vshift* shift : owner->ShiftList()) all.push_back(shift->BuildNodeText());
        return all;
    }
    for (const Vresource* resource : owner->ResourceList()) {
        const std::string name = resource->Department();
        if (resource->Include() && std::find(all.begin(), all.end(), name) == all.end()) all.push_back(name);
    }
    return all;
}

std::string CellEntry::TextOf(const RowSubject& subject, int column, const std::string& shown) const {
    const Vtask* task = TaskOf(subject);
    if (!task) return shown;
    if (column == task_column::Dependencies) return DependencyLine(*task);
    return column == task_column::Assignments ? AssignmentLine(*task) : shown;
}

std::string CellEntry::TaskRefusal(const Cell& cell, const std::set<std::int32_t>& coming) const {
    const Vtask* task = TaskOf(cell.subject);
    const Vproject* project = task ? task->Project() : workspace_.ThisProject();
    if (!project || (!task && !IsNew(cell.subject))) return "The task has been deleted.";
    switch (cell.column) {
        case task_column::Id:
            return TypedTaskId(cell.text, *project, task).refusal;
        case task_column::Duration: {
            Estimates estimates = TypedEstimates(task, "0");
            return estimates.Refusal(kTotalBox, cell.text).value_or("");
        }
        case task_column::Cost:
            return TypedMoney(cell.text, "fixed cost", Symbol()).refusal;
        case task_column::Efficiency:
            return TypedEfficiency(cell.text).refusal;
        case task_column::Dependencies:
            return DependencyRefusal(task, *project, cell.text, coming);
        case task_column::Assignments:
            return AssignmentRefusal(task, workspace_, cell.text);
        case task_column::Rank:
            return TypedWhole(cell.text, "rank", 0, std::numeric_limits<std::int32_t>::max()).refusal;
        default:
            return cell.column == task_column::Description ? "" : "There is no such column.";
    }
}

std::string CellEntry::ResourceRefusal(const Cell& cell) const {
    const Vresource* resource = ResourceOf(cell.subject);
    const Vtemplate* owner = resource ? resource->Template() : workspace_.ThisTemplate();
    if (!owner || (!resource && !IsNew(cell.subject))) return "The resource has been deleted.";
    const int column = cell.column;
    if (column >= resource_column::Count) return "There is no such column.";
    if (column >= resource_column::FirstDay)
        return SaysYes(cell.text) || SameText(cell.text, "n") ? "" : "A day must be Y or n.";
    if (column == resource_column::Shift)
        return owner->ShiftList().Find(cell.text) ? "" : "There is no shift \"" + cell.text + "\".";
    if (column >= resource_column::FirstRate)
        return TypedMoney(cell.text, kRateColumns[column - resource_column::FirstRate].what, Symbol())
            .refusal;
    if (column == resource_column::Department)
        return cell.text.empty() ? "The department must be filled in." : "";
    return column == resource_column::Id ? TypedResourceId(cell.text, *owner, resource).refusal : "";
}

std::vector<CellEntry::Refusal> CellEntry::Check(std::span<const Cell> cells) const {
    // Numbers that come with these cells can be depended on, and can be given once.
    std::set<std::int32_t> coming;
    std::vector<Refusal> refusals;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (cells[i].column != 0) continue;
        std::string text = sheet_ == Sheet::Tasks ? TaskRefusal(cells[i], coming) : ResourceRefusal(cells[i]);
        if (text.empty() && !coming.insert(*TypedWhole(cells[i].text, "", 1, kHighestId).value).second)
            text = "The number stands here twice.";
        if (!text.empty()) refusals.push_back({i, std::move(text)});
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (cells[i].column == 0) continue;
        std::string text = sheet_ == Sheet::Tasks ? TaskRefusal(cells[i], coming) : ResourceRefusal(cells[i]);
        if (!text.empty()) refusals.push_back({i, std::move(text)});
    }
    return refusals;
}

bool CellEntry::IsUsed(std::int32_t id) const {
    return sheet_ == Sheet::Tasks ? workspace_.ThisProject()->FindTask(id) != nullptr
                                  : workspace_.ThisTemplate()->FindResource(id) != nullptr;
}

RowSubject CellEntry::NewObject(std::int32_t id) const {
    if (id == 0) {
        id = (sheet_ == Sheet::Tasks ? workspace_.ThisProject()->HighestTaskID()
                                     : workspace_.ThisTemplate()->HighestResourceID()) +
             1;
        while (IsUsed(id)) ++id;
    }
    if (sheet_ == Sheet::Tasks) {
        auto* task = workspace_.NewVObject<Vtask>();
        if (efficiency_ > 0) task->SetEfficiency(efficiency_);
        task->SetProject(workspace_.ThisProject());
        task->SetTaskID(id);
        return Link<Vtask>(task);
    }
    auto* resource = workspace_.NewVObject<Vresource>();
    resource->SetTemplate(workspace_.ThisTemplate());
    resource->SetResourceID(id);
    return Link<Vresource>(resource);
}

RowSubject CellEntry::Take(std::span<const Cell> cells) const {
    if (const auto refusals = Check(cells); !refusals.empty()) Refuse(refusals.front().text);
    // All numbers first: what is typed in other cells may speak of them.
    std::map<int, std::int32_t> newRows;
    for (const Cell& cell : cells) {
        if (!IsNew(cell.subject)) continue;
        std::int32_t& id = newRows[cell.newRow];
        if (cell.column == 0) id = *TypedWhole(cell.text, "", 1, kHighestId).value;
    }
    std::map<int, RowSubject> made;
    for (const bool numbered : {true, false})
        for (const auto& [row, id] : newRows)
            if ((id != 0) == numbered) made[row] = NewObject(id);
    RowSubject last;
    for (const bool numbers : {true, false}) {
        for (const Cell& cell : cells) {
            last = IsNew(cell.subject) ? made[cell.newRow] : cell.subject;
            if ((cell.column == 0) != numbers) continue;
            sheet_ == Sheet::Tasks ? TakeTask(*TaskOf(last), cell) : TakeResource(*ResourceOf(last), cell);
        }
    }
    return last;
}

void CellEntry::TakeTask(Vtask& task, const Cell& cell) const {
    switch (cell.column) {
        case task_column::Id:
            return task.SetTaskID(*TypedWhole(cell.text, "", 1, kHighestId).value);
        case task_column::Description:
            return task.SetDescription(cell.text);
        case task_column::Duration: {
            const Estimates estimates = TypedEstimates(&task, cell.text);
            const Estimates::Minutes totals = estimates.Totals();
            task.SetOptimistic(totals.optimistic);
            task.SetMostLikely(totals.mostLikely);
            task.SetPessimistic(totals.pessimistic);
            return task.SetEffortUnits(estimates.effortDriven ? -estimates.GetUnits() : estimates.GetUnits());
        }
        case task_column::Cost:
            return task.SetMaterialCost(*TypedMoney(cell.text, "", Symbol()).value);
        case task_column::Efficiency:
            return task.SetEfficiency(*TypedEfficiency(cell.text).value);
        case task_column::Dependencies:
            return TakeDependencyLine(task, cell.text);
        case task_column::Assignments:
            return TakeAssignmentLine(task, cell.text);
        default:
            return task.SetSolveRank(
                *TypedWhole(cell.text, "", 0, std::numeric_limits<std::int32_t>::max()).value);
    }
}

void CellEntry::TakeResource(Vresource& resource, const Cell& cell) const {
    const int column = cell.column;
    if (column >= resource_column::FirstDay) return resource.SetWorkDay(DayOf(column), SaysYes(cell.text));
    if (column == resource_column::Shift)
        return resource.SetShift(resource.Template()->ShiftList().Find(cell.text));
    if (column >= resource_column::FirstRate) {
        const RateColumn& rate = kRateColumns[column - resource_column::FirstRate];
        return (resource.*rate.set)(*TypedMoney(cell.text, "", Symbol()).value);
    }
    if (column == resource_column::Title) return resource.SetTitle(cell.text);
    if (column == resource_column::Department) return resource.SetDepartment(cell.text);
    if (column == resource_column::Description) return resource.SetDescription(cell.text);
    resource.SetResourceID(*TypedWhole(cell.text, "", 1, kHighestId).value);
}

}  // namespace vortan
