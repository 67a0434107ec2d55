#include <algorithm>
#include <numeric>
#include <utility>

#include "help/HelpViews.h"

namespace vortan {
namespace {

using Kind = HelpBlock::Kind;
using Lines = std::vector<std::string>;

constexpr std::size_t kNarrowest = 20;  // columns of a text

std::size_t Columns(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

/// Keys and texts of terminals keep marks, since a terminal has no styles; other styles are dropped.
std::string Marked(const HelpText& text) {
    std::string all;
    for (const HelpRun& run : text) {
        const bool key = run.kind == HelpRun::Kind::Key;
        const bool quoted = run.kind == HelpRun::Kind::Code || run.kind == HelpRun::Kind::ProgramText;
        all += key ? "[" + run.text + "]" : quoted ? "\"" + run.text + "\"" : run.text;
    }
    return all;
}

Lines Wrapped(const std::string& text, std::size_t width) {
    Lines lines;
    std::string line;
    std::size_t begin = 0;
    while (begin <= text.size()) {
        const std::size_t end = std::min(text.find(' ', begin), text.size());
        const std::string word = text.substr(begin, end - begin);
        begin = end + 1;
        if (word.empty()) continue;
        if (!line.empty() && Columns(line) + 1 + Columns(word) > width)
            lines.push_back(std::exchange(line, ""));
        line += (line.empty() ? "" : " ") + word;
    }
    if (!line.empty() || lines.empty()) lines.push_back(line);
    return lines;
}

std::string Padded(std::string text, std::size_t width) {
    const std::size_t columns = Columns(text);
    return text.append(columns < width ? width - columns : 0, ' ');
}

/// `first` begins the first line and as many blanks the others.
std::string Hanging(const std::string& first, const HelpText& text, std::size_t width) {
    std::string all;
    const std::size_t room = std::max(kNarrowest, width - std::min(width, first.size()));
    for (const std::string& line : Wrapped(Marked(text), room))
        all += (all.empty() ? first : std::string(first.size(), ' ')) + line + "\n";
    return all;
}

/// Each column as wide as its longest cell; where that is too wide, the widest columns give way.
std::vector<std::size_t> ColumnWidths(const HelpBlock& table, std::size_t width) {
    std::vector<std::size_t> widths(table.rows.front().size());
    for (const auto& row : table.rows) {
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Columns(Marked(row[i])));
    }
    const std::size_t gaps = 2 * (widths.size() - 1);
    while (std::accumulate(widths.begin(), widths.end(), gaps) > width) {
        const auto widest = std::max_element(widths.begin(), widths.end());
        if (*widest <= kNarrowest / 2) break;
        --*widest;
    }
    return widths;
}

std::string Table(const HelpBlock& table, std::size_t width) {
    if (table.rows.empty() || table.rows.front().empty()) return "";
    const auto widths = ColumnWidths(table, width);
    std::string all;
    for (const auto& row : table.rows) {
        std::vector<Lines> cells;
        std::size_t height = 1;
        for (std::size_t i = 0; i < row.size(); ++i) {
            cells.push_back(Wrapped(Marked(row[i]), widths[i]));
            height = std::max(height, cells.back().size());
        }
        for (std::size_t at = 0; at < height; ++at) {
            std::string line;
            for (std::size_t i = 0; i < cells.size(); ++i)
                line += Padded(at < cells[i].size() ? cells[i][at] : "", widths[i]) + "  ";
            line.erase(line.find_last_not_of(' ') + 1);
            all += line + "\n";
        }
        if (&row != &table.rows.front()) continue;
        std::string rule;
        for (const std::size_t column : widths) rule += std::string(column, '-') + "  ";
        all += rule.substr(0, rule.size() - 2) + "\n";
    }
    return all;
}

std::string BlockText(const HelpBlock& block, std::size_t width) {
    switch (block.kind) {
        case Kind::Title:
        case Kind::Section: {
            std::string text = Hanging("", block.text, width);
            const std::size_t under = std::min(width, Columns(text) - 1);
            return text + std::string(under, block.kind == Kind::Title ? '=' : '-') + "\n";
        }
        case Kind::Paragraph:
            return Hanging("", block.text, width);
        case Kind::Item:
            return Hanging("* ", block.text, width);
        case Kind::NumberedItem:
            return Hanging(std::to_string(block.number) + ". ", block.text, width);
        case Kind::Picture: {
            HelpText text = block.text;
            text.insert(text.begin(), {HelpRun::Kind::Plain, "[Picture: "});
            text.push_back({HelpRun::Kind::Plain, "]"});
            return Hanging("", text, width);
        }
        case Kind::Lines: {
            std::string all = "    ";
            for (const char c : PlainText(block.text)) all += c == '\n' ? "\n    " : std::string(1, c);
            return all + "\n";
        }
        case Kind::Table:
            break;
    }
    return Table(block, width);
}

}  // namespace

std::string HelpPlainText(const HelpPage& page, std::size_t width) {
    std::string all;
    const HelpBlock* before = nullptr;
    for (const HelpBlock& block : page.blocks) {
        const bool goesOn = before && before->kind == block.kind &&
                            (block.kind == Kind::Item || block.kind == Kind::NumberedItem);
        if (before && !goesOn) all += "\n";
        all += BlockText(block, width);
        before = &block;
    }
    if (!page.next.empty()) all += "\nNext: " + page.next + "\n";
    return all;
}

}  // namespace vortan
