// Histogram and budget as data.

#include <algorithm>

#include "cli/ChartData.h"
#include "model/ValueText.h"

namespace vortan {
namespace {

double Hours(std::int64_t tenths) {
    return static_cast<double>(tenths) / 10;
}

/// Calls `visit(tenths)` for each period.
template <class Visit>
void ForEachPeriod(const Histogram& histogram, const Histogram::Row& row, Visit&& visit) {
    auto cell = row.cells.begin();
    for (std::int32_t period = 0; period < histogram.Periods(); ++period) {
        const bool here = cell != row.cells.end() && cell->period == period;
        visit(here ? cell++->tenths : std::int64_t{0});
    }
}

}  // namespace

void WriteChartJson(JsonWriter& json, const Histogram& histogram) {
    json.Object([&] {
        json.Member("chart", "histogram");
        json.Member("template", histogram.templateName);
        json.Member("increment", histogram.increment);
        json.Member("maxHours", histogram.maxHours);
        json.ArrayMember("periods", [&] {
            for (std::size_t i = 0; i < histogram.totals.size(); ++i) {
                json.Object([&] {
                    json.Member("from", DateTime(histogram.bounds[i]));
                    json.Member("to", DateTime(histogram.bounds[i + 1]));
                    json.Member("total", Hours(histogram.totals[i]));
                });
            }
        });
        json.ArrayMember("rows", [&] {
            for (const auto& row : histogram.rows) {
                json.Object([&] {
                    json.Member("key", row.key);
                    json.Member("label", row.label);
                    json.ArrayMember("hours", [&] {
                        ForEachPeriod(histogram, row,
                                      [&](std::int64_t tenths) { json.Value(Hours(tenths)); });
                    });
                });
            }
        });
    });
}

std::string ChartCsv(const Histogram& histogram) {
    CsvWriter csv;
    csv.Cell("Key");
    csv.Cell("Label");
    for (std::size_t i = 0; i < histogram.totals.size(); ++i)
        csv.Cell(FormatShortDate(DateTime(histogram.bounds[i])));
    csv.EndLine();
    for (const auto& row : histogram.rows) {
        csv.Cell(row.key);
        csv.Cell(row.label);
        ForEachPeriod(histogram, row, [&](std::int64_t tenths) { csv.Cell(Hours(tenths)); });
        csv.EndLine();
    }
    csv.Cell("");
    csv.Cell("Total");
    for (const std::int64_t total : histogram.totals) csv.Cell(Hours(total));
    csv.EndLine();
    return csv.Text();
}

void WriteChartJson(JsonWriter& json, const BudgetForm::Shown& budget) {
    json.Object([&] {
        json.Member("chart", "budget");
        json.Member("project", budget.project);
        json.Member("caption", budget.caption);
        json.Member("increment", budget.increment);
        json.Member("maxCost", budget.maxCost);
        json.ArrayMember("curves", [&] {
            for (const auto& curve : budget.curves) {
                json.Object([&] {
                    json.Member("label", curve.label);
                    json.Member("cut", curve.cut);
                    json.ArrayMember("points", [&] {
                        for (std::int32_t day = curve.firstDay; day <= curve.LastDay(); ++day) {
                            json.Object([&] {
                                json.Member("date", DateTime(day + 1));
                                json.Member("value", curve.At(day));
                            });
                        }
                    });
                });
            }
        });
    });
}

std::string ChartCsv(const BudgetForm::Shown& budget) {
    CsvWriter csv;
    csv.Cell("Date");
    for (const auto& curve : budget.curves) csv.Cell(curve.label);
    csv.EndLine();
    std::int32_t first = INT32_MAX, last = INT32_MIN;
    for (const auto& curve : budget.curves) {
        first = std::min(first, curve.firstDay);
        last = std::max(last, curve.LastDay());
    }
    for (std::int32_t day = first; day <= last && !budget.curves.empty(); ++day) {
        csv.Cell(FormatShortDate(DateTime(day + 1)));
        for (const auto& curve : budget.curves) {
            if (day < curve.firstDay || day > curve.LastDay()) {
                csv.Cell("");
            } else {
                csv.Cell(curve.At(day).ToDouble());
            }
        }
        csv.EndLine();
    }
    return csv.Text();
}

}  // namespace vortan
