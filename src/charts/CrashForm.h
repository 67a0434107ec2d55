#pragma once

#include <functional>
#include <string>
#include <vector>

#include "charts/ChartForm.h"
#include "model/Workspace.h"
#include "solve/IterativeResults.h"

namespace vortan {

/// The curve of a crash solve: what it costs to finish sooner. A click asks what it takes to finish by that
/// date. Computes nothing from the network.
class CrashForm : public ChartForm {
  public:
    /// All must outlive the form; `crashList` may become empty when another project is active.
    CrashForm(const Workspace& workspace, const std::vector<Vcrash>& crashList, const TextMetrics& metrics);

    std::string Name() const override { return "CrashForm"; }
    void Start() override;
    std::string Caption() const override;
    OptionsFrame Frame() override;
    Answers AnswersTo() const override { return {.newThisProject = Answer::Unload}; }

    /// Shows the finish that a click chose and the multipliers that reach it.
    std::function<void(DateTime finish, std::vector<Vcrash> multipliers)> ShowCrashData;

    /// The step that finishes on or after `clicked` and is crashed the most, but never the starting point;
    /// the index of its record. There must be a step.
    static std::size_t FindStep(const std::vector<Vcrash>& crashList, DateTime clicked);
    /// Each slice once with the multiplier that it has at that step: the highest first, then by project, task
    /// and the later part of a task.
    static std::vector<Vcrash> MultipliersAt(const std::vector<Vcrash>& crashList, std::size_t step);

    const std::vector<Vcrash>& Steps() const { return crashList_; }

    double CostToY(Money cost) const;

  private:
    void LayOut() override;
    void Draw() override;
    void PlotCost();
    void DateClick(DateTime clicked) override;

    const Workspace& workspace_;
    const std::vector<Vcrash>& crashList_;
    bool totalCost_ = false;
    Money baseCost_, maxCost_;  ///< at the foot of the axis, and the height of the axis
    double increment_ = 1;      ///< money
};

}  // namespace vortan
