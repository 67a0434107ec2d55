#include "shell/widgets/MarkGrid.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "paint/ScreenColor.h"
#include "paint/Text.h"

namespace vortan {
namespace {

constexpr int kColumns = 7, kTextColumn = 3;
constexpr char kMarks[] = "GYR";
constexpr Color kMarkColors[] = {65280, 65535, 255};

/// The mark that a column is for, and whether it is one of the present month.
char MarkOfColumn(int column) {
    return column == kTextColumn ? '\0' : kMarks[column < kTextColumn ? column : column - kTextColumn - 1];
}
char& MarkOfHalf(StatusRow& row, int column) {
    return column < kTextColumn ? row.previous : row.present;
}

/// Two lines: the months over three columns each, and the letters below; the text's heading over both.
class MarkHeader : public QHeaderView {
  public:
    explicit MarkHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
        setSectionsClickable(false);
        setHighlightSections(false);
    }
    QString heading;

    QSize sizeHint() const override { return {0, LineHeight() * 2}; }

  protected:
    void paintSection(QPainter* painter, const QRect& rect, int column) const override {
        painter->save();
        painter->setClipRect(rect);
        painter->fillRect(rect, palette().button());
        const int first = column < kTextColumn ? 0 : kTextColumn + 1;
        QRect whole = rect;
        if (column == kTextColumn) {
            Box(*painter, whole, heading);
        } else {
            whole.setLeft(sectionViewportPosition(first));
            whole.setWidth(3 * sectionSize(first));
            whole.setHeight(LineHeight());
            Box(*painter, whole, column < kTextColumn ? "Previous Month" : "Present Month");
            whole = rect;
            whole.setTop(rect.top() + LineHeight());
            Box(*painter, whole, QString(QChar(MarkOfColumn(column))));
        }
        painter->restore();
    }

  private:
    int LineHeight() const { return fontMetrics().height() * 3 / 2; }
    void Box(QPainter& painter, const QRect& rect, const QString& text) const {
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawLine(rect.topRight(), rect.bottomRight());
        painter.drawLine(rect.bottomLeft(), rect.bottomRight());
        painter.setPen(palette().color(QPalette::ButtonText));
        const QRect inside = rect.adjusted(2, 0, -2, 0);
        painter.drawText(rect, Qt::AlignCenter,
                         fontMetrics().elidedText(text, Qt::ElideRight, inside.width()));
    }
};

}  // namespace

void MarkGrid::ShowRows(const std::string& heading, std::vector<StatusRow>& rows) {
    rows_ = &rows;
    if (columnCount() == 0) {
        setColumnCount(kColumns);
        setHorizontalHeader(new MarkHeader(this));
        verticalHeader()->hide();
        verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        setEditTriggers(NoEditTriggers);
        setSelectionMode(NoSelection);
        setTabKeyNavigation(false);
    }
    static_cast<MarkHeader*>(horizontalHeader())->heading = Q(heading);
    setRowCount(static_cast<int>(rows.size()));
    for (int row = 0; row < rowCount(); ++row) {
        for (int column = 0; column < kColumns; ++column) {
            auto* item = new QTableWidgetItem;
            item->setTextAlignment(Qt::AlignCenter);
            setItem(row, column, item);
        }
        item(row, kTextColumn)->setText(Q(rows[static_cast<std::size_t>(row)].text));
        RedoRow(row);
    }
    if (rowCount() > 0 && currentRow() < 0) setCurrentCell(0, kTextColumn + 1);
    PlaceColumns();
}

void MarkGrid::RedoColors() {
    for (int row = 0; row < rowCount(); ++row) RedoRow(row);
}

void MarkGrid::RedoRow(int row) {
    StatusRow& shown = (*rows_)[static_cast<std::size_t>(row)];
    for (int column = 0; column < kColumns; ++column) {
        if (column == kTextColumn) continue;
        const char mark = MarkOfColumn(column);
        const bool set = shown.inTable && MarkOfHalf(shown, column) == mark;
        QTableWidgetItem& cell = *item(row, column);
        cell.setText(set ? QString(QChar(mark)) : QString());
        cell.setBackground(set ? ScreenColor(kMarkColors[column % (kTextColumn + 1)]) : QColor(Qt::white));
        cell.setForeground(Qt::black);
    }
}

void MarkGrid::Click(int row, int column) {
    if (!rows_ || row < 0 || column < 0) return;
    StatusRow& clicked = (*rows_)[static_cast<std::size_t>(row)];
    const char mark = MarkOfColumn(column);
    if (!mark || !clicked.inTable) return;
    MarkOfHalf(clicked, column) = mark;
    RedoRow(row);
}

void MarkGrid::mousePressEvent(QMouseEvent* event) {
    QTableWidget::mousePressEvent(event);
    const QModelIndex at = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && at.isValid()) Click(at.row(), at.column());
}

void MarkGrid::keyPressEvent(QKeyEvent* event) {
    constexpr int kKeys[] = {Qt::Key_G, Qt::Key_Y, Qt::Key_R};
    const int half = currentColumn() < kTextColumn ? 0 : kTextColumn + 1;
    for (int i = 0; i < 3; ++i)
        if (event->key() == kKeys[i] && event->modifiers() == Qt::NoModifier)
            return Click(currentRow(), half + i);
    if (event->key() == Qt::Key_Space) return Click(currentRow(), currentColumn());
    QTableWidget::keyPressEvent(event);
}

void MarkGrid::resizeEvent(QResizeEvent* event) {
    QTableWidget::resizeEvent(event);
    PlaceColumns();
}

/// The text takes what the marks leave.
void MarkGrid::PlaceColumns() {
    if (columnCount() == 0) return;
    const int width = fontMetrics().horizontalAdvance(" XXXX ");
    for (int column = 0; column < kColumns; ++column) {
        if (column != kTextColumn) setColumnWidth(column, width);
    }
    setColumnWidth(kTextColumn, std::max(viewport()->width() - (kColumns - 1) * width, width));
}

}  // namespace vortan
