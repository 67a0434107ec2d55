#include "cli/ReportData.h"

#include <algorithm>

#include "cli/JsonWriter.h"
#include "cli/TextTable.h"

namespace vortan {
namespace {

void WriteValue(JsonWriter& json, const CellValue& value) {
    std::visit(
        [&](const auto& held) {
            using T = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<T, std::monostate> || std::is_same_v<T, TimeSpan>) {
                json.Value(nullptr);
            } else if constexpr (std::is_same_v<T, HourCount>) {
                json.Value(held.hours);
            } else {
                json.Value(held);
            }
        },
        value);
}

/// Calls `write(cell)` for each cell, in an array for each row.
template <class Write>
void WriteRows(JsonWriter& json, const char* name, const Table& table, Write&& write) {
    json.ArrayMember(name, [&] {
        for (std::int32_t row = 0; row < table.Rows(); ++row) {
            json.Array([&] {
                for (std::int32_t col = 0; col < table.Cols(); ++col) write(table.Cell(row, col));
            });
        }
    });
}

}  // namespace

std::string ReportJson(const ReportKind& kind, const Table& table) {
    JsonWriter json;
    json.Object([&] {
        json.Member("kind", kind.name);
        json.Member("title", table.caption);
        json.Member("fixedColumns", table.fixedColumns);
        json.ArrayMember("columns", [&] {
            for (const TableColumn& column : table.Columns()) {
                json.Object([&] {
                    json.Member("title", column.title);
                    json.Member("alignment", static_cast<int>(column.alignment));
                });
            }
        });
        WriteRows(json, "rows", table, [&](const TableCell& cell) { json.Value(cell.text); });
        WriteRows(json, "values", table, [&](const TableCell& cell) { WriteValue(json, cell.value); });
        json.ArrayMember("marks", [&] {
            for (const TableMark& mark : table.marks) {
                json.Object([&] {
                    json.Member("row", mark.row);
                    json.Member("column", mark.column);
                    json.Member("type", mark.slotType);
                });
            }
        });
    });
    return json.Line();
}

std::string ReportText(const Table& table, int width) {
    std::vector<std::string> headings = HeadingLine(table);
    std::vector<TextTable::Align> alignment;
    for (const TableColumn& column : table.Columns()) {
        const bool left = column.alignment == Alignment::Left || column.alignment == Alignment::Center;
        alignment.push_back(left ? TextTable::Align::Left : TextTable::Align::Right);
    }
    std::size_t elastic = 0;
    int widest = 0;
    for (std::int32_t row = 0; row < table.Rows(); ++row) {
        for (std::int32_t col = 0; col < table.Cols(); ++col) {
            const int taken = TextWidth(table.Cell(row, col).text);
            if (taken <= widest) continue;
            widest = taken;
            elastic = static_cast<std::size_t>(col);
        }
    }
    TextTable text(std::move(headings), std::move(alignment), elastic);
    for (std::int32_t row = table.firstRowFixed ? 1 : 0; row < table.Rows(); ++row) {
        if (table.totalRows > 0 && row == table.Rows() - table.totalRows) text.AddRule();
        std::vector<std::string> cells;
        for (std::int32_t col = 0; col < table.Cols(); ++col) cells.emplace_back(table.Cell(row, col).text);
        text.AddRow(std::move(cells));
    }
    const std::string when = table.month.IsSet() ? ", " + MonthText(table.month) : "";
    return table.caption + when + "\n\n" + text.Print(width);
}

}  // namespace vortan
