#pragma once

#include <functional>
#include <string>
#include <vector>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "solve/IterativeSolve.h"
#include "support/LoadedPlan.h"
#include "support/PlanGenerator.h"

namespace vortan {

/// A plan with its iterative solves, and short ways to build a small one. Everything starts on Monday
/// 2001-09-03; resources cost 50 an hour and work from 8 to 12 and from 13 to 17.
struct IterativePlan : LoadedPlan {
    static constexpr double kStart = 37137;

    IterativePlan() = default;
    explicit IterativePlan(std::string_view text) : LoadedPlan(text) {}

    Vproject* Project(std::int32_t rule = kNormalExtend) {
        Vproject* project = workspace.FindOrCreateProject("P");
        project->AddJournal(DateTime(kStart));
        project->SetSolveRules(rule);
        workspace.SetThisProject(project);
        return project;
    }
    /// Behind `required`; from the start date if that is empty. Estimates in minutes.
    Vtask* AddTask(std::int32_t id, int units, std::vector<std::int32_t> estimates,
                   const std::vector<std::int32_t>& required = {}) {
        Vtask* task = workspace.ThisProject()->FindOrCreateTask(id);
        task->SetEffortUnits(units);
        estimates.resize(3, estimates.front());
        task->SetOptimistic(estimates[0]);
        task->SetMostLikely(estimates[1]);
        task->SetPessimistic(estimates[2]);
        for (const std::int32_t each : required) Depend(task, each);
        if (required.empty()) Depend(task, 0);
        return task;
    }
    Vdependency* Depend(Vtask* task, std::int32_t required, int from = 100, int to = 0) {
        auto* dependency = workspace.NewVObject<Vdependency>();
        dependency->SetTask(task);
        dependency->SetFromPercent(static_cast<std::uint8_t>(from));
        dependency->SetToPercent(static_cast<std::uint8_t>(to));
        dependency->SetDepDate(DateTime(kStart));
        if (required != 0) dependency->SetTaskRequired(workspace.ThisProject()->FindTask(required));
        return dependency;
    }
    /// Eight hours a day, Monday to Friday.
    void Assign(Vtask* task, std::int32_t resource) {
        Vtemplate* crew = workspace.FindOrCreateTemplate("Crew");
        if (!workspace.ThisTemplate()) {
            crew->AddJournal(DateTime(kStart));
            crew->FindOrCreateShift("Standard");
            workspace.SetThisTemplate(crew);
        }
        Vresource* who = crew->FindOrCreateResource(resource);
        who->SetBurdenedRate(Money::FromUnits(50 * Money::kUnit));
        who->SetShift(crew->FindOrCreateShift("Standard"));
        auto* assignment = workspace.NewVObject<Vassignment>();
        assignment->SetTask(task);
        assignment->SetResourceRequired(who);
        assignment->SetHours(8);
        for (int day = 0; day < 9; ++day) assignment->SetWorkDay(day, day >= 2 && day <= 6);
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
