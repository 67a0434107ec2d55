#include "shell/trees/TreeForm.h"

#include <QVBoxLayout>
#include <utility>

#include "paint/Text.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/desk/FormHost.h"
#include "shell/trees/NodeView.h"
#include "shell/trees/Trees.h"

namespace vortan {

TreeForm::TreeForm(Desktop& desktop, const char* name, const QString& hint)
    : desktop_(desktop), tree_([this](const Node& node) {
          if (trees_) trees_->NodeGone(node);
          view_->LetGo(node);
      }) {
    setObjectName(name);
    view_ = new NodeView(desktop, *this, hint);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_);
    setFocusProxy(view_);
    desktop_.workspace.AddListener(this);
}

TreeForm::~TreeForm() {
    desktop_.workspace.RemoveListener(this);
    delete view_;  // before its model
}

void TreeForm::Begin(const VObject* shown, const std::function<Nodes()>& build) {
    trees_->SetDragNode(nullptr);
    view_->setFont(FontOfForm(desktop_, objectName()));
    ReplaceAll(shown, build);
    desktop_.host->ShowForm(*this);
}

void TreeForm::ReplaceAll(const VObject* shown, const std::function<Nodes()>& build) {
    const std::uint32_t id = shown ? shown->Id() : 0;
    const bool same = id == std::exchange(shown_, id);
    Nodes roots;
    try {
        roots = same ? Rebuilt(tree_.Roots(), build) : build();
    } catch (...) {
        // What cannot be shown anew is not shown as it was.
        tree_.SetRoots({});
        trees_->AfterNodesGone();
        throw;
    }
    tree_.SetRoots(std::move(roots));
    if (!same) view_->scrollToTop();
    trees_->AfterNodesGone();
}

Nodes TreeForm::Rebuilt(const Nodes& old, const std::function<Nodes()>& build) {
    wasExpanded_.clear();
    NodeTree::Walk(old, [this](const Node& node) {
        if (node.Expanded || node.Image() != NodeKind::Task)
            wasExpanded_.try_emplace(node.Key, node.Expanded);
    });
    Nodes nodes = build();
    wasExpanded_.clear();
    return nodes;
}

bool TreeForm::WasExpanded(const std::string& key, bool usual) {
    const auto was = wasExpanded_.find(key);
    if (was == wasExpanded_.end()) return usual;
    const bool expanded = was->second;
    wasExpanded_.erase(was);
    return expanded;
}

void TreeForm::ReplaceChildren(Node& node, Nodes children, bool expanded) {
    tree_.SetChildren(node, std::move(children));
    node.Expanded = expanded;
    if (tree_.InBatch()) return;
    view_->ShowExpanded(node);
    trees_->AfterNodesGone();
}

void TreeForm::RemoveNode(Node& node) {
    tree_.Remove(node);
    trees_->AfterNodesGone();
}

void TreeForm::Expand(Node& node) {
    if (node.Expanded) return;
    node.Expanded = true;
    TreeExpand(node);
    if (!tree_.InBatch()) view_->ShowExpanded(node);
}

// ---- what words are looked for

namespace {

/// Others go with the node above them.
bool IsLookedFor(const Node& node) {
    return node.Image() != NodeKind::Dependency && node.Image() != NodeKind::Assignment &&
           node.Image() != NodeKind::None;
}

}  // namespace

void TreeForm::SetFilter(const FindWords& words) {
    const bool was = !filter_.Empty();
    filter_ = words;
    if (!words.Empty()) return ApplyFilter();
    if (was) Widen();
}

void TreeForm::EndFilter() {
    SetFilter(FindWords(""));
    opened_.clear();
}

void TreeForm::ApplyFilter() {
    if (filter_.Empty() || tree_.InBatch()) return;
    for (const auto& root : tree_.Roots()) Narrow(*root);
    view_->ShowHidden();
}

bool TreeForm::Narrow(Node& node) {
    node.Hit = filter_.AllIn(Q(node.Text) + " " + MoreText(node));
    const auto open = [&] {
        opened_.push_back(node.Key);
        Expand(node);
    };
    if (!node.Expanded && HidesHits(node, filter_)) open();
    bool below = false;
    for (const auto& child : node.Children) below = (IsLookedFor(*child) && Narrow(*child)) || below;
    if (below && !node.Expanded) open();
    node.Hidden = !node.Hit && !below;
    return !node.Hidden;
}

/// What the words have opened is closed again, but for what leads to the selected node.
void TreeForm::Widen() {
    tree_.ForEach([](Node& node) { node.Hit = node.Hidden = false; });
    view_->ShowHidden();
    for (const std::string& key : std::exchange(opened_, {})) {
        Node* opened = tree_.FindNodeFromKey(key);
        const Node* selected = trees_->DragNode();
        while (selected && selected != opened) selected = selected->Parent;
        if (opened && selected) opened_.push_back(key);
        if (!opened || selected) continue;
        opened->Expanded = false;
        view_->ShowExpanded(*opened);
    }
}

std::vector<Node*> TreeForm::Hits() const {
    std::vector<Node*> hits;
    tree_.ForEach([&](Node& node) {
        if (node.Hit) hits.push_back(&node);
    });
    return hits;
}

/// What is to be opened is collected before anything changes, so that a node which only comes into sight
/// stays closed.
void TreeForm::GlobalExpand(bool flag) {
    {
        const NodeTree::Batch batch(tree_);
        std::vector<Node*> seen;
        const std::function<void(const Nodes&, bool)> collect = [&](const Nodes& nodes, bool visible) {
            for (const auto& node : nodes) {
                if (node->Parent && !visible) node->Expanded = false;
                if (node->Parent && visible && node->Expanded != flag && !node->Children.empty())
                    seen.push_back(node.get());
                collect(node->Children, visible && node->Expanded);
            }
        };
        collect(tree_.Roots(), true);
        for (Node* node : seen) {
            if (flag) {
                Expand(*node);
            } else {
                node->Expanded = false;
            }
        }
    }
    Trees& trees = *trees_;
    trees.AfterNodesGone();
    Node* node = trees.DragNode();
    for (Node* above = node; above; above = above->Parent) {
        if (above->Parent && !above->Parent->Expanded) node = above->Parent;
    }
    trees.SetDragNode(node);
}

}  // namespace vortan
