#include "shell/help/HelpForm.h"

#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

#include "paint/Text.h"
#include "shell/desk/FormHost.h"
#include "shell/desk/Icons.h"
#include "shell/desk/Printing.h"

namespace vortan {
namespace {

constexpr int kResultLines = 8;

const char kMissing[] =
    "<p style=\"font-family:'Times New Roman'; font-size:12pt; font-weight:bold; color:#f00000\">The help "
    "screen "
    "for %1 is missing.</p>";
const char kListing[] = "<pre style=\"font-family:'Times New Roman'; font-size:10pt\">%1</pre>";

QString TipOf(const char* words, const std::string* page) {
    return page ? words + Q(*page) : QString();
}

}  // namespace

HelpForm::HelpForm(Desktop& desktop, QWidget& mainWindow)
    : QWidget(&mainWindow, Qt::Window),
      desktop_(desktop),
      mainWindow_(mainWindow),
      history_(TheManual()),
      text_(new HelpView),
      search_(new QLineEdit),
      find_(new QLineEdit),
      results_(new QListWidget),
      findRow_(new QWidget),
      back_(new QPushButton("Back")),
      next_(new QPushButton("Next")),
      print_(new QPushButton("Print")) {
    setObjectName("HelpForm");
    setWindowTitle("VORTAN for Windows Help");
    setWindowIcon(GetResIcon("Help.ico"));
    BuildLayout();
    Connect();
    const QRect inner(mainWindow.mapToGlobal(QPoint(0, 0)), mainWindow.size());
    QRect place(QPoint(0, 0), QSize(inner.width() * 3 / 4, inner.height() * 7 / 8));
    place.moveCenter(inner.center());
    setGeometry(place);
}

void HelpForm::BuildLayout() {
    search_->setObjectName("SearchText");
    search_->setPlaceholderText("Words to look for in the manual");
    search_->setClearButtonEnabled(true);
    results_->setObjectName("ResultList");
    results_->hide();
    find_->setObjectName("FindText");
    find_->setPlaceholderText("Text to look for in this page");
    back_->setObjectName("BackCommand");
    next_->setObjectName("NextCommand");
    print_->setObjectName("PrintCommand");
    for (QPushButton* button : {back_, next_, print_}) button->setAutoDefault(false);

    const auto labelled = [](const char* text, QLineEdit* field) {
        auto* row = new QHBoxLayout;
        auto* label = new QLabel(text);
        label->setBuddy(field);
        row->addWidget(label);
        row->addWidget(field, 1);
        return row;
    };
    auto* top = labelled("&Search", search_);
    top->addWidget(print_);
    QHBoxLayout* findLine = labelled("&Find in page", find_);
    findLine->setContentsMargins(0, 0, 0, 0);
    findRow_->setLayout(findLine);
    findRow_->hide();
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(back_);
    buttons->addStretch();
    buttons->addWidget(next_);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(results_);
    all->addWidget(text_, 1);
    all->addWidget(findRow_);
    all->addLayout(buttons);
    const int frame = 2 * results_->frameWidth();
    results_->setMaximumHeight(kResultLines * (fontMetrics().height() + 4) + frame);
}

void HelpForm::AddShortcut(const QKeySequence& keys, const std::function<void()>& run) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, run);
}

void HelpForm::Connect() {
    const auto walk = [this](bool forward) {
        const auto& pages = forward ? history_.NextPages() : history_.BackPages();
        if (!pages.empty()) DisplayHelpPage(forward ? "+" : "-");
    };
    connect(back_, &QPushButton::clicked, this, [walk] { walk(false); });
    connect(next_, &QPushButton::clicked, this, [walk] { walk(true); });
    connect(print_, &QPushButton::clicked, this, [this] { Print(); });
    text_->Walk = walk;
    text_->LinkClicked = [this](const std::string& key) { DisplayHelpPage(key); };
    connect(search_, &QLineEdit::textChanged, this, [this] { Search(); });
    connect(search_, &QLineEdit::returnPressed, this, [this] { OpenResult(); });
    connect(results_, &QListWidget::itemClicked, this, [this] { OpenResult(); });
    connect(results_, &QListWidget::itemActivated, this, [this] { OpenResult(); });
    connect(find_, &QLineEdit::textChanged, this, [this] {
        text_->BackToFound();
        FindNext(false);
    });

    AddShortcut(Qt::ALT | Qt::Key_Left, [walk] { walk(false); });
    AddShortcut(Qt::ALT | Qt::Key_Right, [walk] { walk(true); });
    AddShortcut(QKeySequence::Find, [this] { ShowFind(true); });
    AddShortcut(Qt::Key_F3, [this] { FindNext(false); });
    AddShortcut(Qt::SHIFT | Qt::Key_F3, [this] { FindNext(true); });
    AddShortcut(QKeySequence::Print, [this] { Print(); });
    AddShortcut(Qt::CTRL | Qt::Key_Plus, [this] { text_->Zoom(text_->ZoomSteps() + 1); });
    AddShortcut(Qt::CTRL | Qt::Key_Equal, [this] { text_->Zoom(text_->ZoomSteps() + 1); });
    AddShortcut(Qt::CTRL | Qt::Key_Minus, [this] { text_->Zoom(text_->ZoomSteps() - 1); });
    AddShortcut(Qt::CTRL | Qt::Key_0, [this] { text_->Zoom(0); });
}

// ---- pages

void HelpForm::DisplayHelpPage(const std::string& page) {
    desktop_.Run("Help:DisplayHelpPage", [&] {
        ShowCurrent(history_.Display(page));
        show();
        raise();
        activateWindow();
    });
}

void HelpForm::ShowCurrent(const HelpPage* page) {
    page_ = page;
    setWindowTitle(Q(history_.CurrentPage()));
    text_->hide();
    if (page) {
        text_->ShowPage(*page);
    } else {
        text_->ShowHtml(QString(kMissing).arg(Q(history_.CurrentPage()).toHtmlEscaped()));
    }
    text_->show();
    Mark();
    if (!search_->hasFocus() && !find_->hasFocus()) text_->setFocus();
    const auto& back = history_.BackPages();
    const auto& next = history_.NextPages();
    back_->setEnabled(!back.empty());
    back_->setToolTip(TipOf("Back to ", back.empty() ? nullptr : &back.back()));
    next_->setEnabled(!next.empty());
    next_->setToolTip(TipOf("Next to ", next.empty() ? nullptr : &next.front()));
}

/// Words that were looked for stay marked from page to page, until the field is empty.
void HelpForm::Mark() {
    if (findRow_->isVisible()) {
        text_->FindText(find_->text(), false);
    } else {
        text_->MarkWords(SearchWords(S(search_->text())));
    }
}

void HelpForm::Search() {
    results_->clear();
    for (const HelpPage* page : TheManual().Search(S(search_->text()))) {
        const std::string title = page->Title();
        auto* item = new QListWidgetItem(Q(title == page->key ? title : page->key + ": " + title), results_);
        item->setData(Qt::UserRole, Q(page->key));
    }
    results_->setCurrentRow(0);
    results_->setVisible(results_->count() > 0);
    Mark();
}

/// The page of the line that is marked, which is the best one at first.
void HelpForm::OpenResult() {
    if (const QListWidgetItem* item = results_->currentItem()) {
        DisplayHelpPage(S(item->data(Qt::UserRole).toString()));
        results_->hide();
        text_->setFocus();
        return;
    }
    if (!search_->text().trimmed().isEmpty()) desktop_.platform.Beep();
}

void HelpForm::ShowFind(bool shown) {
    findRow_->setVisible(shown);
    if (shown) {
        find_->setFocus();
        find_->selectAll();
    } else {
        text_->setFocus();
    }
    Mark();
}

void HelpForm::FindNext(bool backward) {
    if (!findRow_->isVisible()) return ShowFind(true);
    if (!text_->FindText(find_->text(), backward)) desktop_.platform.Beep();
}

void HelpForm::Print() {
    if (!page_) return desktop_.platform.Beep();
    desktop_.Run("Help:PrintCommand_Click", [this] {
        FormHost& host = *desktop_.host;
        host.Note(host.ThePrinting().PrintHelpPage(this, desktop_.platform, *page_));
    });
}

// ---- keys and mouse

void HelpForm::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const QString typed = event->text();
    if (key == Qt::Key_Escape) {
        if (findRow_->isVisible()) return ShowFind(false);
        if (search_->hasFocus() && !search_->text().isEmpty()) return search_->clear();
        hide();
    } else if (key == Qt::Key_F1) {
        DisplayHelpPage("Using help");
    } else if ((key == Qt::Key_Return || key == Qt::Key_Enter) && find_->hasFocus()) {
        FindNext(event->modifiers() & Qt::ShiftModifier);
    } else if ((key == Qt::Key_Down || key == Qt::Key_Up) && search_->hasFocus()) {
        results_->setCurrentRow(std::clamp(results_->currentRow() + (key == Qt::Key_Down ? 1 : -1), 0,
                                           std::max(0, results_->count() - 1)));
    } else if (typed.isEmpty() || key == Qt::Key_Return || key == Qt::Key_Enter || search_->hasFocus() ||
               find_->hasFocus()) {
        QWidget::keyPressEvent(event);
    } else if (typed.front().isLetter() && history_.CurrentPage() == "Index") {
        text_->GoToLetter(typed.front().toUpper());
    } else {
        desktop_.platform.Beep();
    }
}

void HelpForm::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::BackButton) back_->click();
    if (event->button() == Qt::ForwardButton) next_->click();
}

void HelpForm::mouseDoubleClickEvent(QMouseEvent*) {
    page_ = nullptr;
    text_->ShowHtml(QString(kListing).arg(Q(history_.Listing()).toHtmlEscaped()));
}

// ---- beside a form

/// `inner` is the main window without its frame. All places are those of the frames on the screen.
void HelpForm::SplitScreen(QWidget& form) {
    const QRect main = mainWindow_.frameGeometry(), help = frameGeometry(), at = form.frameGeometry();
    const QRect inner(mainWindow_.mapToGlobal(QPoint(0, 0)), mainWindow_.size());
    const QRect screen = mainWindow_.screen()->availableGeometry();
    const QSize frame = help.size() - size();
    if (inner.left() + at.width() <= help.left()) {
        form.move(inner.left() + (help.left() - main.left() - at.width()) / 2, at.top());
        return;
    }
    if (inner.top() + at.height() <= help.top()) {
        form.move(at.left(), inner.top() + (help.top() - main.top() - at.height()) / 2);
        return;
    }
    const QWidget* active = form.focusWidget();
    const QRect field = active ? QRect(active->mapTo(&form, QPoint(0, 0)), active->size()) : QRect();
    const bool upper = field.top() < at.height() / 2;
    form.move(inner.left(), upper ? inner.top() : inner.top() + inner.height() - at.height());
    const int least = fontMetrics().horizontalAdvance(QString(30, 'X'));
    const int left = inner.left() + at.width();
    const int width = std::max(screen.right() + 1 - left - frame.width(), least);
    resize(width, height());
    move(left, help.top());
    if (left + width + frame.width() > screen.right() + 1)
        LeaveFree(field.translated(form.mapToGlobal(QPoint(0, 0))), screen);
}

/// The screen is too narrow for both: this window goes to its right edge, below the field or above it.
void HelpForm::LeaveFree(const QRect& field, const QRect& screen) {
    const QSize frame = frameGeometry().size() - size();
    const int gap = fontMetrics().height();
    const int above = field.top() - gap - screen.top(), below = screen.bottom() - gap - field.bottom();
    const int room = std::max(above, below);
    resize(width(), std::min(height(), room - frame.height()));
    move(screen.right() + 1 - width() - frame.width(),
         below >= above ? field.bottom() + gap : field.top() - gap - height() - frame.height());
}

}  // namespace vortan
