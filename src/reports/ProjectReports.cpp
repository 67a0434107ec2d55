// The solution of the active project, a row per task: in the journal in force, or the plan's beside it.

#include <array>

#include "charts/PageHeader.h"
#include "model/ValueText.h"
#include "model/Vdependency.h"
#include "reports/Builders.h"

namespace vortan {
namespace {

constexpr std::size_t kCosts = 3;  ///< material, labor, total: the last columns
constexpr std::int32_t kFirstCost = 10;
using Costs = std::array<Money, kCosts>;

Table MakeTable(const Workspace& workspace, const char* title, TableColumn second, int fixed) {
    return {std::string(title) + " Spreadsheet for " + GetPageHeader(workspace),
            {{"Task", Alignment::Left},
             std::move(second),
             {"Effort", Alignment::Right},
             {"Early start", Alignment::Right},
             {"Early finish", Alignment::Right},
             {"Late start", Alignment::Right},
             {"Late finish", Alignment::Right},
             {"Duration", Alignment::Right},
             {"Slack", Alignment::Right},
             {"Time left", Alignment::Right},
             {"Material cost", Alignment::Right},
             {"Labor cost", Alignment::Right},
             {"Total cost", Alignment::Right}},
            fixed};
}

/// Fills in what both reports tell of a task in a journal, and adds its costs up.
void TaskValues(RowWriter& row, const Vtask& task, std::int32_t journal, const std::string& symbol,
                Costs& sums) {
    const DateTime start = task.EarlyStartAt(journal), finish = task.EarlyFinishAt(journal),
                   lateFinish = task.LateFinishAt(journal);
    const DateTime now = task.Project()->JournalDates()[static_cast<std::size_t>(journal)];
    row.Text(EffortText(task, journal), task.Subproject() ? CellValue() : EffortSpan(task, journal))
        .Date(start)
        .Date(finish)
        .Date(task.LateStartAt(journal))
        .Date(lateFinish)
        .Span(DaysBetween(start, finish))
        .Span(DaysBetween(finish, lateFinish));
    const double left = DaysBetween(now, finish);
    left < 0 ? row.Text("done", TimeSpan{left}) : row.Span(left);
    const Money material = task.MaterialCostAt(journal), labor = task.LaborCostAt(journal);
    const Costs costs = {material, labor, material + labor};
    for (std::size_t i = 0; i < kCosts; ++i) {
        row.Amount(costs[i], symbol);
        sums[i] += ShownCents(costs[i]);
    }
}

/// The texts of control dependencies; that of a subproject is looked for once.
class ControlTexts {
  public:
    std::string Of(const Vtask& task) {
        const Vproject* subproject = task.Subproject();
        if (!subproject) return TextOf(task);
        const auto [place, isNew] = known_.try_emplace(subproject);
        if (isNew) place->second = TextOf(task);
        return place->second;
    }

  private:
    static std::string TextOf(const Vtask& task) {
        const Vdependency* control = task.ControlDependency();
        return control ? control->BuildNodeText() : "";
    }

    std::unordered_map<const Vproject*, std::string> known_;
};

/// Amounts of money, if what stands above them is one: it has the first character of such a text in it.
void AddTotals(Table& table, const Costs& sums, const std::string& symbol) {
    const std::string zero = FormatCurrency(Money(), symbol);
    std::size_t length = 1;
    while (length < zero.size() && (static_cast<unsigned char>(zero[length]) & 0xC0) == 0x80) ++length;
    const std::string mark = zero.substr(0, length);

    const std::int32_t above = table.Rows() - 1;
    RowWriter row(table);
    row.Text("Total").Skip(kFirstCost - 1);
    for (std::size_t i = 0; i < kCosts; ++i) {
        const auto column = kFirstCost + static_cast<std::int32_t>(i);
        const std::string_view text =
            above < 0 ? std::string_view(table.Columns()[static_cast<std::size_t>(column)].title)
                      : table.Cell(above, column).text;
        if (text.find(mark) != std::string::npos) {
            row.Amount(sums[i], symbol);
        } else {
            row.Text(PlainNumber(sums[i].ToDouble()), sums[i]);
        }
    }
    table.totalRows = 1;
}

}  // namespace

Table BuildProjectSummarySpreadsheet(const ReportSource& source) {
    Table table = MakeTable(source.workspace, "Project Summary", {"Control dependency", Alignment::Left}, 1);
    const std::string symbol = source.workspace.ThePlatform().CurrencySymbol();
    Costs sums;
    ControlTexts controls;
    if (const Vproject* project = source.workspace.ThisProject()) {
        for (Vtask* task : project->TaskList()) {
            if (!task->Include()) continue;
            RowWriter row(table, Link<Vtask>(task));
            row.Text(task->BuildNodeText()).Text(controls.Of(*task));
            TaskValues(row, *task, project->CurrentIndex(), symbol, sums);
        }
    }
    AddTotals(table, sums, symbol);
    return table;
}

Table BuildProjectUpdateSpreadsheet(const ReportSource& source) {
    Table table = MakeTable(source.workspace, "Project Update", {"Journal", Alignment::Right}, 2);
    const std::string symbol = source.workspace.ThePlatform().CurrencySymbol();
    Costs plan, current, difference;
    if (const Vproject* project = source.workspace.ThisProject()) {
        const auto addRow = [&](Vtask& task, std::int32_t journal, const char* name, Costs& sums) {
            if (!task.IncludeAt(journal)) return;
            RowWriter row(table, Link<Vtask>(&task));
            row.Text(task.BuildNodeText()).Text(name);
            TaskValues(row, task, journal, symbol, sums);
        };
        for (Vtask* task : project->TaskList()) {
            addRow(*task, project->PlanIndex(), "Plan", plan);
            addRow(*task, project->CurrentIndex(), "Current", current);
        }
    }
    for (std::size_t i = 0; i < kCosts; ++i) difference[i] = plan[i] - current[i];
    const std::pair<const char*, const Costs*> totals[] = {
        {"Plan", &plan}, {"Current", &current}, {"Difference", &difference}};
    for (const auto& [name, sums] : totals) {
        RowWriter row(table);
        row.Text("Total").Text(name).Skip(kFirstCost - 2);
        for (const Money sum : *sums) row.Amount(sum, symbol);
    }
    table.totalRows = 3;
    return table;
}

}  // namespace vortan
