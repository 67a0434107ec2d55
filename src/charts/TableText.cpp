#include "charts/TableText.h"

#include <string_view>
#include <vector>

#include "charts/HtmlText.h"
#include "charts/TextLines.h"

namespace vortan {
namespace {

/// Each row of the part, the titles first if it has them.
template <class Visit>
void ForEachRow(const TablePart& part, Visit&& visit) {
    if (part.titles && part.top > 0) visit(0);
    for (int row = part.top; row <= part.bottom; ++row) visit(row);
}

std::string OneLine(std::string_view text) {
    std::vector<std::string_view> lines;
    SplitLines(text, lines);
    std::string all;
    for (const std::string_view line : lines) {
        if (line.data() != text.data()) all += ' ';
        for (const char c : line) all += c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
    }
    return all;
}

std::string Escaped(std::string_view text) {
    std::string all;
    for (const char c : text) {
        if (c == '&') {
            all += "&amp;";
        } else if (c == '<') {
            all += "&lt;";
        } else if (c == '>') {
            all += "&gt;";
        } else {
            all += c;
        }
    }
    return all;
}

const char* HtmlAlignment(const Vwindow& surface, int row, int col) {
    if (surface.CellMarkC(row, col)) return "center";
    switch (surface.ColumnAlignment(col)) {
        case Alignment::Right:
        case Alignment::RightBottom:
            return "right";
        case Alignment::Center:
        case Alignment::DayColumn:
            return "center";
        case Alignment::Left:
            break;
    }
    return "left";
}

std::string HtmlCell(const Vwindow& surface, int row, int col) {
    const char* tag = row == 0 ? "th" : "td";
    std::string style = std::string("text-align:") + (row == 0 ? "center" : HtmlAlignment(surface, row, col));
    if (surface.CellMarkB(row, col)) style += ";font-weight:bold";
    const Color color = surface.CellColor(row, col);
    if (color != kWhite) style += ";background-color:" + HtmlColor(color);
    std::vector<std::string_view> lines;
    SplitLines(row == 0 ? surface.ColumnTitle(col) : surface.Cell(row, col), lines);
    std::string content = Escaped(lines[0]);
    for (std::size_t i = 1; i < lines.size(); ++i) content += "<br>" + Escaped(lines[i]);
    return "<" + std::string(tag) + " style=\"" + style + "\">" + content + "</" + tag + ">";
}

}  // namespace

TablePart WholeTable(const Vwindow& surface) {
    return {0, 0, surface.Rows() - (surface.HasFooter() ? 2 : 1), surface.Cols() - 1};
}

std::string TableAsTabs(const Vwindow& surface, const TablePart& part) {
    std::string text;
    ForEachRow(part, [&](int row) {
        for (int col = part.left; col <= part.right; ++col) {
            if (col > part.left) text += '\t';
            text += OneLine(row == 0 ? surface.ColumnTitle(col) : surface.Cell(row, col));
        }
        text += "\r\n";
    });
    return text;
}

std::string TableAsHtml(const Vwindow& surface, const TablePart& part) {
    std::string text = "<table border=\"1\" style=\"border-collapse:collapse\">\n";
    ForEachRow(part, [&](int row) {
        text += "<tr>";
        for (int col = part.left; col <= part.right; ++col) text += HtmlCell(surface, row, col);
        text += "</tr>\n";
    });
    return text + "</table>\n";
}

}  // namespace vortan
