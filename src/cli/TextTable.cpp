#include "cli/TextTable.h"

#include <algorithm>
#include <numeric>

namespace vortan {

namespace {

constexpr int kLeastElastic = 8;
constexpr int kReadable = 20;  // columns of the elastic column
constexpr int kGap = 2;

struct Range {
    char32_t first, last;
};

bool InRanges(char32_t c, std::initializer_list<Range> ranges) {
    return std::any_of(ranges.begin(), ranges.end(), [c](Range r) { return c >= r.first && c <= r.last; });
}

int CharacterWidth(char32_t c) {
    if (InRanges(c, {{0x300, 0x36F}, {0x200B, 0x200F}, {0xFE00, 0xFE0F}})) return 0;
    if (InRanges(c, {{0x1100, 0x115F},
                     {0x2E80, 0xA4CF},
                     {0xAC00, 0xD7A3},
                     {0xF900, 0xFAFF},
                     {0xFE30, 0xFE6F},
                     {0xFF00, 0xFF60},
                     {0xFFE0, 0xFFE6},
                     {0x1F300, 0x1FAFF},
                     {0x20000, 0x3FFFD}})) {
        return 2;
    }
    return 1;
}

/// Takes the character at `at` of a UTF-8 text and moves past it; a broken one counts as one byte.
char32_t Decode(std::string_view text, std::size_t& at) {
    const auto lead = static_cast<unsigned char>(text[at++]);
    const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
    char32_t c = more == 0 ? lead : lead & (0x3F >> more);
    for (int i = 0; i < more && at < text.size() && (text[at] & 0xC0) == 0x80; ++i)
        c = c << 6 | (text[at++] & 0x3F);
    return c;
}

}  // namespace

int TextWidth(std::string_view text) {
    int width = 0;
    for (std::size_t at = 0; at < text.size();) width += CharacterWidth(Decode(text, at));
    return width;
}

std::string FitText(std::string_view text, int width) {
    const bool cut = TextWidth(text) > width;
    const int space = cut ? width - 1 : width;
    std::string fitted;
    int used = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin = at;
        const char32_t c = Decode(text, at);
        used += CharacterWidth(c);
        if (used > space) break;
        if (c < 32 || c == 127) {
            fitted += ' ';
        } else {
            fitted += text.substr(begin, at - begin);
        }
    }
    return cut ? fitted + "…" : fitted;
}

std::string WrapText(std::string_view text, int width) {
    if (width <= 0) return std::string(text);
    std::string out;
    int used = 0;
    while (!text.empty()) {
        const std::size_t blank = text.find(' ');
        const std::string_view word = text.substr(0, blank);
        text.remove_prefix(blank == std::string_view::npos ? text.size() : blank + 1);
        if (used > 0 && used + 1 + TextWidth(word) > width) {
            out += '\n';
            used = 0;
        } else if (used > 0) {
            out += ' ';
            ++used;
        }
        out += word;
        used += TextWidth(word);
    }
    return out;
}

TextTable::TextTable(std::vector<std::string> headings, std::vector<Align> alignment, std::size_t elastic)
    : alignment_(std::move(alignment)), elastic_(elastic) {
    rows_.push_back(std::move(headings));
    AddRule();
}

void TextTable::AddRow(std::vector<std::string> cells) {
    rows_.push_back(std::move(cells));
}

std::vector<int> TextTable::NaturalColumns() const {
    std::vector<int> columns(alignment_.size(), 0);
    for (const auto& row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) columns[i] = std::max(columns[i], TextWidth(row[i]));
    }
    return columns;
}

int TextTable::ReadableWidth() const {
    std::vector<int> columns = NaturalColumns();
    columns[elastic_] = std::min(columns[elastic_], kReadable);
    return std::accumulate(columns.begin(), columns.end(), kGap * static_cast<int>(columns.size() - 1));
}

std::string TextTable::Print(int width) const {
    std::vector<int> columns = NaturalColumns();
    const int gaps = kGap * static_cast<int>(columns.size() - 1);
    int total = std::accumulate(columns.begin(), columns.end(), gaps);
    if (width > 0 && total > width) {
        const int give = std::min(total - width, std::max(columns[elastic_] - kLeastElastic, 0));
        columns[elastic_] -= give;
        total -= give;
    }
    for (; width > 0 && total > width; --total) {
        const auto widest = std::max_element(columns.begin(), columns.end());
        if (*widest <= 1) break;
        --*widest;
    }
    std::string out;
    for (const auto& row : rows_) {
        if (row.empty()) {
            out.append(static_cast<std::size_t>(total), '-');
        } else {
            for (std::size_t i = 0; i < row.size(); ++i) {
                const std::string cell = FitText(row[i], columns[i]);
                const std::string pad(static_cast<std::size_t>(columns[i] - TextWidth(cell)), ' ');
                if (i > 0) out.append(kGap, ' ');
                out += alignment_[i] == Align::Right ? pad + cell : cell + pad;
            }
            out.erase(out.find_last_not_of(' ') + 1);
        }
        out += '\n';
    }
    return out;
}

}  // namespace vortan
