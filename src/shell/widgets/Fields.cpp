#include "shell/widgets/Fields.h"

#include <QCalendarWidget>
#include <QComboBox>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QMenu>
#include <QShortcutEvent>
#include <QTimer>
#include <QWidgetAction>

#include "model/ValueText.h"
#include "paint/Text.h"
#include "shell/desk/Icons.h"

namespace vortan {

TextField::TextField(const QString& name, int characters) : characters_(characters) {
    setObjectName(name);
    setToolTip("Press [F1] for help");
}

QSize TextField::sizeHint() const {
    const QSize usual = QLineEdit::sizeHint();
    return {fontMetrics().averageCharWidth() * (characters_ + 3), usual.height()};
}

void TextField::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    if (event->reason() == Qt::MouseFocusReason) {
        // The press that brings the focus sets the caret after this event.
        QTimer::singleShot(0, this, [this] {
            if (hasFocus() && !hasSelectedText()) selectAll();
        });
    } else if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason) {
        selectAll();
    }
}

CurrencyField::CurrencyField(const QString& name, std::string currencySymbol)
    : TextField(name, 14), symbol_(std::move(currencySymbol)) {
    setAlignment(Qt::AlignRight);
}

void CurrencyField::focusOutEvent(QFocusEvent* event) {
    TextField::focusOutEvent(event);
    if (const auto value = ParseCurrency(Value(), symbol_)) SetValue(FormatCurrency(*value, symbol_));
}

DateField::DateField(const QString& name, const QString& spoken)
    : text_(new TextField(name, 12)), button_(new QToolButton) {
    button_->setObjectName(name + "Calendar");
    button_->setIcon(GetResIcon("Calendar.ico"));
    button_->setToolTip("Choose a date");
    text_->setAccessibleName(spoken);
    button_->setAccessibleName("Calendar for the " + spoken.toLower());
    button_->setFocusPolicy(Qt::TabFocus);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(text_, 1);
    row->addWidget(button_);
    setFocusProxy(text_);
    connect(button_, &QToolButton::clicked, this, [this] { ShowCalendar(); });
}

void DateField::ShowCalendar() {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto* calendar = new QCalendarWidget;
    calendar->setGridVisible(true);
    calendar->setDateRange(QDate(100, 1, 1), QDate(9999, 12, 31));
    if (const auto date = ParseDate(text_->Value())) {
        const DateParts parts = ToParts(*date);
        calendar->setSelectedDate(QDate(parts.year, parts.month, parts.day));
    }
    const auto choose = [this, menu](QDate day) {
        text_->SetValue(FormatShortDate(FromParts({day.year(), day.month(), day.day()})));
        menu->close();
        text_->setFocus();
    };
    connect(calendar, &QCalendarWidget::clicked, menu, choose);
    connect(calendar, &QCalendarWidget::activated, menu, choose);
    auto* action = new QWidgetAction(menu);
    action->setDefaultWidget(calendar);
    menu->addAction(action);
    menu->popup(button_->mapToGlobal(QPoint(0, button_->height())));
    calendar->setFocus();
}

void StopAtChosen(QAbstractButton& option) {
    const auto set = [&option](bool chosen) {
        option.setFocusPolicy(chosen ? Qt::StrongFocus : Qt::ClickFocus);
    };
    set(option.isChecked());
    QObject::connect(&option, &QAbstractButton::toggled, &option, set);
}

namespace {

/// Chooses an option at once when its key is pressed. The toolkit would show it pressed first, and letters
/// typed meanwhile would go to the option.
class ChooseAtOnce : public QObject {
  public:
    explicit ChooseAtOnce(QAbstractButton& option) : QObject(&option) { option.installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Shortcut || static_cast<QShortcutEvent*>(event)->isAmbiguous())
            return false;
        static_cast<QAbstractButton*>(watched)->click();
        return true;
    }
};

}  // namespace

void LeadTo(QAbstractButton& option, QWidget& box) {
    new ChooseAtOnce(option);
    QObject::connect(&option, &QAbstractButton::clicked, &box,
                     [&box] { box.setFocus(Qt::ShortcutFocusReason); });
}

void SelectText(QWidget& box) {
    auto* line = qobject_cast<QLineEdit*>(&box);
    if (const auto* combo = qobject_cast<QComboBox*>(&box)) line = combo->lineEdit();
    if (line) line->selectAll();
}

QLabel* NewRemark(const QString& text) {
    auto* label = new QLabel(text);
    QFont small = label->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    label->setFont(small);
    return label;
}

void SetLive(QWidget& box, bool live) {
    box.setBackgroundRole(live ? QPalette::Base : QPalette::Window);
    QPalette palette = box.palette();
    const QPalette usual = box.parentWidget() ? box.parentWidget()->palette() : QPalette();
    palette.setBrush(QPalette::Base, usual.brush(live ? QPalette::Base : QPalette::Window));
    box.setPalette(palette);
}

void EnableTextBox(QWidget& box, bool enabled) {
    box.setEnabled(enabled);
    SetLive(box, enabled);
}

}  // namespace vortan
