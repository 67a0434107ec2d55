#include "shell/forms/EntryForm.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QStyle>
#include <cmath>
#include <set>

#include "model/Characters.h"
#include "model/Conventions.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "paint/Text.h"
#include "shell/desk/FormHost.h"

namespace vortan {
namespace {

/// What a form has above its buttons: as large as it is, and scrolling where the screen is smaller.
class BodyArea : public QScrollArea {
  public:
    BodyArea(QWidget* content, int lineHeight) : lineHeight_(lineHeight) {
        setWidget(content);
        setWidgetResizable(true);
        setFrameShape(NoFrame);
        setFocusPolicy(Qt::NoFocus);
        content->installEventFilter(this);
    }
    QSize sizeHint() const override { return OnScreen(widget()->sizeHint()); }
    QSize minimumSizeHint() const override { return OnScreen(widget()->minimumSizeHint()); }
    bool hasHeightForWidth() const override { return widget()->layout()->hasHeightForWidth(); }
    int heightForWidth(int width) const override {
        return OnScreen({width, widget()->heightForWidth(width)}).height();
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
        return QScrollArea::eventFilter(watched, event);
    }

  private:
    /// Leaves room on the screen for the buttons, the margins and the title of the window.
    QSize OnScreen(QSize wanted) const {
        constexpr int kLinesAround = 7, kLinesBeside = 3;
        const QSize room = screen()->availableGeometry().size() -
                           QSize(kLinesBeside * lineHeight_, kLinesAround * lineHeight_);
        const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        const bool tooHigh = wanted.height() > room.height(), tooWide = wanted.width() > room.width();
        return (wanted + QSize(tooHigh ? bar : 0, tooWide ? bar : 0)).boundedTo(room);
    }

    int lineHeight_;
};

/// The name of a procedure of a form for the error log, as "Preferences:OkCommand_Click". The log wants names
/// that live as long as the program.
const char* SectionOf(const char* formName, const char* procedure) {
    static std::set<std::string> names;
    std::string module = formName;
    if (module.ends_with("Form")) module.resize(module.size() - 4);
    return names.insert(module + ":" + procedure).first->c_str();
}

}  // namespace

EntryForm::EntryForm(Desktop& desktop, const char* name, const char* caption)
    : QDialog(&desktop.host->MainWindow()),
      desktop_(desktop),
      name_(name),
      body_(new QVBoxLayout),
      buttons_(new QHBoxLayout) {
    setObjectName(name);
    setWindowTitle(caption);
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);

    ok_ = new QPushButton("Ok");
    ok_->setObjectName("OkCommand");
    ok_->setDefault(true);
    cancel_ = new QPushButton("Cancel");
    cancel_->setObjectName("CancelCommand");
    connect(ok_, &QPushButton::clicked, this, Command(SectionOf(name, "OkCommand_Click"), [this] {
                if (Finish()) Unload();
            }));
    connect(cancel_, &QPushButton::clicked, this, [this] { reject(); });

    buttons_->addStretch();
    buttons_->addWidget(ok_);
    buttons_->addWidget(cancel_);
    auto* all = new QVBoxLayout(this);
    auto* content = new QWidget;
    body_->setContentsMargins(0, 0, 0, 0);
    content->setLayout(body_);
    bodyArea_ = new BodyArea(content, fontMetrics().height());
    all->addWidget(bodyArea_, 1);
    all->addSpacing(fontMetrics().height() / 2);
    all->addLayout(buttons_);

    desktop_.workspace.AddListener(this);
}

EntryForm::~EntryForm() {
    desktop_.workspace.RemoveListener(this);
    // Closed with the program: the main window is not there to be told.
    if (!unloaded_ && desktop_.host) desktop_.host->FormClosed(*this);
}

void EntryForm::Unload() {
    if (unloaded_) return;
    unloaded_ = true;
    desktop_.workspace.RemoveListener(this);
    FormUnload();
    hide();
    if (desktop_.host) desktop_.host->FormClosed(*this);
    if (returnFocus_) returnFocus_->setFocus(Qt::OtherFocusReason);
    setObjectName({});
    deleteLater();
}

void EntryForm::reject() {
    desktop_.Run(SectionOf(name_, "CancelCommand_Click"), [this] { CancelCommandClick(); });
}

void EntryForm::ShowWith(QWidget& first) {
    returnFocus_ = QApplication::focusWidget();
    first.setFocus(Qt::TabFocusReason);  // which the manual is not to cover
    desktop_.host->ShowForm(*this);
    first.setFocus(Qt::TabFocusReason);
    // The box hears of its focus when the window gets to the front, as if it had always had it.
    SelectText(first);
}

QFormLayout& EntryForm::Rows() {
    if (!rows_) {
        rows_ = new QFormLayout;
        rows_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
        body_->addLayout(rows_);
    }
    return *rows_;
}

void EntryForm::AddRow(const QString& label, QWidget* field) {
    Rows().addRow(label, field);
    // Between whole pixels the last letter would be cut.
    if (QWidget* made = Rows().labelForField(field)) made->setMinimumWidth(made->sizeHint().width() + 1);
}

void EntryForm::AddButton(QPushButton* button) {
    buttons_->insertWidget(0, button);
}

std::function<void()> EntryForm::Command(const char* section, std::function<void()> slot) {
    return [this, section, slot = std::move(slot)] { desktop_.Run(section, slot); };
}

bool EntryForm::Complain(QWidget& field, const std::string& text, const std::string& title) {
    desktop_.platform.MessageBox(text, title, BoxIcon::Warning, BoxButtons::Ok);
    bodyArea_->ensureWidgetVisible(&field);
    field.setFocus(Qt::OtherFocusReason);
    SelectText(field);
    return false;
}

std::optional<DateTime> EntryForm::ReadDate(TextField& field) {
    return ValueOf(field, TypedDate(field.Value()));
}

std::optional<Money> EntryForm::ReadMoney(TextField& field, const std::string& what, Money stored) {
    if (field.Value() == Currency(stored)) return stored;
    return ValueOf(field, TypedMoney(field.Value(), what, CurrencySymbol()));
}

std::string EntryForm::Currency(Money value) const {
    return FormatCurrency(value, CurrencySymbol());
}

void EntryForm::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F1) {
        desktop_.Run(SectionOf(name_, "Form_KeyDown"), [this] { desktop_.host->ContextHelp(); });
        return;
    }
    QDialog::keyPressEvent(event);
}

WorkDayChecks::WorkDayChecks() {
    // The week first, and the days that are not of the week in a row of their own. Made in this order, which
    // is that of Tab.
    constexpr int kPlaces[3][4] = {{1, 2, 3, 4}, {5, 6, 7, -1}, {0, 8, -1, -1}};
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 4; ++column) {
            const int day = kPlaces[row][column];
            if (day < 0) continue;
            auto* check = new QCheckBox(DayName(day));
            check->setObjectName(QString("WorkDayCheck(%1)").arg(day));
            checks_[static_cast<std::size_t>(day)] = check;
            grid->addWidget(check, row, column);
        }
    }
    grid->setColumnStretch(4, 1);
    setFocusProxy(checks_[1]);
}

}  // namespace vortan
