// What a planner has entered: the resources of the active template, the tasks of the active project.

#include <algorithm>
#include <charconv>

#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtemplate.h"
#include "reports/Builders.h"

namespace vortan {
namespace {

/// Monday to Sunday, then holiday and shutdown.
constexpr int kDayColumns[] = {2, 3, 4, 5, 6, 7, 1, 0, 8};

/// The first three letters of the day, below each other.
std::string DayTitle(int day) {
    const std::string name = DayName(day);
    return name.substr(0, 1) + "\r\n" + name.substr(1, 1) + "\r\n" + name.substr(2, 1);
}

/// At most 15 digits.
std::string EfficiencyText(double efficiency) {
    char text[32];
    const auto* const end =
        std::to_chars(text, text + sizeof text, efficiency, std::chars_format::general, 15).ptr;
    double rounded = efficiency;
    std::from_chars(text, end, rounded);
    return PlainNumber(rounded);
}

template <class List>
std::vector<std::string> IncludedTexts(const List& list) {
    std::vector<std::string> texts;
    for (const auto* each : list)
        if (each->Include()) texts.push_back(each->BuildNodeText());
    return texts;
}

/// The task's own columns stand on each of its rows; dependencies and assignments run side by side.
void FillInTaskRow(Table& table, Vtask& task, const std::string& symbol, bool ranked) {
    const std::vector<std::string> dependencies = IncludedTexts(task.DependencyList()),
                                   assignments = IncludedTexts(task.AssignmentList());
    const Vproject* subproject = task.Subproject();
    const std::string description = subproject ? subproject->BuildNodeText() : task.Description();
    const std::int32_t journal = task.Project()->CurrentIndex();
    const std::string effort = subproject ? "<sub>" : EffortText(task, journal);
    const CellValue span = subproject ? CellValue() : EffortSpan(task, journal);
    const double efficiency = task.Efficiency();
    const std::size_t rows = std::max({std::size_t{1}, dependencies.size(), assignments.size()});
    for (std::size_t i = 0; i < rows; ++i) {
        RowWriter row(table, Link<Vtask>(&task));
        row.Number(task.TaskID()).Text(description).Text(effort, span).Amount(task.MaterialCost(), symbol);
        subproject ? row.Text("<n/a>") : row.Text(EfficiencyText(efficiency), efficiency);
        row.Text(i < dependencies.size() ? dependencies[i] : "");
        row.Text(i < assignments.size() ? assignments[i] : "");
        if (ranked) row.Number(task.SolveRank());
    }
}

}  // namespace

namespace {

void FillInResourceRow(Table& table, Vresource& resource, const std::string& symbol) {
    RowWriter row(table, Link<Vresource>(&resource));
    row.Number(resource.ResourceID())
        .Text(resource.Description())
        .Text(resource.Department())
        .Text(resource.Title())
        .Amount(resource.BurdenedRate(), symbol)
        .Amount(resource.OvertimeRate(), symbol)
        .Amount(resource.OffDayRate(), symbol)
        .Amount(resource.HolidayRate(), symbol)
        .Text(resource.Shift() ? resource.Shift()->ShiftName() : "");
    for (const int day : kDayColumns) row.YorN(resource.WorkDay(day));
}

}  // namespace

Table BuildResourceEntrySpreadsheet(const ReportSource& source) {
    std::vector<TableColumn> columns{{"Resource ID", Alignment::Left},
                                     {"Description", Alignment::Left},
                                     {"Department", Alignment::Left},
                                     {"Title", Alignment::Left},
                                     {"Burdened\r\nrate", Alignment::Right},
                                     {"Overtime\r\nrate", Alignment::Right},
                                     {"Off day\r\nrate", Alignment::Right},
                                     {"Holiday\r\nrate", Alignment::Right},
                                     {"Shift", Alignment::Left}};
    for (const int day : kDayColumns) columns.push_back({DayTitle(day), Alignment::Center});
    Table table("Resource Entry Spreadsheet", std::move(columns), 1);
    const Vtemplate* from = source.workspace.ThisTemplate();
    if (!from) return table;
    const std::string symbol = source.workspace.ThePlatform().CurrencySymbol();
    for (Vresource* resource : from->ResourceList()) {
        if (!resource->Include()) continue;
        FillInResourceRow(table, *resource, symbol);
    }
    return table;
}

Table BuildTaskEntrySpreadsheet(const ReportSource& source) {
    std::vector<TableColumn> columns{{"Task ID", Alignment::Left},     {"Description", Alignment::Left},
                                     {"Duration", Alignment::Right},   {"MaterialCost", Alignment::Right},
                                     {"Efficiency", Alignment::Right}, {"Dependencies", Alignment::Left},
                                     {"Assignments", Alignment::Left}};
    const Vproject* project = source.workspace.ThisProject();
    const bool ranked = project && std::any_of(project->TaskList().begin(), project->TaskList().end(),
                                               [](const Vtask* task) { return task->SolveRank() != 0; });
    if (ranked) columns.push_back({"Rank", Alignment::Right});
    Table table("Task Entry Spreadsheet", std::move(columns), 1);
    if (!project) return table;
    const std::string symbol = source.workspace.ThePlatform().CurrencySymbol();
    for (Vtask* task : project->TaskList())
        if (task->Include()) FillInTaskRow(table, *task, symbol, ranked);
    return table;
}

Table BuildEntryRows(const Table& like, const std::vector<RowSubject>& subjects, const std::string& symbol) {
    constexpr std::int32_t kTaskColumns = 7;
    Table table("", like.Columns(), like.fixedColumns);
    for (const RowSubject& subject : subjects) {
        if (const auto* task = std::get_if<Link<Vtask>>(&subject); task && task->Get()) {
            FillInTaskRow(table, *task->Get(), symbol, like.Cols() > kTaskColumns);
        } else if (const auto* resource = std::get_if<Link<Vresource>>(&subject);
                   resource && resource->Get()) {
            FillInResourceRow(table, *resource->Get(), symbol);
        }
    }
    return table;
}

}  // namespace vortan
