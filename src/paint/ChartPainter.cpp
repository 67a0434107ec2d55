#include "paint/ChartPainter.h"

#include <QVector>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <unordered_set>

#include "charts/AdjustColors.h"
#include "charts/TextLines.h"
#include "charts/Twips.h"
#include "paint/ScreenColor.h"
#include "paint/Text.h"

namespace vortan {
namespace {

constexpr Color kGridLine = 0xC8C8C8, kTimeLine = 0xE4E4E4, kHeading = 0xF2F0EC;

constexpr int kSlanted = -16;    // in a key, apart from what stands for triangles
constexpr double kMargin = 150;  // twips around a part from which a line can still reach into it
constexpr int kHatchStep = 105;  // twips between two lines of a hatch

/// The lines of a hatch in the area x1, y1 to x2, y2, which has its corners in order. Lines of one kind lie
/// alike everywhere on a surface, so that areas that touch have one hatch.
void AddHatch(QVector<QLineF>& lines, const QRectF& area, Hatch hatch) {
    const double x1 = area.left(), y1 = area.top(), x2 = area.right(), y2 = area.bottom();
    const auto each = [&](double from, double to, double step, auto&& add) {
        for (double at = std::ceil(from / step) * step; at <= to; at += step) add(at);
    };
    const bool level = hatch == Hatch::Horizontal || hatch == Hatch::Cross;
    const bool upright = hatch == Hatch::Vertical || hatch == Hatch::Cross;
    const bool upward = hatch == Hatch::Upward || hatch == Hatch::DiagonalCross;
    const bool downward = hatch == Hatch::Downward || hatch == Hatch::DiagonalCross;
    const double slanted = kHatchStep * std::sqrt(2.0);
    if (level) each(y1, y2, kHatchStep, [&](double y) { lines.append({x1, y, x2, y}); });
    if (upright) each(x1, x2, kHatchStep, [&](double x) { lines.append({x, y1, x, y2}); });
    if (upward)
        each(x1 + y1, x2 + y2, slanted, [&](double sum) {
            const double left = std::max(x1, sum - y2), right = std::min(x2, sum - y1);
            lines.append({left, sum - left, right, sum - right});
        });
    if (downward)
        each(x1 - y2, x2 - y1, slanted, [&](double difference) {
            const double left = std::max(x1, difference + y1), right = std::min(x2, difference + y2);
            lines.append({left, left - difference, right, right - difference});
        });
}

/// What of a line lies in an area; none of it: nothing.
std::optional<QLineF> Clipped(const QLineF& line, const QRectF& area) {
    double first = 0, last = 1;
    const auto keep = [&](double from, double step, double low, double high) {
        if (step == 0) {
            if (from < low || from > high) last = -1;
            return;
        }
        const auto [enter, leave] = std::minmax({(low - from) / step, (high - from) / step});
        first = std::max(first, enter);
        last = std::min(last, leave);
    };
    keep(line.x1(), line.dx(), area.left(), area.right());
    keep(line.y1(), line.dy(), area.top(), area.bottom());
    if (first > last) return std::nullopt;
    return QLineF(line.pointAt(first), line.pointAt(last));
}

/// The row or column that was `found` at a position, or the nearest of `count`.
int Nearest(int found, int position, int count) {
    if (found >= 0) return found;
    return position < 0 ? 0 : count - 1;
}

std::vector<std::string_view> LinesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    SplitLines(text, lines);
    return lines;
}

}  // namespace

void ChartPainter::Paint(QPainter& painter, const QRect& part, double pixel) const {
    painter.save();
    painter.setClipRect(part, Qt::IntersectClip);
    painter.fillRect(part, Qt::white);
    painter.setFont(metrics_.DrawingFont());
    if (surface_.TheStyle() != Vwindow::Style::Free) PaintGrid(painter, part, pixel);
    surface_.ItemsIn(part.left(), part.top(), part.right() + 1, part.bottom() + 1, found_);
    DropCovered(part, pixel);
    for (const std::int32_t index : found_) {
        const DrawItem& item = surface_.Items()[static_cast<std::size_t>(index)];
        if (blackAndWhite_) {
            PaintItem(painter, Adjusted(item), pixel);
        } else {
            PaintItem(painter, item, pixel);
        }
    }
    painter.restore();
}

void ChartPainter::PaintCut(QPainter& painter, const QRect& part, double pixel) const {
    if (surface_.TheStyle() == Vwindow::Style::Free) return;
    const int gridRight = surface_.ColPos(surface_.Cols());
    const int gridBottom = surface_.RowPos(surface_.Rows() - (surface_.HasFooter() ? 1 : 0));
    const int right = part.right() + 1, bottom = part.bottom() + 1;
    painter.setPen(QPen(ScreenColor(kGridLine), pixel));
    if (right < gridRight && part.top() < gridBottom)
        painter.drawLine(right, part.top(), right, std::min(bottom, gridBottom));
    if (bottom < gridBottom && part.left() < gridRight)
        painter.drawLine(part.left(), bottom, std::min(right, gridRight), bottom);
}

/// Leaves out what a later item covers with the same: lines, cut off at the edges of the part, and arrow
/// heads. The network of many thousand tasks has thousands of arrows that share their ends or run through the
/// whole screen. All else stays.
void ChartPainter::DropCovered(const QRect& part, double pixel) const {
    using Key = std::array<std::int32_t, 6>;
    struct Hash {
        std::size_t operator()(const Key& key) const {
            std::size_t hash = 0;
            for (const std::int32_t value : key)
                hash = (hash ^ static_cast<std::uint32_t>(value)) * 0x9E3779B97F4A7C15u;
            return hash ^ hash >> 29;
        }
    };
    const auto at = [&](int position) { return static_cast<std::int32_t>(std::floor(position / pixel)); };
    // Of where a line runs to, what lies outside the part is all the same; of where it lies, nothing.
    const auto keyOf = [&](const DrawItem& item) -> Key {
        const bool upright = item.x1 == item.x2;
        const auto [from, to] = upright ? std::minmax(item.y1, item.y2) : std::minmax(item.x1, item.x2);
        const int first = upright ? part.top() : part.left(), last = upright ? part.bottom() : part.right();
        return {upright ? 1 : 2,
                at(upright ? item.x1 : item.y1),
                at(std::clamp(from, first, last + 1)),
                at(std::clamp(to, first, last + 1)),
                static_cast<std::int32_t>(item.border),
                item.width};
    };
    // A slanted line by the pixels where it enters and leaves.
    const QRectF near = QRectF(part).adjusted(-kMargin, -kMargin, kMargin, kMargin);
    const auto slantedKeyOf = [&](const DrawItem& item) -> std::optional<Key> {
        const auto inside = Clipped(QLineF(item.x1, item.y1, item.x2, item.y2), near);
        if (!inside) return std::nullopt;
        const auto pixelAt = [&](double position) {
            return static_cast<std::int32_t>(std::floor(position / pixel));
        };
        return Key{kSlanted - item.width, pixelAt(inside->x1()), pixelAt(inside->y1()),
                   pixelAt(inside->x2()), pixelAt(inside->y2()), static_cast<std::int32_t>(item.border)};
    };
    std::unordered_set<Key, Hash> seen;
    seen.reserve(found_.size());
    auto kept = found_.end();
    for (auto next = found_.end(); next != found_.begin();) {
        const DrawItem& item = surface_.Items()[static_cast<std::size_t>(*--next)];
        bool covered = false;
        if (item.kind == DrawItem::Kind::Line && (item.x1 == item.x2 || item.y1 == item.y2)) {
            covered = !seen.insert(keyOf(item)).second;
        } else if (item.kind == DrawItem::Kind::Line && IsDense()) {
            const auto key = slantedKeyOf(item);
            covered = !key || !seen.insert(*key).second;
        } else if (item.kind == DrawItem::Kind::Triangle && item.border == item.fill) {
            covered = !seen.insert({-static_cast<int>(item.apex), item.x1, item.y1, item.x2, item.y2,
                                    static_cast<std::int32_t>(item.fill)})
                           .second;
        }
        if (!covered) *--kept = *next;
    }
    found_.erase(found_.begin(), kept);
}

void ChartPainter::PaintGrid(QPainter& painter, const QRect& part, double pixel) const {
    const auto rowPos = [this](int row) { return surface_.RowPos(row); };
    const auto colPos = [this](int col) { return surface_.ColPos(col); };
    const int rows = surface_.Rows(), cols = surface_.Cols();
    if (cols == 0) return;
    const auto rowAt = [&](int y) { return Nearest(surface_.RowAt(y), y, rows); };
    const auto colAt = [&](int x) { return Nearest(surface_.ColAt(x), x, cols); };
    const int firstRow = rowAt(part.top()), lastRow = rowAt(part.bottom());
    const int firstCol = colAt(part.left()), lastCol = colAt(part.right());
    const int footer = surface_.HasFooter() ? rows - 1 : rows;
    const int left = surface_.ColPos(0), right = surface_.ColPos(cols);

    if (firstRow == 0)
        painter.fillRect(QRect(QPoint(left, 0), QPoint(right, rowPos(1))), ScreenColor(kHeading));
    const QPen gridPen(ScreenColor(kGridLine), pixel), timePen(ScreenColor(kTimeLine), pixel);
    for (int col = firstCol; col <= lastCol; ++col) {
        if (surface_.IsTimeColumn(col)) continue;
        for (int row = std::max(firstRow, 1); row <= std::min(lastRow, footer - 1); ++row) {
            const Color color = surface_.CellColor(row, col);
            if (color != kWhite) {
                painter.fillRect(
                    QRect(QPoint(colPos(col), rowPos(row)), QPoint(colPos(col + 1), rowPos(row + 1))),
                    ScreenColor(blackAndWhite_ ? AdjustedFill(color).fill : color));
            }
        }
    }
    const int gridTop = std::max(0, part.top()), gridBottom = std::min(rowPos(footer), part.bottom());
    for (int col = firstCol; gridTop <= gridBottom && col <= lastCol + 1; ++col) {
        const bool time =
            col > 0 && col < cols && surface_.IsTimeColumn(col) && surface_.IsTimeColumn(col - 1);
        painter.setPen(time ? timePen : gridPen);
        painter.drawLine(colPos(col), gridTop, colPos(col), gridBottom);
    }
    painter.setPen(gridPen);
    const int gridLeft = std::max(left, part.left()), gridRight = std::min(right, part.right());
    for (int row = firstRow; gridLeft <= gridRight && row <= lastRow + 1; ++row)
        painter.drawLine(gridLeft, rowPos(row), gridRight, rowPos(row));
    painter.setPen(Qt::black);
    if (firstRow == 0) PaintHeading(painter, firstCol, lastCol, pixel);
    for (int row = std::max(firstRow, 1); row <= std::min(lastRow, footer - 1); ++row) {
        for (int col = firstCol; col <= lastCol; ++col) {
            if (!surface_.IsTimeColumn(col)) PaintCell(painter, row, col);
        }
    }
}

/// Titles of the columns; over time columns the larger periods above, the periods below.
void ChartPainter::PaintHeading(QPainter& painter, int firstCol, int lastCol, double pixel) const {
    const int bottom = surface_.RowPos(1);
    const int line = surface_.TextHeight();
    for (int col = firstCol; col <= lastCol; ++col) {
        const QRect room(QPoint(surface_.ColPos(col), 0), QPoint(surface_.ColPos(col + 1), bottom));
        if (surface_.IsTimeColumn(col)) {
            const QRect lower(QPoint(room.left(), bottom / 2), room.bottomRight());
            painter.drawText(lower, Qt::AlignCenter | Qt::TextDontClip, Q(surface_.ColumnTitle(col)));
        } else if (surface_.ColumnAlignment(col) == Alignment::DayColumn) {
            col = PaintDayTitles(painter, col, pixel);
        } else {
            PaintText(painter, room, LinesOf(surface_.ColumnTitle(col)), Qt::AlignCenter);
        }
    }
    for (const auto& label : surface_.UpperLabels()) {
        if (label.lastCol <= firstCol || label.firstCol > lastCol) continue;
        const QRect room(QPoint(surface_.ColPos(label.firstCol), 0),
                         QPoint(surface_.ColPos(label.lastCol), bottom / 2));
        painter.setPen(QPen(ScreenColor(kGridLine), pixel));
        painter.drawLine(room.left(), 0, room.left(), bottom);
        painter.drawLine(room.left(), bottom / 2, room.right(), bottom / 2);
        painter.setPen(Qt::black);
        painter.drawText(room.adjusted(line / 6, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, Q(label.text));
    }
}

/// The title that neighbouring day columns share stands once over each week of them, or over as many columns
/// as it needs. Returns the last column of those that share one with `col`.
int ChartPainter::PaintDayTitles(QPainter& painter, int col, double pixel) const {
    constexpr int daysOfWeek = 7;
    const std::string_view title = surface_.ColumnTitle(col);
    const auto shares = [&](int other) {
        return other >= 0 && other < surface_.Cols() && !surface_.IsTimeColumn(other) &&
               surface_.ColumnAlignment(other) == Alignment::DayColumn &&
               surface_.ColumnTitle(other) == title;
    };
    int first = col, end = col + 1;
    while (shares(first - 1)) --first;
    while (shares(end)) ++end;
    const int width = std::max(surface_.ColPos(col + 1) - surface_.ColPos(col), 1);
    const int needed = WidestLine(title, surface_.Metrics()) + 2 * surface_.CellMargin();
    const int step = std::max(daysOfWeek, (needed + width - 1) / width);
    for (int at = first; at < end;) {
        const int next = end - at < 2 * step ? end : at + step;
        const QRect room(QPoint(surface_.ColPos(at), 0), QPoint(surface_.ColPos(next), surface_.RowPos(1)));
        painter.fillRect(QRectF(room).adjusted(pixel, pixel, -pixel, -pixel), ScreenColor(kHeading));
        PaintText(painter, room, LinesOf(title), Qt::AlignCenter);
        at = next;
    }
    return end - 1;
}

void ChartPainter::PaintCell(QPainter& painter, int row, int col) const {
    std::vector<std::string_view> lines;
    surface_.CellLines(row, col, lines);
    if (lines.empty() || (lines.size() == 1 && lines[0].empty())) return;
    const QRect room(QPoint(surface_.ColPos(col), surface_.RowPos(row)),
                     QPoint(surface_.ColPos(col + 1), surface_.RowPos(row + 1)));
    Qt::Alignment alignment = Qt::AlignVCenter | Qt::AlignLeft;
    switch (surface_.ColumnAlignment(col)) {
        case Alignment::Right:
            alignment = Qt::AlignVCenter | Qt::AlignRight;
            break;
        case Alignment::RightBottom:
            alignment = Qt::AlignBottom | Qt::AlignRight;
            break;
        case Alignment::Center:
        case Alignment::DayColumn:
            alignment = Qt::AlignCenter;
            break;
        case Alignment::Left:
            break;
    }
    if (surface_.CellMarkC(row, col)) alignment = Qt::AlignCenter;
    const bool bold = surface_.CellMarkB(row, col);
    if (bold) {
        QFont font = painter.font();
        font.setBold(true);
        painter.setFont(font);
    }
    PaintText(painter, room, lines, alignment);
    if (bold) painter.setFont(metrics_.DrawingFont());
}

void ChartPainter::PaintText(QPainter& painter, const QRect& room, const std::vector<std::string_view>& lines,
                             Qt::Alignment alignment) const {
    const int line = surface_.TextHeight();
    const int height = line * static_cast<int>(lines.size());
    int top = room.top() + (room.height() - height) / 2;
    if (alignment & Qt::AlignBottom) top = room.bottom() - height;
    const QRect inner = room.adjusted(surface_.CellMargin(), 0, -surface_.CellMargin(), 0);
    // A cell of many lines can be taller than the screen.
    const QRect shown = painter.clipBoundingRect().toAlignedRect();
    for (const std::string_view text : lines) {
        if (top > shown.bottom()) break;
        if (top + line < shown.top()) {
            top += line;
            continue;
        }
        int left = inner.left();
        if (alignment & Qt::AlignRight) left = inner.right() - surface_.TextWidth(text);
        if (alignment & Qt::AlignHCenter) left = inner.center().x() - surface_.TextWidth(text) / 2;
        painter.drawText(left, top + metrics_.Ascent(), Q(text));
        top += line;
    }
}

namespace {

/// The toolkit's own hatches depend on the device, and are lost in files.
void PaintRect(QPainter& painter, const DrawItem& item, const QPen& pen) {
    const QColor fill = ScreenColor(item.fill);
    const QRect area(QPoint(item.x1, item.y1), QSize(item.x2 - item.x1, item.y2 - item.y1));
    if (item.hatch != Hatch::Solid && item.hatch != Hatch::Transparent) {
        QVector<QLineF> lines;
        AddHatch(lines, QRectF(area) & painter.clipBoundingRect(), item.hatch);
        painter.setPen(QPen(fill, pen.widthF()));
        painter.setRenderHint(QPainter::Antialiasing,
                              item.hatch != Hatch::Horizontal && item.hatch != Hatch::Vertical);
        painter.drawLines(lines);
        painter.setRenderHint(QPainter::Antialiasing, false);
    }
    painter.setPen(pen);
    painter.setBrush(item.hatch == Hatch::Solid ? QBrush(fill) : QBrush(Qt::NoBrush));
    painter.drawRect(area);
}

}  // namespace

void ChartPainter::PaintItem(QPainter& painter, const DrawItem& item, double pixel) const {
    const QColor border = ScreenColor(item.border), fill = ScreenColor(item.fill);
    QPen pen(border, pixel);
    pen.setJoinStyle(Qt::MiterJoin);
    const int middleX = (item.x1 + item.x2) / 2, middleY = (item.y1 + item.y2) / 2;
    switch (item.kind) {
        case DrawItem::Kind::Line:
            pen.setWidthF(pixel * item.width);
            // Square ends close the gaps between the short pieces of a curve.
            pen.setCapStyle(item.width > 1 ? Qt::SquareCap : Qt::FlatCap);
            painter.setPen(pen);
            painter.setRenderHint(QPainter::Antialiasing,
                                  item.x1 != item.x2 && item.y1 != item.y2 && !IsDense());
            painter.drawLine(item.x1, item.y1, item.x2, item.y2);
            painter.setRenderHint(QPainter::Antialiasing, false);
            return;
        case DrawItem::Kind::Rect:
            return PaintRect(painter, item, pen);
        case DrawItem::Kind::Milestone:
        case DrawItem::Kind::Triangle: {
            QPolygon shape;
            if (item.kind == DrawItem::Kind::Milestone) {
                shape << QPoint(middleX, item.y1) << QPoint(item.x2, middleY) << QPoint(middleX, item.y2)
                      << QPoint(item.x1, middleY);
            } else if (item.apex == Apex::Right) {
                shape << QPoint(item.x1, item.y1) << QPoint(item.x2, middleY) << QPoint(item.x1, item.y2);
            } else {
                const int apex = item.apex == Apex::Up ? item.y1 : item.y2,
                          base = item.apex == Apex::Up ? item.y2 : item.y1;
                shape << QPoint(item.x1, base) << QPoint(middleX, apex) << QPoint(item.x2, base);
            }
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(pen);
            painter.setBrush(fill);
            painter.drawPolygon(shape);
            painter.setRenderHint(QPainter::Antialiasing, false);
            return;
        }
        case DrawItem::Kind::Text: {
            const double scale = item.small ? kSmallText : 1;
            painter.save();
            painter.translate(item.x1, item.y1);
            painter.scale(scale, scale);
            painter.setPen(border);
            int base = metrics_.Ascent();
            for (const std::string_view text : LinesOf(item.text)) {
                painter.drawText(0, base, Q(text));
                base += surface_.TextHeight();
            }
            painter.restore();
            return;
        }
    }
}

}  // namespace vortan
