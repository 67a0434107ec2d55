#include "charts/TextLines.h"

#include <algorithm>

namespace vortan {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

/// Bytes 10xxxxxx do.
bool ContinuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The length of the longest beginning of `line` that is not wider than `limit` and ends before a blank, or,
/// when the first word alone is too wide, anywhere between two characters; at least one character.
std::size_t FittingLength(std::string_view line, int limit, const TextMetrics& metrics) {
    std::size_t fitting = 0;
    const std::size_t firstWord = std::min(line.find_first_not_of(' '), line.size());
    for (std::size_t blank = line.find(' ', firstWord); blank != std::string_view::npos;
         blank = line.find(' ', blank + 1)) {
        if (metrics.TextWidth(line.substr(0, blank)) > limit) break;
        fitting = blank;
    }
    if (fitting > 0) return fitting;
    for (std::size_t end = 0; end < line.size();) {
        do ++end;
        while (end < line.size() && ContinuesCharacter(line[end]));
        if (fitting > 0 && metrics.TextWidth(line.substr(0, end)) > limit) break;
        fitting = end;
    }
    return fitting;
}

}  // namespace

void SplitLines(std::string_view text, std::vector<std::string_view>& lines) {
    for (;;) {
        const std::size_t end = text.find(kLineEnd);
        lines.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return;
        text.remove_prefix(end + kLineEnd.size());
    }
}

void WrapLines(std::string_view text, int limit, const TextMetrics& metrics,
               std::vector<std::string_view>& lines) {
    std::vector<std::string_view> whole;
    SplitLines(text, whole);
    for (std::string_view line : whole) {
        while (metrics.TextWidth(line) > limit) {
            const std::size_t length = FittingLength(line, limit, metrics);
            const std::size_t next = line.find_first_not_of(' ', length);
            if (next == std::string_view::npos) {  // only blanks are left over
                line = line.substr(0, length);
                break;
            }
            lines.push_back(line.substr(0, length));
            line.remove_prefix(next);
        }
        lines.push_back(line);
    }
}

int WidestLine(std::string_view text, const TextMetrics& metrics) {
    std::vector<std::string_view> lines;
    SplitLines(text, lines);
    int width = 0;
    for (const std::string_view line : lines) width = std::max(width, metrics.TextWidth(line));
    return width;
}

std::string_view FittingPart(std::string_view text, double width, const TextMetrics& metrics) {
    const auto beginning = [text](std::size_t length) {
        while (length > 0 && length < text.size() && ContinuesCharacter(text[length])) --length;
        const bool inLineEnd = length > 0 && text.substr(length - 1, 2) == kLineEnd;
        return text.substr(0, inLineEnd ? length - 1 : length);
    };
    const auto fits = [&](std::size_t length) { return WidestLine(beginning(length), metrics) <= width; };
    if (fits(text.size())) return text;
    std::size_t fitting = 0, tooWide = text.size();
    while (tooWide - fitting > 1) {
        const std::size_t middle = fitting + (tooWide - fitting) / 2;
        (fits(middle) ? fitting : tooWide) = middle;
    }
    return beginning(fitting);
}

}  // namespace vortan
