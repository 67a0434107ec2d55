#include "shell/trees/NodeView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>

#include "shell/desk/FormHost.h"
#include "shell/trees/DragDrop.h"
#include "shell/trees/NodeCommands.h"
#include "shell/trees/TreeForm.h"
#include "shell/trees/Trees.h"

namespace vortan {
namespace {

int TreeImageSize(int screenWidth) {
    return screenWidth <= 800 ? 16 : 24;
}

/// Lines that are measured to find the widest; those with the most characters.
constexpr std::size_t kMeasured = 200;

}  // namespace

NodeView::NodeView(Desktop& desktop, TreeForm& form, const QString& hint)
    : desktop_(desktop), form_(form), hint_(hint) {
    setObjectName("Tree");
    setModel(&form.Tree());
    setHeaderHidden(true);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setTextElideMode(Qt::ElideNone);
    setVerticalScrollMode(ScrollPerItem);
    setHorizontalScrollMode(ScrollPerPixel);
    setEditTriggers(NoEditTriggers);
    setExpandsOnDoubleClick(false);
    const int size = TreeImageSize(screen()->geometry().width());
    setIconSize({size, size});
    setIndentation(size * 5 / 4);

    connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) { Expanded(index); });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) { Collapsed(index); });
    fit_.setSingleShot(true);
    fit_.setInterval(0);
    connect(&fit_, &QTimer::timeout, this, [this] { FitWidth(); });
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(model(), signal, &fit_, [this] { fit_.start(); });
    connect(model(), &QAbstractItemModel::dataChanged, &fit_, [this] { fit_.start(); });
    filter_.setSingleShot(true);
    filter_.setInterval(0);
    connect(&filter_, &QTimer::timeout, this,
            [this] { desktop_.Run("Trees:Filter", [this] { form_.ApplyFilter(); }); });
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(model(), signal, &filter_, [this] { filter_.start(); });
}

const NodeTree& NodeView::Tree() const {
    return form_.Tree();
}

Node* NodeView::NodeAt(const QPoint& point) const {
    const QModelIndex index = indexAt(point);
    return index.isValid() ? NodeTree::NodeOf(index) : nullptr;
}

Node* NodeView::MyDragNode() const {
    Node* node = form_.TheTrees() ? form_.TheTrees()->DragNode() : nullptr;
    return node && node->Tree == &Tree() ? node : nullptr;
}

void NodeView::ShowSelected(const Node* node) {
    const QScopedValueRollback selecting(selecting_, true);
    if (!node) {
        selectionModel()->clear();
        return;
    }
    {
        const QScopedValueRollback following(following_, true);
        for (const Node* above = node->Parent; above; above = above->Parent) expand(Tree().IndexOf(above));
    }
    const QModelIndex index = Tree().IndexOf(node);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(index);
}

void NodeView::LetGo(const Node& node) {
    if (!currentIndex().isValid()) return;
    for (const Node* at = NodeTree::NodeOf(currentIndex()); at; at = at->Parent) {
        if (at == &node) return ShowSelected(nullptr);
    }
}

void NodeView::ShowExpanded(const Node& node) {
    const QScopedValueRollback following(following_, true);
    setExpanded(Tree().IndexOf(&node), node.Expanded);
    const std::function<void(const Nodes&)> below = [&](const Nodes& nodes) {
        for (const auto& child : nodes) {
            if (child->Expanded) expand(Tree().IndexOf(child.get()));
            below(child->Children);
        }
    };
    below(node.Children);
}

/// The toolkit forgets what was expanded; the nodes have not.
void NodeView::reset() {
    const QScopedValueRollback selecting(selecting_, true);
    QTreeView::reset();
    for (const auto& root : Tree().Roots()) ShowExpanded(*root);
    executeDelayedItemsLayout();
    fit_.start();
    filter_.start();
}

void NodeView::ShowHidden() {
    const std::function<void(const Nodes&, const QModelIndex&)> visit = [&](const Nodes& nodes,
                                                                            const QModelIndex& above) {
        for (const auto& node : nodes) {
            if (isRowHidden(node->Row, above) != node->Hidden) setRowHidden(node->Row, above, node->Hidden);
            if (!node->Hidden) visit(node->Children, Tree().IndexOf(node.get()));
        }
    };
    visit(Tree().Roots(), {});
    fit_.start();
}

/// Sideways nothing moves: a node is wide, and its beginning is not always what one looks at.
void NodeView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    const int left = horizontalScrollBar()->value();
    QTreeView::scrollTo(index, hint);
    horizontalScrollBar()->setValue(left);
}

void NodeView::ScrollLines(int lines) {
    verticalScrollBar()->setValue(verticalScrollBar()->value() + lines);
}

// ---- expanding

void NodeView::Expanded(const QModelIndex& index) {
    Node& node = *NodeTree::NodeOf(index);
    node.Expanded = true;
    fit_.start();
    if (!following_) desktop_.Run("Trees:Tree_Expand", [&] { form_.TreeExpand(node); });
}

/// The selected node does not go out of sight; the node that hides it is selected in its place.
void NodeView::Collapsed(const QModelIndex& index) {
    Node& node = *NodeTree::NodeOf(index);
    node.Expanded = false;
    fit_.start();
    if (following_) return;
    for (const Node* above = MyDragNode(); above; above = above->Parent) {
        if (above->Parent != &node) continue;
        desktop_.Run("Trees:Tree_Collapse", [&] { form_.TheTrees()->SetDragNode(&node); });
        return;
    }
}

bool NodeView::OnBranchSign(const QPoint& point) const {
    const QModelIndex index = indexAt(point).siblingAtColumn(0);
    if (!index.isValid() || !model()->hasChildren(index)) return false;
    const QRect item = visualRect(index);
    if (isRightToLeft()) return point.x() > item.right() && point.x() <= item.right() + indentation();
    return point.x() < item.left() && point.x() >= item.left() - indentation();
}

// ---- mouse and keys

void NodeView::mousePressEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    desktop_.Run("Trees:TreeMouseAction", [&] {
        form_.TheTrees()->Drag().Down(*this, point, event->globalPosition().toPoint(), event->button());
    });
    if (event->button() == Qt::LeftButton && OnBranchSign(point)) {
        const QModelIndex index = indexAt(point).siblingAtColumn(0);
        setExpanded(index, !isExpanded(index));
    }
}

void NodeView::mouseMoveEvent(QMouseEvent* event) {
    desktop_.Run("Trees:TreeMouseAction",
                 [&] { form_.TheTrees()->Drag().Move(event->globalPosition().toPoint(), event->buttons()); });
}

void NodeView::mouseReleaseEvent(QMouseEvent* event) {
    desktop_.Run("Trees:TreeMouseAction",
                 [&] { form_.TheTrees()->Drag().Up(event->globalPosition().toPoint(), event->button()); });
}

void NodeView::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    if (event->button() != Qt::LeftButton || OnBranchSign(point)) return mousePressEvent(event);
    desktop_.Run("Trees:TreeMouseAction", [&] {
        form_.TheTrees()->SetDragNode(NodeAt(point));
        form_.TheTrees()->Commands().Modify();
    });
}

void NodeView::keyPressEvent(QKeyEvent* event) {
    Trees& trees = *form_.TheTrees();
    const int key = event->key();
    if (trees.Drag().Dragging()) {
        if (key == Qt::Key_Escape) desktop_.Run("Trees:Tree_KeyDown", [&] { trees.Drag().Cancel(); });
        return;
    }
    if (key == Qt::Key_F1) {
        desktop_.Run("Trees:Tree_KeyDown", [this] { desktop_.host->ContextHelp(); });
    } else if ((key == Qt::Key_Return || key == Qt::Key_Enter) && MyDragNode()) {
        desktop_.Run("Main:PopupModifyMenu_Click", [&] { trees.Commands().Modify(); });
    } else if (key == Qt::Key_Delete && MyDragNode()) {
        desktop_.Run("Main:PopupDeleteMenu_Click", [&] { trees.Commands().Delete(); });
    } else if (key == Qt::Key_Insert) {
        desktop_.Run("Main:PopupNewMenu_Click", [&] { trees.Commands().Insert(*this); });
    } else if (key == Qt::Key_Asterisk) {
        expand(currentIndex());
    } else {
        QTreeView::keyPressEvent(event);
    }
}

void NodeView::contextMenuEvent(QContextMenuEvent* event) {
    QPoint point = event->globalPos();
    if (event->reason() != QContextMenuEvent::Mouse) {
        if (!MyDragNode()) return;
        point = viewport()->mapToGlobal(visualRect(Tree().IndexOf(MyDragNode())).topLeft());
    }
    desktop_.Run("Trees:RightClick", [&] { form_.TheTrees()->Commands().RightClick(*this, point); });
}

void NodeView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    if (selecting_ || !current.isValid() || !form_.TheTrees()) return;
    desktop_.Run("Trees:Tree_NodeClick", [&] { form_.TheTrees()->SetDragNode(NodeTree::NodeOf(current)); });
}

/// The toolkit makes the first line the current one; that selects nothing yet.
void NodeView::focusInEvent(QFocusEvent* event) {
    const QScopedValueRollback selecting(selecting_, true);
    QTreeView::focusInEvent(event);
    viewport()->update();
}

void NodeView::focusOutEvent(QFocusEvent* event) {
    QTreeView::focusOutEvent(event);
    viewport()->update();
}

QItemSelectionModel::SelectionFlags NodeView::selectionCommand(const QModelIndex& index,
                                                               const QEvent*) const {
    if (!index.isValid()) return QItemSelectionModel::NoUpdate;
    return QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
}

/// A drag ends where another window comes to the front. After an entry form the keys go on where they were.
void NodeView::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (!form_.TheTrees()) return;
    if (event->type() == QEvent::ActivationChange && !isActiveWindow()) {
        desktop_.Run("Trees:TreeMouseAction", [this] { form_.TheTrees()->Drag().Cancel(); });
    }
    if (event->type() == QEvent::EnabledChange && isEnabled() && MyDragNode()) setFocus();
    if (event->type() == QEvent::FontChange) fit_.start();
}

// ---- looks

/// The selected line is paler while the keys go elsewhere.
void NodeView::initViewItemOption(QStyleOptionViewItem* option) const {
    QTreeView::initViewItemOption(option);
    if (hasFocus()) return;
    const QColor full = palette().color(QPalette::Active, QPalette::Highlight);
    const QColor base = palette().color(QPalette::Active, QPalette::Base);
    const auto mix = [](int strong, int weak) { return (strong + 2 * weak) / 3; };
    option->palette.setColor(
        QPalette::Highlight,
        QColor(mix(full.red(), base.red()), mix(full.green(), base.green()), mix(full.blue(), base.blue())));
    option->palette.setColor(QPalette::HighlightedText, palette().color(QPalette::Active, QPalette::Text));
}

void NodeView::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    fit_.start();
}

void NodeView::FitWidth() {
    int behind = 0;
    for (int column = 1; column < header()->count(); ++column) behind += header()->sectionSize(column);
    header()->resizeSection(0, std::max(viewport()->width() - behind, WidestLine()));
}

int NodeView::WidestLine() const {
    struct Line {
        const Node* node;
        int depth;
        std::size_t estimate;
    };
    std::vector<Line> lines;
    const std::function<void(const Nodes&, int)> collect = [&](const Nodes& nodes, int depth) {
        const std::size_t inset =
            static_cast<std::size_t>(depth * indentation() / fontMetrics().averageCharWidth());
        for (const auto& node : nodes) {
            lines.push_back({node.get(), depth, node->Text.size() + inset});
            if (node->Expanded) collect(node->Children, depth + 1);
        }
    };
    collect(Tree().Roots(), 1);
    if (lines.size() > kMeasured) {
        std::nth_element(lines.begin(), lines.begin() + kMeasured, lines.end(),
                         [](const Line& a, const Line& b) { return a.estimate > b.estimate; });
        lines.resize(kMeasured);
    }
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    int widest = 0;
    for (const Line& line : lines) {
        const int text = itemDelegate()->sizeHint(option, Tree().IndexOf(line.node)).width();
        widest = std::max(widest, line.depth * indentation() + text);
    }
    return widest;
}

void NodeView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (!Tree().Roots().empty()) return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const int margin = fontMetrics().height();
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignCenter | Qt::TextWordWrap, hint_);
}

/// Lines from parent to child, and a square with plus or minus.
void NodeView::drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const {
    if (isRightToLeft()) return QTreeView::drawBranches(painter, rect, index);
    const int step = indentation();
    const auto hasNext = [this](const Node& node) {
        const Nodes& siblings = node.Parent ? node.Parent->Children : Tree().Roots();
        return static_cast<std::size_t>(node.Row) + 1 < siblings.size();
    };
    painter->save();
    painter->setPen(QPen(palette().color(QPalette::Mid), 1, Qt::DotLine));
    int right = rect.right() + 1;
    const Node& node = *NodeTree::NodeOf(index);
    const QPoint middle(right - step / 2, rect.center().y());
    if (node.Parent || node.Row > 0) painter->drawLine(middle.x(), rect.top(), middle.x(), middle.y());
    if (hasNext(node)) painter->drawLine(middle.x(), middle.y(), middle.x(), rect.bottom());
    painter->drawLine(middle.x(), middle.y(), right, middle.y());
    for (const Node* above = node.Parent; above; above = above->Parent) {
        right -= step;
        if (hasNext(*above)) painter->drawLine(right - step / 2, rect.top(), right - step / 2, rect.bottom());
    }
    if (!node.Children.empty()) {
        const int half = std::max(4, step / 6), arm = half - 2;
        painter->setPen(palette().color(QPalette::Text));
        painter->setBrush(palette().base());
        painter->drawRect(QRect(middle.x() - half, middle.y() - half, 2 * half, 2 * half));
        painter->drawLine(middle.x() - arm, middle.y(), middle.x() + arm, middle.y());
        if (!isExpanded(index)) painter->drawLine(middle.x(), middle.y() - arm, middle.x(), middle.y() + arm);
    }
    painter->restore();
}

}  // namespace vortan
