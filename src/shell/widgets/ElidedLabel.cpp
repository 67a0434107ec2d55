#include "shell/widgets/ElidedLabel.h"

#include <QPainter>

namespace vortan {

void ElidedLabel::setText(const QString& text) {
    text_ = text;
    setToolTip(text);
    setAccessibleDescription(text);
    // Long steps do not serve events: show the text before they begin.
    if (isVisible()) repaint();
}

void ElidedLabel::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    QPainter painter(this);
    const QRect room = contentsRect().adjusted(2, 0, -2, 0);
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(text_, Qt::ElideRight, room.width()));
}

}  // namespace vortan
