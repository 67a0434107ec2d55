#include "charts/AdjustColors.h"

#include <algorithm>
#include <array>

namespace vortan {
namespace {

/// By hue, a set of bits: 1 red, 2 green, 4 blue. Steps that printers tell apart.
constexpr std::array<Color, 8> kGreys = {kBlack,   0x585858, 0x909090, 0xD8D8D8,
                                         0x303030, 0x787878, 0xC0C0C0, kWhite};

struct Hue {
    int bits;
    bool pure;  ///< each channel is full or empty
    bool grey;
};

Hue HueOf(Color color) {
    const std::array<int, 3> channels = {static_cast<int>(color & 255), static_cast<int>(color >> 8 & 255),
                                         static_cast<int>(color >> 16 & 255)};
    const auto [low, high] = std::minmax_element(channels.begin(), channels.end());
    Hue hue{0, true, *low == *high};
    for (std::size_t i = 0; i < channels.size(); ++i) {
        if (2 * channels[i] > *low + *high) hue.bits |= 1 << i;
        if (channels[i] != 0 && channels[i] != 255) hue.pure = false;
    }
    return hue;
}

Color GreyOf(Color fill) {
    const Hue hue = HueOf(fill);
    return hue.grey ? fill : kGreys[static_cast<std::size_t>(hue.bits)];
}

}  // namespace

BlackWhiteFill AdjustedFill(Color fill, Hatch hatch) {
    const Hue hue = HueOf(fill);
    if (hue.grey || hatch == Hatch::Transparent) return {fill, hatch};
    if (hatch != Hatch::Solid || hue.pure) return {GreyOf(fill), hatch};
    constexpr Hatch kHatches[] = {Hatch::Horizontal, Hatch::Vertical, Hatch::Upward,
                                  Hatch::Downward,   Hatch::Cross,    Hatch::DiagonalCross};
    return {kBlack, kHatches[hue.bits - 1]};  // neither 0 nor 7 but for greys
}

Color AdjustedLine(Color color) {
    return color == kWhite ? kWhite : kBlack;
}

DrawItem Adjusted(DrawItem item) {
    item.border = AdjustedLine(item.border);
    if (item.kind == DrawItem::Kind::Rect) {
        const BlackWhiteFill adjusted = AdjustedFill(item.fill, item.hatch);
        item.fill = adjusted.fill;
        item.hatch = adjusted.hatch;
    } else {
        item.fill = GreyOf(item.fill);
    }
    return item;
}

}  // namespace vortan
