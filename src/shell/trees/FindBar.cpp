#include "shell/trees/FindBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QToolButton>
#include <algorithm>
#include <array>

#include "shell/desk/FormHost.h"
#include "shell/trees/NodeView.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/TemplateTreeForm.h"
#include "shell/trees/Trees.h"

namespace vortan {
namespace {

std::array<TreeForm*, 2> Panes(const Trees& trees) {
    return {&trees.ProjectTree(), &trees.TemplateTree()};
}

}  // namespace

FindBar::FindBar(Desktop& desktop, Trees& trees)
    : desktop_(desktop), trees_(trees), words_(new QLineEdit), result_(new QLabel) {
    setObjectName("FindBar");
    words_->setObjectName("FindText");
    words_->setAccessibleName("words to find");
    words_->setPlaceholderText("number, name, department or manager");
    words_->setClearButtonEnabled(true);
    words_->setMaximumWidth(words_->fontMetrics().averageCharWidth() * 60);
    words_->installEventFilter(this);
    result_->setObjectName("FindResult");
    auto* caption = new QLabel("F&ind:");
    caption->setBuddy(words_);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 2, 6, 2);
    row->addWidget(caption);
    row->addWidget(words_, 2);
    const auto button = [&](const char* name, Qt::ArrowType arrow, const char* tip, FindFrom from) {
        auto* made = new QToolButton;
        made->setObjectName(name);
        made->setArrowType(arrow);
        made->setAutoRaise(true);
        made->setToolTip(tip);
        made->setAccessibleName(tip);
        connect(made, &QToolButton::clicked, this,
                [this, from] { desktop_.Run("Find:Step", [&] { Step(from); }); });
        row->addWidget(made);
    };
    button("FindBefore", Qt::UpArrow, "The one before (Shift+Enter)", FindFrom::Before);
    button("FindNext", Qt::DownArrow, "The next one (Enter)", FindFrom::Next);
    row->addWidget(result_, 1);
    connect(words_, &QLineEdit::textChanged, this,
            [this] { desktop_.Run("Find:FindText_Change", [this] { Typed(); }); });
}

void FindBar::Open() {
    open_ = true;
    Shown(true);
    words_->setFocus(Qt::ShortcutFocusReason);
    words_->selectAll();
    Typed();
}

void FindBar::Close() {
    if (!std::exchange(open_, false)) return;
    for (TreeForm* pane : Panes(trees_)) pane->EndFilter();
    Shown(false);
    ChildForm* page = desktop_.host->FullPage();
    Node* selected = trees_.DragNode();
    if (page) return page->Window().setFocus();
    const bool right = selected && selected->Tree == &trees_.TemplateTree().Tree();
    Panes(trees_)[right ? 1 : 0]->View().setFocus();
    if (selected) trees_.SetDragNode(selected);
}

void FindBar::Again() {
    if (open_) Typed();
}

void FindBar::Typed() {
    const FindWords words(words_->text());
    ChildForm* page = desktop_.host->FullPage();
    if (!page) return Narrow();
    if (words.Empty()) return result_->clear();
    const bool found = page->Find(words, FindFrom::Here);
    Tell(found, 1);
}

void FindBar::Narrow() {
    const FindWords words(words_->text());
    for (TreeForm* pane : Panes(trees_)) pane->SetFilter(words);
    if (words.Empty()) return result_->clear();
    const auto hits = Hits();
    Tell(!hits.empty(), hits.size());
    if (!hits.empty() && !(trees_.DragNode() && trees_.DragNode()->Hit)) trees_.SetDragNode(hits.front());
}

void FindBar::Tell(bool found, std::size_t count) {
    if (!found) return result_->setText("nothing found");
    result_->setText(desktop_.host->FullPage() ? QString() : QString::number(count) + " found");
}

std::vector<Node*> FindBar::Hits() const {
    std::vector<Node*> hits;
    for (TreeForm* pane : Panes(trees_)) {
        const auto found = pane->Hits();
        hits.insert(hits.end(), found.begin(), found.end());
    }
    return hits;
}

void FindBar::Step(FindFrom from) {
    const FindWords words(words_->text());
    if (words.Empty()) return;
    if (ChildForm* page = desktop_.host->FullPage()) return Tell(page->Find(words, from), 1);
    const std::vector<Node*> hits = Hits();
    if (hits.empty()) return;
    const auto at = std::find(hits.begin(), hits.end(), trees_.DragNode());
    const auto count = static_cast<std::ptrdiff_t>(hits.size());
    std::ptrdiff_t next = from == FindFrom::Before ? count - 1 : 0;
    if (at != hits.end()) next = (at - hits.begin() + (from == FindFrom::Before ? count - 1 : 1)) % count;
    trees_.SetDragNode(hits[static_cast<std::size_t>(next)]);
    result_->setText(QString("%1 of %2").arg(next + 1).arg(count));
}

bool FindBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched != words_ || event->type() != QEvent::KeyPress) return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.key() == Qt::Key_Escape) {
        desktop_.Run("Find:Close", [this] { Close(); });
    } else if (key.key() == Qt::Key_F1) {
        desktop_.Run("Find:Form_KeyDown", [this] { desktop_.host->DisplayHelpPage("Find"); });
    } else if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
        const bool back = key.modifiers().testFlag(Qt::ShiftModifier);
        desktop_.Run("Find:Step", [&] { Step(back ? FindFrom::Before : FindFrom::Next); });
    } else {
        return false;
    }
    return true;
}

}  // namespace vortan
