#include "shell/trees/ProjectTreeForm.h"

#include <QHeaderView>
#include <QMenu>
#include <algorithm>
#include <utility>

#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "paint/Text.h"
#include "reports/Builders.h"
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

constexpr const char* kColumnsKey = "TreeColumns";

std::string PeopleOf(const Vtask& task) {
    std::string people;
    for (const Vassignment* assignment : task.AssignmentList()) {
        const Vresource* resource = assignment->Include() ? assignment->ResourceRequired() : nullptr;
        if (resource) people += (people.empty() ? "" : ", ") + resource->Description();
    }
    return people;
}

std::string DateText(DateTime date) {
    return date.IsSet() ? FormatShortDate(date) : "";
}

/// A column that can stand behind the tasks; `characters` is its width at first.
struct TaskColumn {
    const char* title;
    int characters;
    bool right;
    std::string (*text)(const Vtask& task);
};
constexpr TaskColumn kTaskColumns[] = {
    {"Effort", 14, true, [](const Vtask& task) { return EffortText(task, task.Project()->CurrentIndex()); }},
    {"Start", 14, true, [](const Vtask& task) { return DateText(task.EarlyStart()); }},
    {"Finish", 14, true, [](const Vtask& task) { return DateText(task.EarlyFinish()); }},
    {"Slack", 12, true,
     [](const Vtask& task) {
         const bool known = task.EarlyFinish().IsSet() && task.LateFinish().IsSet();
         return known ? FormatDuration(DaysBetween(task.EarlyFinish(), task.LateFinish()), true) : "";
     }},
    {"People", 30, false, PeopleOf}};

/// The same as the columns, a line each.
QString TipOfTask(const Vtask* task) {
    if (!task) return {};
    std::string tip = task->BuildNodeText();
    for (const TaskColumn& column : kTaskColumns) {
        const std::string text = column.text(*task);
        if (!text.empty()) tip += std::string("\n") + column.title + ": " + text;
    }
    return "<p style='white-space:pre'>" + Q(tip).toHtmlEscaped() + "</p>";
}

}  // namespace

ProjectTreeForm::ProjectTreeForm(Desktop& desktop)
    : TreeForm(desktop, "ProjectTreeForm", "No project is loaded.  Use Project > New or File > Open.") {
    View().setAccessibleName("Project tree");
    Tree().TipOf = [this](const Node& node) { return TipOfTask(TaskOf(node)); };
    View().header()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(View().header(), &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        desktop_.Run("ProjectTree:Header_RightClick", [&] { ColumnMenu(View().header()->mapToGlobal(at)); });
    });
}

// ---- columns

const Vtask* ProjectTreeForm::TaskOf(const Node& node) const {
    const bool task = node.Image() == NodeKind::Task || (node.Image() == NodeKind::Subproject && node.Parent);
    if (!task || !trees_) return nullptr;
    const PlanObject object = trees_->FindObjectFromNode(node);
    const auto* found = std::get_if<Vtask*>(&object);
    return found ? *found : nullptr;
}

bool ProjectTreeForm::ColumnsShown() const {
    return !desktop_.settings.ReadSettings(kColumnsKey).empty();
}

void ProjectTreeForm::SetColumnsShown(bool shown) {
    std::string all;
    for (const TaskColumn& column : kTaskColumns) all += std::string(shown ? column.title : "") + " ";
    desktop_.settings.WriteSettings(kColumnsKey, shown ? all : "");
    ShowColumns();
}

void ProjectTreeForm::ShowColumns() {
    const std::string chosen = desktop_.settings.ReadSettings(kColumnsKey);
    std::vector<NodeTree::Column> columns;
    std::vector<int> widths;
    for (const TaskColumn& column : kTaskColumns) {
        if (chosen.find(column.title) == std::string::npos) continue;
        const auto text = [this, of = column.text](const Node& node) {
            const Vtask* task = TaskOf(node);
            return task ? Q(of(*task)) : QString();
        };
        columns.push_back({column.title, text, column.right});
        widths.push_back(View().fontMetrics().averageCharWidth() * column.characters);
    }
    Tree().SetColumns(std::move(columns));
    View().setHeaderHidden(widths.empty());
    for (std::size_t i = 0; i < widths.size(); ++i)
        View().header()->resizeSection(static_cast<int>(i) + 1, widths[i]);
}

void ProjectTreeForm::ColumnMenu(const QPoint& at) {
    const std::string chosen = desktop_.settings.ReadSettings(kColumnsKey);
    QMenu menu;
    for (const TaskColumn& column : kTaskColumns) {
        QAction* action = menu.addAction(column.title);
        action->setCheckable(true);
        action->setChecked(chosen.find(column.title) != std::string::npos);
    }
    if (!menu.exec(at)) return;
    std::string now;
    for (const QAction* action : menu.actions())
        if (action->isChecked()) now += S(action->text()) + " ";
    desktop_.settings.WriteSettings(kColumnsKey, now);
    ShowColumns();
}

void ProjectTreeForm::NewSolution() {
    View().viewport()->update();
}

void ProjectTreeForm::Start() {
    Begin(desktop_.workspace.ThisProject(), [this] { return BuildRoots(); });
    if (std::exchange(columnsUnknown_, false)) ShowColumns();
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
