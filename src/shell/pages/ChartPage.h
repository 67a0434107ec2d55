#pragma once

#include <QGroupBox>
#include <QWidget>
#include <functional>
#include <memory>

#include "charts/ChartForm.h"
#include "paint/QtTextMetrics.h"
#include "shell/forms/PageForm.h"
#include "shell/widgets/SurfaceView.h"

namespace vortan {

/// A chart as a page of the work area, whatever it shows: its surface, scrolled, with its options in a frame
/// in front of it that can be dragged aside.
class ChartPage : public PageForm {
  public:
    using Maker = std::function<std::unique_ptr<ChartForm>(const TextMetrics&)>;
    /// Starts the chart of that name anew if it is in front, with its options as they are. Else makes it,
    /// starts it and shows it as far as it was drawn.
    static void Start(Desktop& desktop, const char* name, const Maker& make);

    std::optional<ShownSurface> Surface() override;
    bool ChangeFont() override;

    void NewThisProject() override { Do("ChartPage:NewThisProject", chart_->AnswersTo().newThisProject); }
    void NewThisTemplate() override { Do("ChartPage:NewThisTemplate", chart_->AnswersTo().newThisTemplate); }
    void NewJournal() override { Do("ChartPage:NewJournal", chart_->AnswersTo().newJournal); }
    void NewSolution() override { Do("ChartPage:NewSolution", chart_->AnswersTo().newSolution); }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    ChartPage(Desktop& desktop, const Maker& make);
    QGroupBox* NewOptionsFrame(const ChartForm::OptionsFrame& frame);
    QWidget* NewOption(const ChartForm::Option& option);
    /// In the font of the form and for the printer's page, from what is in memory. A fault of the chart is
    /// told, and leaves it as far as it was drawn.
    void Restart();
    void PlaceOptions();
    void Do(const char* section, ChartForm::Answer answer);

    std::unique_ptr<QtTextMetrics> metrics_;
    std::unique_ptr<ChartForm> chart_;
    std::unique_ptr<SurfaceView> view_;
    QGroupBox* options_ = nullptr;
};

}  // namespace vortan
