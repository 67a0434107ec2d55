#include "charts/TextLines.h"

namespace vortan {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

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
        // Bytes 10xxxxxx continue a character.
        do ++end;
        while (end < line.size() && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80);
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

std::string CutToWidth(const std::string& line, int limit, const TextMetrics& metrics) {
    if (metrics.TextWidth(line) <= limit) return line;
    const std::string missing = "...";
    std::size_t fits = 0;
    for (std::size_t tooMany = line.size(); tooMany - fits > 1;) {
        const std::size_t middle = (fits + tooMany) / 2;
        const bool good = metrics.TextWidth(line.substr(0, middle) + missing) <= limit;
        (good ? fits : tooMany) = middle;
    }
    // Bytes 10xxxxxx continue a character.
    while (fits > 0 && (static_cast<unsigned char>(line[fits]) & 0xC0) == 0x80) --fits;
    return line.substr(0, fits) + missing;
}

}  // namespace vortan
