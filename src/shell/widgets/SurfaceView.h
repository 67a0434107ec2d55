#pragma once

#include <QAbstractScrollArea>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "charts/Twips.h"
#include "charts/Vwindow.h"
#include "paint/QtTextMetrics.h"
#include "shell/widgets/Readable.h"

namespace vortan {

/// A surface on screen: scrolls it with its headings in view, and hands the mouse on to it. Paints only what
/// is visible, straight from the surface's list.
class SurfaceView : public QAbstractScrollArea, public Readable {
  public:
    /// The surface must outlive the view; it is measured in `metrics`, which SetMetrics replaces.
    SurfaceView(const Vwindow& surface, const QtTextMetrics& metrics);

    void SetMetrics(const QtTextMetrics& metrics) { metrics_ = &metrics; }
    /// The surface has another size or picture.
    void SurfaceChanged();
    /// Of all of the surface, with a pixel for its last line.
    QSize ContentSize() const;
    /// Where a cell stands as it is scrolled now, in pixels of the viewport, visible or not.
    int CellLeft(int col) const;
    int CellTop(int row) const;
    /// What to tell about the place under the mouse; empty for nothing.
    std::function<std::string(int x, int y)> TipAt;
    /// The left mouse button goes down at a place of the surface: the pointer of the drag that begins.
    std::function<std::optional<Qt::CursorShape>(int x, int y, bool shift)> PressAt;
    /// The drag goes on to there: whether it still does.
    std::function<bool(int x, int y)> DragTo;
    std::function<void()> EndDrag, CancelDrag;
    /// What letting go would do now; empty for nothing.
    std::function<std::string()> DragTip;
    /// Lines in front of the picture.
    std::function<std::vector<QLine>()> Marks;
    /// The wheel turns with the control key, forward above 0.
    std::function<void(const QPoint& pixel, int steps)> Zoom;
    std::function<void(int x, int y)> DoubleClickAt;
    /// What the keyboard stands on, as a rectangle of the surface; it has a frame.
    std::function<std::optional<QRect>()> Cursor;

    /// What assistive technology reads of a picture: a text at a rectangle of the surface, so many of them.
    /// Where it is not set, the cells are read.
    struct Place {
        QString text;
        QRect at;
    };
    std::function<int()> PlaceCount;
    std::function<Place(int place)> PlaceAt;
    int PartCount() const override;
    Part PartAt(int part) const override;

    /// What a search has found there, framed until the surface changes, and brought into sight.
    void Mark(const std::optional<QRect>& part);
    const std::optional<QRect>& Marked() const { return marked_; }

    bool Dragging() const { return dragging_; }
    /// As letting go of the mouse does.
    void StopDrag();
    /// The drag is given up.
    void GiveUpDrag();
    QPoint ToSurface(const QPoint& pixel) const;
    /// Scrolls to the sides until that place of the surface stands there in the viewport.
    void ScrollXTo(int x, int pixel);
    /// Scrolls as far as it takes.
    void ScrollTo(const QRect& part);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    /// Assistive technology calls it what its form is called.
    void showEvent(QShowEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    QSize viewportSizeHint() const override { return ContentSize(); }

    const Vwindow& Surface() const { return surface_; }
    /// The size in pixels of what stays in view; nothing does that would fill most of the window.
    QSize Fixed() const;
    int ToPixels(int twips) const;
    /// The headings and the body, each with its place in the viewport and how far it is scrolled.
    void ForEachPane(const std::function<void(const QRect& place, const QPoint& shift)>& visit) const;

  private:
    double TwipsPerPixel() const { return kTwipsPerInch / logicalDpiX(); }
    void FitScrollBars();
    void PaintMarks(QPainter& painter);
    QRect ToPixels(const QRect& part) const;

    const Vwindow& surface_;
    const QtTextMetrics* metrics_;
    std::optional<QRect> marked_;
    bool dragging_ = false;
    int wheel_ = 0;  // turned, but less than a step
};

}  // namespace vortan
