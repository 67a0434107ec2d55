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

}  // namespace vortan
