#pragma once

#include <functional>

#include "shell/widgets/SurfaceView.h"

namespace vortan {

/// A table on screen whose cells can be selected as in any spreadsheet: by clicks, drags, Shift, arrow keys
/// and Ctrl+A.
class GridView : public SurfaceView {
  public:
    using SurfaceView::SurfaceView;

    /// Rows and columns of the surface, both ends inclusive; rows from 1, below the titles.
    struct Range {
        int top = 0, left = 0, bottom = -1, right = -1;
        bool Empty() const { return bottom < top || right < left; }
    };
    Range Selection() const;
    /// Within what there is.
    void Select(const Range& range);

    int CurrentPart() const override;
    /// Selects the row, in sight.
    void SelectRow(int row);

    /// A click on a cell or, in row 0, on a title, with no drag behind it.
    std::function<void(Qt::MouseButton button, int row, int col)> CellClick;
    std::function<void(int row)> RowDoubleClick;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    struct Place {
        int row = -1, col = -1;
        friend bool operator==(const Place&, const Place&) = default;
    };
    /// The cell under a pixel; beyond the last ones, those.
    Place PlaceAt(const QPoint& pixel) const;
    int FirstRow() const { return Surface().FixedRows(); }
    int LastRow() const { return Surface().Rows() - 1; }
    int LastCol() const { return Surface().Cols() - 1; }
    /// The corner that moves goes to a cell, in view; without `extend` the other one goes too.
    void GoTo(Place place, bool extend);
    /// In pixels of the unscrolled surface.
    QRect PixelsOf(const Range& range) const;
    void MoveBy(int rows, int cols, bool extend);
    int RowsInView() const;

    Place anchor_, current_, pressed_;
    bool moved_ = false;  // since the button went down
};

}  // namespace vortan
