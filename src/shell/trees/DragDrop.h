#pragma once

#include <QPoint>
#include <QTimer>
#include <optional>
#include <string>

#include "shell/desk/Desktop.h"
#include "shell/trees/Node.h"

namespace vortan {

class NodeView;
class TreeForm;
class Trees;
class Vtask;

/// The mouse in both trees: which node it selects, and the drag of a node onto another one, in the same or
/// the other tree. It is made of plain mouse events, so that the pointer can tell what a drop would do.
class DragDrop {
  public:
    DragDrop(Desktop& desktop, Trees& trees);
    ~DragDrop();
    DragDrop(const DragDrop&) = delete;
    DragDrop& operator=(const DragDrop&) = delete;

    /// `point` is in the viewport, `global` the same place on the screen.
    void Down(NodeView& view, const QPoint& point, const QPoint& global, Qt::MouseButton button);
    void Move(const QPoint& global, Qt::MouseButtons buttons);
    void Up(const QPoint& global, Qt::MouseButton button);
    /// Ends a drag that drops nothing.
    void Cancel();
    bool Dragging() const { return dragging_; }

    /// What dropping DragNode on DropNode does.
    void HandleDragDrop();

  private:
    TreeForm* FormAt(const QPoint& global) const;
    void Over(TreeForm& form, const QPoint& global);
    void ShowPointer(bool allowed);
    void End();
    void TestScroll(TreeForm& form, int y);
    void ScrollTick();

    void AssignResourceToTask();
    void CreateTaskDependency();
    void CopyProjectManager();

    Desktop& desktop_;
    Trees& trees_;
    bool pressed_ = false;  // the left button went down on a node
    bool dragging_ = false;
    QPoint pressedAt_;  // on the screen
    TreeForm* over_ = nullptr;
    std::optional<NodeKind> pointer_;  // kind of the picture at the mouse
    QTimer scrollTimer_;               // ScrollTreeTimer
    std::string scrollTag_;            // the form and Up or Down; empty while it stands still
};

}  // namespace vortan
