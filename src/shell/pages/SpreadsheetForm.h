#pragma once

#include <QLabel>
#include <QPushButton>
#include <memory>
#include <vector>

#include "paint/QtTextMetrics.h"
#include "reports/ReportKinds.h"
#include "shell/forms/PageForm.h"
#include "shell/pages/SheetTyping.h"
#include "shell/widgets/BehindLine.h"
#include "shell/widgets/GridView.h"

namespace vortan {

/// The one page that shows a report, whichever: a snapshot, which says when the plan has gone on.
class SpreadsheetForm : public PageForm {
  public:
    /// Shows a kind of ReportKinds in place of the page in front. Its needs must be met.
    static void Start(Desktop& desktop, const ReportKind& kind);
    /// The report in front, or none.
    static SpreadsheetForm* InFront(Desktop& desktop);

    QString PageName() override;
    std::optional<ShownSurface> Surface() override;
    bool ChangeFont() override;
    bool Find(const FindWords& words, FindFrom from) override;
    void NewThisProject() override { Unload(); }
    void NewThisTemplate() override { Unload(); }
    void NewJournal() override { behind_->Show(); }
    void NewSolution() override {
        if (!typing_) behind_->Show();  // what was entered is what it shows
    }
    void Unload() override;
    void ObjectsChanged(const std::vector<Change>&) override { behind_->Show(); }

    const ReportKind& Kind() const { return kind_; }
    /// In the order in which it is shown.
    Table Shown() const { return table_.InOrder(order_); }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    SpreadsheetForm(Desktop& desktop, const ReportKind& kind);
    QWidget* NewMonthButtons();
    /// From the model, in the font of the form. False, after a message: there is no data.
    bool Build();
    /// What is there goes on the surface, in the order that was chosen.
    void Fill();
    void BuildAnew();
    /// In the same place, whatever has changed.
    void Rebuild();
    /// Shows what an object has become without building the rest. False: it takes that.
    bool Refresh(const RowSubject& subject);
    void TurnMonth(bool forward);
    void CellClick(Qt::MouseButton button, int row, int col);
    void SortBy(int col);
    void Open(int row);
    void CopySelection() const;
    void StartTyping();
    /// The row of the table that a row of the surface shows.
    int TableRow(int surfaceRow) const;

    const ReportKind& kind_;
    std::unique_ptr<QtTextMetrics> metrics_;
    Vwindow vwindow_;
    std::unique_ptr<GridView> view_;
    BehindLine* behind_;
    std::unique_ptr<SheetTyping> typing_;               // in the two entry tables
    QPushButton *before_ = nullptr, *after_ = nullptr;  // of a report of one month
    Table table_;
    std::vector<std::int32_t> order_;  // empty: as built
    int sortedBy_ = -1;
    bool descending_ = false;
};

}  // namespace vortan
