#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "charts/ChartForm.h"
#include "model/Workspace.h"
#include "persist/Settings.h"
#include "solve/IterativeResults.h"
#include "solve/Solver.h"

namespace vortan {

/// What charts are made of. All but the money must outlive the chart.
struct ChartSource {
    Workspace& workspace;
    Settings& settings;
    const IterativeResults& results;
    const TextMetrics& metrics;
    const Solver& solver;
    Money highestCost{};  ///< that a risk plot must have room for
};

/// What must be there before a chart is made.
enum class ChartNeeds { Solution, RiskResults, CrashSteps };

/// A chart, for whoever offers charts by name.
struct ChartKind {
    const char* name;  ///< in commands
    const char* form;  ///< under which settings keep its font
    const char* title;
    ChartNeeds needs;
    std::unique_ptr<ChartForm> (*make)(const ChartSource& source);
};

std::span<const ChartKind> ChartKinds();
/// Fault if there is none of that name.
const ChartKind& ChartKindOf(std::string_view name);

}  // namespace vortan
