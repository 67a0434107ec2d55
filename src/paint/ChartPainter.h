#pragma once

#include <QPainter>
#include <QRect>
#include <string_view>
#include <vector>

#include "charts/Vwindow.h"
#include "paint/QtTextMetrics.h"

namespace vortan {

/// Plays a complete surface on a painter: on screen, on paper, into files. The one place that knows how the
/// things on a surface look.
class ChartPainter {
  public:
    /// Both must outlive the object. With `blackAndWhite` the colours are adapted.
    ChartPainter(const Vwindow& surface, const QtTextMetrics& metrics, bool blackAndWhite = false)
        : surface_(surface), metrics_(metrics), blackAndWhite_(blackAndWhite) {}

    /// Paints the part of the surface inside `part` and nothing outside it. The painter's units must be twips
    /// of the surface; one of its pixels is `pixel` twips.
    void Paint(QPainter& painter, const QRect& part, double pixel) const;

    /// The grid's lines along the right and lower edge of a part that the surface is cut at.
    void PaintCut(QPainter& painter, const QRect& part, double pixel) const;

  private:
    /// So many slanted lines that nobody sees single ones, and smoothing each takes long. Asked of the whole
    /// surface, so that it looks alike however it is painted in parts.
    bool IsDense() const { return surface_.SlantedLines() > 4000; }
    void DropCovered(const QRect& part, double pixel) const;
    void PaintGrid(QPainter& painter, const QRect& part, double pixel) const;
    void PaintHeading(QPainter& painter, int firstCol, int lastCol, double pixel) const;
    int PaintDayTitles(QPainter& painter, int col, double pixel) const;
    void PaintCell(QPainter& painter, int row, int col) const;
    void PaintItem(QPainter& painter, const DrawItem& item, double pixel) const;
    void PaintText(QPainter& painter, const QRect& room, const std::vector<std::string_view>& lines,
                   Qt::Alignment alignment) const;

    const Vwindow& surface_;
    const QtTextMetrics& metrics_;
    bool blackAndWhite_;
    mutable std::vector<std::int32_t> found_;
};

}  // namespace vortan
