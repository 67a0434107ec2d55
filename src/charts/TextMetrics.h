#pragma once

#include <string_view>

namespace vortan {

/// How large texts are in the font of a screen, in twips (1/1440 inch). Charts lay themselves out by it; the
/// desktop measures with its toolkit, tests with characters of one width.
class TextMetrics {
  public:
    virtual ~TextMetrics() = default;

    /// Of one line.
    virtual int TextWidth(std::string_view text) const = 0;
    /// Of a line of text, whatever it says.
    virtual int TextHeight() const = 0;
};

}  // namespace vortan
