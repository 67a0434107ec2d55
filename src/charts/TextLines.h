#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "charts/TextMetrics.h"

namespace vortan {

/// Appends the lines of `text`, which "\r\n" separates; an empty text is one empty line.
void SplitLines(std::string_view text, std::vector<std::string_view>& lines);
/// The same, with lines wider than `limit` twips wrapped at blanks, and words wider than that cut.
void WrapLines(std::string_view text, int limit, const TextMetrics& metrics,
               std::vector<std::string_view>& lines);
/// A line as far as it fits into `limit` twips, with "..." where something is missing.
std::string CutToWidth(const std::string& line, int limit, const TextMetrics& metrics);

}  // namespace vortan
