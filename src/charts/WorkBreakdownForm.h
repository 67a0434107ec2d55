#pragma once

#include <optional>
#include <string>

#include "charts/ChartForm.h"
#include "charts/WorkBreakdown.h"
#include "model/Workspace.h"

namespace vortan {

/// The work breakdown structure of the active project. Asks once for the number of levels, if it matters;
/// without an answer it is empty.
class WorkBreakdownForm : public ChartForm {
  public:
    /// Both must outlive the form.
    WorkBreakdownForm(const Workspace& workspace, const TextMetrics& metrics)
        : ChartForm(Vwindow::Style::Free, metrics), workspace_(workspace) {}

    std::string Name() const override { return "WorkBreakdownForm"; }
    void Start() override;
    std::string Caption() const override;
    Answers AnswersTo() const override { return {.newThisProject = Answer::Unload}; }
    std::string TipAt(int x, int y) const override;
    Subject SubjectAt(int x, int y) const override;
    bool IsEmpty() const override { return levelLimit_ < 0 || data_.boxes.empty(); }
    bool StaysAsBuilt() const override { return true; }

    /// Answers the question beforehand.
    void SetLevels(std::int32_t levels) { levels_ = levels; }
    /// As of the last Start.
    const WorkBreakdown& Data() const { return data_; }

  private:
    void LayOut() override;
    void Draw() override;
    std::int32_t PromptForLevelLimit() const;
    const WorkBreakdown::Text* TextAt(int x, int y) const;

    const Workspace& workspace_;
    LevelLimit levelLimit_ = 0;
    std::optional<std::int32_t> levels_;
    WorkBreakdown data_;
};

}  // namespace vortan
