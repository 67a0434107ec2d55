#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "charts/ChartForm.h"
#include "charts/Histogram.h"
#include "model/Workspace.h"

namespace vortan {

/// The hours of the active template's resources by period, as stacked bars, with a key below. It stays as it
/// was built.
class HistogramForm : public ChartForm {
  public:
    /// All must outlive the form.
    HistogramForm(Workspace& workspace, const Solver& solver, const TextMetrics& metrics);

    std::string Name() const override { return "HistogramForm"; }
    void Start() override;
    std::string Caption() const override;
    OptionsFrame Frame() override;
    Answers AnswersTo() const override { return {.newThisTemplate = Answer::Unload}; }
    /// Resource, period and hours of the bar there, and the tasks that hold the most of it.
    std::string TipAt(int x, int y) const override;
    Subject SubjectAt(int x, int y) const override;
    bool IsEmpty() const override { return data_.rows.empty(); }
    bool StaysAsBuilt() const override { return true; }

    /// What a click on "Filter" does: it may ask, and set the filter.
    std::function<void()> FilterCommandClick;
    const std::optional<HistogramFilter>& Filter() const { return filter_; }

    // As the options are at the next Start.
    void SetFilter(std::optional<HistogramFilter> filter) { filter_ = std::move(filter); }
    void SetByDepartment(bool value) { byDepartment_ = value; }
    void SetCrosshatching(bool value) { crosshatching_ = value; }

    /// As built.
    const Histogram& Data() const { return data_; }

  private:
    struct Bar {
        const Histogram::Row* row = nullptr;  ///< none: there is no bar
        std::int32_t period = 0;
    };

    void LayOut() override;
    void Draw() override;
    void Build();
    void FitKey();
    void DrawBars();
    void DrawBar(std::int32_t period, std::size_t row, double top, double base);
    void DrawKey();
    double Height(std::int64_t tenths) const;
    Bar BarAt(int x, int y) const;

    Workspace& workspace_;
    const Solver& solver_;
    bool byDepartment_ = false, crosshatching_ = true;
    std::optional<HistogramFilter> filter_;
    Histogram data_;
    bool built_ = false;        ///< since the layout began
    int keyRows_ = 1;           ///< entries in a column of the key
    std::vector<int> keyLeft_;  ///< of these columns
};

}  // namespace vortan
