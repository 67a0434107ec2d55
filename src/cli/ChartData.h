#pragma once

#include <string>

#include "charts/BudgetForm.h"
#include "charts/Histogram.h"
#include "charts/PrecedenceForm.h"
#include "charts/WorkBreakdown.h"
#include "cli/JsonWriter.h"

/// What charts show, as data for other programs.
namespace vortan {

void WriteChartJson(JsonWriter& json, const Histogram& histogram);
void WriteChartJson(JsonWriter& json, const BudgetForm::Shown& budget);
void WriteChartJson(JsonWriter& json, const PrecedenceForm& precedence);
void WriteChartJson(JsonWriter& json, const WorkBreakdown& breakdown);

}  // namespace vortan
