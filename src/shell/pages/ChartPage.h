#pragma once

#include <QGroupBox>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "charts/ChartForm.h"
#include "paint/QtTextMetrics.h"
#include "reports/Table.h"
#include "shell/forms/PageForm.h"
#include "shell/widgets/BehindLine.h"
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

    /// The chart of that name, if it is in front.
    static ChartForm* InFront(Desktop& desktop, const char* name);

    std::optional<ShownSurface> Surface() override;
    bool ChangeFont() override;

    bool Find(const FindWords& words, FindFrom from) override;
    void NewThisProject() override { Do("ChartPage:NewThisProject", chart_->AnswersTo().newThisProject); }
    void NewThisTemplate() override { Do("ChartPage:NewThisTemplate", chart_->AnswersTo().newThisTemplate); }
    void NewJournal() override { Do("ChartPage:NewJournal", chart_->AnswersTo().newJournal); }
    void NewSolution() override;
    void ObjectsChanged(const std::vector<Change>& changes) override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    ChartPage(Desktop& desktop, const Maker& make);
    void ConnectView();
    void RefreshSideList();
    QWidget* NewSideList(const ChartForm::SideList& list);
    QGroupBox* NewOptionsFrame(const ChartForm::OptionsFrame& frame);
    QWidget* NewOption(const ChartForm::Option& option);
    QWidget* NewButton(const ChartForm::Option& option);
    QWidget* NewList(const ChartForm::Option& option);
    /// Shows the options as the chart has them now.
    void RefreshOptions();
    /// In the font of the form and for the printer's page, from what is in memory. A fault of the chart is
    /// told, and leaves it as far as it was drawn.
    void Restart();
    void PlaceOptions();
    void Do(const char* section, ChartForm::Answer answer);
    /// The plan or its solution has changed: a chart that stays as it was built says so.
    void FallBehind();
    void BuildAnew();
    /// What a drag asked for, with the refusals of the entry form.
    void Grant(const ChartForm::Wish& wish);
    void ZoomAt(const QPoint& pixel, int steps);
    /// Opens the entry form of a task or resource, if it is one.
    void Open(const ChartForm::Subject& subject);
    bool Walk(int key, bool moves);
    std::optional<QRect> Cursor() const;
    /// The places that show something: the rows with their cells, then the texts of the picture.
    int Places() const;
    QRect PlaceOf(int place) const;
    QString TextOf(int place) const;

    /// What assistive technology reads: the places that have a text, then the rows of the table behind the
    /// chart, if it has one.
    struct SpokenParts {
        std::vector<int> places;
        std::optional<Table> table;
    };
    const SpokenParts& Spoken() const;
    SurfaceView::Place SpokenPlace(int part) const;
    void ShowSurface();

    mutable std::optional<SpokenParts> spoken_;  // none before it is asked for
    std::unique_ptr<QtTextMetrics> metrics_;
    std::unique_ptr<ChartForm> chart_;
    std::unique_ptr<SurfaceView> view_;
    QGroupBox* options_ = nullptr;
    bool optionsBeside_ = false;
    std::vector<QWidget*> optionControls_;             // in the order of the frame
    QWidget* sideList_ = nullptr;                      // none if the chart has none
    std::vector<std::vector<std::string>> sideTexts_;  // that it shows
    BehindLine* behindLine_ = nullptr;
    int found_ = -1;  // the place that a search has marked last
};

}  // namespace vortan
