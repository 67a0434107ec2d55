#include "charts/ChartKinds.h"

#include <algorithm>

#include "charts/BudgetForm.h"
#include "charts/CrashForm.h"
#include "charts/GanttForm.h"
#include "charts/HistogramForm.h"
#include "charts/PrecedenceForm.h"
#include "charts/RiskForm.h"
#include "charts/WorkBreakdownForm.h"
#include "model/Fault.h"

namespace vortan {

namespace {

using Form = std::unique_ptr<ChartForm>;

constexpr ChartKind kKinds[] = {
    {"gantt", "GanttForm", "Mechanized Gantt chart", ChartNeeds::Solution,
     [](const ChartSource& source) -> Form {
         return std::make_unique<GanttForm>(source.workspace, source.settings, source.metrics);
     }},
    {"histogram", "HistogramForm", "resource histogram", ChartNeeds::Solution,
     [](const ChartSource& source) -> Form {
         return std::make_unique<HistogramForm>(source.workspace, source.solver, source.metrics);
     }},
    {"budget", "BudgetForm", "budget and earned value plot", ChartNeeds::Solution,
     [](const ChartSource& source) -> Form {
         return std::make_unique<BudgetForm>(source.workspace, source.metrics);
     }},
    {"precedence", "PrecedenceForm", "precedence diagram", ChartNeeds::Solution,
     [](const ChartSource& source) -> Form {
         return std::make_unique<PrecedenceForm>(source.workspace, source.solver, source.metrics);
     }},
    {"wbs", "WorkBreakdownForm", "work breakdown structure", ChartNeeds::Solution,
     [](const ChartSource& source) -> Form {
         return std::make_unique<WorkBreakdownForm>(source.workspace, source.metrics);
     }},
    {"risk", "RiskForm", "risk plot", ChartNeeds::RiskResults,
     [](const ChartSource& source) -> Form {
         return std::make_unique<RiskForm>(source.workspace, source.results, source.highestCost,
                                           source.metrics);
     }},
    {"crash", "CrashForm", "crash plot", ChartNeeds::CrashSteps,
     [](const ChartSource& source) -> Form {
         return std::make_unique<CrashForm>(source.workspace, source.results.crashList, source.metrics);
     }},
};

}  // namespace

std::span<const ChartKind> ChartKinds() {
    return kKinds;
}

const ChartKind& ChartKindOf(std::string_view name) {
    const auto* const kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                          [&](const ChartKind& each) { return each.name == name; });
    if (kind == std::end(kKinds)) AssertionFailed();
    return *kind;
}

}  // namespace vortan
