#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "charts/DrawList.h"
#include "charts/TextMetrics.h"
#include "charts/TextStore.h"
#include "charts/TimeScale.h"
#include "model/DateTime.h"

namespace vortan {

/// How a column stands in its cells.
enum class Alignment { Left = 1, Center = 4, Right = 7, RightBottom = 8, DayColumn = -2 };

/// The one surface on which every chart and every spreadsheet shows its content: a grid of titled columns
/// and rows of text, a time scale that turns dates into positions, and drawing over both. It knows nothing of
/// windows: a painter plays it on screen, paper and into files.
///
/// All positions are twips on the unscrolled surface, 0, 0 being the top left corner of the heading row.
/// Its owner builds the grid in LayOut (ClearLayout, AddColumn and AddTimeColumns, EndColumns on a table,
/// AddRow and Cell, EndLayout) and draws in Draw, which EndLayout calls before it returns, and which ends
/// with EndGraphics. An owner must have all its state set before it calls SetDateRange or EndLayout.
class Vwindow {
  public:
    enum class Style { Table = 0, Free = 1, Time = 2 };

    /// What fills a surface when it is asked to.
    class Owner {
      public:
        virtual ~Owner() = default;
        virtual void LayOut() = 0;
        virtual void Draw() = 0;
        virtual void DateClick(DateTime /*when*/) {}
    };

    /// `metrics` must outlive the surface, or its replacement by SetFont; so must `owner`. A surface without
    /// one is laid out from outside, and complete with that.
    Vwindow(Style style, const TextMetrics& metrics, Owner* owner = nullptr);

    /// A mouse button goes down at a place of the surface: in the time columns a click on a date.
    void Press(int x, int y);

    // ---- grid
    void ClearLayout();
    void AddColumn(const std::string& title, Alignment alignment);
    /// Once, on a time chart. The period is chosen by the first EndLayout after ClearLayout and then stays;
    /// until then Cols is preliminary.
    void AddTimeColumns();
    void EndColumns(bool firstRowFixed = false);
    /// Without `row` at the end; with it, the rows from there on move down by one. A footer goes away until
    /// the next EndLayout.
    void AddRow();
    void AddRow(int row);
    /// A row appended to a finished layout takes its place; the picture stays.
    void RefreshRows();
    /// Computes all positions, appends the footer if `footerLines` is above 0, and has the picture drawn.
    void EndLayout(int fixedCols, double footerLines);
    /// Cells of row 0 hold the titles. The footer, time columns and what lies outside have no cells: to set
    /// or get one is an error, but that cells in time columns are empty.
    /// A text is good until its cell gets another, or the layout is cleared.
    std::string_view Cell(int row, int col) const;
    void SetCell(int row, int col, std::string_view text);
    Color CellColor(int row, int col) const;
    void SetCellColor(int row, int col, Color color);
    /// The lines of a cell as painters show them, wrapped if WrapText is on. They are parts of the cell's
    /// text and good until that changes.
    void CellLines(int row, int col, std::vector<std::string_view>& lines) const;
    bool CellMarkB(int row, int col) const;  ///< bold
    void SetCellMarkB(int row, int col, bool mark);
    bool CellMarkC(int row, int col) const;  ///< centred
    void SetCellMarkC(int row, int col, bool mark);
    /// The heading row and a footer are counted. A free drawing has as many as its picture covers.
    int Rows() const;
    int Cols() const;
    int RowPos(int row) const;  ///< 0 to Rows
    int ColPos(int col) const;  ///< 0 to Cols
    /// The width and height of the cells that tile a free drawing.
    int GridStep() const;
    /// From the left or right edge of a cell to its text.
    int CellMargin() const;
    Style TheStyle() const { return style_; }
    int FixedRows() const;
    int FixedCols() const;
    /// Of a time column: the label of its period.
    std::string_view ColumnTitle(int col) const;
    /// Of a time column: centred.
    Alignment ColumnAlignment(int col) const;
    bool IsTimeColumn(int col) const;
    bool HasFooter() const;
    /// The row or column that holds a position, -1 beyond the last.
    int RowAt(int y) const { return LineAt(rowPos_, y); }
    int ColAt(int x) const { return LineAt(colPos_, x); }
    /// The size of all, a key wider than the columns included.
    int ContentWidth() const;
    int ContentHeight() const;

    // ---- time scale
    using Period = TimeScale::Period;
    /// Stores the range and has the layout made.
    void SetDateRange(DateTime start, DateTime finish);
    void GetShownDates(DateTime& start, DateTime& finish) const;
    /// Linear inside each column; outside the shown range the first or last column is continued.
    int DateToX(DateTime when) const;
    /// The reverse, for a position in the time columns.
    DateTime XToDate(int x) const;
    Period ThePeriod() const;
    /// As of the last layout.
    const TimeScale& Scale() const { return scale_; }
    using UpperLabel = TimeScale::UpperLabel;
    /// The labels of the upper heading line: text and the columns from first up to, not including, last.
    const std::vector<UpperLabel>& UpperLabels() const;

    // ---- drawing
    void DrawLine(double x1, double y1, double x2, double y2, Color color = kBlack, int width = 1);
    void DrawRect(double x1, double y1, double x2, double y2, Color border, Color fill,
                  Hatch hatch = Hatch::Solid);
    void DrawMilestone(double x1, double y1, double x2, double y2, Color border, Color fill);
    void DrawTriangle(double x1, double y1, double x2, double y2, Color border, Color fill, Apex apex);
    void DrawText(double x, double y, const std::string& text, Color color = kBlack);
    /// In small letters, as an index.
    void DrawSmallText(double x, double y, const std::string& text, Color color = kBlack);
    /// Through all rows, a footer too. A moment outside the shown range has no line.
    void DrawDateLine(DateTime when, Color color);
    void EndGraphics();
    bool IsComplete() const;
    /// Whether all positions are known, as they are from EndLayout on: the surface can be shown as far as it
    /// was drawn.
    bool IsLaidOut() const { return laidOut_; }
    /// In drawing order.
    const std::vector<DrawItem>& Items() const { return picture_.Items(); }
    /// Replaces `found` by the indexes, in drawing order, of the items that lie in a part of the surface.
    void ItemsIn(int left, int top, int right, int bottom, std::vector<std::int32_t>& found) const {
        picture_.Between(top, bottom, found, left, right);
    }

    /// How many lines of the picture are neither level nor upright.
    int SlantedLines() const { return picture_.SlantedLines(); }

    /// Colours are adapted to black and white in print and on the clipboard.
    bool AdjustColors = false;
    std::string ToolTip;

    // ---- font and page
    void SetFont(const TextMetrics& metrics);
    const TextMetrics& Metrics() const { return *metrics_; }
    int TextWidth(std::string_view text) const { return metrics_->TextWidth(text); }
    int TextHeight() const { return metrics_->TextHeight(); }
    /// The printable size of a page and the margin on one side, in twips; the time scale is fitted to it.
    struct Page {
        int width = 15120, height = 10440;  ///< landscape letter less half an inch a side
        int marginWidth = 720, marginHeight = 720;
    };
    void SetPage(const Page& page) { page_ = page; }
    const Page& ThePage() const { return page_; }
    /// None: the finest with which the chart fits a page.
    std::optional<Period> FixedPeriod;
    TimeScale::WeekStart WeekStart = TimeScale::WeekStart::Monday;
    /// Time columns are wider than their labels need, to fill a page: for plots, which have little else.
    bool WideTimeColumns = false;
    /// Text columns are at most 30 average characters wide and wrap to more lines.
    bool WrapText = false;
    /// The height that a free drawing leaves empty at the end of each page that it is cut into.
    int PageFoot = 0;

  private:
    struct CellData {
        std::string_view text;  ///< in texts_
        Color color = kWhite;
        bool markB = false, markC = false;
    };
    struct Column {
        Alignment alignment;
        int width;
    };

    TimeScale ScaleFitting(double width) const;
    int TimeCols() const { return timeAt_ < 0 ? 0 : scale_.Count(); }
    /// The column without regard to time columns, or -1 if it is one of those.
    int TitledColumn(int col) const;
    /// The cell, or null if it is in a time column or nothing was ever set there.
    const CellData* FindCell(int row, int col) const;
    CellData& NeedCell(int row, int col);
    static int LineAt(const std::vector<int>& edges, int position);
    void ComputePositions();
    /// The widths of the titled columns; `heights` becomes those of the rows.
    void MeasureCells(std::vector<int>& heights);
    int LineHeight(int lines) const;
    int WrapLimit() const;
    int DataBottom() const { return RowPos(Rows() - (hasFooter_ ? 1 : 0)); }
    void AddText(double x, double y, const std::string& text, Color color, bool small);
    void AddItem(DrawItem::Kind kind, double x1, double y1, double x2, double y2, Color border, Color fill,
                 Hatch hatch = Hatch::Solid, Apex apex = Apex::None);

    Style style_;
    const TextMetrics* metrics_;
    Owner* owner_;
    Page page_;
    // The grid. Rows start with the heading, whose cells hold the titles; cells that were never set are
    // missing at the end of their row.
    std::vector<Column> columns_;  ///< the titled ones
    std::vector<std::vector<CellData>> rows_;
    TextStore texts_;
    int timeAt_ = -1;  ///< the titled columns left of the time columns, -1 without those
    DateTime start_, finish_;
    TimeScale scale_;
    std::vector<UpperLabel> upperLabels_;
    bool periodChosen_ = false;
    bool firstRowFixed_ = false;
    int fixedCols_ = 0;
    bool hasFooter_ = false;
    double footerLines_ = 0;
    std::vector<int> rowPos_, colPos_;  ///< as of the last layout
    // The picture.
    DrawList picture_;
    bool laidOut_ = false, complete_ = false;
    int keyRight_ = 0;  ///< how far the picture reaches in the footer
};

}  // namespace vortan
