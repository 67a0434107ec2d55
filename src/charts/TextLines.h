#pragma once

#include <string_view>
#include <vector>

#include "charts/TextMetrics.h"

namespace vortan {

/// Appends the lines of `text`, which "\r\n" separates; an empty text is one empty line.
void SplitLines(std::string_view text, std::vector<std::string_view>& lines);
/// The same, with lines wider than `limit` twips wrapped at blanks, and words wider than that cut.
void WrapLines(std::string_view text, int limit, const TextMetrics& metrics,
               std::vector<std::string_view>& lines);
/// The width of the widest line.
int WidestLine(std::string_view text, const TextMetrics& metrics);
/// The longest beginning of `text` whose lines are not wider than `width`, cut between two characters. A
/// longer beginning counts as no narrower.
std::string_view FittingPart(std::string_view text, double width, const TextMetrics& metrics);

}  // namespace vortan
