#pragma once

#include "charts/TextMetrics.h"

namespace vortan {

/// The letters of a web page as no other machine is known to have them: those of the usual fonts without
/// serifs, 12 pixels high in lines of 16, and a little room for wider ones.
class PageMetrics : public TextMetrics {
  public:
    static constexpr int kFontPixels = 12, kLinePixels = 16;
    /// From the top of a line to the foot of its letters.
    static constexpr int kAscentPixels = 12;

    int TextWidth(std::string_view text) const override;
    int TextHeight() const override;
    int FontHeight() const override;
};

}  // namespace vortan
