#pragma once

#include <QWidget>
#include <array>
#include <functional>
#include <string>

#include "shell/widgets/Readable.h"

namespace vortan {

/// The day of a shift as a painted grid: a row for each hour, a column for each five minutes, a letter and
/// its colour in each cell. Cells are numbered 0 to 287 in reading order, and a selection is the run of cells
/// between the one where it began and the current one, whichever comes first.
///
/// While a selection is open its cells are white. It is ended by ReplaceSelectedCells alone, or by moving on
/// without Shift.
class ShiftGrid : public QWidget, public Readable {
  public:
    static constexpr int kRows = 24, kColumns = 12, kCells = kRows * kColumns;

    ShiftGrid();

    char Letter(int cell) const { return letters_[static_cast<std::size_t>(cell)]; }
    void SetLetter(int cell, char letter);
    /// The 12 letters of an hour.
    std::string Row(int hour) const;
    static QColor LetterColour(char letter);

    bool Selecting() const { return selecting_; }
    bool IsSelected(int cell) const;
    int AnchorCell() const { return anchor_; }
    int CurrentCell() const { return current_; }
    /// The clock times of the selection, "8:00am to 9:15am"; empty with none.
    std::string SelectionText() const;
    /// Gives the selected cells that letter and ends the selection; NUL leaves the letters as they were.
    void ReplaceSelectedCells(char letter);
    /// After each change of the selection.
    std::function<void()> SelectionChanged;

    /// The cell at or nearest to a position.
    int CellAt(QPoint position) const;
    QRect CellRect(int cell) const;

    /// The cells: "8:05am: Normal".
    int PartCount() const override { return kCells; }
    Part PartAt(int part) const override;
    int CurrentPart() const override { return current_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    int HeadWidth() const;
    int CellWidth() const;
    int ColumnEdge(int column) const;
    int RowEdge(int row) const;
    QRect GridRect(int row, int column) const;
    QFont CellFont() const;
    void PaintHeads(QPainter& painter) const;
    void PaintCell(QPainter& painter, int cell) const;
    void PaintOutline(QPainter& painter, int cell) const;
    int Target(const QKeyEvent& event) const;
    void Select(int anchor, int current, bool selecting);

    std::array<char, kCells> letters_;
    int anchor_ = 0;
    int current_ = 0;
    bool selecting_ = false;
};

}  // namespace vortan
