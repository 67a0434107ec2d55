#pragma once

#include <memory>
#include <string>

#include "shell/desk/Desktop.h"
#include "shell/trees/Node.h"

namespace vortan {

class DragDrop;
class NodeCommands;
class ProjectTreeForm;
class TemplateTreeForm;

/// What the two trees share: the one selected node that commands act on, the way between nodes and objects,
/// and the commands of a node. A node that goes away is never left behind in DragNode or DropNode.
class Trees {
  public:
    /// The forms are owned by the main window; all three must outlive the object.
    Trees(Desktop& desktop, ProjectTreeForm& projectTree, TemplateTreeForm& templateTree);
    ~Trees();
    Trees(const Trees&) = delete;
    Trees& operator=(const Trees&) = delete;

    ProjectTreeForm& ProjectTree() const { return projectTree_; }
    TemplateTreeForm& TemplateTree() const { return templateTree_; }

    /// The selected node, in either tree, or none.
    Node* DragNode() const { return dragNode_; }
    /// Selects the node and tells everyone, if it is another one.
    void SetDragNode(Node* node);
    /// The node under the mouse while dragging, or none.
    Node* DropNode() const { return dropNode_; }
    void SetDropNode(Node* node) { dropNode_ = node; }
    /// Marks DropNode, if there is one, in the place of DragNode.
    void ShowDropNode();
    PlanObject DragObject() const { return FindObjectFromNode(*dragNode_); }
    PlanObject DropObject() const { return FindObjectFromNode(*dropNode_); }

    /// The object of a node. Fault for a department, a placeholder, and a node whose object is gone.
    PlanObject FindObjectFromNode(const Node& node) const;
    template <class T>
    T* ObjectOf(const Node& node) const {
        return std::get<T*>(FindObjectFromNode(node));
    }
    /// The project of a "p" node, the subproject of an "s" node. Fault for others.
    Vproject* FindProjectFromNode(const Node& node) const;
    /// The project whose node text this is. Fault if there is none.
    Vproject* FindProjectFromNodeText(const std::string& text) const;
    /// The node that shows the object, whose parents are opened where needed. Fault if nothing shows it.
    Node& FindNodeFromObject(PlanObject object) const;
    /// The task of a task node, or of the parent of a dependency or assignment node. Fault for others.
    Vtask* TaskOfNode(const Node& node) const;

    /// Makes `project` active, shows its tree in front, and selects the node of an object below it there.
    void ShowInProjectTree(PlanObject object, Vproject& project);

    /// New text (and tag) of a node from its object.
    void RefreshNode(Node& node);
    /// A node is about to go, with all below it.
    void NodeGone(const Node& node);
    /// What went has gone, and what comes in its place has come: the selected node is taken up again if it is
    /// among that.
    void AfterNodesGone();

    NodeCommands& Commands() const { return *commands_; }
    DragDrop& Drag() const { return *drag_; }

  private:
    /// Brings the trees up to date with what an entry form has saved.
    void Saved(const PlanObject& object, Desktop::Saving what);
    /// The selected node if it shows the object, else the first that does.
    template <class T>
    Node& NodeShowing(T& object) const;
    Node* ShownNode(Vtask& task, std::size_t depth) const;
    Node* ShownNode(Vproject& project, std::size_t depth) const;
    void ShowSelection(const Node* node);

    Desktop& desktop_;
    ProjectTreeForm& projectTree_;
    TemplateTreeForm& templateTree_;
    Node* dragNode_ = nullptr;
    Node* dropNode_ = nullptr;
    std::string goneKey_;  // of a selected node that went
    NodeTree* goneTree_ = nullptr;
    std::unique_ptr<NodeCommands> commands_;
    std::unique_ptr<DragDrop> drag_;
};

}  // namespace vortan
