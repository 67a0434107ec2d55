#pragma once

#include <string>

#include "charts/ChartForm.h"
#include "model/Workspace.h"
#include "solve/IterativeResults.h"

namespace vortan {

/// The result of a risk solve as a curve of finish dates: how likely it is to finish by a date, or what the
/// runs cost that finished on it. Computes nothing from the network.
class RiskForm : public ChartForm {
  public:
    /// `workspace`, `results` and `metrics` must outlive the form. The top of the cost axis is `highestCost`
    /// or what the results need, if that is more: so one risk solve compares with the next.
    RiskForm(const Workspace& workspace, const IterativeResults& results, Money highestCost,
             const TextMetrics& metrics);

    /// What is drawn: how likely it is to finish by a date, the costs of the runs by day, each run by finish
    /// and cost, or how far the leading tasks move the median finish.
    enum class View { Probability, TotalCost, Joint, Tornado };

    /// Without that there is nothing to show.
    static bool HasData(const IterativeResults& results) {
        return results.riskDates.size() > 1 && results.riskDates[1].IsSet();
    }

    /// Of the runs. There must be data.
    static Money HighestCost(const IterativeResults& results);

    std::string Name() const override { return "RiskForm"; }
    void Start() override;
    std::string Caption() const override;
    OptionsFrame Frame() override;
    Answers AnswersTo() const override { return {.newThisProject = Answer::Unload}; }
    std::string TipAt(int x, int y) const override;
    Subject SubjectAt(int x, int y) const override;
    /// What drives the spread, as far as that was asked for.
    std::optional<SideList> Beside() const override;

    void SetView(View view) { view_ = view; }
    View TheView() const { return view_; }
    /// The tasks of the tornado, from the top; those of which gain and loss are known and move something.
    std::vector<const RiskDriver*> Leading() const;

    const IterativeResults& Results() const { return results_; }

    /// The height of so many iterations out of all.
    double IndexToY(std::int32_t iterations) const;
    double CostToY(double cost) const;

  private:
    void LayOut() override;
    void Draw() override;
    void PlotProbability();
    void PlotMostLikely();
    void PlotTotalCost();
    void PlotJoint();
    void PlotTornado();
    DateTime Median() const;
    const RiskDriver* DriverAt(int y) const;
    std::int32_t Iterations() const { return static_cast<std::int32_t>(results_.riskDates.size()) - 1; }
    DateTime Date(std::int32_t i) const { return results_.riskDates[static_cast<std::size_t>(i)]; }
    Money Cost(std::int32_t i) const { return results_.riskCosts[static_cast<std::size_t>(i)]; }

    const Workspace& workspace_;
    const IterativeResults& results_;
    Money maxCost_;
    View view_ = View::Probability;
    double increment_ = 1;  ///< money
};

}  // namespace vortan
