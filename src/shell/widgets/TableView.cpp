#include "shell/widgets/TableView.h"

#include <QFrame>
#include <QStyle>
#include <QVBoxLayout>

#include "shell/desk/CommonDialogs.h"

namespace vortan {

TableView::TableView()
    : metrics_(std::make_unique<QtTextMetrics>(QFont())),
      vwindow_(Vwindow::Style::Table, *metrics_),
      view_(vwindow_, *metrics_) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(&view_);
    view_.setFrameShape(QFrame::StyledPanel);
    setFocusProxy(&view_);
}

void TableView::Restart(Desktop& desktop, const QString& formName, const QSize& most,
                        const std::function<void(Vwindow&)>& layOut) {
    auto metrics = std::make_unique<QtTextMetrics>(FontOfForm(desktop, formName));
    vwindow_.SetFont(*metrics);
    view_.SetMetrics(*metrics);
    metrics_ = std::move(metrics);
    layOut(vwindow_);
    view_.SurfaceChanged();

    const int frame = 2 * view_.frameWidth();
    QSize size = view_.ContentSize() + QSize(frame, frame);
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    const bool tooWide = size.width() > most.width(), tooHigh = size.height() > most.height();
    size += QSize(tooHigh ? bar : 0, tooWide ? bar : 0);
    wanted_ = size.boundedTo(most);
    view_.setMinimumSize(wanted_);
    updateGeometry();
}

void TableView::LetShrink() {
    view_.setMinimumSize(0, 0);
}

}  // namespace vortan
