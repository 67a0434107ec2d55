#include "reports/Table.h"

#include <algorithm>
#include <numeric>

#include "charts/TextLines.h"
#include "model/Characters.h"
#include "model/NumberText.h"

namespace vortan {
namespace {

/// Values of a column are of one kind; where they are not, the kinds come one after the other.
int Rank(const TableCell& cell) {
    if (cell.value.index() != 0) return static_cast<int>(cell.value.index());
    return cell.text.empty() ? 100 : 50;
}

/// The number of the object comes first in its text.
bool TextBefore(std::string_view a, std::string_view b) {
    if (!a.empty() && !b.empty() && IsDigit(a.front()) && IsDigit(b.front())) {
        const double numberA = ScanNumber(a), numberB = ScanNumber(b);
        if (numberA != numberB) return numberA < numberB;
    }
    return a < b;
}

bool ComesBefore(const TableCell& a, const TableCell& b, bool descending) {
    const int rankA = Rank(a), rankB = Rank(b);
    if (rankA != rankB) return rankA < rankB;
    const TableCell& first = descending ? b : a;
    const TableCell& second = descending ? a : b;
    return std::visit(
        [&](const auto& value) {
            using T = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<T, std::monostate>) {
                return TextBefore(first.text, second.text);
            } else if constexpr (std::is_same_v<T, HourCount>) {
                return value.hours < std::get<T>(second.value).hours;
            } else if constexpr (std::is_same_v<T, TimeSpan>) {
                return value.days < std::get<T>(second.value).days;
            } else {
                return value < std::get<T>(second.value);
            }
        },
        first.value);
}

}  // namespace

Color MarkColor(int slotType) {
    return slotType == 9 ? 0x8080FF : slotType == 5 ? 0xC0C000 : 0xFFFF00;
}

std::int32_t Table::TitleEnd(std::int32_t column) const {
    const auto first = columns_.begin() + column;
    const auto end = std::find_if(first + 1, columns_.end(), [&](const TableColumn& each) {
        return each.alignment != Alignment::DayColumn || first->alignment != Alignment::DayColumn ||
               each.title != first->title;
    });
    return static_cast<std::int32_t>(end - columns_.begin());
}

std::int32_t Table::AddRow(RowSubject subject) {
    if (subjects_.size() % kBlockRows == 0) blocks_.emplace_back(kBlockRows * columns_.size());
    subjects_.push_back(subject);
    return Rows() - 1;
}

std::vector<std::int32_t> Table::SortedRows(std::int32_t column, bool descending) const {
    std::vector<std::int32_t> order(subjects_.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end() - totalRows, [&](std::int32_t a, std::int32_t b) {
        return ComesBefore(Cell(a, column), Cell(b, column), descending);
    });
    return order;
}

Table Table::InOrder(const std::vector<std::int32_t>& order) const {
    if (order.empty()) return *this;
    Table ordered(caption, columns_, fixedColumns);
    ordered.firstRowFixed = firstRowFixed;
    ordered.totalRows = totalRows;
    ordered.month = month;
    std::vector<std::int32_t> places(order.size());
    for (const std::int32_t row : order) {
        const std::int32_t place = ordered.AddRow(Subject(row));
        places[static_cast<std::size_t>(row)] = place;
        for (std::int32_t column = 0; column < Cols(); ++column)
            ordered.SetCell(place, column, Cell(row, column).text, Cell(row, column).value);
    }
    for (TableMark mark : marks) {
        mark.row = places[static_cast<std::size_t>(mark.row)];
        ordered.marks.push_back(mark);
    }
    std::sort(ordered.marks.begin(), ordered.marks.end(), [](const TableMark& a, const TableMark& b) {
        return std::pair(a.row, a.column) < std::pair(b.row, b.column);
    });
    return ordered;
}

std::string TitleLine(const std::string& title) {
    std::vector<std::string_view> lines;
    SplitLines(title, lines);
    const bool letters =
        std::all_of(lines.begin(), lines.end(), [](std::string_view line) { return line.size() == 1; });
    std::string text;
    for (const std::string_view line : lines) {
        if (!text.empty() && !letters) text += ' ';
        text += line;
    }
    return text;
}

std::vector<std::string> HeadingLine(const Table& table) {
    std::vector<std::string> headings;
    for (std::int32_t col = 0; col < table.Cols(); ++col) {
        const std::string_view over = table.firstRowFixed ? table.Cell(0, col).text : std::string_view();
        headings.push_back(over.empty() ? TitleLine(table.Columns()[static_cast<std::size_t>(col)].title)
                                        : std::string(over));
    }
    return headings;
}

bool MayBeFormula(std::string_view text) {
    if (text.empty()) return false;
    const auto first = static_cast<unsigned char>(text.front());
    if (first >= ' ' && std::string_view("=+-@").find(text.front()) == std::string_view::npos) return false;
    // A number with or without a word behind it.
    std::size_t i = 1;
    while (i < text.size() && (IsDigit(text[i]) || text[i] == '.')) ++i;
    if (first != '-' || i == 1) return true;
    if (i < text.size() && text[i++] != ' ') return true;
    return !std::all_of(text.begin() + static_cast<std::ptrdiff_t>(i), text.end(),
                        [](char c) { return c >= 'a' && c <= 'z'; });
}

void FillSurface(Vwindow& surface, const Table& table, const std::vector<std::int32_t>& order) {
    surface.ClearLayout();
    for (const TableColumn& column : table.Columns()) surface.AddColumn(column.title, column.alignment);
    surface.EndColumns(table.firstRowFixed);
    std::vector<std::int32_t> shownAt(static_cast<std::size_t>(table.Rows()));
    for (std::int32_t i = 0; i < table.Rows(); ++i) {
        const std::int32_t row = order.empty() ? i : order[static_cast<std::size_t>(i)];
        surface.AddRow();
        shownAt[static_cast<std::size_t>(row)] = i + 1;
        for (std::int32_t col = 0; col < table.Cols(); ++col) {
            const std::string_view text = table.Cell(row, col).text;
            if (!text.empty()) surface.SetCell(i + 1, col, text);
        }
    }
    for (const TableMark& mark : table.marks) {
        const int row = shownAt[static_cast<std::size_t>(mark.row)];
        surface.SetCellColor(row, mark.column, MarkColor(mark.slotType));
        surface.SetCellMarkC(row, mark.column, true);
        surface.SetCellMarkB(row, mark.column, true);
    }
    surface.EndLayout(table.fixedColumns, 0);
}

}  // namespace vortan
