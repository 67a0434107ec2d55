#include "reports/HtmlFile.h"

#include <charconv>
#include <string_view>

#include "charts/HtmlText.h"

namespace vortan {
namespace {

constexpr std::string_view kStyle =
    "body{font:14px/1.35 'Liberation Sans',Arial,sans-serif;color:#000;background:#fff;margin:1em}"
    "h1{font-size:1.25em}"
    "table{border-collapse:collapse}"
    "th,td{border:1px solid #999;padding:.15em .45em;vertical-align:middle}"
    "th{background:#e4e4e4;text-align:center}"
    "td.m{text-align:center;font-weight:bold}"
    "td.t{mso-number-format:'\\@'}"
    "thead{display:table-header-group}tr{break-inside:avoid}"
    "@page{size:landscape;margin:12mm}"
    "@media screen{thead{position:sticky;top:0}}"
    "@media print{body{margin:0;font-size:8pt}*{-webkit-print-color-adjust:exact;print-color-adjust:exact}}";

std::string NumberText(double value) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string ValueAttributes(double value, const char* format) {
    return " sdval=\"" + NumberText(value) + "\" sdnum=\"1033;1033;" + format + "\"";
}

struct AttributesOf {
    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(bool) const { return {}; }
    std::string operator()(TimeSpan) const { return {}; }
    std::string operator()(DateTime date) const {
        if (!date.IsSet()) return {};
        return ValueAttributes(date.Days(),
                               date.Days() == date.WholeDay() ? "M/D/YYYY" : "M/D/YYYY H:MM:SS AM/PM");
    }
    std::string operator()(Money amount) const { return ValueAttributes(amount.ToDouble(), "#,##0.00"); }
    std::string operator()(HourCount hours) const { return ValueAttributes(hours.hours, "0.0"); }
    std::string operator()(std::int64_t number) const {
        return ValueAttributes(static_cast<double>(number), "0");
    }
    std::string operator()(double number) const { return ValueAttributes(number, "General"); }
};

const char* AlignmentText(Alignment alignment) {
    switch (alignment) {
        case Alignment::Left:
            break;
        case Alignment::Right:
        case Alignment::RightBottom:
            return "right";
        case Alignment::Center:
        case Alignment::DayColumn:
            return "center";
    }
    return "left";
}

std::string CellHtml(const TableCell& cell, const char* tag, int slotType) {
    std::string html = std::string("<") + tag;
    const bool guarded = MayBeFormula(cell.text);
    if (slotType != 0) {
        html += " class=\"m\" style=\"background:" + HtmlColor(MarkColor(slotType)) + "\"";
    } else if (guarded) {
        html += " class=\"t\"";
    }
    html += std::visit(AttributesOf{}, cell.value) + ">";
    if (guarded) html += "&#8203;";
    return html + EscapedHtml(cell.text) + "</" + tag + ">";
}

}  // namespace

std::string HtmlOf(const Table& table) {
    std::string html =
        "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
        "<meta name=\"viewport\" content=\"width=device-width\">\n<title>" +
        EscapedHtml(table.caption) + "</title>\n<style>" + std::string(kStyle);
    for (std::int32_t col = 0; col < table.Cols(); ++col) {
        html += "td:nth-child(" + std::to_string(col + 1) +
                "){text-align:" + AlignmentText(table.Columns()[static_cast<std::size_t>(col)].alignment) +
                "}";
    }
    html += "</style></head>\n<body><h1>" + EscapedHtml(table.caption) + "</h1>\n<table>\n<thead>\n<tr>";
    for (std::int32_t col = 0, next = 0; col < table.Cols(); col = next) {
        next = table.TitleEnd(col);
        html += next - col > 1 ? "<th colspan=\"" + std::to_string(next - col) + "\">" : "<th>";
        html += EscapedHtml(table.Columns()[static_cast<std::size_t>(col)].title) + "</th>";
    }
    html += "</tr>\n";
    std::size_t mark = 0;
    const std::int32_t headRows = table.firstRowFixed && table.Rows() > 0 ? 1 : 0;
    for (std::int32_t row = 0; row < table.Rows(); ++row) {
        if (row == headRows) html += "</thead>\n<tbody>\n";
        html += "<tr>";
        for (std::int32_t col = 0; col < table.Cols(); ++col) {
            const bool marked =
                mark < table.marks.size() && table.marks[mark].row == row && table.marks[mark].column == col;
            html += CellHtml(table.Cell(row, col), row < headRows ? "th" : "td",
                             marked ? table.marks[mark].slotType : 0);
            if (marked) ++mark;
        }
        html += "</tr>\n";
    }
    html += table.Rows() > headRows ? "</tbody>" : "</thead>";
    return html + "\n</table>\n</body></html>\n";
}

}  // namespace vortan
