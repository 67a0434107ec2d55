#include "shell/main/StatusBar.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QStatusBar>
#include <QToolButton>

#include "paint/Text.h"
#include "shell/desk/Icons.h"
#include "shell/widgets/ElidedLabel.h"

namespace vortan {
namespace {

constexpr int kNotePeriod = 8'000;  // milliseconds
constexpr QRgb kHaltedOnLight = qRgb(0xB3, 0x26, 0x1E), kHaltedOnDark = qRgb(0xFF, 0x8A, 0x80);

}  // namespace

StatusBar::StatusBar(Desktop& desktop, QMainWindow& window)
    : desktop_(desktop),
      window_(window),
      boxes_(desktop),
      solvePanel_(new QToolButton),
      messagePanel_(new ElidedLabel("MessagePanel")) {
    solvePanel_->setObjectName("SolvePanel");
    solvePanel_->setAccessibleName("Solve");
    solvePanel_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    solvePanel_->setAutoRaise(true);
    solvePanel_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    QObject::connect(solvePanel_, &QToolButton::clicked, solvePanel_,
                     [this] { desktop_.Run("Main:SolvePanelClick", [this] { SolvePanelClick(); }); });
    messagePanel_->setAccessibleName("Operation");
    messagePanel_->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);

    // The boxes and the solve take a sixth of the width each, the message what is left.
    auto* panels = new QWidget;
    auto* row = new QHBoxLayout(panels);
    row->setContentsMargins(2, 2, 2, 2);
    row->addWidget(&boxes_.ProjectCombo(), 1);
    row->addWidget(&boxes_.TemplateCombo(), 1);
    row->addWidget(&boxes_.JournalCombo(), 1);
    row->addWidget(solvePanel_, 1);
    row->addWidget(messagePanel_, 2);
    window.statusBar()->setObjectName("StatusBar");
    window.statusBar()->setContentsMargins(0, 0, 0, 0);
    window.statusBar()->addWidget(panels, 1);
    noteTimer_.setSingleShot(true);
    QObject::connect(&noteTimer_, &QTimer::timeout, messagePanel_, [this] { messagePanel_->setText({}); });
}

void StatusBar::StatusMessage(const std::string& text) {
    noteTimer_.stop();
    messagePanel_->setText(text.empty() ? QString() : Q(text + " ..."));
    if (busy_ == !text.empty()) return;
    busy_ = !text.empty();
    if (busy_) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

void StatusBar::Note(const std::string& text) {
    if (busy_ || text.empty()) return;
    messagePanel_->setText(Q(text));
    noteTimer_.start(kNotePeriod);
}

void StatusBar::SolveStatus(const std::string& text) {
    solvePanel_->setText(Q(text));
    solvePanel_->setAccessibleDescription(Q(text));
    const bool halted = desktop_.solver.Mode() == SolveMode::Halted;
    solvePanel_->setToolTip(Q(halted ? text + "\nClick to see what is wrong and to repair it" : text));
    solvePanel_->setIcon(halted ? GetResIcon("Halted.ico") : QIcon());
    QPalette colors = window_.palette();
    const bool dark =
        colors.color(QPalette::Window).lightness() < colors.color(QPalette::WindowText).lightness();
    if (halted) {
        for (const auto role : {QPalette::ButtonText, QPalette::WindowText})
            colors.setColor(role, QColor(dark ? kHaltedOnDark : kHaltedOnLight));
    }
    solvePanel_->setPalette(colors);
}

void StatusBar::PaletteChanged() {
    SolveStatus(S(solvePanel_->text()));
}

}  // namespace vortan
