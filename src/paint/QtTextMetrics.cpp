#include "paint/QtTextMetrics.h"

#include <algorithm>
#include <cmath>

#include "paint/Text.h"

namespace vortan {
namespace {

constexpr double kTwipsPerPoint = 20;

QFont InTwips(QFont font) {
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(font.pointSizeF() * kTwipsPerPoint))));
    font.setKerning(false);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::ForceOutline));
    return font;
}

}  // namespace

QFont ToFont(const FormFont& font) {
    QFont result(Q(font.name));
    result.setPointSizeF(font.size > 0 ? font.size : FormFont().size);
    result.setBold(font.bold);
    result.setItalic(font.italic);
    return result;
}

QtTextMetrics::QtTextMetrics(const QFont& font)
    : font_(InTwips(font)),
      metrics_(font_),
      height_(static_cast<int>(std::ceil(metrics_.height()))),
      ascent_(static_cast<int>(std::lround(metrics_.ascent()))) {
    for (std::size_t c = 0; c < widths_.size(); ++c) {
        widths_[c] = metrics_.horizontalAdvance(QChar(static_cast<char16_t>(c)));
    }
}

int QtTextMetrics::TextWidth(std::string_view text) const {
    double width = 0;
    for (const char c : text) {
        const auto letter = static_cast<unsigned char>(c);
        if (letter >= widths_.size()) return static_cast<int>(std::ceil(metrics_.horizontalAdvance(Q(text))));
        width += widths_[letter];
    }
    return static_cast<int>(std::ceil(width));
}

}  // namespace vortan
