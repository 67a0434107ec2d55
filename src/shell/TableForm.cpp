#include "shell/TableForm.h"

#include "paint/Text.h"
#include "shell/CommonDialogs.h"

namespace vortan {

TableForm::TableForm(Desktop& desktop, const char* name)
    : EntryForm(desktop, name, ""),
      metrics_(std::make_unique<QtTextMetrics>(FontOfForm(desktop, objectName()))),
      table_(Vwindow::Style::Table, *metrics_),
      view_(new SurfaceView(table_, *metrics_)) {
    view_->setFrameShape(QFrame::StyledPanel);
    view_->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    Body().addWidget(view_, 1);
    CancelCommand().hide();
}

bool TableForm::Refill() {
    auto metrics = std::make_unique<QtTextMetrics>(FontOfForm(desktop_, objectName()));
    table_.SetFont(*metrics);
    view_->SetMetrics(*metrics);
    metrics_ = std::move(metrics);
    RedoLayout(table_);
    view_->SurfaceChanged();
    view_->updateGeometry();
    if (isVisible()) adjustSize();
    return table_.Rows() > 1;
}

void TableForm::ShowTable() {
    ShowWith(OkCommand());
}

std::optional<ShownSurface> TableForm::Surface() {
    return ShownSurface{table_, *metrics_, S(windowTitle())};
}

bool TableForm::ChangeFont() {
    if (ShowFont(desktop_, objectName())) Refill();
    return true;
}

}  // namespace vortan
