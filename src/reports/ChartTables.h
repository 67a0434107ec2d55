#pragma once

#include <optional>

#include "charts/BudgetForm.h"
#include "charts/ChartForm.h"
#include "charts/CrashForm.h"
#include "charts/Histogram.h"
#include "charts/PrecedenceForm.h"
#include "charts/RiskForm.h"
#include "charts/WorkBreakdown.h"
#include "reports/Table.h"

/// The tables behind the charts.
namespace vortan {

/// A row for each resource or department, a column for each period, a last row with the totals. Hours.
Table TableOf(const Histogram& histogram);
/// A row for each day, a column for each curve, empty outside the dates of the curve.
Table TableOf(const BudgetForm::Shown& budget, const std::string& currencySymbol);
/// A row for each box, with the numbers of those that it is before, and its texts.
Table TableOf(const PrecedenceForm& precedence);
/// A row for each box, then for each line of text; twips.
Table TableOf(const WorkBreakdown& breakdown);
/// The most likely run, then a row for each run by finish, with the share of the runs that end by then.
Table TableOf(const RiskForm& risk, const std::string& currencySymbol);
/// A row for each step, the starting point first, with the slice that it sped up.
Table TableOf(const CrashForm& crash, const std::string& currencySymbol);

/// None if the chart has no table.
std::optional<Table> TableOf(const ChartForm& chart, const std::string& currencySymbol);

}  // namespace vortan
