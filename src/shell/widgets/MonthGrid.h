#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "charts/DrawList.h"
#include "shell/widgets/Readable.h"

namespace vortan {

/// A month as a grid of seven columns, Sunday first, with a heading and six rows of days, each in a colour of
/// its own. The cells fill the widget, however large it is.
class MonthGrid : public QWidget, public Readable {
  public:
    static constexpr int kRows = 7, kCols = 7;

    MonthGrid();

    /// `firstWeekday` is that of day 1, 0 for Sunday; `colors` has one for each day.
    void SetMonth(int firstWeekday, std::vector<Color> colors);
    /// Frames a day; 0 none.
    void SetSelected(int day);
    /// 0 for a cell that is no day.
    int DayAt(int row, int col) const;
    /// What the cell is painted in. Row 0 is the heading.
    QColor CellColor(int row, int col) const;
    QRect CellRect(int row, int col) const;

    /// What is read out of a day from 1 on.
    std::function<QString(int day)> TextOf;
    int PartCount() const override { return static_cast<int>(colors_.size()); }
    Part PartAt(int part) const override;
    int CurrentPart() const override { return selected_ - 1; }

    /// The left button went down on a cell, or twice; 0 beside the days.
    std::function<void(int day)> Click, DblClick;

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override { return minimumSizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    int DayUnder(const QPoint& point) const;

    int firstWeekday_ = 0, selected_ = 0;
    std::vector<Color> colors_;
};

}  // namespace vortan
