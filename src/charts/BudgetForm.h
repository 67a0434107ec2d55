#pragma once

#include <string>

#include "charts/Budget.h"
#include "charts/ChartForm.h"
#include "model/Workspace.h"

namespace vortan {

/// What the active project costs as it adds up: curves of the plan and of the journal in force, or of earned
/// value, over an axis of money.
class BudgetForm : public ChartForm {
  public:
    /// Both must outlive the form.
    BudgetForm(Workspace& workspace, const TextMetrics& metrics);

    std::string Name() const override { return "BudgetForm"; }
    void Start() override;
    /// As of the last Start.
    std::string Caption() const override { return data_.caption; }
    OptionsFrame Frame() override;
    Answers AnswersTo() const override {
        return {.newThisProject = Answer::Unload, .newJournal = Answer::Start};
    }
    /// Date, curve and money there, and how far plan and current are apart.
    std::string TipAt(int x, int y) const override;
    bool StaysAsBuilt() const override { return true; }

    /// At the next Start it is made one that can be shown.
    void SetChoice(const BudgetChoice& choice) { choice_ = choice; }
    const BudgetChoice& Choice() const { return choice_; }

    struct Shown : Budget {
        std::string caption;
    };
    /// As built.
    const Shown& Data() const { return data_; }

    double CostToY(Money cost) const;

  private:
    void LayOut() override;
    void Draw() override;
    std::string MakeCaption() const;
    void SetRange(const Vproject& project);
    void PlotCurve(const Budget::Curve& curve);
    void DrawKeyEntry(const Budget::Curve& curve, std::size_t entry);
    void DrawNames();
    /// The last day of a curve that is drawn.
    std::int32_t LastDrawn(const Budget::Curve& curve) const;
    /// Within the time columns.
    double DayToX(std::int32_t day) const;

    Workspace& workspace_;
    BudgetChoice choice_;
    std::string clicked_;  ///< the check box that was clicked last
    Shown data_;
    DateTime journal_;  ///< of what was built
};

}  // namespace vortan
