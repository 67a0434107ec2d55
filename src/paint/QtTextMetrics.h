#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <array>

#include "charts/TextMetrics.h"
#include "persist/Settings.h"

namespace vortan {

QFont ToFont(const FormFont& font);

/// Measures in twips, without regard to any device, so that a chart is laid out alike on screen and on paper.
/// Letters keep their own widths (no kerning): that makes a text as wide as the sum of its letters, which are
/// measured once.
class QtTextMetrics : public TextMetrics {
  public:
    /// The font's size must be set in points.
    explicit QtTextMetrics(const QFont& font);

    int TextWidth(std::string_view text) const override;
    int TextHeight() const override { return height_; }
    int FontHeight() const override { return font_.pixelSize(); }
    /// The font to draw with on a painter whose units are twips.
    const QFont& DrawingFont() const { return font_; }
    /// From the top of a line down to its base line.
    int Ascent() const { return ascent_; }

  private:
    QFont font_;
    QFontMetricsF metrics_;
    std::array<double, 128> widths_{};  // of the letters of ASCII
    int height_, ascent_;
};

}  // namespace vortan
