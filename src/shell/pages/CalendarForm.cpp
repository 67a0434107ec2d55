#include "shell/pages/CalendarForm.h"

#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <algorithm>

#include "charts/TimeScale.h"
#include "charts/ZoomTable.h"
#include "model/ValueText.h"
#include "model/Vtemplate.h"
#include "paint/ScreenColor.h"
#include "paint/Text.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/pages/ZoomForm.h"

namespace vortan {
namespace {

constexpr int kFirstYear = 100, kLastYear = 9999;
constexpr int kColumns = 4;  // of months

DateTime FirstOf(int year, int month) {
    return FromParts({year, month, 1});
}

/// December has 31 days; the others last until the next one begins.
int DaysIn(int year, int month) {
    if (month == 12) return 31;
    return static_cast<int>(DaysBetween(FirstOf(year, month), FirstOf(year, month + 1)));
}

}  // namespace

void CalendarForm::Start(Desktop& desktop) {
    auto* form = new CalendarForm(desktop);
    form->Show([form] {
        form->Restart();
        return true;
    });
}

CalendarForm::CalendarForm(Desktop& desktop)
    : PageForm(desktop), scroll_(new QScrollArea), thisYear_(desktop.calendarYear) {
    setObjectName("CalendarForm");
    setFocusPolicy(Qt::StrongFocus);
    auto* page = new QWidget;
    auto* row = new QHBoxLayout(page);
    row->addWidget(NewSidePanel());
    row->addWidget(NewMonths(), 1);
    scroll_->setWidget(page);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setFocusPolicy(Qt::NoFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll_);
}

bool CalendarForm::ChangeFont() {
    if (ShowFont(desktop_, objectName())) Restart();
    return true;
}

// ---- controls

QWidget* CalendarForm::NewSidePanel() {
    auto* panel = new QWidget;
    auto* column = new QVBoxLayout(panel);
    previous_ = NewYearCommand("PrevYearCommand", -1);
    next_ = NewYearCommand("NextYearCommand", 1);
    year_ = new QLabel;
    year_->setObjectName("YearLabel");
    year_->setAlignment(Qt::AlignCenter);
    auto* years = new QHBoxLayout;
    years->addWidget(previous_);
    years->addWidget(year_, 1);
    years->addWidget(next_);
    column->addLayout(years);
    column->addWidget(NewKeyFrame());
    column->addStretch();
    return panel;
}

QPushButton* CalendarForm::NewYearCommand(const char* name, int step) {
    auto* button = new QPushButton;
    button->setObjectName(name);
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QPushButton::clicked, this, [this, step] {
        desktop_.Run("Calendar:YearCommand_Click", [this, step] { SetYear(thisYear_ + step); });
    });
    return button;
}

QWidget* CalendarForm::NewKeyFrame() {
    auto* frame = new QGroupBox("Day properties");
    frame->setObjectName("KeyFrame");
    auto* rows = new QGridLayout(frame);
    rows->setColumnStretch(1, 1);
    for (int key = 1; key <= kDayKeys; ++key) {
        auto* picture = new QFrame;
        picture->setObjectName(QString("KeyPicture(%1)").arg(key));
        picture->setAccessibleName(QString("Color of ") + LookOf(key).label);
        picture->setFrameStyle(QFrame::Box | QFrame::Plain);
        picture->setAutoFillBackground(true);
        QPalette colors = picture->palette();
        colors.setColor(QPalette::Window, ScreenColor(LookOf(key).color));
        picture->setPalette(colors);
        picture->setMinimumWidth(2 * fontMetrics().height());
        auto* label = new QLabel(LookOf(key).label);
        label->setObjectName(QString("KeyLabel(%1)").arg(key));
        rows->addWidget(picture, key, 0);
        rows->addWidget(label, key, 1);
    }
    return frame;
}

QWidget* CalendarForm::NewMonths() {
    auto* panel = new QWidget;
    auto* table = new QGridLayout(panel);
    table->setHorizontalSpacing(fontMetrics().height());
    for (int i = 0; i < kMonths; ++i) {
        auto* label = new QLabel(TimeScale::MonthName(i + 1));
        label->setObjectName(QString("MonthLabel(%1)").arg(i + 1));
        label->setAlignment(Qt::AlignCenter);
        auto* grid = new MonthGrid;
        grid->setObjectName(QString("MonthGrid(%1)").arg(i + 1));
        grid->Click = [this, i](int day) {
            desktop_.Run("Calendar:MonthGrid_MouseDown", [&] { ClickOnMonthGrid(i + 1, day); });
        };
        grid->DblClick = [this, i](int day) {
            desktop_.Run("Calendar:MonthGrid_DblClick", [&] {
                ClickOnMonthGrid(i + 1, day);
                ZoomInOnDay();
            });
        };
        months_[static_cast<std::size_t>(i)] = grid;
        const int row = 2 * (i / kColumns), column = i % kColumns;
        table->addWidget(label, row, column);
        table->addWidget(grid, row + 1, column);
        table->setRowStretch(row + 1, 1);
        table->setColumnStretch(column, 1);
    }
    return panel;
}

// ---- content

void CalendarForm::Restart() {
    const Workspace& workspace = desktop_.workspace;
    if (!workspace.ThisTemplate()) return Unload();
    const QFont font = FontOfForm(desktop_, objectName());
    setFont(font);
    QFont strong = font;
    strong.setBold(true);
    for (QLabel* label : findChildren<QLabel*>()) {
        if (label == year_ || label->objectName().startsWith("MonthLabel")) label->setFont(strong);
    }
    setWindowTitle(Q("Calendar for template " + workspace.ThisTemplate()->BuildNodeText()));
    SetYear(thisYear_ == 0 ? ToParts(desktop_.platform.Now()).year : thisYear_);
}

void CalendarForm::SetYear(int year) {
    thisYear_ = std::clamp(year, kFirstYear, kLastYear);
    desktop_.calendarYear = thisYear_;
    year_->setText(QString::number(thisYear_));
    previous_->setText(QString::number(thisYear_ - 1));
    next_->setText(QString::number(thisYear_ + 1));
    previous_->setEnabled(thisYear_ > kFirstYear);
    next_->setEnabled(thisYear_ < kLastYear);
    BuildCalendar();
}

void CalendarForm::BuildCalendar() {
    const auto keys = DayKeysOfYear(desktop_.solver, thisYear_);
    auto key = keys.begin();
    for (int month = 1; month <= kMonths; ++month) {
        std::vector<Color> colors;
        std::vector<const char*> labels;
        for (int day = DaysIn(thisYear_, month); day > 0; --day, ++key) {
            colors.push_back(LookOf(*key).color);
            labels.push_back(LookOf(*key).label);
        }
        MonthGrid& grid = *months_[static_cast<std::size_t>(month - 1)];
        grid.SetMonth(Weekday(FirstOf(thisYear_, month)) - 1, std::move(colors));
        grid.TextOf = [year = thisYear_, month, labels = std::move(labels)](int day) {
            const DateTime date = FromParts({year, month, day});
            return Q(std::string(DayName(Weekday(date))) + " " + FormatShortDate(date) + ": " +
                     labels[static_cast<std::size_t>(day - 1)]);
        };
    }
    selectedDate_ = DateTime();
}

// ---- selection

void CalendarForm::ClickOnMonthGrid(int month, int day) {
    setFocus(Qt::MouseFocusReason);
    Select(day == 0 ? DateTime() : FromParts({thisYear_, month, day}));
}

/// Of the year that is shown.
void CalendarForm::Select(DateTime date) {
    selectedDate_ = date;
    const DateParts parts = ToParts(date);
    for (int month = 1; month <= kMonths; ++month) {
        MonthGrid& grid = *months_[static_cast<std::size_t>(month - 1)];
        const bool here = date.IsSet() && parts.month == month;
        grid.SetSelected(here ? parts.day : 0);
        if (here) scroll_->ensureWidgetVisible(&grid);
    }
}

void CalendarForm::ZoomInOnDay() {
    if (selectedDate_.IsSet()) ZoomForm::Start(desktop_, selectedDate_);
}

/// The arrows walk over the days, into other years too.
void CalendarForm::keyPressEvent(QKeyEvent* event) {
    int step = 0;
    switch (event->key()) {
        case Qt::Key_Left:
            step = -1;
            break;
        case Qt::Key_Right:
            step = 1;
            break;
        case Qt::Key_Up:
            step = -7;
            break;
        case Qt::Key_Down:
            step = 7;
            break;
        case Qt::Key_PageUp:
            previous_->click();
            return;
        case Qt::Key_PageDown:
            next_->click();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            desktop_.Run("Calendar:Form_KeyDown", [this] { ZoomInOnDay(); });
            return;
        default:
            QWidget::keyPressEvent(event);
            return;
    }
    desktop_.Run("Calendar:Form_KeyDown", [this, step] {
        const DateTime today(desktop_.platform.Now().WholeDay());
        const DateTime first = ToParts(today).year == thisYear_ ? today : FirstOf(thisYear_, 1);
        const DateTime chosen = selectedDate_.IsSet() ? AddDays(selectedDate_, step) : first;
        const int year = ToParts(chosen).year;
        if (chosen < FirstOf(kFirstYear, 1) || chosen.Days() > kLastDay) return;
        if (year != thisYear_) SetYear(year);
        Select(chosen);
    });
}

}  // namespace vortan
