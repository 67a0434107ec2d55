#include "charts/Vwindow.h"

#include <algorithm>
#include <cmath>

#include "charts/TextLines.h"
#include "model/Fault.h"
#include "model/Rounding.h"

namespace vortan {
namespace {

constexpr double kRowHeight = 1.75;      // of a line of text
constexpr double kFooterLine = 1.25;     // of a line of text
constexpr double kCellMargin = 0.5;      // average characters
constexpr double kMaxWrappedWidth = 30;  // average characters
constexpr double kGridStep = 10;         // average characters
constexpr double kMinDayColumn = 2;      // average characters
constexpr int kBandLines = 16;           // lines of text in a band of the picture's index

void Require(bool condition) {
    if (!condition) AssertionFailed();
}

std::size_t Index(int number) {
    return static_cast<std::size_t>(number);
}

/// Positions stop at the end of their range.
int Add(int position, double distance) {
    return RoundToInt32(position + distance);
}

/// No line of text of this many bytes is wider than that many times this.
int WidestCharacter(const TextMetrics& metrics) {
    int widest = 0;
    for (const char* text : {"W", "M", "m", "@", "%"}) widest = std::max(widest, metrics.TextWidth(text));
    return widest;
}

}  // namespace

Vwindow::Vwindow(Style style, const TextMetrics& metrics, Owner* owner)
    : style_(style), metrics_(&metrics), owner_(owner), rows_(1) {}

void Vwindow::ClearLayout() {
    columns_.clear();
    rows_.assign(1, {});
    texts_.Clear();
    timeAt_ = -1;
    scale_ = {};
    upperLabels_.clear();
    periodChosen_ = firstRowFixed_ = hasFooter_ = laidOut_ = complete_ = false;
    fixedCols_ = keyRight_ = 0;
    footerLines_ = 0;
    rowPos_.clear();
    colPos_.clear();
    picture_.Clear(kBandLines * TextHeight());
}

void Vwindow::AddColumn(const std::string& title, Alignment alignment) {
    columns_.push_back({alignment, 0});
    rows_[0].resize(columns_.size());
    rows_[0].back().text = texts_.Keep(title);
}

void Vwindow::AddTimeColumns() {
    Require(style_ == Style::Time && timeAt_ < 0);
    timeAt_ = static_cast<int>(columns_.size());
    scale_ = ScaleFitting(page_.width);
}

TimeScale Vwindow::ScaleFitting(double width) const {
    if (FixedPeriod) return {*FixedPeriod, start_, finish_, *metrics_, WeekStart};
    return TimeScale::Fitting(start_, finish_, width, *metrics_, WeekStart);
}

void Vwindow::EndColumns(bool firstRowFixed) {
    firstRowFixed_ = firstRowFixed;
}

void Vwindow::AddRow() {
    hasFooter_ = laidOut_ = false;
    rows_.emplace_back();
}

void Vwindow::AddRow(int row) {
    hasFooter_ = laidOut_ = false;
    Require(row >= 1 && Index(row) <= rows_.size());
    rows_.emplace(rows_.begin() + row);
}

void Vwindow::RefreshRows() {
    ComputePositions();
}

void Vwindow::EndLayout(int fixedCols, double footerLines) {
    fixedCols_ = std::max(fixedCols, 0);
    footerLines_ = footerLines;
    hasFooter_ = footerLines > 0 && style_ != Style::Free;
    ComputePositions();
    picture_.Clear(kBandLines * TextHeight());
    keyRight_ = 0;
    complete_ = !owner_;
    if (owner_) owner_->Draw();
}

int Vwindow::TitledColumn(int col) const {
    if (timeAt_ < 0 || col < timeAt_) return col;
    return col < timeAt_ + TimeCols() ? -1 : col - TimeCols();
}

const Vwindow::CellData* Vwindow::FindCell(int row, int col) const {
    const int titled = TitledColumn(col);
    Require(row >= 0 && Index(row) < rows_.size() && col >= 0 && titled < static_cast<int>(columns_.size()));
    const auto& cells = rows_[Index(row)];
    return titled >= 0 && Index(titled) < cells.size() ? &cells[Index(titled)] : nullptr;
}

Vwindow::CellData& Vwindow::NeedCell(int row, int col) {
    if (const CellData* cell = FindCell(row, col)) return const_cast<CellData&>(*cell);
    const int titled = TitledColumn(col);
    Require(titled >= 0);
    rows_[Index(row)].resize(columns_.size());
    return rows_[Index(row)][Index(titled)];
}

std::string_view Vwindow::Cell(int row, int col) const {
    const CellData* cell = FindCell(row, col);
    return cell ? cell->text : std::string_view();
}

/// A text that stays takes no more room: pages set theirs again with each solution.
void Vwindow::SetCell(int row, int col, std::string_view text) {
    std::string_view& shown = NeedCell(row, col).text;
    if (shown != text) shown = texts_.Keep(text);
}

Color Vwindow::CellColor(int row, int col) const {
    const CellData* cell = FindCell(row, col);
    return cell ? cell->color : kWhite;
}

void Vwindow::SetCellColor(int row, int col, Color color) {
    NeedCell(row, col).color = color;
}

bool Vwindow::CellMarkB(int row, int col) const {
    const CellData* cell = FindCell(row, col);
    return cell && cell->markB;
}

void Vwindow::SetCellMarkB(int row, int col, bool mark) {
    NeedCell(row, col).markB = mark;
}

bool Vwindow::CellMarkC(int row, int col) const {
    const CellData* cell = FindCell(row, col);
    return cell && cell->markC;
}

void Vwindow::SetCellMarkC(int row, int col, bool mark) {
    NeedCell(row, col).markC = mark;
}

int Vwindow::WrapLimit() const {
    return RoundToInt32(kMaxWrappedWidth * metrics_->AverageWidth());
}

void Vwindow::CellLines(int row, int col, std::vector<std::string_view>& lines) const {
    lines.clear();
    const std::string_view text = Cell(row, col);
    if (WrapText && row > 0 && ColumnAlignment(col) == Alignment::Left)
        WrapLines(text, WrapLimit(), *metrics_, lines);
    else
        SplitLines(text, lines);
}

int Vwindow::LineHeight(int lines) const {
    return Add(RoundToInt32(kRowHeight * TextHeight()), (lines - 1.0) * TextHeight());
}

int Vwindow::CellMargin() const {
    return RoundToInt32(metrics_->AverageWidth() * kCellMargin);
}

int Vwindow::GridStep() const {
    return std::max(RoundToInt32(kGridStep * metrics_->AverageWidth()), 2 * TextHeight());
}

void Vwindow::MeasureCells(std::vector<int>& heights) {
    const int widestCharacter = WidestCharacter(*metrics_);
    const int wrapLimit = WrapText ? WrapLimit() : 0;
    std::vector<int> widths(columns_.size());
    std::vector<std::string_view> lines;
    heights.clear();
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        int mostLines = row == 0 && timeAt_ >= 0 ? 2 : 1;
        for (std::size_t col = 0; col < rows_[row].size(); ++col) {
            const std::string_view text = rows_[row][col].text;
            const bool dayTitle = row == 0 && columns_[col].alignment == Alignment::DayColumn;
            lines.clear();
            if (wrapLimit > 0 && row > 0 && columns_[col].alignment == Alignment::Left)
                WrapLines(text, wrapLimit, *metrics_, lines);
            else
                SplitLines(text, lines);
            mostLines = std::max(mostLines, static_cast<int>(lines.size()));
            if (dayTitle) continue;
            for (const std::string_view line : lines)
                // Measuring is slow: not where it cannot matter.
                if (static_cast<double>(line.size()) * widestCharacter > widths[col])
                    widths[col] = std::max(widths[col], metrics_->TextWidth(line));
        }
        heights.push_back(LineHeight(mostLines));
    }
    // Day columns are all as wide as the widest of them.
    int dayWidth = RoundToInt32(kMinDayColumn * metrics_->AverageWidth());
    for (std::size_t col = 0; col < columns_.size(); ++col)
        if (columns_[col].alignment == Alignment::DayColumn) dayWidth = std::max(dayWidth, widths[col]);
    for (std::size_t col = 0; col < columns_.size(); ++col)
        columns_[col].width =
            Add(columns_[col].alignment == Alignment::DayColumn ? dayWidth : widths[col], 2.0 * CellMargin());
}

void Vwindow::ComputePositions() {
    laidOut_ = true;
    if (style_ == Style::Free) return;
    std::vector<int> heights;
    MeasureCells(heights);
    rowPos_.assign(1, 0);
    for (const int height : heights) rowPos_.push_back(Add(rowPos_.back(), height));
    if (hasFooter_) rowPos_.push_back(Add(rowPos_.back(), footerLines_ * kFooterLine * TextHeight()));

    if (timeAt_ >= 0 && !periodChosen_) {
        double room = page_.width;
        for (const Column& column : columns_) room -= column.width;
        scale_ = ScaleFitting(room);
        if (WideTimeColumns) scale_.Widen(room, *metrics_);
        periodChosen_ = true;
    }
    const int cols = Cols();
    colPos_.assign(1, 0);
    for (int col = 0; col < cols; ++col) {
        const int titled = TitledColumn(col);
        colPos_.push_back(
            Add(colPos_.back(), titled < 0 ? scale_.ColumnWidth() : columns_[Index(titled)].width));
    }
    upperLabels_ = scale_.UpperLabels();
    for (UpperLabel& label : upperLabels_) {
        label.firstCol += timeAt_;
        label.lastCol += timeAt_;
    }
}

int Vwindow::Rows() const {
    const int rows = static_cast<int>(rows_.size()) + (hasFooter_ ? 1 : 0);
    if (style_ != Style::Free) return rows;
    return std::max(rows, static_cast<int>((std::int64_t{picture_.Bottom()} + GridStep() - 1) / GridStep()));
}

int Vwindow::Cols() const {
    const int cols = static_cast<int>(columns_.size()) + TimeCols();
    if (style_ != Style::Free) return cols;
    return std::max(cols, static_cast<int>((std::int64_t{picture_.Right()} + GridStep() - 1) / GridStep()));
}

int Vwindow::RowPos(int row) const {
    Require(row >= 0 && row <= Rows());
    if (style_ == Style::Free) return Add(0, static_cast<double>(row) * GridStep());
    Require(Index(row) < rowPos_.size());
    return rowPos_[Index(row)];
}

int Vwindow::ColPos(int col) const {
    Require(col >= 0 && col <= Cols());
    if (style_ == Style::Free) return Add(0, static_cast<double>(col) * GridStep());
    Require(Index(col) < colPos_.size());
    return colPos_[Index(col)];
}

/// None on a free drawing, which has no edges.
int Vwindow::LineAt(const std::vector<int>& edges, int position) {
    if (edges.empty() || position < edges.front() || position >= edges.back()) return -1;
    const auto beyond = std::upper_bound(edges.begin(), edges.end(), position);
    return static_cast<int>(beyond - edges.begin()) - 1;
}

void Vwindow::Press(int x, int y) {
    const int col = ColAt(x);
    if (owner_ && RowAt(y) >= 0 && col >= 0 && IsTimeColumn(col)) owner_->DateClick(XToDate(x));
}

int Vwindow::FixedRows() const {
    if (style_ == Style::Free) return 0;
    return firstRowFixed_ && rows_.size() > 1 ? 2 : 1;
}

int Vwindow::FixedCols() const {
    return style_ == Style::Free ? 0 : std::min(fixedCols_, Cols());
}

std::string_view Vwindow::ColumnTitle(int col) const {
    return IsTimeColumn(col) ? std::string_view(scale_.Label(col - timeAt_)) : Cell(0, col);
}

Alignment Vwindow::ColumnAlignment(int col) const {
    if (IsTimeColumn(col)) return Alignment::Center;
    const int titled = TitledColumn(col);
    Require(titled >= 0 && Index(titled) < columns_.size());
    return columns_[Index(titled)].alignment;
}

bool Vwindow::IsTimeColumn(int col) const {
    return TitledColumn(col) < 0 && col >= 0;
}

bool Vwindow::HasFooter() const {
    return hasFooter_;
}

int Vwindow::ContentWidth() const {
    return std::max(ColPos(Cols()), keyRight_);
}

int Vwindow::ContentHeight() const {
    return RowPos(Rows());
}

void Vwindow::SetDateRange(DateTime start, DateTime finish) {
    start_ = start;
    finish_ = finish;
    if (owner_) owner_->LayOut();
}

void Vwindow::GetShownDates(DateTime& start, DateTime& finish) const {
    Require(timeAt_ >= 0);
    start = scale_.First();
    finish = scale_.Last();
}

int Vwindow::DateToX(DateTime when) const {
    Require(timeAt_ >= 0);
    return RoundToInt32(ColPos(timeAt_) + scale_.ToColumns(when) * scale_.ColumnWidth());
}

DateTime Vwindow::XToDate(int x) const {
    Require(timeAt_ >= 0);
    return scale_.FromColumns((static_cast<double>(x) - ColPos(timeAt_)) / scale_.ColumnWidth());
}

Vwindow::Period Vwindow::ThePeriod() const {
    return scale_.ThePeriod();
}

const std::vector<Vwindow::UpperLabel>& Vwindow::UpperLabels() const {
    return upperLabels_;
}

void Vwindow::SetFont(const TextMetrics& metrics) {
    metrics_ = &metrics;
}

}  // namespace vortan
