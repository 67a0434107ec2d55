#pragma once

#include <string>
#include <string_view>

#include "charts/DrawList.h"

namespace vortan {

/// `text` as the content of an element or of an attribute in double quotes. Lines are joined by `lineBreak`;
/// other control characters become blanks.
std::string EscapedHtml(std::string_view text, std::string_view lineBreak = "<br>");

/// "#rrggbb"
std::string HtmlColor(Color color);

}  // namespace vortan
