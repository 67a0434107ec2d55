#include "reports/PageMetrics.h"

#include <cmath>

#include "charts/Twips.h"

namespace vortan {
namespace {

/// Thousandths of the font's height, from the blank to the tilde.
constexpr short kWidths[] = {278,  278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278, 278,
                             556,  556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556,
                             1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556, 833, 722, 778,
                             667,  778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278, 278, 278, 469, 556,
                             333,  556, 556, 500, 556, 556, 278, 556, 556, 222, 222, 500, 222, 833, 556, 556,
                             556,  556, 333, 500, 278, 556, 500, 722, 500, 500, 500, 334, 260, 334, 584};
static_assert(sizeof kWidths / sizeof *kWidths == '~' - ' ' + 1);
constexpr int kWideLetter = 667, kSquareLetter = 1000;
constexpr double kRoom = 1.06;  // for fonts that are a little wider

}  // namespace

int PageMetrics::TextWidth(std::string_view text) const {
    double width = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= ' ' && byte <= '~') {
            width += kWidths[byte - ' '];
        } else if (byte >= 0xE3) {  // the first byte of a letter from U+3000 on
            width += kSquareLetter;
        } else if (byte >= 0xC0) {
            width += kWideLetter;
        }
    }
    return static_cast<int>(std::lround(width * kRoom * kFontPixels * kTwipsPerPixel / 1000));
}

int PageMetrics::TextHeight() const {
    return static_cast<int>(kLinePixels * kTwipsPerPixel);
}

int PageMetrics::FontHeight() const {
    return static_cast<int>(kFontPixels * kTwipsPerPixel);
}

}  // namespace vortan
