#include "reports/CsvFile.h"

#include <charconv>

namespace vortan {

void CsvWriter::Cell(std::string_view text) {
    if (comma_) out_ += ',';
    comma_ = true;
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        out_ += text;
        return;
    }
    out_ += '"';
    for (const char c : text) {
        if (c == '"') out_ += '"';
        out_ += c;
    }
    out_ += '"';
}

void CsvWriter::Cell(double number) {
    char text[32];
    Cell(std::string_view(
        text, static_cast<std::size_t>(std::to_chars(text, text + sizeof text, number).ptr - text)));
}

void CsvWriter::EndLine() {
    out_ += "\r\n";
    comma_ = false;
}

std::string CsvOf(const Table& table) {
    CsvWriter csv;
    for (const TableColumn& column : table.Columns()) csv.Cell(TitleLine(column.title));
    csv.EndLine();
    for (std::int32_t row = 0; row < table.Rows(); ++row) {
        for (std::int32_t col = 0; col < table.Cols(); ++col) {
            const std::string_view text = table.Cell(row, col).text;
            MayBeFormula(text) ? csv.Cell("'" + std::string(text)) : csv.Cell(text);
        }
        csv.EndLine();
    }
    return "\xEF\xBB\xBF" + csv.Text();
}

namespace {

struct WriteData {
    CsvWriter& csv;
    const TableCell& cell;
    void operator()(Money amount) const { csv.Cell(amount.ToDouble()); }
    void operator()(HourCount count) const { csv.Cell(count.hours); }
    void operator()(double number) const { csv.Cell(number); }
    template <class Other>
    void operator()(const Other&) const {
        csv.Cell(cell.text);
    }
};

}  // namespace

std::string DataCsvOf(const Table& table) {
    CsvWriter csv;
    for (const TableColumn& column : table.Columns()) csv.Cell(TitleLine(column.title));
    csv.EndLine();
    for (std::int32_t row = 0; row < table.Rows(); ++row) {
        for (std::int32_t col = 0; col < table.Cols(); ++col) {
            const TableCell& cell = table.Cell(row, col);
            std::visit(WriteData{csv, cell}, cell.value);
        }
        csv.EndLine();
    }
    return csv.Text();
}

}  // namespace vortan
