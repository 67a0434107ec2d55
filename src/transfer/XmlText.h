#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vortan {

/// The text of an XML file in UTF-8, with the declared encoding taken into account: UTF-8, UTF-16 of either
/// order with or without its mark, Latin-1 and Windows-1252. What is none of them is taken for Windows-1252.
std::string XmlToUtf8(std::string bytes);

/// Where lines begin in a text, to tell lines by offset when the text itself is used up.
class LineStarts {
  public:
    explicit LineStarts(std::string_view text);
    /// Counted from 1.
    std::int32_t LineAt(std::ptrdiff_t offset) const;

  private:
    std::vector<std::uint32_t> starts_;
};

/// Text for one line of a plan: control characters become blanks, broken characters are dropped, no blanks
/// around it.
std::string CleanText(std::string_view text);

}  // namespace vortan
