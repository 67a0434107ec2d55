#include "shell/pages/SheetTyping.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "model/Vresource.h"
#include "model/Vtask.h"
#include "paint/Text.h"
#include "shell/entry/TaskEntryForm.h"

namespace vortan {
namespace {

constexpr int kBesideX = 3, kBesideY = 2;  // pixels of the entry's corner from that of the cell
constexpr std::size_t kMostTold = 10;      // refusals in one box

/// A text in quotes may have line ends and tabs in it, and doubled quotes.
std::vector<std::vector<std::string>> Block(const std::string& text) {
    std::vector<std::vector<std::string>> rows(1);
    std::string cell;
    bool quoted = false, whole = true;  // whole: nothing of the cell was read yet
    const auto end = [&] {
        rows.back().push_back(std::exchange(cell, {}));
        whole = true;
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quoted) {
            if (c != '"') {
                cell += c;
            } else if (i + 1 < text.size() && text[i + 1] == '"') {
                cell += text[++i];
            } else {
                quoted = false;
            }
        } else if (c == '"' && whole) {
            quoted = true;
            whole = false;
        } else if (c == '\t') {
            end();
        } else if (c == '\n') {
            end();
            rows.emplace_back();
        } else if (c != '\r') {
            cell += c;
            whole = false;
        }
    }
    if (!cell.empty() || !rows.back().empty()) end();
    if (rows.back().empty()) rows.pop_back();
    return rows;
}

PlanObject ObjectOf(const RowSubject& subject) {
    if (const auto* task = std::get_if<Link<Vtask>>(&subject); task && task->Get()) return task->Get();
    if (const auto* resource = std::get_if<Link<Vresource>>(&subject); resource && resource->Get())
        return resource->Get();
    return {};
}

bool SameObject(const RowSubject& a, const RowSubject& b) {
    return ObjectOf(a) == ObjectOf(b);
}

}  // namespace

SheetTyping::SheetTyping(Desktop& desktop, CellEntry::Sheet sheet, Vwindow& surface, GridView& view,
                         Page page)
    : desktop_(desktop),
      sheet_(sheet),
      surface_(surface),
      view_(view),
      page_(std::move(page)),
      text_(new QLineEdit(view.viewport())),
      combo_(new QComboBox(view.viewport())),
      list_(new QComboBox(view.viewport())),
      refusal_(new QLabel(view.viewport())) {
    text_->setObjectName("EntryText");
    combo_->setObjectName("EntryCombo");
    combo_->setEditable(true);
    combo_->setInsertPolicy(QComboBox::NoInsert);
    list_->setObjectName("EntryList");
    refusal_->setObjectName("EntryRefusal");
    refusal_->setAutoFillBackground(true);
    refusal_->setBackgroundRole(QPalette::ToolTipBase);
    refusal_->setForegroundRole(QPalette::ToolTipText);
    refusal_->setFrameShape(QFrame::Box);
    refusal_->setMargin(kBesideX);
    refusal_->setWordWrap(true);
    refusal_->hide();
    for (QWidget* control : {static_cast<QWidget*>(text_), static_cast<QWidget*>(combo_),
                             static_cast<QWidget*>(list_), static_cast<QWidget*>(combo_->lineEdit())}) {
        control->setAccessibleName("Cell");
        control->installEventFilter(this);
        if (control != combo_->lineEdit()) control->hide();
    }
    for (const QScrollBar* bar : {view.horizontalScrollBar(), view.verticalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, this, [this] { SetEntryPos(); });
}

CellEntry SheetTyping::Entry() const {
    return {desktop_.workspace, sheet_, TaskEntryForm::DefaultEfficiency(desktop_)};
}

void SheetTyping::SetFont(const QFont& font) {
    for (QWidget* control :
         {static_cast<QWidget*>(text_), static_cast<QWidget*>(combo_), static_cast<QWidget*>(list_)})
        control->setFont(font);
}

bool SheetTyping::Key(const QKeyEvent& event) {
    const auto selected = view_.Selection();
    const bool letter = !event.text().isEmpty() && event.text()[0].isPrint() &&
                        !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (event.matches(QKeySequence::Paste)) {
        Paste();
    } else if (event.key() == Qt::Key_D && event.modifiers() == Qt::ControlModifier) {
        FillDown();
    } else if (event.key() == Qt::Key_Delete) {
        DeleteRows();
    } else if (selected.Empty()) {
        return false;
    } else if (event.key() == Qt::Key_Insert) {
        if (!emptyRow_) page_.rebuild(emptyRow_ = true);
        StartEntry(LastRow(), 1);
    } else if (event.key() == Qt::Key_Down && selected.bottom == LastRow() && !event.modifiers() &&
               !emptyRow_) {
        page_.rebuild(emptyRow_ = true);
        StartEntry(LastRow(), 1);
    } else if (event.key() == Qt::Key_F2 || letter) {
        StartEntry(selected.top, selected.left, letter ? event.text() : QString());
    } else {
        return false;
    }
    return true;
}

bool SheetTyping::StartEntry(int row, int col, const QString& typed) {
    if (!Commit()) return false;
    const CellEntry entry = Entry();
    const RowSubject subject = page_.subjectOf(row);
    const CellEntry::Control control = entry.ControlOf(subject, col);
    view_.Select({row, col, row, col});
    if (control == CellEntry::Control::None) {
        desktop_.platform.StatusMessage("This is a text of the subproject, and is changed there");
        return false;
    }
    row_ = row;
    col_ = col;
    before_ = entry.TextOf(subject, col, std::string(surface_.Cell(row, col)));
    const QString text = typed.isEmpty() ? Q(before_) : typed;
    if (control == CellEntry::Control::Text) {
        open_ = text_;
        text_->setText(text);
        if (typed.isEmpty()) text_->selectAll();
    } else {
        QComboBox* const box = control == CellEntry::Control::Combo ? combo_ : list_;
        open_ = box;
        box->clear();
        for (const std::string& choice : entry.Choices(col)) box->addItem(Q(choice));
        if (control == CellEntry::Control::Combo) {
            combo_->setEditText(text);
            if (typed.isEmpty()) combo_->lineEdit()->selectAll();
        } else {
            const int found = list_->findText(
                text, typed.isEmpty() ? Qt::MatchFixedString | Qt::MatchCaseSensitive : Qt::MatchStartsWith);
            list_->setCurrentIndex(std::max(found, typed.isEmpty() ? -1 : list_->findText(Q(before_))));
        }
    }
    SetEntryPos();
    open_->show();
    open_->setFocus();
    return true;
}

void SheetTyping::SetEntryPos() {
    if (!open_) return;
    const int left = view_.CellLeft(col_), top = view_.CellTop(row_), height = open_->sizeHint().height();
    int width = view_.CellLeft(col_ + 1) - left;
    if (open_ != text_) width += height / 2;
    width = std::max(width, open_->fontMetrics().horizontalAdvance(Q(before_)) + height);
    open_->setGeometry(left + kBesideX, top + kBesideY, std::max(width, height * 3), height);
    if (!refusal_->isVisible()) return;
    const int room = std::max(view_.viewport()->width() - left - 2 * kBesideX, height * 12);
    refusal_->setFixedWidth(
        std::min(room, refusal_->fontMetrics().horizontalAdvance(refusal_->text()) + 4 * kBesideX));
    refusal_->adjustSize();
    const bool below = top + height + refusal_->height() < view_.viewport()->height();
    refusal_->move(left + kBesideX,
                   below ? top + height + 2 * kBesideY : top - refusal_->height() - kBesideY);
    refusal_->raise();
}

std::string SheetTyping::Value() const {
    return S(open_ == text_ ? text_->text() : static_cast<QComboBox*>(open_)->currentText());
}

void SheetTyping::Close() {
    refusal_->hide();
    row_ = -1;
    if (QWidget* const closed = std::exchange(open_, nullptr)) {
        if (closed->isAncestorOf(QApplication::focusWidget()) || closed->hasFocus()) view_.setFocus();
        closed->hide();
    }
}

void SheetTyping::Tell(const std::string& refusal) {
    refusal_->setText(Q(refusal));
    open_->setAccessibleDescription(Q(refusal));
    refusal_->show();
    SetEntryPos();
}

bool SheetTyping::Commit() {
    if (!open_ || committing_) return !open_;
    const int row = row_, col = col_;
    const CellEntry::Cell cell{page_.subjectOf(row), 0, col, Value()};
    if (cell.text == before_) {
        Close();
        return true;
    }
    const CellEntry entry = Entry();
    if (const auto refusals = entry.Check({&cell, 1}); !refusals.empty()) {
        Tell(refusals.front().text);
        return false;
    }
    committing_ = true;
    Close();
    RowSubject taken;
    desktop_.Run("Spreadsheet:EntryText_LostFocus", [&] { taken = entry.Take({&cell, 1}); });
    const bool made = std::holds_alternative<std::monostate>(cell.subject);
    if (made) emptyRow_ = false;
    if (made || emptyRow_) {
        page_.rebuild(emptyRow_);
    } else {
        page_.refresh(taken);
    }
    // It may stand elsewhere now.
    const int now = !made && SameObject(page_.subjectOf(row), taken) ? -1 : RowOf(taken);
    if (now >= 0) view_.Select({now, col, now, col});
    committing_ = false;
    return true;
}

void SheetTyping::Leave() {
    if (Commit()) return;
    desktop_.platform.StatusMessage("\"" + Value() + "\" was not taken: " + S(refusal_->text()));
    Close();
}

int SheetTyping::RowOf(const RowSubject& subject) const {
    for (int row = surface_.FixedRows(); row < surface_.Rows(); ++row)
        if (SameObject(page_.subjectOf(row), subject)) return row;
    return -1;
}

std::vector<int> SheetTyping::ObjectRows(int row) const {
    std::vector<int> rows;
    for (; row < surface_.Rows(); ++row)
        if (rows.empty() || !SameObject(page_.subjectOf(row), page_.subjectOf(rows.back())))
            rows.push_back(row);
    return rows;
}

void SheetTyping::MoveTo(int rows, int cols) {
    if (!Commit()) return;
    const auto at = view_.Selection();
    int row = at.top + rows, col = at.left + cols;
    if (col >= surface_.Cols()) {
        col = 1;
        // Behind all rows of what was typed in.
        const std::vector<int> objects = ObjectRows(at.top);
        row = objects.size() > 1 ? objects[1] : surface_.Rows();
    }
    row = std::max(row, surface_.FixedRows());
    if (row >= surface_.Rows()) {
        if (!emptyRow_) page_.rebuild(emptyRow_ = true);
        row = LastRow();
    }
    view_.Select({row, std::max(col, 0), row, std::max(col, 0)});
    view_.SelectRow(row);
    StartEntry(row, std::max(col, 0));
}

/// Each move takes what was typed; Esc gives it up. Up and down in a list choose from it.
bool SheetTyping::EntryKey(const QKeyEvent& event) {
    const bool back = event.modifiers().testFlag(Qt::ShiftModifier), inText = open_ == text_;
    switch (event.key()) {
        case Qt::Key_Escape:
            Close();
            if (std::exchange(emptyRow_, false)) {
                page_.rebuild(false);
                view_.Select({LastRow(), 1, LastRow(), 1});
            }
            return true;
        case Qt::Key_Up:
            if (inText) MoveTo(-1, 0);
            return inText;
        case Qt::Key_Down:
            if (inText) MoveTo(1, 0);
            return inText;
        case Qt::Key_Tab:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            MoveTo(0, back ? -1 : 1);
            return true;
        case Qt::Key_Backtab:
            MoveTo(0, -1);
            return true;
        default:
            return false;
    }
}

bool SheetTyping::eventFilter(QObject* watched, QEvent* event) {
    const bool ofOpen = open_ && (watched == open_ || watched->parent() == open_);
    if (!ofOpen) return false;
    if (event->type() == QEvent::FocusOut &&
        static_cast<QFocusEvent&>(*event).reason() != Qt::PopupFocusReason &&
        static_cast<QFocusEvent&>(*event).reason() != Qt::ActiveWindowFocusReason) {
        // A list of choices has the focus for a while.
        if (!open_->isAncestorOf(QApplication::focusWidget())) Commit();
        return false;
    }
    return event->type() == QEvent::KeyPress && EntryKey(static_cast<const QKeyEvent&>(*event));
}

bool SheetTyping::TakeAll(const std::vector<CellEntry::Cell>& cells, const std::string& title) {
    const CellEntry entry = Entry();
    const auto refusals = entry.Check(cells);
    if (!refusals.empty()) {
        std::string all;
        for (std::size_t i = 0; i < std::min(refusals.size(), kMostTold); ++i) {
            const CellEntry::Cell& cell = cells[refusals[i].cell];
            std::string column(surface_.Cell(0, cell.column));
            std::erase(column, '\r');
            std::replace(column.begin(), column.end(), '\n', ' ');
            all += "\nRow " + std::to_string(cell.newRow + 1) + ", " + column + ": " + refusals[i].text;
        }
        if (refusals.size() > kMostTold)
            all += "\nand " + std::to_string(refusals.size() - kMostTold) + " more.";
        desktop_.platform.MessageBox("Nothing was changed, because of these cells:\n" + all, title,
                                     BoxIcon::Warning, BoxButtons::Ok);
        return false;
    }
    const auto selected = view_.Selection();
    desktop_.Run("Spreadsheet:Vwindow_KeyDown", [&] { entry.Take(cells); });
    page_.rebuild(emptyRow_ = false);
    view_.Select(selected);
    return true;
}

/// Lines of the block go to the objects from the current row on, then to new ones. An empty cell leaves what
/// is there.
void SheetTyping::Paste() {
    if (!Commit()) return;
    const auto selected = view_.Selection();
    const auto block = Block(S(QApplication::clipboard()->text()));
    if (selected.Empty() || block.empty()) return;
    const std::vector<int> rows = ObjectRows(selected.top);
    std::vector<CellEntry::Cell> cells;
    for (std::size_t i = 0; i < block.size(); ++i) {
        const RowSubject subject = i < rows.size() ? page_.subjectOf(rows[i]) : RowSubject();
        for (std::size_t j = 0; j < block[i].size(); ++j) {
            const int column = selected.left + static_cast<int>(j);
            const std::string& text = block[i][j];
            const bool same =
                i < rows.size() && column < surface_.Cols() && text == surface_.Cell(rows[i], column);
            if (!text.empty() && !same) cells.push_back({subject, static_cast<int>(i), column, text});
        }
    }
    if (!cells.empty()) TakeAll(cells, "Cannot Paste");
}

void SheetTyping::FillDown() {
    if (!Commit()) return;
    const auto selected = view_.Selection();
    if (selected.Empty() || selected.top == selected.bottom) return;
    const CellEntry entry = Entry();
    const RowSubject from = page_.subjectOf(selected.top);
    std::vector<CellEntry::Cell> cells;
    const std::vector<int> rows = ObjectRows(selected.top);
    for (std::size_t i = 1; i < rows.size() && rows[i] <= selected.bottom; ++i) {
        const RowSubject subject = page_.subjectOf(rows[i]);
        for (int col = std::max(selected.left, 1); col <= selected.right; ++col)
            cells.push_back({subject, static_cast<int>(i), col,
                             entry.TextOf(from, col, std::string(surface_.Cell(selected.top, col)))});
    }
    if (!cells.empty()) TakeAll(cells, "Cannot Fill Down");
}

void SheetTyping::DeleteRows() {
    if (!Commit()) return;
    const auto selected = view_.Selection();
    std::vector<RowSubject> subjects;
    for (const int row : ObjectRows(selected.Empty() ? surface_.Rows() : selected.top))
        if (row <= selected.bottom) subjects.push_back(page_.subjectOf(row));
    for (const RowSubject& subject : subjects) {
        const PlanObject object = ObjectOf(subject);
        if (!std::holds_alternative<std::monostate>(object))
            desktop_.Run("Spreadsheet:Vwindow_KeyDown", [&] { desktop_.RequestDelete(object); });
    }
    page_.rebuild(emptyRow_ = false);
}

}  // namespace vortan
