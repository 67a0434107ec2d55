#pragma once

#include "charts/TextMetrics.h"

namespace vortan {

/// Characters 100 twips wide and 200 high: a plain row is 350, the margins of a cell are 50 each.
class FixedMetrics : public TextMetrics {
  public:
    int TextWidth(std::string_view text) const override { return 100 * static_cast<int>(text.size()); }
    int TextHeight() const override { return 200; }
    int FontHeight() const override { return 180; }
};

}  // namespace vortan
