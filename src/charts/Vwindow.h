#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "charts/TextMetrics.h"
#include "model/DateTime.h"

namespace vortan {

/// 0x00BBGGRR: red in the low byte.
using Color = std::uint32_t;
constexpr Color kBlack = 0, kRed = 255, kGreen = 65280, kYellow = 65535, kBlue = 0xFF0000, kWhite = 0xFFFFFF;

/// One drawn thing, in twips on the whole unscrolled surface. A later one lies over an earlier one.
struct DrawItem {
    enum class Kind : std::uint8_t { Line, Rect, Milestone, Triangle, Text };
    Kind kind = Kind::Line;
    std::uint8_t hatch = 0;  ///< Rect: 0 solid, 1 transparent, 2 to 7 the kinds of lines
    std::uint8_t apex = 0;   ///< Triangle: 3 up, 5 down, 7 right
    std::uint8_t width = 1;  ///< Line: pixels
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0;  ///< corners in order, but for a line, which goes from 1 to 2
    Color border = kBlack;   ///< of a line or text: its colour
    Color fill = kWhite;
    std::string text;        ///< lines are separated by "\r\n"
};

/// How a column stands in its cells.
enum class Alignment { Left = 1, Center = 4, Right = 7, RightBottom = 8, DayColumn = -2 };

/// The one surface on which every chart and every spreadsheet shows its content: a grid of titled columns
/// and rows of text, a time scale that turns dates into positions, and drawing over both. It knows nothing of
/// windows: a painter plays it on screen, paper and into files.
///
/// All positions are twips on the unscrolled surface, 0, 0 being the top left corner of the heading row.
/// A form builds the grid in its RedoLayout handler (ClearLayout, AddColumn and AddTimeColumns, EndColumns on
/// a table, AddRow and Cell, EndLayout) and draws in its RedoGraphics handler, which EndLayout calls before it
/// returns, and which ends with EndGraphics. A form must have all its state set before it calls SetDateRange
/// or EndLayout.
class Vwindow {
  public:
    enum class Style { Table = 0, Free = 1, Time = 2 };

    /// `metrics` must outlive the surface, or its replacement by SetFont.
    Vwindow(Style style, const TextMetrics& metrics);

    // ---- what the owning form does when it is asked to; missing ones are left out
    std::function<void()> RedoLayout, RedoGraphics;
    std::function<void(int button, int row, int col)> CellClick;
    std::function<void(DateTime when)> DateClick;
    std::function<void(int button, int x, int y)> MouseDown, MouseUp, MouseMove;
    std::function<void()> ScrollGrid;

    // ---- grid
    void ClearLayout();
    void AddColumn(const std::string& title, Alignment alignment);
    void AddTimeColumns();
    void EndColumns(bool firstRowFixed = false);
    /// Without `row` at the end; with it, the rows from there on move down by one.
    void AddRow();
    void AddRow(int row);
    /// A row appended to a finished layout takes its place.
    void RefreshRows();
    /// Computes all positions, appends the footer if `footerLines` is above 0, and has the picture drawn.
    void EndLayout(int fixedCols, double footerLines);
    const std::string& Cell(int row, int col) const;
    void SetCell(int row, int col, const std::string& text);
    Color CellColor(int row, int col) const;
    void SetCellColor(int row, int col, Color color);
    bool CellMarkB(int row, int col) const;  ///< bold
    void SetCellMarkB(int row, int col, bool mark);
    bool CellMarkC(int row, int col) const;  ///< centred
    void SetCellMarkC(int row, int col, bool mark);
    /// The heading row and a footer are counted.
    int Rows() const;
    int Cols() const;
    int RowPos(int row) const;  ///< 0 to Rows
    int ColPos(int col) const;  ///< 0 to Cols
    int GridStep() const;
    Style TheStyle() const { return style_; }
    int FixedRows() const;
    int FixedCols() const;
    const std::string& ColumnTitle(int col) const;
    Alignment ColumnAlignment(int col) const;
    bool IsTimeColumn(int col) const;
    bool HasFooter() const;
    int ContentWidth() const;
    int ContentHeight() const;

    // ---- time scale
    enum class Period { Day, Week, Month, Quarter };
    /// Stores the range and has the layout made.
    void SetDateRange(DateTime start, DateTime finish);
    void GetShownDates(DateTime& start, DateTime& finish) const;
    int DateToX(DateTime when) const;
    /// The reverse, for a position in the time columns.
    DateTime XToDate(int x) const;
    Period ThePeriod() const;
    /// The labels of the upper heading line: text and the columns from first up to, not including, last.
    struct UpperLabel {
        std::string text;
        int firstCol, lastCol;
    };
    const std::vector<UpperLabel>& UpperLabels() const;

    // ---- drawing
    void DrawLine(double x1, double y1, double x2, double y2, Color color = kBlack, int width = 1);
    void DrawRect(double x1, double y1, double x2, double y2, Color border, Color fill, int hatch = 0);
    void DrawMilestone(double x1, double y1, double x2, double y2, Color border, Color fill);
    void DrawTriangle(double x1, double y1, double x2, double y2, Color border, Color fill, int apex);
    void DrawText(double x, double y, const std::string& text, Color color = kBlack);
    void DrawDateLine(DateTime when, Color color);
    void EndGraphics();
    bool IsComplete() const;
    /// In drawing order.
    const std::vector<DrawItem>& Items() const { return items_; }
    /// Indexes, in drawing order, of the items that touch the rows of pixels from `top` to `bottom`.
    void ItemsBetween(int top, int bottom, std::vector<std::int32_t>& found) const;

    /// Colours are adapted to black and white in print and on the clipboard.
    bool AdjustColors = false;
    std::string ToolTip;

    // ---- font and page
    void SetFont(const TextMetrics& metrics);
    const TextMetrics& Metrics() const { return *metrics_; }
    int TextWidth(const std::string& text) const { return metrics_->TextWidth(text); }
    int TextHeight() const { return metrics_->TextHeight(); }
    /// The printable size of a page and the margin on one side, in twips; the time scale is fitted to it.
    struct Page {
        int width = 15120, height = 10440;  ///< landscape letter less half an inch a side
        int marginWidth = 720, marginHeight = 720;
    };
    void SetPage(const Page& page) { page_ = page; }
    const Page& ThePage() const { return page_; }
    /// Text columns are at most 30 average characters wide and wrap to more lines.
    bool WrapText = false;
};

}  // namespace vortan
