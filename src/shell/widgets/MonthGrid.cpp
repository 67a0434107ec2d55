#include "shell/widgets/MonthGrid.h"

#include <QFontInfo>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "paint/ScreenColor.h"

namespace vortan {
namespace {

constexpr char kWeekdayLetters[] = "SMTWTFS";
// Numbers grow with cells that are high enough for more than this many lines, up to a limit.
constexpr double kRoomyLines = 1.8, kLargest = 2;
constexpr Color kNoDay = 0x808080, kGridLine = 0xA0A0A0;

}  // namespace

MonthGrid::MonthGrid() {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setToolTip("Double-click on a day for more detailed information");
}

void MonthGrid::SetMonth(int firstWeekday, std::vector<Color> colors) {
    firstWeekday_ = firstWeekday;
    colors_ = std::move(colors);
    selected_ = 0;
    update();
}

void MonthGrid::SetSelected(int day) {
    if (day == selected_) return;
    selected_ = day;
    update();
    CurrentChanged(*this, selected_ - 1);
}

int MonthGrid::DayAt(int row, int col) const {
    const int day = (row - 1) * kCols + col - firstWeekday_ + 1;
    return row > 0 && day >= 1 && day <= static_cast<int>(colors_.size()) ? day : 0;
}

QColor MonthGrid::CellColor(int row, int col) const {
    if (row == 0) return palette().color(QPalette::Button);
    const int day = DayAt(row, col);
    return ScreenColor(day == 0 ? kNoDay : colors_[static_cast<std::size_t>(day - 1)]);
}

/// Without the line at its right and bottom. Widths differ by a pixel where the widget's is no multiple.
QRect MonthGrid::CellRect(int row, int col) const {
    const auto edge = [](int i, int count, int size) { return 1 + i * (size - 1) / count; };
    const QPoint corner(edge(col, kCols, width()), edge(row, kRows, height()));
    return {corner, QPoint(edge(col + 1, kCols, width()) - 2, edge(row + 1, kRows, height()) - 2)};
}

Readable::Part MonthGrid::PartAt(int part) const {
    const int cell = part + firstWeekday_;
    return {TextOf ? TextOf(part + 1) : QString::number(part + 1), CellRect(1 + cell / kCols, cell % kCols)};
}

QSize MonthGrid::minimumSizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    // A pixel for the line and one of air each.
    return {kCols * (metrics.horizontalAdvance(" 33 ") + 2) + 1, kRows * (metrics.height() + 2) + 1};
}

void MonthGrid::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), ScreenColor(kGridLine));
    const double lines = CellRect(1, 0).height() / (kRoomyLines * fontMetrics().height());
    QFont grown = font();
    grown.setPointSizeF(QFontInfo(font()).pointSizeF() * std::clamp(lines, 1.0, kLargest));
    painter.setFont(grown);
    for (int row = 0; row < kRows; ++row) {
        for (int col = 0; col < kCols; ++col) {
            const QRect cell = CellRect(row, col);
            if (!cell.intersects(event->rect())) continue;
            painter.fillRect(cell, CellColor(row, col));
            const int day = DayAt(row, col);
            // The colours of days are light in any palette.
            painter.setPen(row == 0 ? palette().color(QPalette::ButtonText) : QColor(Qt::black));
            if (row == 0) painter.drawText(cell, Qt::AlignCenter, QString(kWeekdayLetters[col]));
            if (day != 0) painter.drawText(cell, Qt::AlignCenter, QString::number(day));
            if (day == 0 || day != selected_) continue;
            painter.setPen(QPen(Qt::black, 2));
            painter.drawRect(cell.adjusted(1, 1, -1, -1));
        }
    }
}

int MonthGrid::DayUnder(const QPoint& point) const {
    for (int row = 1; row < kRows; ++row) {
        for (int col = 0; col < kCols; ++col) {
            // The lines belong to the cell on their left and above.
            if (CellRect(row, col).adjusted(0, 0, 1, 1).contains(point)) return DayAt(row, col);
        }
    }
    return 0;
}

void MonthGrid::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && Click) Click(DayUnder(event->position().toPoint()));
}

void MonthGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && DblClick) DblClick(DayUnder(event->position().toPoint()));
}

}  // namespace vortan
