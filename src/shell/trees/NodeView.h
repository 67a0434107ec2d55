#pragma once

#include <QTimer>
#include <QTreeView>

#include "shell/desk/Desktop.h"
#include "shell/trees/NodeTree.h"

namespace vortan {

class TreeForm;

/// The tree control of a pane. It shows what the nodes say is expanded, and hands what the user does with
/// mouse and keys to Trees, DragDrop and NodeCommands; of the toolkit's own ways with the mouse nothing is
/// left, since a press there may select, and a move drag a selection along.
class NodeView : public QTreeView {
  public:
    /// `hint` is what an empty tree shows.
    NodeView(Desktop& desktop, TreeForm& form, const QString& hint);

    /// The node on the line at that point of the viewport, or none.
    Node* NodeAt(const QPoint& point) const;
    /// Marks the node and brings it into sight, its parents opened; none takes the mark away.
    void ShowSelected(const Node* node);
    /// The node is about to go with all below it: the toolkit would make a neighbour the current line.
    void LetGo(const Node& node);
    /// Shows the node and all below it expanded as they say.
    void ShowExpanded(const Node& node);
    void ScrollLines(int lines);
    /// Hides and shows lines as the nodes say.
    void ShowHidden();

    void reset() override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void initViewItemOption(QStyleOptionViewItem* option) const override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

  private:
    const NodeTree& Tree() const;
    /// DragNode, if it is in this tree.
    Node* MyDragNode() const;
    bool OnBranchSign(const QPoint& point) const;
    void Expanded(const QModelIndex& index);
    void Collapsed(const QModelIndex& index);
    /// As wide as the widest line, and at least the pane.
    void FitWidth();
    int WidestLine() const;

    Desktop& desktop_;
    TreeForm& form_;
    QString hint_;
    QTimer fit_, filter_;
    bool selecting_ = false;  // the program moves the current line, not the user
    bool following_ = false;  // the program expands lines, not the user
};

}  // namespace vortan
