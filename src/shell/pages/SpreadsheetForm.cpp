#include "shell/pages/SpreadsheetForm.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "charts/TableText.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "paint/Text.h"
#include "reports/Builders.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/desk/FormHost.h"
#include "shell/desk/Printing.h"
#include "shell/entry/DependencyEntryForm.h"
#include "shell/entry/ResourceEntryForm.h"
#include "shell/entry/SubprojectEntryForm.h"
#include "shell/entry/TaskEntryForm.h"

namespace vortan {

SpreadsheetForm* SpreadsheetForm::InFront(Desktop& desktop) {
    ChildForm* open = desktop.host->FullPage();
    return open && open->FormName() == kReportForm ? static_cast<SpreadsheetForm*>(open) : nullptr;
}

void SpreadsheetForm::Start(Desktop& desktop, const ReportKind& kind) {
    auto* form = new SpreadsheetForm(desktop, kind);
    form->Show([form] { return form->Build(); });
}

SpreadsheetForm::SpreadsheetForm(Desktop& desktop, const ReportKind& kind)
    : PageForm(desktop),
      kind_(kind),
      metrics_(std::make_unique<QtTextMetrics>(QFont())),
      vwindow_(Vwindow::Style::Table, *metrics_),
      view_(std::make_unique<GridView>(vwindow_, *metrics_)),
      behind_(new BehindLine("report", [this] { BuildAnew(); })) {
    setObjectName(kReportForm);
    view_->CellClick = [this](Qt::MouseButton button, int row, int col) {
        desktop_.Run("Spreadsheet:Vwindow_CellClick", [&] { CellClick(button, row, col); });
    };
    view_->RowDoubleClick = [this](int row) {
        desktop_.Run("Spreadsheet:Vwindow_DblClick", [&] { Open(row); });
    };
    view_->installEventFilter(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(behind_);
    if (kind_.byMonth) layout->addWidget(NewMonthButtons());
    layout->addWidget(view_.get(), 1);
    setFocusProxy(view_.get());
    if (&kind_ == &ReportKinds()[0] || &kind_ == &ReportKinds()[1]) StartTyping();
}

void SpreadsheetForm::StartTyping() {
    const auto subjectOf = [this](int row) {
        const int place = TableRow(row);
        return place >= 0 && place < table_.Rows() ? table_.Subject(place) : RowSubject();
    };
    const auto sheet = &kind_ == &ReportKinds()[0] ? CellEntry::Sheet::Resources : CellEntry::Sheet::Tasks;
    typing_ = std::make_unique<SheetTyping>(desktop_, sheet, vwindow_, *view_,
                                            SheetTyping::Page{subjectOf, [this](bool) { Rebuild(); },
                                                              [this](const RowSubject& subject) {
                                                                  if (!Refresh(subject)) Rebuild();
                                                              }});
}

void SpreadsheetForm::Unload() {
    if (typing_) typing_->Leave();
    PageForm::Unload();
}

QString SpreadsheetForm::PageName() {
    return QString("SpreadsheetTypeMenu(%1)").arg(&kind_ - ReportKinds().data() + 1);
}

QWidget* SpreadsheetForm::NewMonthButtons() {
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](const char* name, bool forward) {
        auto* button = new QPushButton;
        button->setObjectName(name);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QPushButton::clicked, this, [this, forward] {
            desktop_.Run("Spreadsheet:MonthCommand_Click", [&] { TurnMonth(forward); });
        });
        row->addWidget(button);
        return button;
    };
    before_ = add("MonthBeforeCommand", false);
    row->addStretch();
    after_ = add("MonthAfterCommand", true);
    return line;
}

bool SpreadsheetForm::Build() {
    const Section section("Spreadsheet:Start");
    auto metrics = std::make_unique<QtTextMetrics>(FontOfForm(desktop_, objectName()));
    vwindow_.SetFont(*metrics);
    vwindow_.SetPage(desktop_.host->ThePrinting().Page());
    view_->SetMetrics(*metrics);
    metrics_ = std::move(metrics);
    if (typing_) typing_->SetFont(FontOfForm(desktop_, objectName()));
    behind_->hide();
    desktop_.platform.StatusMessage("Building spreadsheet");
    table_ = kind_.build({desktop_.workspace, desktop_.solver, desktop_.byDayMonth});
    desktop_.platform.StatusMessage("");
    setWindowTitle(Q(table_.caption));
    if (kind_.byMonth) {
        desktop_.byDayMonth = table_.month;
        before_->setText("\u2190 " + Q(MonthText(MonthBefore(table_.month))));
        after_->setText(Q(MonthText(MonthAfter(table_.month))) + " \u2192");
        vwindow_.ToolTip = "left-click for previous month or right-click for next month";
    }
    Fill();
    if (table_.Rows() > 0) return true;
    desktop_.platform.MessageBox("The requested spreadsheet contained no data.", "Spreadsheet Empty",
                                 BoxIcon::Warning, BoxButtons::Ok);
    return false;
}

void SpreadsheetForm::Fill() {
    order_.clear();
    if (sortedBy_ >= 0) order_ = table_.SortedRows(sortedBy_, descending_);
    FillSurface(vwindow_, table_, order_);
    if (sortedBy_ >= 0) {
        vwindow_.SetCell(0, sortedBy_,
                         std::string(vwindow_.Cell(0, sortedBy_)) + (descending_ ? " \u25BC" : " \u25B2"));
        vwindow_.EndLayout(table_.fixedColumns, 0);
    }
    if (typing_ && typing_->HasEmptyRow()) {
        vwindow_.AddRow();
        vwindow_.EndLayout(table_.fixedColumns, 0);
    }
    view_->Select(view_->Selection());  // as far as it is still there
    view_->SurfaceChanged();
    if (typing_) typing_->SetEntryPos();
}

void SpreadsheetForm::BuildAnew() {
    desktop_.Run("Spreadsheet:BuildAnewCommand_Click", [this] {
        if (MayBuild(desktop_.workspace, kind_)) Rebuild();
    });
}

void SpreadsheetForm::Rebuild() {
    const int x = view_->horizontalScrollBar()->value(), y = view_->verticalScrollBar()->value();
    if (!Build()) return Unload();
    view_->horizontalScrollBar()->setValue(x);
    view_->verticalScrollBar()->setValue(y);
}

namespace {

/// The object and the tasks whose rows name it.
std::vector<RowSubject> ShownWith(const RowSubject& subject) {
    std::vector<RowSubject> all{subject};
    const auto* link = std::get_if<Link<Vtask>>(&subject);
    const Vtask* task = link ? link->Get() : nullptr;
    if (!task) return all;
    for (Vtask* other : task->Project()->TaskList()) {
        const auto& dependencies = other->DependencyList();
        const bool waits =
            other != task && std::any_of(dependencies.begin(), dependencies.end(),
                                         [&](const auto* each) { return each->TaskRequired() == task; });
        if (waits) all.emplace_back(Link<Vtask>(other));
    }
    return all;
}

}  // namespace

/// Only where nothing moves by it: all have as many rows as before, and their texts fit.
bool SpreadsheetForm::Refresh(const RowSubject& subject) {
    if (sortedBy_ >= 0 || vwindow_.WrapText) return false;
    const std::vector<RowSubject> all = ShownWith(subject);
    std::vector<RowSubject> subjects;  // in the order of the table
    std::vector<std::int32_t> rows;
    for (std::int32_t row = 0; row < table_.Rows(); ++row) {
        const RowSubject& at = table_.Subject(row);
        if (std::find(all.begin(), all.end(), at) == all.end()) continue;
        if (subjects.empty() || subjects.back() != at) subjects.push_back(at);
        rows.push_back(row);
    }
    const Table fresh = BuildEntryRows(table_, subjects, desktop_.platform.CurrencySymbol());
    if (fresh.Rows() != static_cast<std::int32_t>(rows.size())) return false;
    const int inset = 2 * vwindow_.TextWidth("x");
    const auto fits = [&](std::int32_t i, std::int32_t row) {
        if (fresh.Subject(i) != table_.Subject(row)) return false;
        for (int col = 0; col < fresh.Cols(); ++col) {
            const std::string_view text = fresh.Cell(i, col).text;
            if (text == table_.Cell(row, col).text) continue;
            const int room = vwindow_.ColPos(col + 1) - vwindow_.ColPos(col);
            // The number says where an object stands.
            if (col == 0 || vwindow_.TextWidth(text) + inset > room) return false;
        }
        return true;
    };
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (!fits(static_cast<std::int32_t>(i), rows[i])) return false;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (int col = 0; col < fresh.Cols(); ++col) {
            const TableCell& cell = fresh.Cell(static_cast<std::int32_t>(i), col);
            table_.SetCell(rows[i], col, cell.text, cell.value);
            vwindow_.SetCell(rows[i] + 1, col, cell.text);
        }
    }
    behind_->hide();
    view_->viewport()->update();
    return true;
}

void SpreadsheetForm::TurnMonth(bool forward) {
    desktop_.byDayMonth = forward ? MonthAfter(table_.month) : MonthBefore(table_.month);
    Build();
}

int SpreadsheetForm::TableRow(int surfaceRow) const {
    const auto row = static_cast<std::size_t>(surfaceRow - 1);
    return row < order_.size() ? order_[row] : surfaceRow - 1;
}

void SpreadsheetForm::CellClick(Qt::MouseButton button, int row, int col) {
    if (kind_.byMonth) {
        if (button == Qt::LeftButton) return TurnMonth(false);
        if (button == Qt::RightButton) return TurnMonth(true);
    } else if (row == 0 && button == Qt::LeftButton) {
        SortBy(col);
    }
}

/// Up, down, and as told.
void SpreadsheetForm::SortBy(int col) {
    const bool again = sortedBy_ == col;
    if (again && descending_) {
        sortedBy_ = -1;
    } else {
        sortedBy_ = col;
    }
    descending_ = again && !descending_;
    Fill();
}

void SpreadsheetForm::Open(int row) {
    if (kind_.byMonth) return;  // its first click has turned the month
    if (TableRow(row) >= table_.Rows()) return;
    const RowSubject& subject = table_.Subject(TableRow(row));
    if (const auto* link = std::get_if<Link<Vtask>>(&subject); link && link->Get()) {
        Vtask& task = *link->Get();
        task.Subproject() ? SubprojectEntryForm::StartModify(desktop_, task)
                          : TaskEntryForm::StartModify(desktop_, task);
    } else if (const auto* resource = std::get_if<Link<Vresource>>(&subject); resource && resource->Get()) {
        ResourceEntryForm::StartModify(desktop_, *resource->Get());
    } else if (const auto* dependency = std::get_if<Link<Vdependency>>(&subject);
               dependency && dependency->Get()) {
        DependencyEntryForm::StartModify(desktop_, *dependency->Get());
    }
}

void SpreadsheetForm::CopySelection() const {
    const auto selected = view_->Selection();
    if (selected.Empty()) return;
    const bool columns = selected.top == vwindow_.FixedRows() && selected.bottom == vwindow_.Rows() - 1;
    const TablePart part{selected.top, selected.left, selected.bottom, selected.right, columns};
    auto copied = std::make_unique<QMimeData>();
    copied->setText(Q(TableAsTabs(vwindow_, part)));
    copied->setHtml(Q(TableAsHtml(vwindow_, part)));
    QApplication::clipboard()->setMimeData(copied.release());
}

bool SpreadsheetForm::Find(const FindWords& words, FindFrom from) {
    const int first = vwindow_.FixedRows(), count = vwindow_.Rows() - first;
    const int at = view_->Selection().Empty() ? -1 : view_->Selection().top - first;
    const int begin = from == FindFrom::Here ? std::max(at, 0) : from == FindFrom::Next ? at + 1 : at - 1;
    for (int i = 0; i < count; ++i) {
        const int step = from == FindFrom::Before ? -i : i;
        const int row = first + ((begin + step) % count + count) % count;
        QString all;
        for (int col = 0; col < vwindow_.Cols(); ++col) all += Q(vwindow_.Cell(row, col)) + " ";
        if (!words.AllIn(all)) continue;
        view_->SelectRow(row);
        return true;
    }
    return false;
}

/// Page Up and Page Down turn the month where there is one; the entry tables are typed in.
bool SpreadsheetForm::eventFilter(QObject* watched, QEvent* event) {
    if (watched != view_.get() || event->type() != QEvent::KeyPress) return false;
    if (typing_) return typing_->Key(static_cast<const QKeyEvent&>(*event));
    if (!kind_.byMonth) return false;
    const int key = static_cast<const QKeyEvent&>(*event).key();
    if (key != Qt::Key_PageUp && key != Qt::Key_PageDown) return false;
    desktop_.Run("Spreadsheet:Form_KeyDown", [&] { TurnMonth(key == Qt::Key_PageDown); });
    return true;
}

void SpreadsheetForm::keyPressEvent(QKeyEvent* event) {
    const auto run = [this](const std::function<void()>& what) {
        desktop_.Run("Spreadsheet:Form_KeyDown", what);
    };
    if (event->key() == Qt::Key_Escape) {
        run([this] { Unload(); });
    } else if (event->key() == Qt::Key_F5) {
        BuildAnew();
    } else if (event->matches(QKeySequence::Copy)) {
        run([this] { CopySelection(); });
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        run([this] {
            if (!view_->Selection().Empty()) Open(view_->Selection().top);
        });
    } else {
        QWidget::keyPressEvent(event);
    }
}

std::optional<ShownSurface> SpreadsheetForm::Surface() {
    return ShownSurface{vwindow_, *metrics_, table_.caption};
}

bool SpreadsheetForm::ChangeFont() {
    if (ShowFont(desktop_, objectName()) && !Build()) Unload();
    return true;
}

}  // namespace vortan
