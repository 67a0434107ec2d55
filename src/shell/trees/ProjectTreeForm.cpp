#include "shell/trees/ProjectTreeForm.h"

#include <algorithm>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "paint/Text.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/trees/NodeView.h"
#include "shell/trees/Trees.h"

namespace vortan {
namespace {

/// The task of its parent that stands for a project; none if it has no parent, or that has no such task.
Vtask* LinkOf(const Vproject& project) {
    if (!project.Parent()) return nullptr;
    const auto& tasks = project.Parent()->TaskList();
    const auto link = std::find_if(tasks.begin(), tasks.end(), [&](const Vtask* task) {
        return task->Include() && task->Subproject() == &project;
    });
    return link == tasks.end() ? nullptr : *link;
}

}  // namespace

ProjectTreeForm::ProjectTreeForm(Desktop& desktop)
    : TreeForm(desktop, "ProjectTreeForm", "No project is loaded.  Use Project > New or File > Open.") {
    View().setAccessibleName("Project tree");
}

void ProjectTreeForm::Start() {
    Begin(desktop_.workspace.ThisProject(), [this] { return BuildRoots(); });
}

void ProjectTreeForm::RebuildTree() {
    ReplaceAll(desktop_.workspace.ThisProject(), [this] { return BuildRoots(); });
}

/// The path from the master project down to the active one, and nothing else of the projects on it. Projects
/// that hold each other in a circle have no master: the active one is the root then. So is one whose parent
/// has no task for it.
Nodes ProjectTreeForm::BuildRoots() {
    Vproject* active = desktop_.workspace.ThisProject();
    if (!active) return {};
    std::vector<Vproject*> path = {active};
    const bool circle = active->Master()->Parent() != nullptr;
    while (!circle && LinkOf(*path.back())) path.push_back(path.back()->Parent());

    Nodes roots;
    Node* node = &AddNode(roots, MakeNode(*path.back()));
    node->Expanded = WasExpanded(node->Key, true);
    for (auto project = std::next(path.rbegin()); project != path.rend(); ++project) {
        node = &AddNode(node->Children, MakeNode(*LinkOf(**project)));
        node->Expanded = WasExpanded(node->Key, true);
    }
    node->Children = ProjectChildren(*active, true);
    return roots;
}

Nodes ProjectTreeForm::ProjectChildren(Vproject& project, bool showChildren) {
    Nodes nodes;
    for (Vtask* task : project.TaskList()) {
        if (!task->Include()) continue;
        AddNode(nodes, showChildren ? TaskNode(*task) : MakePlaceholder());
        if (!showChildren) break;
    }
    return nodes;
}

std::unique_ptr<Node> ProjectTreeForm::TaskNode(Vtask& task) {
    auto node = MakeNode(task);
    node->Expanded = WasExpanded(node->Key, false);
    Vproject* subproject = task.Subproject();
    node->Children =
        subproject ? ProjectChildren(*subproject, node->Expanded) : TaskChildren(task, node->Expanded);
    return node;
}

Nodes ProjectTreeForm::TaskChildren(const Vtask& task, bool showChildren) {
    Nodes nodes;
    const auto add = [&](const auto& list) {
        for (const auto* object : list) {
            if (!object->Include()) continue;
            if (!showChildren && !nodes.empty()) return;
            AddNode(nodes, showChildren ? MakeNode(*object) : MakePlaceholder());
        }
    };
    add(task.DependencyList());
    add(task.AssignmentList());
    return nodes;
}

void ProjectTreeForm::RebuildProjectSubTree(Vproject& project, Node& node, bool showChildren) {
    ReplaceChildren(node, Rebuilt(node.Children, [&] { return ProjectChildren(project, showChildren); }),
                    showChildren);
}

void ProjectTreeForm::RebuildTaskSubTree(Vtask& task, bool showChildren) {
    Node& node = trees_->FindNodeFromObject(&task);
    trees_->RefreshNode(node);
    ReplaceChildren(node, TaskChildren(task, showChildren), showChildren);
}

void ProjectTreeForm::TreeExpand(Node& node) {
    const Trees& trees = *trees_;
    if (node.Image() == NodeKind::Task) {
        ReplaceChildren(node, TaskChildren(*trees.ObjectOf<Vtask>(node), true), true);
    } else if (node.Image() == NodeKind::Subproject) {
        RebuildProjectSubTree(*trees.FindProjectFromNode(node), node, true);
    }
}

void ProjectTreeForm::RefreshReferences() {
    Tree().ForEach([this](Node& node) {
        if (node.Image() == NodeKind::Dependency || node.Image() == NodeKind::Assignment)
            trees_->RefreshNode(node);
    });
}

/// The manager of a project.
QString ProjectTreeForm::MoreText(const Node& node) const {
    if (node.Image() != NodeKind::Project && node.Image() != NodeKind::Subproject) return {};
    const Vproject* project = trees_->FindProjectFromNode(node);
    return project && project->Manager() ? Q(project->Manager()->Description()) : QString();
}

/// Each project is looked into once, since they may hold each other in a circle.
bool ProjectTreeForm::HidesHits(const Node& node, const FindWords& words) const {
    if (node.Image() != NodeKind::Subproject) return false;
    std::vector<const Vproject*> known;
    for (const Node* above = node.Parent; above; above = above->Parent)
        known.push_back(trees_->FindProjectFromNode(*above));
    const std::function<bool(const Vproject*)> has = [&](const Vproject* project) {
        if (!project || std::find(known.begin(), known.end(), project) != known.end()) return false;
        known.push_back(project);
        const auto& tasks = project->TaskList();
        return std::any_of(tasks.begin(), tasks.end(), [&](const Vtask* task) {
            return task->Include() && (words.AllIn(Q(task->BuildNodeText())) || has(task->Subproject()));
        });
    };
    return has(trees_->FindProjectFromNode(node));
}

bool ProjectTreeForm::ChangeFont() {
    if (desktop_.workspace.ThisProjectSet() && ShowFont(desktop_, objectName())) Start();
    return true;
}

}  // namespace vortan
