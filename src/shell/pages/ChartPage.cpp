#include "shell/pages/ChartPage.h"

#include <QCheckBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

#include "charts/Twips.h"
#include "paint/Text.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/desk/FormHost.h"
#include "shell/desk/Printing.h"

namespace vortan {
namespace {

// Where the options stand when they must hide a part of the chart, in twips from its corner.
constexpr int kOptionsLeft = 120, kOptionsTop = 2760;

/// A frame that the mouse moves about in front of what it hides.
class OptionsBox : public QGroupBox {
  public:
    using QGroupBox::QGroupBox;

    /// Beside or below a chart of that size if there is room, unless the user has chosen another place.
    void Place(const QSize& chart) {
        const QSize room = parentWidget()->size() - size();
        const int gap = fontMetrics().height() / 2;
        if (dragged_) {
            PutAt(pos());
        } else if (chart.width() + gap <= room.width()) {
            PutAt({chart.width() + gap, gap});
        } else if (chart.height() + gap <= room.height()) {
            PutAt({gap, chart.height() + gap});
        } else {
            PutAt((QPointF(kOptionsLeft, kOptionsTop) * logicalDpiX() / kTwipsPerInch).toPoint());
        }
        raise();
    }
    /// As far as the parent reaches.
    void PutAt(QPoint corner) {
        const QSize room = parentWidget()->size() - size();
        move(std::clamp(corner.x(), 0, std::max(0, room.width())),
             std::clamp(corner.y(), 0, std::max(0, room.height())));
    }

  protected:
    void mousePressEvent(QMouseEvent* event) override { grip_ = event->position().toPoint(); }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (!event->buttons().testFlag(Qt::LeftButton)) return;
        dragged_ = true;
        PutAt(mapToParent(event->position().toPoint() - grip_));
    }

  private:
    QPoint grip_;
    bool dragged_ = false;
};

}  // namespace

void ChartPage::Start(Desktop& desktop, const char* name, const Maker& make) {
    ChildForm* open = desktop.host->FullPage();
    if (open && open->FormName() == name) {
        static_cast<ChartPage*>(open)->Restart();
        desktop.host->ShowForm(*open);
        return;
    }
    auto* page = new ChartPage(desktop, make);
    page->Show([page] {
        page->Restart();
        return page->chart_->TheVwindow().IsLaidOut();
    });
}

ChartPage::ChartPage(Desktop& desktop, const Maker& make) : PageForm(desktop) {
    metrics_ = std::make_unique<QtTextMetrics>(QFont());
    chart_ = make(*metrics_);
    setObjectName(Q(chart_->Name()));
    view_ = std::make_unique<SurfaceView>(chart_->TheVwindow(), *metrics_);
    view_->TipAt = [this](int x, int y) {
        std::string tip;
        desktop_.Run("Chart:TipAt", [&] { tip = chart_->TipAt(x, y); });
        return tip;
    };
    view_->PressAt = [this](int x, int y) {
        desktop_.Run("Chart:Vwindow_MouseDown", [&] { chart_->TheVwindow().Press(x, y); });
    };
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_.get());
    setFocusProxy(view_.get());
    const auto frame = chart_->Frame();
    if (!frame.options.empty()) options_ = NewOptionsFrame(frame);
}

QGroupBox* ChartPage::NewOptionsFrame(const ChartForm::OptionsFrame& frame) {
    auto* box = new OptionsBox(Q(frame.caption), this);
    box->setObjectName(Q(frame.name));
    box->setAutoFillBackground(true);
    auto* column = new QVBoxLayout(box);
    for (const ChartForm::Option& option : frame.options) column->addWidget(NewOption(option));
    const int line = fontMetrics().height();
    box->setMinimumWidth(fontMetrics().horizontalAdvance(box->title()) + 2 * line);
    box->adjustSize();
    return box;
}

QWidget* ChartPage::NewOption(const ChartForm::Option& option) {
    using Kind = ChartForm::Option::Kind;
    QAbstractButton* control = nullptr;
    if (option.kind == Kind::Button) control = new QPushButton(Q(option.caption));
    if (option.kind == Kind::Check) control = new QCheckBox(Q(option.caption));
    if (option.kind == Kind::Choice) control = new QRadioButton(Q(option.caption));
    control->setObjectName(Q(option.name));
    control->setChecked(option.on);
    const auto clicked = [this, option](bool on) {
        desktop_.Run("ChartPage:Option_Click", [&] {
            option.click(on);
            if (option.kind != Kind::Button) Restart();
        });
    };
    if (option.kind == Kind::Button) {
        connect(control, &QAbstractButton::clicked, this, clicked);
    } else {
        // Of two choices that change, the one that is on now speaks.
        connect(control, &QAbstractButton::toggled, this, [clicked, option](bool on) {
            if (on || option.kind == Kind::Check) clicked(on);
        });
    }
    return control;
}

void ChartPage::Restart() {
    auto metrics = std::make_unique<QtTextMetrics>(FontOfForm(desktop_, objectName()));
    chart_->TheVwindow().SetFont(*metrics);
    chart_->TheVwindow().SetPage(desktop_.host->ThePrinting().Page());
    view_->SetMetrics(*metrics);
    metrics_ = std::move(metrics);
    desktop_.Run("Chart:Start", [this] { chart_->Start(); });
    setWindowTitle(Q(chart_->Caption()));
    view_->SurfaceChanged();
    PlaceOptions();
}

void ChartPage::PlaceOptions() {
    if (options_) static_cast<OptionsBox*>(options_)->Place(view_->ContentSize());
}

void ChartPage::Do(const char* section, ChartForm::Answer answer) {
    if (answer == ChartForm::Answer::Start) Hear(section, [this] { Restart(); });
    if (answer == ChartForm::Answer::Unload) Hear(section, [this] { Unload(); });
}

std::optional<ShownSurface> ChartPage::Surface() {
    return ShownSurface{chart_->TheVwindow(), *metrics_, chart_->Caption()};
}

bool ChartPage::ChangeFont() {
    if (ShowFont(desktop_, objectName())) Restart();
    return true;
}

void ChartPage::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    PlaceOptions();
}

}  // namespace vortan
