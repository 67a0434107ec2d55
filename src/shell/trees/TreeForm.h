#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <unordered_map>

#include "model/Listener.h"
#include "shell/desk/ChildForm.h"
#include "shell/desk/Desktop.h"
#include "shell/desk/FindWords.h"
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
    /// Shows only nodes that have the words and those above them, for as long as the words are not empty.
    /// Then nodes that the words have opened close again, but for those above the selected node.
    void SetFilter(const FindWords& words);
    /// No words are looked for any more; what is open stays so.
    void EndFilter();
    /// As the nodes are now.
    void ApplyFilter();
    /// The nodes that have the words, in their order.
    std::vector<Node*> Hits() const;
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

    /// What words are looked for in, beside the text.
    virtual QString MoreText(const Node&) const { return {}; }
    /// Whether a closed node is to be opened for nodes below it that are not made yet.
    virtual bool HidesHits(const Node&, const FindWords&) const { return false; }

  private:
    bool Narrow(Node& node);
    void Widen();

    NodeTree tree_;
    NodeView* view_;
    std::uint32_t shown_ = 0;
    std::unordered_map<std::string, bool> wasExpanded_;
    FindWords filter_{QString()};
    std::vector<std::string> opened_;  // keys of nodes that only the words have opened
};

}  // namespace vortan
