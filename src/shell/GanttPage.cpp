#include "shell/GanttPage.h"

#include <QGroupBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "paint/Text.h"
#include "shell/CommonDialogs.h"
#include "shell/MainForm.h"
#include "shell/PreferencesForm.h"

namespace vortan {
namespace {

// Where the options stand in front of the chart, in lines of text from its corner.
constexpr double kOptionsLeft = 0.5, kOptionsTop = 11;

}  // namespace

GanttPage* GanttPage::Start(Desktop& desktop) {
    auto* page = new GanttPage(desktop);
    page->Restart();
    desktop.mainForm->ShowForm(*page);
    return page;
}

GanttPage::GanttPage(Desktop& desktop) : desktop_(desktop) {
    setObjectName("GanttForm");
    desktop_.workspace.AddListener(this);
    metrics_ = std::make_unique<QtTextMetrics>(FontOfForm(desktop_, objectName()));
    chart_ = std::make_unique<GanttForm>(desktop_.workspace, desktop_.settings, *metrics_);
    view_ = std::make_unique<SurfaceView>(chart_->TheVwindow(), *metrics_);
    view_->TipAt = [this](int x, int y) { return chart_->TipAt(x, y); };
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_.get());
    setFocusProxy(view_.get());

    auto* options = new QGroupBox("Gantt chart options", this);
    options->setObjectName("OptionsFrame");
    options->setAutoFillBackground(true);
    auto* preferences = new QPushButton("Preferences");
    preferences->setObjectName("PreferencesCommand");
    connect(preferences, &QPushButton::clicked, this, [this] {
        desktop_.Run("GanttForm:PreferencesCommand_Click", [this] { PreferencesForm::Start(desktop_); });
    });
    auto* inner = new QVBoxLayout(options);
    inner->addWidget(preferences);
    options_ = options;
}

GanttPage::~GanttPage() {
    desktop_.workspace.RemoveListener(this);
    if (!unloaded_ && desktop_.mainForm) desktop_.mainForm->UnlockEntryForm(*this);
}

void GanttPage::Unload() {
    if (unloaded_) return;
    unloaded_ = true;
    desktop_.workspace.RemoveListener(this);
    hide();
    if (desktop_.mainForm) desktop_.mainForm->UnlockEntryForm(*this);
    setObjectName({});
    deleteLater();
}

void GanttPage::Restart() {
    auto metrics = std::make_unique<QtTextMetrics>(FontOfForm(desktop_, objectName()));
    chart_->TheVwindow().SetFont(*metrics);
    view_->SetMetrics(*metrics);
    metrics_ = std::move(metrics);
    chart_->Start();
    setWindowTitle(Q(chart_->Caption()));
    view_->SurfaceChanged();
}

bool GanttPage::ChangeFont() {
    if (ShowFont(desktop_, objectName())) Restart();
    return true;
}

void GanttPage::NewSolution() {
    Restart();
}

void GanttPage::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const int line = fontMetrics().height();
    const int title = fontMetrics().horizontalAdvance(static_cast<QGroupBox*>(options_)->title());
    options_->setMinimumWidth(title + 2 * line);
    options_->adjustSize();
    options_->move(static_cast<int>(line * kOptionsLeft), static_cast<int>(line * kOptionsTop));
    options_->raise();
}

}  // namespace vortan
