#include "reports/ChartTables.h"

#include <algorithm>
#include <initializer_list>

#include "charts/GanttForm.h"
#include "charts/HistogramForm.h"
#include "charts/WorkBreakdownForm.h"
#include "model/Conventions.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "reports/Builders.h"

namespace vortan {
namespace {

using Columns = std::vector<TableColumn>;

/// Texts at the left, numbers at the right.
Columns ColumnsOf(std::initializer_list<const char*> texts, std::initializer_list<const char*> numbers) {
    Columns columns;
    for (const char* title : texts) columns.push_back({title, Alignment::Left});
    for (const char* title : numbers) columns.push_back({title, Alignment::Right});
    return columns;
}

/// What a surface shows in its titled columns.
Table TitledColumns(const Vwindow& surface) {
    Columns columns;
    std::vector<int> places;
    for (int col = 0; col < surface.Cols(); ++col) {
        if (surface.IsTimeColumn(col)) continue;
        columns.push_back({std::string(surface.ColumnTitle(col)), surface.ColumnAlignment(col)});
        places.push_back(col);
    }
    Table table("", std::move(columns), 1);
    for (int row = 1; row < surface.Rows() - (surface.HasFooter() ? 1 : 0); ++row) {
        RowWriter writer(table);
        for (const int col : places) writer.Text(surface.Cell(row, col));
    }
    return table;
}

}  // namespace

Table TableOf(const Histogram& histogram) {
    Columns columns = ColumnsOf({"Key", "Label"}, {});
    for (std::size_t i = 0; i < histogram.totals.size(); ++i)
        columns.push_back({FormatShortDate(DateTime(histogram.bounds[i])), Alignment::Right});
    Table table("", std::move(columns), 2);
    const auto add = [](RowWriter& writer, std::int64_t tenths) {
        const double hours = static_cast<double>(tenths) / 10;
        writer.Text(FormatHours(static_cast<float>(hours), false), HourCount{hours});
    };
    for (const auto& row : histogram.rows) {
        RowWriter writer(table, row.resource.Get() ? RowSubject(row.resource) : RowSubject());
        writer.Text(row.key).Text(row.label);
        auto cell = row.cells.begin();
        for (std::int32_t period = 0; period < histogram.Periods(); ++period) {
            const bool here = cell != row.cells.end() && cell->period == period;
            add(writer, here ? cell++->tenths : 0);
        }
    }
    RowWriter totals(table);
    totals.Text("").Text("Total");
    for (const std::int64_t total : histogram.totals) add(totals, total);
    table.totalRows = 1;
    return table;
}

Table TableOf(const BudgetForm::Shown& budget, const std::string& currencySymbol) {
    Columns columns = ColumnsOf({"Date"}, {});
    std::int32_t first = INT32_MAX, last = INT32_MIN;
    for (const auto& curve : budget.curves) {
        columns.push_back({curve.label, Alignment::Right});
        first = std::min(first, curve.firstDay);
        last = std::max(last, curve.LastDay());
    }
    Table table("", std::move(columns), 1);
    for (std::int32_t day = first; day <= last && !budget.curves.empty(); ++day) {
        RowWriter writer(table);
        writer.Text(FormatShortDate(DateTime(day + 1)), DateTime(day + 1));
        for (const auto& curve : budget.curves) {
            if (day < curve.firstDay || day > curve.LastDay()) {
                writer.Skip(1);
            } else {
                writer.Amount(curve.At(day), currencySymbol);
            }
        }
    }
    return table;
}

Table TableOf(const PrecedenceForm& precedence) {
    const Precedence& data = precedence.Data();
    Table table("",
                {{"Number", Alignment::Right},
                 {"Project", Alignment::Left},
                 {"Task", Alignment::Right},
                 {"From", Alignment::Right},
                 {"To", Alignment::Right},
                 {"Column", Alignment::Right},
                 {"Row", Alignment::Right},
                 {"Before", Alignment::Left},
                 {"Lines", Alignment::Left}},
                1);
    auto link = data.links.begin();
    for (std::size_t place = 0; place < data.boxes.size(); ++place) {
        const Precedence::Box& box = data.boxes[place];
        std::string before, lines;
        const auto add = [](std::string& list, const char* between, const std::string& text) {
            if (!list.empty()) list += between;
            list += text;
        };
        for (; link != data.links.end() && static_cast<std::size_t>(link->first) == place; ++link)
            add(before, " ", std::to_string(link->second + 1));
        for (const std::string& text : BoxTexts(data, place, precedence.TheStyle(), precedence.Units()))
            add(lines, "; ", text);
        RowWriter writer(table, box.task);
        writer.Number(static_cast<std::int64_t>(place + 1)).Text(box.projectName);
        for (const int number : {box.taskID, box.fromPercent, box.toPercent, box.col, box.row})
            writer.Number(number);
        writer.Text(before).Text(lines);
    }
    return table;
}

Table TableOf(const WorkBreakdown& breakdown) {
    Table table("",
                {{"Kind", Alignment::Left},
                 {"Level", Alignment::Right},
                 {"Text", Alignment::Left},
                 {"X", Alignment::Right},
                 {"Y", Alignment::Right},
                 {"Width", Alignment::Right},
                 {"Height", Alignment::Right}},
                0);
    const auto write = [&](const char* kind, const WorkBreakdown::Text& text) {
        RowWriter writer(table, text.task.Get() ? RowSubject(text.task) : RowSubject());
        writer.Text(kind).Number(text.level).Text(text.text).Number(text.x).Number(text.y);
        if (text.width > 0) writer.Number(text.width).Number(text.height);
    };
    for (const auto& box : breakdown.boxes) write("box", box);
    for (const auto& line : breakdown.lines) write("line", line);
    return table;
}

Table TableOf(const RiskForm& risk, const std::string& currencySymbol) {
    const IterativeResults& results = risk.Results();
    Table table("", ColumnsOf({"Run"}, {"Finish", "% by then", "Total cost"}), 1);
    if (!RiskForm::HasData(results)) return table;
    const std::size_t runs = results.riskDates.size() - 1;
    for (std::size_t i = 0; i <= runs; ++i) {
        RowWriter writer(table);
        if (i == 0) {
            writer.Text("Most likely");
        } else {
            writer.Number(static_cast<std::int64_t>(i));
        }
        writer.Date(results.riskDates[i]);
        if (i == 0) {
            writer.Skip(1);
        } else {
            const double percent = 100.0 * static_cast<double>(i) / static_cast<double>(runs);
            writer.Text(LocalNumber(FormatNumber(static_cast<float>(percent))), percent);
        }
        writer.Amount(results.riskCosts[i], currencySymbol);
    }
    return table;
}

Table TableOf(const CrashForm& crash, const std::string& currencySymbol) {
    Columns columns = ColumnsOf({"Step"}, {"Finish", "Total cost"});
    columns.push_back({"Project", Alignment::Left});
    columns.push_back({"Task", Alignment::Left});
    for (const char* title : {"From", "To", "Multiplier"}) columns.push_back({title, Alignment::Right});
    Table table("", std::move(columns), 1);
    std::int64_t step = 0;
    for (const Vcrash& crashed : crash.Steps()) {
        const Vtask* task = crashed.task.Get();
        RowWriter writer(table, task ? RowSubject(crashed.task) : RowSubject());
        writer.Number(step++).Date(crashed.endDate).Amount(crashed.totalCost, currencySymbol);
        // The first is the starting point; of a later one the task may be gone.
        if (!task) continue;
        writer.Text(task->Project()->BuildNodeText()).Text(task->BuildNodeText());
        writer.Number(crashed.fromPercent).Number(crashed.toPercent);
        writer.Text(LocalNumber(FormatNumber(crashed.multiplier)), static_cast<double>(crashed.multiplier));
    }
    return table;
}

std::optional<Table> TableOf(const ChartForm& chart, const std::string& currencySymbol) {
    std::optional<Table> table;
    if (const auto* histogram = dynamic_cast<const HistogramForm*>(&chart)) {
        table = TableOf(histogram->Data());
    } else if (const auto* budget = dynamic_cast<const BudgetForm*>(&chart)) {
        table = TableOf(budget->Data(), currencySymbol);
    } else if (const auto* precedence = dynamic_cast<const PrecedenceForm*>(&chart)) {
        table = TableOf(*precedence);
    } else if (const auto* breakdown = dynamic_cast<const WorkBreakdownForm*>(&chart)) {
        table = TableOf(breakdown->Data());
    } else if (const auto* risk = dynamic_cast<const RiskForm*>(&chart)) {
        table = TableOf(*risk, currencySymbol);
    } else if (const auto* crash = dynamic_cast<const CrashForm*>(&chart)) {
        table = TableOf(*crash, currencySymbol);
    } else if (dynamic_cast<const GanttForm*>(&chart)) {
        table = TitledColumns(chart.TheVwindow());
    }
    if (table) table->caption = chart.Caption();
    return table;
}

}  // namespace vortan
