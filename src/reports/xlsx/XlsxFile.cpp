#include "reports/xlsx/XlsxFile.h"

#include <locale.h>
#include <stdlib.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <tuple>

#include "charts/TextLines.h"
#include "model/Fault.h"

namespace vortan {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& reason) {
    Refuse("The workbook could not be made: " + reason + ".");
}

/// A folder of our own for as long as it takes.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::error_code error;
        std::string name = (fs::temp_directory_path(error) / "vortan-XXXXXX").string();
        if (error || !::mkdtemp(name.data())) Fail("there is no folder for temporary files");
        path_ = name;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    const fs::path& Path() const { return path_; }

  private:
    fs::path path_;
};

/// The library writes numbers as the locale does; files have a decimal point everywhere. For this thread
/// alone.
class NumbersWithPoint {
  public:
    NumbersWithPoint() : plain_(::newlocale(LC_ALL_MASK, "C", nullptr)), before_(::uselocale(plain_)) {}
    ~NumbersWithPoint() {
        ::uselocale(before_);
        if (plain_) ::freelocale(plain_);
    }
    NumbersWithPoint(const NumbersWithPoint&) = delete;
    NumbersWithPoint& operator=(const NumbersWithPoint&) = delete;

  private:
    locale_t plain_, before_;
};

constexpr double kFirstSafeDay = 61;  ///< 1900-03-01: sheets count a day before it that never was
constexpr std::size_t kMostCellText = 32767;
constexpr double kLineHeight = 15;  ///< points
constexpr std::size_t kLeastWidth = 3, kMostWidth = 60;

bool IsSheetDate(DateTime date) {
    return date.Days() >= kFirstSafeDay && date.Days() < kLastDay + 1;
}

std::size_t Characters(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

/// What a cell holds is shorter than what it may.
std::string Fitting(std::string text) {
    if (text.size() <= kMostCellText) return text;
    std::size_t end = kMostCellText;
    while ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    text.resize(end);
    return text;
}

class Workbook {
  public:
    Workbook(const Table& table, const XlsxOptions& options, const fs::path& folder)
        : table_(table),
          options_(options),
          folder_(folder.string()),
          file_((folder / "table.xlsx").string()) {
        lxw_workbook_options settings{};
        settings.tmpdir = folder_.data();
        book_ = workbook_new_opt(file_.c_str(), &settings);
        if (!book_) Fail("there is not enough memory");
    }
    ~Workbook() {
        if (book_) lxw_workbook_free(book_);
    }
    Workbook(const Workbook&) = delete;
    Workbook& operator=(const Workbook&) = delete;

    std::string Write() {
        sheet_ = workbook_add_worksheet(book_, options_.sheetName.c_str());
        if (!sheet_) Fail("it cannot have a sheet named \"" + options_.sheetName + "\"");
        std::string title = table_.caption;
        lxw_doc_properties properties{};
        properties.title = title.data();
        workbook_set_properties(book_, &properties);
        WriteHeading();
        std::size_t mark = 0;
        for (std::int32_t row = 0; row < table_.Rows(); ++row) {
            for (std::int32_t col = 0; col < table_.Cols(); ++col) {
                const bool marked = mark < table_.marks.size() && table_.marks[mark].row == row &&
                                    table_.marks[mark].column == col;
                WriteCell(row, col, marked ? table_.marks[mark].slotType : 0);
                if (marked) ++mark;
            }
        }
        SetWidths();
        SetView();
        Check(workbook_close(std::exchange(book_, nullptr)));
        std::ifstream in(file_, std::ios::binary);
        std::string bytes{std::istreambuf_iterator<char>(in), {}};
        if (bytes.empty()) Fail("it could not be read back");
        return bytes;
    }

  private:
    static constexpr lxw_row_t kTitleRow = 1, kFirstRow = 2;

    static void Check(lxw_error error) {
        if (error != LXW_NO_ERROR) Fail(lxw_strerror(error));
    }
    void WriteText(lxw_row_t row, std::int32_t col, const std::string& text, lxw_format* format) {
        Check(
            worksheet_write_string(sheet_, row, static_cast<lxw_col_t>(col), Fitting(text).c_str(), format));
    }
    void WriteNumber(lxw_row_t row, std::int32_t col, double number, lxw_format* format) {
        Check(worksheet_write_number(sheet_, row, static_cast<lxw_col_t>(col), number, format));
    }

    void WriteHeading() {
        lxw_format* caption = workbook_add_format(book_);
        format_set_bold(caption);
        format_set_font_size(caption, 14);
        WriteText(0, 0, table_.caption, caption);
        std::size_t most = 1;
        for (std::int32_t col = 0, next = 0; col < table_.Cols(); col = next) {
            next = table_.TitleEnd(col);
            std::vector<std::string_view> lines;
            SplitLines(table_.Columns()[static_cast<std::size_t>(col)].title, lines);
            most = std::max(most, lines.size());
            std::string title;
            for (const std::string_view line : lines) {
                if (!title.empty()) title += '\n';
                title += line;
            }
            if (next - col > 1) {
                Check(worksheet_merge_range(sheet_, kTitleRow, static_cast<lxw_col_t>(col), kTitleRow,
                                            static_cast<lxw_col_t>(next - 1), title.c_str(),
                                            HeadingFormat()));
            } else {
                WriteText(kTitleRow, col, title, HeadingFormat());
            }
        }
        Check(worksheet_set_row(sheet_, kTitleRow, kLineHeight * static_cast<double>(most), nullptr));
    }

    lxw_format* HeadingFormat() {
        if (heading_) return heading_;
        heading_ = workbook_add_format(book_);
        format_set_bold(heading_);
        format_set_align(heading_, LXW_ALIGN_CENTER);
        format_set_align(heading_, LXW_ALIGN_VERTICAL_CENTER);
        format_set_text_wrap(heading_);
        format_set_border(heading_, LXW_BORDER_THIN);
        format_set_bg_color(heading_, 0xE4E4E4);
        return heading_;
    }

    std::string MoneyFormat() const {
        std::string symbol;
        for (const char c : options_.currencySymbol)
            if (c != '"') symbol += c;
        if (symbol.empty()) symbol = "$";
        return "\"" + symbol + "\"#,##0.00;\"" + symbol + "\"-#,##0.00";
    }

    /// How a value of that kind shows; empty: as it is.
    std::string NumberFormat(const CellValue& value) const {
        if (const auto* date = std::get_if<DateTime>(&value)) {
            if (!IsSheetDate(*date)) return "@";
            return date->Days() == date->WholeDay() ? "m/d/yyyy" : "m/d/yyyy h:mm:ss AM/PM";
        }
        if (std::holds_alternative<Money>(value)) return MoneyFormat();
        if (std::holds_alternative<HourCount>(value)) return "0.0";
        if (std::holds_alternative<std::int64_t>(value)) return "0";
        if (std::holds_alternative<bool>(value)) return "\"Y\";\"Y\";\"n\"";
        return std::holds_alternative<double>(value) ? "" : "@";
    }

    lxw_format* FormatOf(const CellValue& value, Alignment alignment, int slotType) {
        const auto key = std::make_tuple(NumberFormat(value), alignment, slotType);
        const auto known = formats_.find(key);
        if (known != formats_.end()) return known->second;
        lxw_format* format = workbook_add_format(book_);
        if (!std::get<0>(key).empty()) format_set_num_format(format, std::get<0>(key).c_str());
        format_set_border(format, LXW_BORDER_THIN);
        format_set_border_color(format, 0xC0C0C0);
        format_set_align(format, LXW_ALIGN_VERTICAL_CENTER);
        const bool left = alignment == Alignment::Left,
                   right = alignment == Alignment::Right || alignment == Alignment::RightBottom;
        format_set_align(format, left ? LXW_ALIGN_LEFT : right ? LXW_ALIGN_RIGHT : LXW_ALIGN_CENTER);
        if (slotType != 0) {
            const Color color = MarkColor(slotType);
            format_set_bg_color(format, (color & 255) << 16 | (color & 0xFF00) | color >> 16);
            format_set_bold(format);
        }
        return formats_[key] = format;
    }

    void WriteCell(std::int32_t row, std::int32_t col, int slotType) {
        const TableCell& cell = table_.Cell(row, col);
        const auto at = kFirstRow + static_cast<lxw_row_t>(row);
        const bool inHeading = table_.firstRowFixed && row == 0;
        lxw_format* format =
            inHeading
                ? HeadingFormat()
                : FormatOf(cell.value, table_.Columns()[static_cast<std::size_t>(col)].alignment, slotType);
        std::visit(
            [&](const auto& value) {
                using T = std::decay_t<decltype(value)>;
                if constexpr (std::is_same_v<T, std::monostate> || std::is_same_v<T, TimeSpan>) {
                    if (cell.text.empty()) {
                        Check(worksheet_write_blank(sheet_, at, static_cast<lxw_col_t>(col), format));
                    } else {
                        WriteText(at, col, std::string(cell.text), format);
                    }
                } else if constexpr (std::is_same_v<T, DateTime>) {
                    IsSheetDate(value) ? WriteNumber(at, col, value.Days(), format)
                                       : WriteText(at, col, std::string(cell.text), format);
                } else if constexpr (std::is_same_v<T, Money>) {
                    WriteNumber(at, col, value.ToDouble(), format);
                } else if constexpr (std::is_same_v<T, HourCount>) {
                    WriteNumber(at, col, value.hours, format);
                } else {
                    WriteNumber(at, col, static_cast<double>(value), format);
                }
            },
            cell.value);
    }

    void SetWidths() {
        for (std::int32_t col = 0; col < table_.Cols(); ++col) {
            std::vector<std::string_view> lines;
            const TableColumn& column = table_.Columns()[static_cast<std::size_t>(col)];
            SplitLines(column.title, lines);
            std::size_t width = kLeastWidth;
            if (column.alignment != Alignment::DayColumn)
                for (const std::string_view line : lines) width = std::max(width, Characters(line) + 1);
            for (std::int32_t row = 0; row < table_.Rows(); ++row)
                width = std::max(width, Characters(table_.Cell(row, col).text));
            const auto at = static_cast<lxw_col_t>(col);
            Check(worksheet_set_column(sheet_, at, at, static_cast<double>(std::min(width, kMostWidth) + 1),
                                       nullptr));
        }
    }

    /// Titles and fixed columns stay in view and on every printed page, which is as wide as the sheet.
    void SetView() {
        const lxw_row_t below = kFirstRow + (table_.firstRowFixed ? 1 : 0);
        worksheet_freeze_panes(sheet_, below, static_cast<lxw_col_t>(table_.fixedColumns));
        worksheet_set_landscape(sheet_);
        worksheet_fit_to_pages(sheet_, 1, 0);
        Check(worksheet_repeat_rows(sheet_, 0, below - 1));
        Check(worksheet_set_footer(sheet_, "&C&P / &N"));
    }

    const Table& table_;
    const XlsxOptions& options_;
    std::string folder_, file_;
    lxw_workbook* book_ = nullptr;
    lxw_worksheet* sheet_ = nullptr;
    lxw_format* heading_ = nullptr;
    std::map<std::tuple<std::string, Alignment, int>, lxw_format*> formats_;
};

}  // namespace

std::string XlsxOf(const Table& table, const XlsxOptions& options) {
    if (table.Rows() + 2 > LXW_ROW_MAX || table.Cols() > LXW_COL_MAX) Fail("it has too many rows or columns");
    const ScratchFolder folder;
    const NumbersWithPoint plain;
    return Workbook(table, options, folder.Path()).Write();
}

}  // namespace vortan
