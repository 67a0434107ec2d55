#include "shell/widgets/GridView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cstdlib>

namespace vortan {
namespace {

constexpr int kSelectedAlpha = 60;
constexpr int kFrameWidth = 2;  // pixels

}  // namespace

GridView::Range GridView::Selection() const {
    if (current_.row < 0 || !Surface().IsLaidOut()) return {};
    return {std::min(anchor_.row, current_.row), std::min(anchor_.col, current_.col),
            std::min(std::max(anchor_.row, current_.row), LastRow()),
            std::min(std::max(anchor_.col, current_.col), LastCol())};
}

void GridView::Select(const Range& range) {
    if (range.Empty() || LastRow() < FirstRow()) {
        anchor_ = current_ = {};
    } else {
        anchor_ = {std::min(range.top, LastRow()), std::min(range.left, LastCol())};
        current_ = {std::min(range.bottom, LastRow()), std::min(range.right, LastCol())};
    }
    viewport()->update();
}

GridView::Place GridView::PlaceAt(const QPoint& pixel) const {
    const QPoint at = ToSurface(pixel);
    const auto found = [](int line, int position, int last) {
        return line >= 0 ? line : position < 0 ? 0 : last;
    };
    return {found(Surface().RowAt(at.y()), at.y(), LastRow()),
            found(Surface().ColAt(at.x()), at.x(), LastCol())};
}

QRect GridView::PixelsOf(const Range& range) const {
    return QRect(QPoint(ToPixels(Surface().ColPos(range.left)), ToPixels(Surface().RowPos(range.top))),
                 QPoint(ToPixels(Surface().ColPos(range.right + 1)) - 1,
                        ToPixels(Surface().RowPos(range.bottom + 1)) - 1));
}

void GridView::paintEvent(QPaintEvent* event) {
    SurfaceView::paintEvent(event);
    const Range selection = Selection();
    if (selection.Empty()) return;
    const QRect cells = PixelsOf(selection);
    QPainter painter(viewport());
    QColor color = palette().color(QPalette::Active, QPalette::Highlight);
    const QPen frame(color, kFrameWidth);
    color.setAlpha(kSelectedAlpha);
    ForEachPane([&](const QRect& place, const QPoint& shift) {
        painter.setClipRect(place);
        painter.fillRect(cells.translated(-shift), color);
        painter.setPen(frame);
        painter.drawRect(cells.translated(-shift));
    });
}

int GridView::CurrentPart() const {
    if (current_.row < FirstRow()) return -1;
    return (current_.row - FirstRow()) * Surface().Cols() + current_.col;
}

void GridView::GoTo(Place place, bool extend) {
    if (LastRow() < FirstRow()) return;
    current_ = {std::clamp(place.row, FirstRow(), LastRow()), std::clamp(place.col, 0, LastCol())};
    if (!extend || anchor_.row < 0) anchor_ = current_;
    CurrentChanged(*this, CurrentPart());
    // What is under the headings is not in view.
    const QRect cell = PixelsOf({current_.row, current_.col, current_.row, current_.col});
    ForEachPane([&](const QRect& pane, const QPoint& shift) {
        const bool body = pane.bottomRight() == viewport()->rect().bottomRight();
        if (!body) return;
        const QRect seen = pane.translated(shift);
        const auto scroll = [](QScrollBar* bar, int before, int behind) {
            bar->setValue(bar->value() + (before < 0 ? before : std::max(0, std::min(behind, before))));
        };
        if (current_.col >= Surface().FixedCols())
            scroll(horizontalScrollBar(), cell.left() - seen.left(), cell.right() - seen.right());
        scroll(verticalScrollBar(), cell.top() - seen.top(), cell.bottom() - seen.bottom());
    });
    viewport()->update();
}

void GridView::SelectRow(int row) {
    GoTo({row, 0}, false);
    anchor_.col = LastCol();
}

void GridView::MoveBy(int rows, int cols, bool extend) {
    if (current_.row < 0) {
        GoTo({FirstRow(), 0}, false);
        if (std::abs(rows) + std::abs(cols) == 1) return;
    }
    GoTo({current_.row + rows, current_.col + cols}, extend);
}

int GridView::RowsInView() const {
    const int height = viewport()->height() - Fixed().height();
    const int line = LastRow() < FirstRow() ? 0 : PixelsOf({FirstRow(), 0, FirstRow(), 0}).height();
    return line > 0 ? std::max(1, height / line - 1) : 1;
}

void GridView::mousePressEvent(QMouseEvent* event) {
    if (!Surface().IsLaidOut()) return;
    pressed_ = PlaceAt(event->position().toPoint());
    moved_ = false;
    if (event->button() == Qt::LeftButton && pressed_.row >= FirstRow())
        GoTo(pressed_, event->modifiers().testFlag(Qt::ShiftModifier));
}

void GridView::mouseMoveEvent(QMouseEvent* event) {
    const Place place = PlaceAt(event->position().toPoint());
    if (pressed_.row < FirstRow() || place == pressed_ || !event->buttons().testFlag(Qt::LeftButton)) return;
    moved_ = true;
    GoTo(place, true);
}

void GridView::mouseReleaseEvent(QMouseEvent* event) {
    const Place place = PlaceAt(event->position().toPoint());
    if (pressed_.row < 0 || moved_ || !(place == pressed_)) return;
    pressed_ = {};
    if (CellClick) CellClick(event->button(), place.row, place.col);
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
    const Place place = PlaceAt(event->position().toPoint());
    pressed_ = {};
    if (event->button() == Qt::LeftButton && place.row >= FirstRow() && RowDoubleClick)
        RowDoubleClick(place.row);
}

void GridView::keyPressEvent(QKeyEvent* event) {
    const bool extend = event->modifiers().testFlag(Qt::ShiftModifier);
    const bool far = event->modifiers().testFlag(Qt::ControlModifier);
    const int most = std::max(LastRow(), LastCol());
    switch (event->key()) {
        case Qt::Key_Left:
            return MoveBy(0, far ? -most : -1, extend);
        case Qt::Key_Right:
            return MoveBy(0, far ? most : 1, extend);
        case Qt::Key_Up:
            return MoveBy(far ? -most : -1, 0, extend);
        case Qt::Key_Down:
            return MoveBy(far ? most : 1, 0, extend);
        case Qt::Key_PageUp:
            return MoveBy(-RowsInView(), 0, extend);
        case Qt::Key_PageDown:
            return MoveBy(RowsInView(), 0, extend);
        case Qt::Key_Home:
            return MoveBy(far ? -most : 0, -most, extend);
        case Qt::Key_End:
            return MoveBy(far ? most : 0, most, extend);
        case Qt::Key_A:
            if (far) return Select({FirstRow(), 0, LastRow(), LastCol()});
            break;
        default:
            break;
    }
    event->ignore();
}

}  // namespace vortan
