#pragma once

#include "charts/DrawList.h"

namespace vortan {

/// How a filled area looks in black and white.
struct BlackWhiteFill {
    Color fill;  ///< of the area or of the lines of its hatch
    Hatch hatch;

    bool operator==(const BlackWhiteFill&) const = default;
};

/// Pure colours become steps of grey, all others the kinds of hatch, so that different ones stay different;
/// hatched areas keep their hatch, with lines in grey. Black, white and greys stay as they are.
BlackWhiteFill AdjustedFill(Color fill, Hatch hatch = Hatch::Solid);
/// Black, but white stays white. For lines, borders and texts.
Color AdjustedLine(Color color);
/// An item for output in black and white.
DrawItem Adjusted(DrawItem item);

}  // namespace vortan
