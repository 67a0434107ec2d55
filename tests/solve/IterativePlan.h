#pragma once

#include <functional>
#include <string>
#include <vector>

#include "solve/IterativeSolve.h"
#include "support/LoadedPlan.h"
#include "support/PlanGenerator.h"

namespace vortan {

/// Two resources that work from 8 to 12 and from 13 to 17, and a project that starts on Monday 2001-09-03.
inline const std::string kCrew = "template Crew; resource 1 $50; resource 2 $50; project P rule 1;";

/// A plan with its iterative solves.
struct IterativePlan : LoadedPlan {
    static constexpr double kStart = 37137;

    IterativePlan() = default;
    explicit IterativePlan(std::string_view text) : LoadedPlan(text) {}
    /// Makes `words` behind those of kCrew, and solves.
    void MakeSolved(const std::string& words) {
        Make(kCrew + words);
        Solve();
    }
    /// Spreads all estimates around the most likely ones, and solves.
    void Spread(int percentBelow, int percentAbove) {
        for (Vproject* project : workspace.ProjectList()) {
            for (Vtask* task : project->TaskList()) {
                task->SetOptimistic(task->MostLikely() * (100 - percentBelow) / 100);
                task->SetPessimistic(task->MostLikely() * (100 + percentAbove) / 100);
            }
        }
        Solve();
    }
    const IterativeResults& Results() const { return iterative.Results(); }

    IterativeSolve iterative{workspace, solver};
};

/// A progress that does something at each report.
struct TestProgress : IterativeProgress {
    explicit TestProgress(std::function<bool(int)> action) : act(std::move(action)) {}
    bool Report(int percent, double) override { return act(percent); }
    std::function<bool(int)> act;
};

/// All digits of what the iterative solves have found.
inline std::string TextOf(const IterativeResults& results) {
    std::string text = std::to_string(results.riskIterations);
    for (std::size_t i = 0; i < results.riskDates.size(); ++i) {
        char line[80];
        std::snprintf(line, sizeof line, "\n%.17g %.4f", results.riskDates[i].Days(),
                      results.riskCosts[i].ToDouble());
        text += line;
    }
    for (const Vcrash& step : results.crashList) {
        char line[160];
        std::snprintf(line, sizeof line, "\n%d %d-%d %.9g %.17g %.4f", step.task ? step.task->TaskID() : 0,
                      step.fromPercent, step.toPercent, static_cast<double>(step.multiplier),
                      step.endDate.Days(), step.totalCost.ToDouble());
        text += line;
    }
    return text;
}

}  // namespace vortan
