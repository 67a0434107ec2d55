#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "charts/Vwindow.h"
#include "model/DateTime.h"
#include "model/Link.h"
#include "model/Money.h"

namespace vortan {

class Vdependency;
class Vresource;
class Vtask;

/// A number of hours, shown with one decimal.
struct HourCount {
    double hours = 0;
};

/// A stretch of time, which rows are sorted by; other programs have no number for what it shows.
struct TimeSpan {
    double days = 0;
};

/// What stands behind the text of a cell; the first alternative: nothing but the text. A truth is shown as
/// "Y" or "n".
using CellValue =
    std::variant<std::monostate, DateTime, Money, HourCount, std::int64_t, bool, double, TimeSpan>;

struct TableCell {
    std::string_view text;  ///< kept by the table
    CellValue value;
};

struct TableColumn {
    std::string title;  ///< lines end in CR LF
    Alignment alignment;
};

/// What a row is about; none for totals.
using RowSubject = std::variant<std::monostate, Link<Vtask>, Link<Vresource>, Link<Vdependency>>;

/// A cell that stands out because of the kind of time in it.
struct TableMark {
    std::int32_t row, column;
    int slotType;  ///< 4, 5 or 9
};
/// The background of a marked cell.
Color MarkColor(int slotType);

/// A finished report: titled columns and rows of cells. Rows count from 0 below the titles.
class Table {
  public:
    Table() = default;
    Table(std::string title, std::vector<TableColumn> columns, int fixed)
        : caption(std::move(title)), fixedColumns(fixed), columns_(std::move(columns)) {}

    std::string caption;
    int fixedColumns = 0;          ///< that stay in view, from the left
    bool firstRowFixed = false;    ///< row 0 belongs to the heading
    int totalRows = 0;             ///< at the end, whatever the others are sorted by
    DateTime month;                ///< of a report of one month: its first day
    std::vector<TableMark> marks;  ///< by row, then column

    const std::vector<TableColumn>& Columns() const { return columns_; }
    /// The column behind those that share the title of `column`: neighbouring day columns do.
    std::int32_t TitleEnd(std::int32_t column) const;
    std::int32_t Cols() const { return static_cast<std::int32_t>(columns_.size()); }
    std::int32_t Rows() const { return static_cast<std::int32_t>(subjects_.size()); }
    /// Appends an empty row, and returns its number.
    std::int32_t AddRow(RowSubject subject = {});
    const TableCell& Cell(std::int32_t row, std::int32_t column) const {
        return blocks_[Block(row)][Place(row, column)];
    }
    void SetCell(std::int32_t row, std::int32_t column, std::string_view text, CellValue value = {}) {
        blocks_[Block(row)][Place(row, column)] = {texts_->Keep(text), value};
    }
    const RowSubject& Subject(std::int32_t row) const { return subjects_[static_cast<std::size_t>(row)]; }

    /// The rows in the order of a column's values, equal ones as they stand. Texts come in the order of the
    /// numbers that they begin with, then of their characters, and behind values; empty cells come last, and
    /// totals keep their places.
    std::vector<std::int32_t> SortedRows(std::int32_t column, bool descending) const;
    /// A copy with the rows in another order; none: as they are.
    Table InOrder(const std::vector<std::int32_t>& order) const;

  private:
    static constexpr std::size_t kBlockRows = 64;

    static std::size_t Block(std::int32_t row) { return static_cast<std::size_t>(row) / kBlockRows; }
    std::size_t Place(std::int32_t row, std::int32_t column) const {
        return static_cast<std::size_t>(row) % kBlockRows * columns_.size() +
               static_cast<std::size_t>(column);
    }

    std::vector<TableColumn> columns_;
    std::vector<std::vector<TableCell>> blocks_;  ///< row by row; cells never move
    std::vector<RowSubject> subjects_;
    std::shared_ptr<TextStore> texts_ = std::make_shared<TextStore>();  ///< of copies too
};

/// A title in one line: its lines joined by blanks, or without if each is a single letter.
std::string TitleLine(const std::string& title);
/// The headings of the columns in one line each; a first row that belongs to the heading takes the place of
/// titles that repeat.
std::vector<std::string> HeadingLine(const Table& table);

/// Whether a program that opens a file could take the text for a formula: it begins with = + - @ or a control
/// character, and is no plain "-1.5 days".
bool MayBeFormula(std::string_view text);

/// Puts a table on a surface of the table style, laid out and complete. `order` has the rows as they are to
/// stand; none: as built.
void FillSurface(Vwindow& surface, const Table& table, const std::vector<std::int32_t>& order = {});

}  // namespace vortan
