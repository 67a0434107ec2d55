#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <unordered_map>

#include "model/Listener.h"
#include "shell/desk/ChildForm.h"
#include "shell/desk/Desktop.h"
#include "shell/trees/NodeTree.h"

namespace vortan {

class NodeView;
class Trees;

/// A pane with a tree, as far as both trees are alike.
class TreeForm : public QWidget, public ChildForm, public Listener {
  public:
    /// `hint` is what the pane shows while it is empty.
    TreeForm(Desktop& desktop, const char* name, const QString& hint);
    ~TreeForm() override;

    virtual void Start() = 0;

    FormClass Class() const override { return FormClass::Pane; }
    QWidget& Window() override { return *this; }
    void Unload() override { hide(); }

    /// What the trees share; set by it for as long as there is one.
    void SetTrees(Trees* trees) { trees_ = trees; }
    Trees* TheTrees() const { return trees_; }

    NodeTree& Tree() { return tree_; }
    NodeView& View() { return *view_; }

    /// Opens a node as a click on its sign does.
    void Expand(Node& node);
    /// The node has been opened: its children are made now, where they are made on demand.
    virtual void TreeExpand(Node&) {}
    /// Opens or closes what can be seen, but for the roots; closes what cannot.
    void GlobalExpand(bool flag);
    /// Takes a node away with all below it.
    void RemoveNode(Node& node);

  protected:
    /// Fills the tree anew with what `build` makes, in the font of the form, and shows the form. While
    /// `shown` is the object that was shown before, nodes stay open and closed as they were, and the lines in
    /// sight.
    void Begin(const VObject* shown, const std::function<Nodes()>& build);
    void ReplaceAll(const VObject* shown, const std::function<Nodes()>& build);
    void ReplaceChildren(Node& node, Nodes children, bool expanded);
    /// What `build` makes, open and closed as the nodes of `old` are.
    Nodes Rebuilt(const Nodes& old, const std::function<Nodes()>& build);
    /// Whether a node that is being made is to be open; `usual` for one that was not there before. Asked once
    /// for each, so that projects which hold each other do not open without end.
    bool WasExpanded(const std::string& key, bool usual);

    Desktop& desktop_;
    Trees* trees_ = nullptr;

  private:
    NodeTree tree_;
    NodeView* view_;
    std::uint32_t shown_ = 0;
    std::unordered_map<std::string, bool> wasExpanded_;
};

}  // namespace vortan
