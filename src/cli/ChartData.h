#pragma once

#include <string>

#include "charts/BudgetForm.h"
#include "charts/Histogram.h"
#include "charts/PrecedenceForm.h"
#include "charts/WorkBreakdown.h"
#include "cli/JsonWriter.h"
#include "reports/CsvFile.h"

/// What charts show, as data for other programs.
namespace vortan {

void WriteChartJson(JsonWriter& json, const Histogram& histogram);
void WriteChartJson(JsonWriter& json, const BudgetForm::Shown& budget);
void WriteChartJson(JsonWriter& json, const PrecedenceForm& precedence);
void WriteChartJson(JsonWriter& json, const WorkBreakdown& breakdown);

/// A line for each resource or department, a column for each period, a last line with the totals.
std::string ChartCsv(const Histogram& histogram);
/// A line for each day, a column for each curve, empty outside the dates of the curve.
std::string ChartCsv(const BudgetForm::Shown& budget);
/// A line for each box, with the numbers of those that it is before and, last, its texts.
std::string ChartCsv(const PrecedenceForm& precedence);
/// A line for each box, then for each line of text.
std::string ChartCsv(const WorkBreakdown& breakdown);

}  // namespace vortan
