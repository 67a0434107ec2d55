#pragma once

#include <algorithm>
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
    /// The size of the font, without the space between lines.
    virtual int FontHeight() const = 0;

    /// Of a character, never 0.
    double AverageWidth() const {
        constexpr std::string_view alphabet = "abcdefghijklmnopqrstuvwxyz";
        return std::max(1.0, TextWidth(alphabet) / static_cast<double>(alphabet.size()));
    }
};

}  // namespace vortan
