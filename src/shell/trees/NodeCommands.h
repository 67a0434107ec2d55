#pragma once

#include <QMenu>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "shell/desk/Desktop.h"
#include "shell/trees/Node.h"

namespace vortan {

class NodeView;
class Trees;

/// The popup menu of a node and what it does to DragNode. Double clicks and keys in the trees do the same.
class NodeCommands {
  public:
    NodeCommands(Desktop& desktop, Trees& trees);

    /// Opens the menu beside the text of the node whose line was clicked at that point of the screen.
    void RightClick(const NodeView& view, const QPoint& global);
    void UpdatePopupMenu();

    /// What fits the selected node: the form of a new one, or a menu if there are several kinds. With nothing
    /// selected, what fits the pane.
    void Insert(const NodeView& view);
    void Modify();
    void Delete();
    void SetActive();
    /// To the task that is selected; a box if there is none.
    void AddDependency();
    void AddAssignment();
    void GlobalExpand(bool flag);

  private:
    QAction* Add(const char* name, const QString& caption, const char* section,
                 std::function<void()> command);
    /// The kinds of what can be made beside or below the node, the most likely first.
    std::vector<NodeKind> Offers(const Node* node) const;
    void New(NodeKind kind);
    Vproject* ProjectForNew() const;
    void RenameDepartment(const Node& node);
    bool MayLose(const Node& node);
    bool DeleteConfirmed(const Node& node);
    void DeleteObject(Node& node);
    void MakeActive(Vproject* project);
    Vtask* SelectedTask(const char* warning, const char* title);

    Desktop& desktop_;
    Trees& trees_;
    QMenu* menu_;  // the main window's
    QAction *modify_, *delete_, *setActive_;
    std::map<NodeKind, QAction*> new_;
    QMenu* insert_;  // some of `new_`
};

}  // namespace vortan
