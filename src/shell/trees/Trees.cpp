#include "shell/trees/Trees.h"

#include <charconv>

#include "model/Fault.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "shell/desk/FormHost.h"
#include "shell/trees/DragDrop.h"
#include "shell/trees/NodeCommands.h"
#include "shell/trees/NodeView.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/TemplateTreeForm.h"

namespace vortan {
namespace {

std::uint32_t NumberIn(const std::string& text, std::size_t from) {
    std::uint32_t number = 0;
    if (from < text.size()) std::from_chars(text.data() + from, text.data() + text.size(), number);
    return number;
}

/// The object whose tag the node has, as it is or none.
template <class T>
T* Matching(T* object, const Node& node) {
    if (!object || object->Tag() != node.Tag) AssertionFailed();
    return object;
}

template <class List>
auto* FindId(const List& list, std::uint32_t id) {
    for (auto* object : list) {
        if (object->Id() == id) return object;
    }
    AssertionFailed();
}

}  // namespace

Trees::Trees(Desktop& desktop, ProjectTreeForm& projectTree, TemplateTreeForm& templateTree)
    : desktop_(desktop),
      projectTree_(projectTree),
      templateTree_(templateTree),
      commands_(std::make_unique<NodeCommands>(desktop, *this)),
      drag_(std::make_unique<DragDrop>(desktop, *this)) {
    for (TreeForm* form : {static_cast<TreeForm*>(&projectTree_), static_cast<TreeForm*>(&templateTree_)})
        form->SetTrees(this);
    desktop_.ObjectSaved = [this](const PlanObject& object, Desktop::Saving what) { Saved(object, what); };
    desktop_.SelectObject = [this](const PlanObject& object) { SetDragNode(&FindNodeFromObject(object)); };
    desktop_.RequestDelete = [this](const PlanObject& object) {
        SetDragNode(&FindNodeFromObject(object));
        commands_->Delete();
    };
}

Trees::~Trees() {
    desktop_.ObjectSaved = nullptr;
    desktop_.SelectObject = desktop_.RequestDelete = nullptr;
    projectTree_.SetTrees(nullptr);
    templateTree_.SetTrees(nullptr);
}

// ---- the selected node

void Trees::SetDragNode(Node* node) {
    const bool other = node != dragNode_;
    if (other) drag_->Cancel();
    dragNode_ = node;
    ShowSelection(dragNode_);
    if (other) desktop_.workspace.BroadcastNewDragNode();
}

/// One node in both trees.
void Trees::ShowSelection(const Node* node) {
    for (TreeForm* form : {static_cast<TreeForm*>(&projectTree_), static_cast<TreeForm*>(&templateTree_)}) {
        form->View().ShowSelected(node && node->Tree == &form->Tree() ? node : nullptr);
    }
}

void Trees::ShowDropNode() {
    if (dropNode_) ShowSelection(dropNode_);
}

void Trees::NodeGone(const Node& node) {
    const auto goes = [&node](const Node* lost) {
        while (lost && lost != &node) lost = lost->Parent;
        return lost != nullptr;
    };
    if (goes(dropNode_)) dropNode_ = nullptr;
    if (!goes(dragNode_)) return;
    drag_->Cancel();
    goneKey_ = dragNode_->Key;
    goneTree_ = dragNode_->Tree;
    dragNode_ = nullptr;
}

void Trees::AfterNodesGone() {
    if (!goneTree_) return;
    dragNode_ = std::exchange(goneTree_, nullptr)->FindNodeFromKey(std::exchange(goneKey_, {}));
    ShowSelection(dragNode_);
    if (!dragNode_) desktop_.workspace.BroadcastNewDragNode();
}

// ---- from nodes to objects

PlanObject Trees::FindObjectFromNode(const Node& node) const {
    const Workspace& workspace = desktop_.workspace;
    const std::string key = node.Tag.empty() ? "" : node.Tag.substr(1);
    const std::uint32_t number = NumberIn(key, 0);
    switch (node.Image()) {
        case NodeKind::Project:
            return Matching(workspace.ProjectList().Find(key), node);
        case NodeKind::Template:
            return Matching(workspace.TemplateList().Find(key), node);
        case NodeKind::Subproject:
            if (!node.Parent) return Matching(workspace.ProjectList().Find(key), node);
            [[fallthrough]];
        case NodeKind::Task:
            if (!node.Parent) AssertionFailed();
            return Matching(FindProjectFromNode(*node.Parent)->FindTask(static_cast<std::int32_t>(number)),
                            node);
        case NodeKind::Shift:
            if (!workspace.ThisTemplate()) AssertionFailed();
            return Matching(workspace.ThisTemplate()->ShiftList().Find(node.Text), node);
        case NodeKind::Resource: {
            if (!node.Parent || !node.Parent->Parent) AssertionFailed();
            const Vtemplate* owner = workspace.TemplateList().Find(node.Parent->Parent->Text);
            if (!owner) AssertionFailed();
            return Matching(owner->FindResource(static_cast<std::int32_t>(number)), node);
        }
        case NodeKind::Dependency:
            return FindId(TaskOfNode(node)->DependencyList(), number);
        case NodeKind::Assignment:
            return FindId(TaskOfNode(node)->AssignmentList(), number);
        default:
            AssertionFailed();
    }
}

Vproject* Trees::FindProjectFromNode(const Node& node) const {
    if (node.Image() != NodeKind::Project && node.Image() != NodeKind::Subproject) AssertionFailed();
    const PlanObject object = FindObjectFromNode(node);
    if (Vproject* const* project = std::get_if<Vproject*>(&object)) return *project;
    return std::get<Vtask*>(object)->Subproject();
}

Vproject* Trees::FindProjectFromNodeText(const std::string& text) const {
    for (Vproject* project : desktop_.workspace.ProjectList()) {
        if (project->BuildNodeText() == text) return project;
    }
    AssertionFailed();
}

Vtask* Trees::TaskOfNode(const Node& node) const {
    if (node.Image() == NodeKind::Task || node.Image() == NodeKind::Subproject) return ObjectOf<Vtask>(node);
    if ((node.Image() != NodeKind::Dependency && node.Image() != NodeKind::Assignment) || !node.Parent)
        AssertionFailed();
    return ObjectOf<Vtask>(*node.Parent);
}

/// The object is found by its identity here: its tag may be what has changed.
void Trees::RefreshNode(Node& node) {
    const std::uint32_t id = NumberIn(node.Key, 1);
    const auto take = [&node](const auto& object) {
        node.Text = object.BuildNodeText();
        node.Tag = object.Tag();
    };
    Workspace& workspace = desktop_.workspace;
    switch (node.Image()) {
        case NodeKind::Project:
            take(*FindId(workspace.ProjectList(), id));
            break;
        case NodeKind::Template:
            take(*FindId(workspace.TemplateList(), id));
            break;
        case NodeKind::Shift:
            if (!workspace.ThisTemplate()) AssertionFailed();
            take(*FindId(workspace.ThisTemplate()->ShiftList(), id));
            break;
        case NodeKind::Resource:
            if (!workspace.ThisTemplate()) AssertionFailed();
            take(*FindId(workspace.ThisTemplate()->ResourceList(), id));
            break;
        case NodeKind::Subproject:
        case NodeKind::Task:
            if (node.Parent) {
                take(*FindId(FindProjectFromNode(*node.Parent)->TaskList(), id));
            } else {
                take(*FindId(workspace.ProjectList(), id));
            }
            break;
        case NodeKind::Dependency:
            take(*FindId(TaskOfNode(node)->DependencyList(), id));
            break;
        case NodeKind::Assignment:
            take(*FindId(TaskOfNode(node)->AssignmentList(), id));
            break;
        default:
            return;
    }
    node.Tree->Changed(node);
}

// ---- what changes

template <class T>
Node& Trees::NodeShowing(T& object) const {
    if (dragNode_ && dragNode_->Key == MakeKey(object)) return *dragNode_;
    return FindNodeFromObject(&object);
}

void Trees::Saved(const PlanObject& object, Desktop::Saving what) {
    using Saving = Desktop::Saving;
    if (Vtask* const* saved = std::get_if<Vtask*>(&object)) {
        Vtask& task = **saved;
        Vproject& project = *task.Project();
        if (what == Saving::Added) {
            projectTree_.RebuildProjectSubTree(project, FindNodeFromObject(&project), true);
            return SetDragNode(&FindNodeFromObject(&task));
        }
        Node& node = NodeShowing(task);
        RefreshNode(node);
        // Tasks stand in the order of their numbers.
        if (what == Saving::Moved && node.Parent)
            projectTree_.RebuildProjectSubTree(project, *node.Parent, true);
        projectTree_.RebuildTaskSubTree(task, true);
        return projectTree_.RefreshReferences();
    }
    const auto savedBelowTask = [&](auto& child) {
        if (what != Saving::Added) return RefreshNode(NodeShowing(child));
        projectTree_.RebuildTaskSubTree(*child.Task(), true);
    };
    if (Vdependency* const* saved = std::get_if<Vdependency*>(&object)) return savedBelowTask(**saved);
    if (Vassignment* const* saved = std::get_if<Vassignment*>(&object)) return savedBelowTask(**saved);
    Vresource* const* resource = std::get_if<Vresource*>(&object);
    if (resource && what == Saving::Changed) return RefreshNode(NodeShowing(**resource));
    templateTree_.Start();
}

void Trees::ShowInProjectTree(PlanObject object, Vproject& project) {
    Workspace& workspace = desktop_.workspace;
    if (workspace.ThisProject() == &project) {
        projectTree_.Start();
    } else {
        workspace.SetThisProject(&project);
        workspace.BroadcastNewThisProject();
    }
    if (ChildForm* page = desktop_.host->FullPage()) page->Unload();
    projectTree_.View().setFocus();
    SetDragNode(&FindNodeFromObject(object));
}

// ---- from objects to nodes

/// `depth` ends the search among projects that hold each other in a circle.
Node* Trees::ShownNode(Vtask& task, std::size_t depth) const {
    NodeTree& tree = projectTree_.Tree();
    if (Node* node = tree.FindNodeFromKey(MakeKey(task))) return node;
    Node* above = task.Project() && depth > 0 ? ShownNode(*task.Project(), depth - 1) : nullptr;
    if (!above || above->Expanded) return nullptr;
    projectTree_.Expand(*above);
    return tree.FindNodeFromKey(MakeKey(task));
}

Node* Trees::ShownNode(Vproject& project, std::size_t depth) const {
    if (Node* root = projectTree_.Tree().FindNodeFromKey(MakeKey(project))) return root;
    if (!project.Parent() || depth == 0) return nullptr;
    for (Vtask* link : project.Parent()->TaskList()) {
        if (link->Subproject() != &project || !link->Include()) continue;
        if (Node* node = ShownNode(*link, depth - 1)) return node;
    }
    return nullptr;
}

Node& Trees::FindNodeFromObject(PlanObject object) const {
    const std::size_t depth = 2 * desktop_.workspace.ProjectList().size();
    const auto find = [&](auto* wanted) -> Node* {
        using T = std::remove_pointer_t<decltype(wanted)>;
        if (!wanted) AssertionFailed();
        if constexpr (std::is_same_v<T, Vtask> || std::is_same_v<T, Vproject>) {
            return ShownNode(*wanted, depth);
        } else if constexpr (std::is_same_v<T, Vdependency> || std::is_same_v<T, Vassignment>) {
            if (!wanted->Task()) AssertionFailed();
            Node* task = ShownNode(*wanted->Task(), depth);
            if (task) projectTree_.Expand(*task);
            return projectTree_.Tree().FindNodeFromKey(MakeKey(*wanted));
        } else {
            return templateTree_.Tree().FindNodeFromKey(MakeKey(*wanted));
        }
    };
    Node* node = std::visit(
        [&](auto wanted) -> Node* {
            if constexpr (std::is_same_v<decltype(wanted), std::monostate>) {
                AssertionFailed();
            } else {
                return find(wanted);
            }
        },
        object);
    if (!node) AssertionFailed();
    return *node;
}

}  // namespace vortan
