#include "shell/widgets/SurfaceView.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "paint/ChartPainter.h"
#include "paint/Text.h"

namespace vortan {
namespace {

// Of the window, how much the headings may take at most.
constexpr double kMostFixed = 0.7;
constexpr int kCursorWidth = 3;  // pixels

}  // namespace

SurfaceView::SurfaceView(const Vwindow& surface, const QtTextMetrics& metrics)
    : surface_(surface), metrics_(&metrics) {
    setObjectName("Vwindow");
    setFrameShape(QFrame::NoFrame);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
}

int SurfaceView::ToPixels(int twips) const {
    return static_cast<int>(std::ceil(twips / TwipsPerPixel()));
}

QSize SurfaceView::Fixed() const {
    if (!surface_.IsLaidOut()) return {0, 0};
    QSize fixed(ToPixels(surface_.ColPos(surface_.FixedCols())),
                ToPixels(surface_.RowPos(surface_.FixedRows())));
    if (fixed.width() > viewport()->width() * kMostFixed) fixed.setWidth(0);
    if (fixed.height() > viewport()->height() * kMostFixed) fixed.setHeight(0);
    return fixed;
}

QSize SurfaceView::ContentSize() const {
    if (!surface_.IsLaidOut()) return {0, 0};
    return {ToPixels(surface_.ContentWidth()) + 1, ToPixels(surface_.ContentHeight()) + 1};
}

void SurfaceView::FitScrollBars() {
    const QSize content = ContentSize();
    // Bars that show now take room themselves; without them all may fit.
    const QSize most = maximumViewportSize();
    const bool fits = content.width() <= most.width() && content.height() <= most.height();
    const QSize window = fits ? most : viewport()->size();
    horizontalScrollBar()->setRange(0, std::max(0, content.width() - window.width()));
    horizontalScrollBar()->setPageStep(std::max(1, window.width() - Fixed().width()));
    verticalScrollBar()->setRange(0, std::max(0, content.height() - window.height()));
    verticalScrollBar()->setPageStep(std::max(1, window.height() - Fixed().height()));
    const int line = ToPixels(surface_.TextHeight() * 7 / 4);
    horizontalScrollBar()->setSingleStep(line);
    verticalScrollBar()->setSingleStep(line);
}

void SurfaceView::SurfaceChanged() {
    marked_.reset();
    FitScrollBars();
    viewport()->update();
}

void SurfaceView::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    QWidget* form = parentWidget();
    while (form && form->windowTitle().isEmpty()) form = form->parentWidget();
    if (form) setAccessibleName(form->windowTitle());
}

void SurfaceView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    FitScrollBars();
}

void SurfaceView::scrollContentsBy(int, int) {
    viewport()->update();
}

/// The body first: its scrolled part never reaches over the headings.
void SurfaceView::ForEachPane(const std::function<void(const QRect&, const QPoint&)>& visit) const {
    const QSize fixed = Fixed();
    const QRect window = viewport()->rect();
    const QPoint scroll(horizontalScrollBar()->value(), verticalScrollBar()->value());
    for (const bool fixedRows : {false, true}) {
        for (const bool fixedCols : {false, true}) {
            const int left = fixedCols ? 0 : fixed.width(), top = fixedRows ? 0 : fixed.height();
            visit(QRect(left, top, fixedCols ? fixed.width() : window.width() - left,
                        fixedRows ? fixed.height() : window.height() - top),
                  QPoint(fixedCols ? 0 : scroll.x(), fixedRows ? 0 : scroll.y()));
        }
    }
}

void SurfaceView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), Qt::white);
    if (!surface_.IsLaidOut()) return;
    const double twips = TwipsPerPixel();
    const ChartPainter chart(surface_, *metrics_);
    ForEachPane([&](const QRect& place, const QPoint& shift) {
        const QRect dirty = place.intersected(event->rect());
        if (dirty.isEmpty()) return;
        const QRect shown = dirty.translated(shift);
        const QRect part(
            QPoint(static_cast<int>(shown.left() * twips), static_cast<int>(shown.top() * twips)),
            QPoint(static_cast<int>(std::ceil((shown.right() + 1) * twips)),
                   static_cast<int>(std::ceil((shown.bottom() + 1) * twips))));
        painter.save();
        painter.setClipRect(dirty);
        painter.translate(-shift);
        painter.scale(1 / twips, 1 / twips);
        chart.Paint(painter, part, twips);
        painter.restore();
    });
    PaintMarks(painter);
    auto cursor = marked_;
    if (!cursor && hasFocus() && Cursor) cursor = Cursor();
    if (!cursor) return;
    painter.setPen(QPen(palette().color(QPalette::Active, QPalette::Highlight), kCursorWidth));
    painter.drawRect(ToPixels(*cursor));
}

/// Under the headings, as the picture is.
void SurfaceView::PaintMarks(QPainter& painter) {
    const auto marks = Marks ? Marks() : std::vector<QLine>();
    if (marks.empty()) return;
    painter.save();
    const QSize fixed = Fixed();
    painter.setClipRect(viewport()->rect().adjusted(fixed.width(), fixed.height(), 0, 0));
    painter.setPen(QPen(palette().color(QPalette::Active, QPalette::Highlight), kCursorWidth));
    const QPoint scroll(horizontalScrollBar()->value(), verticalScrollBar()->value());
    for (const QLine& line : marks) {
        painter.drawLine(QPoint(ToPixels(line.x1()), ToPixels(line.y1())) - scroll,
                         QPoint(ToPixels(line.x2()), ToPixels(line.y2())) - scroll);
    }
    painter.restore();
}

void SurfaceView::Mark(const std::optional<QRect>& part) {
    marked_ = part;
    if (marked_) ScrollTo(*marked_);
    viewport()->update();
}

void SurfaceView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers().testFlag(Qt::ControlModifier) && Zoom) {
        // Fine wheels tell parts of a step.
        wheel_ += event->angleDelta().y();
        const int steps = wheel_ / QWheelEvent::DefaultDeltasPerStep;
        wheel_ -= steps * QWheelEvent::DefaultDeltasPerStep;
        event->accept();
        if (steps != 0) Zoom(event->position().toPoint(), steps);
        return;
    }
    if (event->modifiers().testFlag(Qt::ShiftModifier) && event->angleDelta().x() == 0) {
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - event->angleDelta().y());
    } else if (!event->pixelDelta().isNull()) {
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - event->pixelDelta().x());
        verticalScrollBar()->setValue(verticalScrollBar()->value() - event->pixelDelta().y());
    } else {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    event->accept();
}

QPoint SurfaceView::ToSurface(const QPoint& pixel) const {
    const QSize fixed = Fixed();
    const int x = pixel.x() < fixed.width() ? pixel.x() : pixel.x() + horizontalScrollBar()->value();
    const int y = pixel.y() < fixed.height() ? pixel.y() : pixel.y() + verticalScrollBar()->value();
    return {static_cast<int>(x * TwipsPerPixel()), static_cast<int>(y * TwipsPerPixel())};
}

int SurfaceView::CellLeft(int col) const {
    const bool fixed = col < surface_.FixedCols() && Fixed().width() > 0;
    return ToPixels(surface_.ColPos(col)) - (fixed ? 0 : horizontalScrollBar()->value());
}

int SurfaceView::CellTop(int row) const {
    const bool fixed = row < surface_.FixedRows() && Fixed().height() > 0;
    return ToPixels(surface_.RowPos(row)) - (fixed ? 0 : verticalScrollBar()->value());
}

/// Of a surface without headings.
QRect SurfaceView::ToPixels(const QRect& part) const {
    QPoint scroll(horizontalScrollBar()->value(), verticalScrollBar()->value());
    const QSize fixed = Fixed();
    if (ToPixels(part.left()) < fixed.width()) scroll.setX(0);
    if (ToPixels(part.top()) < fixed.height()) scroll.setY(0);
    return QRect(QPoint(ToPixels(part.left()), ToPixels(part.top())) - scroll,
                 QPoint(ToPixels(part.right()), ToPixels(part.bottom())) - scroll);
}

/// Cells row by row below the titles, each behind its title.
int SurfaceView::PartCount() const {
    if (PlaceCount) return PlaceCount();
    return surface_.IsLaidOut() ? std::max(0, surface_.Rows() - surface_.FixedRows()) * surface_.Cols() : 0;
}

Readable::Part SurfaceView::PartAt(int part) const {
    if (PlaceAt) {
        const Place place = PlaceAt(part);
        return {place.text, ToPixels(place.at)};
    }
    const int row = surface_.FixedRows() + part / surface_.Cols(), col = part % surface_.Cols();
    QString text = Q(surface_.Cell(row, col));
    if (surface_.FixedRows() > 0) text = Q(surface_.Cell(0, col)).simplified() + ": " + text;
    return {text, ToPixels(QRect(QPoint(surface_.ColPos(col), surface_.RowPos(row)),
                                 QPoint(surface_.ColPos(col + 1), surface_.RowPos(row + 1))))};
}

void SurfaceView::ScrollTo(const QRect& part) {
    const QRect place = ToPixels(part), window = viewport()->rect();
    const auto scroll = [](QScrollBar* bar, int before, int behind) {
        if (before < 0) {
            bar->setValue(bar->value() + before);
        } else if (behind > 0) {
            bar->setValue(bar->value() + std::min(behind, before));
        }
    };
    // What stands in the headings is always in sight; what is under them is not.
    const QSize fixed = Fixed();
    if (ToPixels(part.left()) >= fixed.width())
        scroll(horizontalScrollBar(), place.left() - fixed.width(), place.right() - window.right());
    if (ToPixels(part.top()) >= fixed.height())
        scroll(verticalScrollBar(), place.top() - fixed.height(), place.bottom() - window.bottom());
}

void SurfaceView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !PressAt) return;
    const QPoint at = ToSurface(event->position().toPoint());
    const auto shape = PressAt(at.x(), at.y(), event->modifiers().testFlag(Qt::ShiftModifier));
    dragging_ = shape.has_value();
    if (dragging_) viewport()->setCursor(*shape);
}

/// A drag that leaves the window takes the surface along.
void SurfaceView::mouseMoveEvent(QMouseEvent* event) {
    if (!dragging_ || !DragTo) return;
    const QPoint place = event->position().toPoint();
    const auto scroll = [](QScrollBar* bar, int position, int size) {
        if (const int beyond = position - std::clamp(position, 0, size)) bar->setValue(bar->value() + beyond);
    };
    scroll(horizontalScrollBar(), place.x(), viewport()->width());
    scroll(verticalScrollBar(), place.y(), viewport()->height());
    const QPoint at = ToSurface(place);
    if (!DragTo(at.x(), at.y())) return StopDrag();
    const std::string tip = DragTip ? DragTip() : std::string();
    if (tip.empty()) {
        QToolTip::hideText();
    } else {
        QToolTip::showText(event->globalPosition().toPoint(), Q(tip), viewport());
    }
}

void SurfaceView::mouseReleaseEvent(QMouseEvent*) {
    StopDrag();
}

void SurfaceView::StopDrag() {
    if (!std::exchange(dragging_, false)) return;
    viewport()->unsetCursor();
    QToolTip::hideText();
    viewport()->update();
    if (EndDrag) EndDrag();
}

void SurfaceView::GiveUpDrag() {
    if (!std::exchange(dragging_, false)) return;
    viewport()->unsetCursor();
    QToolTip::hideText();
    viewport()->update();
    if (CancelDrag) CancelDrag();
}

void SurfaceView::ScrollXTo(int x, int pixel) {
    horizontalScrollBar()->setValue(ToPixels(x) - pixel);
}

void SurfaceView::mouseDoubleClickEvent(QMouseEvent* event) {
    StopDrag();
    const QPoint at = ToSurface(event->position().toPoint());
    if (event->button() == Qt::LeftButton && DoubleClickAt) DoubleClickAt(at.x(), at.y());
}

bool SurfaceView::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QAbstractScrollArea::viewportEvent(event);
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const QPoint at = ToSurface(help.pos());
    std::string tip = TipAt ? TipAt(at.x(), at.y()) : std::string();
    if (tip.empty()) tip = surface_.ToolTip;
    if (tip.empty()) {
        QToolTip::hideText();
    } else {
        QToolTip::showText(help.globalPos(), Q(tip), viewport());
    }
    return true;
}

}  // namespace vortan
