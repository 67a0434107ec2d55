#include "shell/widgets/ShiftGrid.h"

#include <QFontInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "model/ValueText.h"
#include "paint/Text.h"

namespace vortan {
namespace {

// The grid with its heads: minutes above, the hour on both sides.
constexpr int kGridRows = ShiftGrid::kRows + 1, kGridColumns = ShiftGrid::kColumns + 2;
constexpr int kMinutes = 5;  // of a cell

constexpr QRgb kSelected = 0xFFFFFFFF, kInk = 0xFF000000, kLine = 0x40000000;

/// The start of a cell as a clock time, "8:05am"; the number of cells is the end of the day.
std::string ClockText(int cell) {
    std::string text = FormatHour(cell / ShiftGrid::kColumns, false);
    const int minute = cell % ShiftGrid::kColumns * kMinutes;
    const std::string minutes = (minute < 10 ? ":0" : ":") + std::to_string(minute);
    const std::size_t colon = text.find(':');
    if (colon != std::string::npos) return text.substr(0, colon) + minutes;
    return text.insert(text.size() - 2, minutes);
}

const char* NameOfLetter(char letter) {
    switch (letter) {
        case 'N':
            return "Normal";
        case 'O':
            return "Overtime";
        case 'B':
            return "Break";
        default:
            return "Overload";
    }
}

}  // namespace

ShiftGrid::ShiftGrid() {
    setObjectName("Grid");
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    letters_.fill('X');
}

void ShiftGrid::SetLetter(int cell, char letter) {
    letters_.at(static_cast<std::size_t>(cell)) = letter;
    update();
}

std::string ShiftGrid::Row(int hour) const {
    return {letters_.data() + static_cast<std::ptrdiff_t>(hour) * kColumns, kColumns};
}

QColor ShiftGrid::LetterColour(char letter) {
    switch (letter) {
        case 'N':
            return 0xC0FFC0;
        case 'O':
            return 0x00C0C0;
        case 'B':
            return 0xFFC0C0;
        default:
            return 0xFF8080;
    }
}

// ---- selection

bool ShiftGrid::IsSelected(int cell) const {
    return selecting_ && cell >= std::min(anchor_, current_) && cell <= std::max(anchor_, current_);
}

std::string ShiftGrid::SelectionText() const {
    if (!selecting_) return {};
    return ClockText(std::min(anchor_, current_)) + " to " + ClockText(std::max(anchor_, current_) + 1);
}

void ShiftGrid::Select(int anchor, int current, bool selecting) {
    if (anchor == anchor_ && current == current_ && selecting == selecting_) return;
    anchor_ = anchor;
    current_ = current;
    selecting_ = selecting;
    update();
    CurrentChanged(*this, current_);
    if (SelectionChanged) SelectionChanged();
}

Readable::Part ShiftGrid::PartAt(int part) const {
    return {Q(ClockText(part) + ": " + NameOfLetter(Letter(part))), CellRect(part)};
}

void ShiftGrid::ReplaceSelectedCells(char letter) {
    for (int cell = 0; cell < kCells && letter != '\0'; ++cell) {
        if (IsSelected(cell)) letters_[static_cast<std::size_t>(cell)] = letter;
    }
    Select(current_, current_, false);
}

void ShiftGrid::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const int cell = CellAt(event->pos());
    Select(cell, cell, true);
}

void ShiftGrid::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton && selecting_) Select(anchor_, CellAt(event->pos()), true);
}

/// Where a key of movement leads; -1 for other keys.
int ShiftGrid::Target(const QKeyEvent& event) const {
    const bool wholeDay = event.modifiers() & Qt::ControlModifier;
    const int rowStart = current_ - current_ % kColumns;
    switch (event.key()) {
        case Qt::Key_Left:
            return std::max(current_ - 1, 0);
        case Qt::Key_Right:
            return std::min(current_ + 1, kCells - 1);
        case Qt::Key_Up:
            return current_ < kColumns ? current_ : current_ - kColumns;
        case Qt::Key_Down:
            return current_ >= kCells - kColumns ? current_ : current_ + kColumns;
        case Qt::Key_Home:
            return wholeDay ? 0 : rowStart;
        case Qt::Key_End:
            return wholeDay ? kCells - 1 : rowStart + kColumns - 1;
        default:
            return -1;
    }
}

void ShiftGrid::keyPressEvent(QKeyEvent* event) {
    if (const int target = Target(*event); target >= 0) {
        const bool extend = event->modifiers() & Qt::ShiftModifier;
        // A selection begins with the cell that one moves off.
        Select(!extend ? target : selecting_ ? anchor_ : current_, target, extend);
        return;
    }
    const bool plain = !(event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    switch (event->key()) {
        case Qt::Key_N:
        case Qt::Key_O:
        case Qt::Key_B:
        case Qt::Key_X:
            if (!plain) break;
            if (!selecting_) Select(current_, current_, true);
            return ReplaceSelectedCells(static_cast<char>(event->key()));
        case Qt::Key_Space:
            if (!selecting_) Select(current_, current_, true);
            return;
        default:
            break;
    }
    QWidget::keyPressEvent(event);
}

void ShiftGrid::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void ShiftGrid::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

// ---- places

int ShiftGrid::HeadWidth() const {
    return fontMetrics().horizontalAdvance("12pm") + fontMetrics().averageCharWidth();
}

int ShiftGrid::CellWidth() const {
    return fontMetrics().horizontalAdvance(":55") + fontMetrics().averageCharWidth() * 3 / 2;
}

QSize ShiftGrid::sizeHint() const {
    return {2 * HeadWidth() + kColumns * CellWidth() + 1, fontMetrics().height() * 4 / 3 * kGridRows + 1};
}

/// On a small screen, letters of half the size can still be read by their colours.
QSize ShiftGrid::minimumSizeHint() const {
    return sizeHint() / 2;
}

int ShiftGrid::ColumnEdge(int column) const {
    const int hint = column == 0              ? 0
                     : column == kGridColumns ? sizeHint().width() - 1
                                              : HeadWidth() + (column - 1) * CellWidth();
    return (width() - 1) * hint / (sizeHint().width() - 1);
}

int ShiftGrid::RowEdge(int row) const {
    return (height() - 1) * row / kGridRows;
}

QRect ShiftGrid::GridRect(int row, int column) const {
    return {QPoint(ColumnEdge(column), RowEdge(row)),
            QPoint(ColumnEdge(column + 1) - 1, RowEdge(row + 1) - 1)};
}

QRect ShiftGrid::CellRect(int cell) const {
    return GridRect(cell / kColumns + 1, cell % kColumns + 1);
}

int ShiftGrid::CellAt(QPoint position) const {
    int row = 1, column = 1;
    while (row < kRows && position.y() >= RowEdge(row + 1)) ++row;
    while (column < kColumns && position.x() >= ColumnEdge(column + 1)) ++column;
    return (row - 1) * kColumns + column - 1;
}

// ---- painting

/// The form's font, or a smaller one where the cells are smaller than it.
QFont ShiftGrid::CellFont() const {
    const QSize usual = sizeHint();
    const double fits = std::min(
        {1.0, static_cast<double>(height()) / usual.height(), static_cast<double>(width()) / usual.width()});
    QFont fitting = font();
    if (fits < 1) fitting.setPixelSize(std::max(4, static_cast<int>(QFontInfo(font()).pixelSize() * fits)));
    return fitting;
}

void ShiftGrid::PaintHeads(QPainter& painter) const {
    const auto head = [&](int row, int column, const QString& text) {
        const QRect place = GridRect(row, column);
        painter.fillRect(place.adjusted(0, 0, 1, 1), palette().button());
        painter.setPen(palette().color(QPalette::ButtonText));
        painter.drawText(place, Qt::AlignCenter, text);
    };
    for (int column = 0; column < kGridColumns; ++column) {
        const bool minutes = column >= 1 && column <= kColumns;
        const int minute = (column - 1) * kMinutes;
        head(0, column, minutes ? QString(":%1").arg(minute, 2, 10, QChar('0')) : QString());
    }
    for (int hour = 0; hour < kRows; ++hour) {
        const QString text = Q(FormatHour(hour, false));
        head(hour + 1, 0, text);
        head(hour + 1, kGridColumns - 1, text);
    }
}

void ShiftGrid::PaintCell(QPainter& painter, int cell) const {
    const QRect place = CellRect(cell);
    const bool selected = IsSelected(cell);
    painter.fillRect(place.adjusted(0, 0, 1, 1), selected ? QColor(kSelected) : LetterColour(Letter(cell)));
    painter.setPen(QColor::fromRgba(kLine));
    painter.drawRect(place.adjusted(0, 0, 1, 1));
    QFont letterFont = painter.font();
    letterFont.setBold(selected);
    painter.setFont(letterFont);
    painter.setPen(QColor(kInk));
    painter.drawText(place, Qt::AlignCenter, QString(QChar(Letter(cell))));
}

/// The edge of the selection, so that it stands out from cells that are light too; or the mark of the
/// keyboard's cell, if there is no selection.
void ShiftGrid::PaintOutline(QPainter& painter, int cell) const {
    const auto inside = [&](int other) {
        if (other < 0 || other >= kCells) return false;
        return selecting_ ? IsSelected(other) : hasFocus() && other == current_;
    };
    if (!inside(cell)) return;
    const QRect place = CellRect(cell).adjusted(1, 1, 0, 0);
    const int column = cell % kColumns;
    painter.setPen(QPen(QColor(kInk), 2));
    if (!inside(cell - kColumns)) painter.drawLine(place.topLeft(), place.topRight());
    if (!inside(cell + kColumns)) painter.drawLine(place.bottomLeft(), place.bottomRight());
    if (column == 0 || !inside(cell - 1)) painter.drawLine(place.topLeft(), place.bottomLeft());
    if (column == kColumns - 1 || !inside(cell + 1)) painter.drawLine(place.topRight(), place.bottomRight());
}

void ShiftGrid::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(CellFont());
    PaintHeads(painter);
    for (int cell = 0; cell < kCells; ++cell) PaintCell(painter, cell);
    for (int cell = 0; cell < kCells; ++cell) PaintOutline(painter, cell);
}

}  // namespace vortan
