#include "shell/trees/NodeCommands.h"

#include <algorithm>

#include "model/Characters.h"
#include "model/Fault.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "paint/Text.h"
#include "shell/desk/FormHost.h"
#include "shell/desk/Removal.h"
#include "shell/entry/AssignmentEntryForm.h"
#include "shell/entry/DependencyEntryForm.h"
#include "shell/entry/ProjectEntryForm.h"
#include "shell/entry/ResourceEntryForm.h"
#include "shell/entry/ShiftEntryForm.h"
#include "shell/entry/SubprojectEntryForm.h"
#include "shell/entry/TaskEntryForm.h"
#include "shell/entry/TemplateEntryForm.h"
#include "shell/trees/NodeView.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/References.h"
#include "shell/trees/TemplateTreeForm.h"
#include "shell/trees/Trees.h"

namespace vortan {
namespace {

std::string WordOf(NodeKind kind) {
    static const std::map<NodeKind, const char*> words = {{NodeKind::Project, "project"},
                                                          {NodeKind::Subproject, "subproject"},
                                                          {NodeKind::Task, "task"},
                                                          {NodeKind::Dependency, "dependency"},
                                                          {NodeKind::Assignment, "assignment"},
                                                          {NodeKind::Template, "template"},
                                                          {NodeKind::Shift, "shift"},
                                                          {NodeKind::Department, "department"},
                                                          {NodeKind::Resource, "resource"}};
    const auto found = words.find(kind);
    return found == words.end() ? "n/a" : found->second;
}

}  // namespace

NodeCommands::NodeCommands(Desktop& desktop, Trees& trees)
    : desktop_(desktop),
      trees_(trees),
      menu_(new QMenu(&desktop.host->MainWindow())),
      insert_(new QMenu(&desktop.host->MainWindow())) {
    menu_->setObjectName("PopupMainMenu");
    insert_->setObjectName("InsertMenu");
    modify_ = Add("PopupModifyMenu", "Modify", "Main:PopupModifyMenu_Click", [this] { Modify(); });
    delete_ = Add("PopupDeleteMenu", "Delete", "Main:PopupDeleteMenu_Click", [this] { Delete(); });
    Add("PopupExpandMenu", "&Expand all", "Main:PopupExpandMenu_Click", [this] { GlobalExpand(true); });
    Add("PopupContractMenu", "&Contract all", "Main:PopupContractMenu_Click",
        [this] { GlobalExpand(false); });
    setActive_ = Add("PopupSetActiveMenu", "Set as acti&ve project", "Main:PopupSetActiveMenu_Click",
                     [this] { SetActive(); });
    menu_->addSeparator();
    const auto add = [this](NodeKind kind, const char* name, const char* caption) {
        new_[kind] = Add(name, caption, "Main:PopupNewMenu_Click", [this, kind] { New(kind); });
    };
    add(NodeKind::Task, "PopupNewTaskMenu", "New &task");
    add(NodeKind::Subproject, "PopupNewSubprojectMenu", "New &subproject");
    add(NodeKind::Dependency, "PopupNewDependencyMenu", "New depe&ndency");
    add(NodeKind::Assignment, "PopupNewAssignmentMenu", "New &assignment");
    add(NodeKind::Resource, "PopupNewResourceMenu", "New &resource");
    add(NodeKind::Shift, "PopupNewShiftMenu", "New s&hift");
    add(NodeKind::Project, "PopupNewProjectMenu", "New &project");
    add(NodeKind::Template, "PopupNewTemplateMenu", "New te&mplate");
}

QAction* NodeCommands::Add(const char* name, const QString& caption, const char* section,
                           std::function<void()> command) {
    QAction* action = menu_->addAction(caption);
    action->setObjectName(name);
    action->setMenuRole(QAction::NoRole);
    QObject::connect(action, &QAction::triggered, menu_,
                     [this, section, command = std::move(command)] { desktop_.Run(section, command); });
    return action;
}

void NodeCommands::UpdatePopupMenu() {
    const Node* node = trees_.DragNode();
    const NodeKind kind = node ? node->Image() : NodeKind::None;
    const bool isProject = kind == NodeKind::Project || kind == NodeKind::Subproject;
    modify_->setText(Q("&Modify this " + WordOf(kind)));
    delete_->setText(Q("&Delete this " + WordOf(kind)));
    for (const auto& [made, action] : new_) action->setVisible(false);
    for (const NodeKind offered : Offers(node)) new_.at(offered)->setVisible(true);
    // A placeholder stands for nothing.
    modify_->setEnabled(kind != NodeKind::None);
    delete_->setEnabled(kind != NodeKind::None);
    setActive_->setEnabled(isProject &&
                           trees_.FindProjectFromNode(*node) != desktop_.workspace.ThisProject());
}

void NodeCommands::RightClick(const NodeView& view, const QPoint& global) {
    if (!trees_.DragNode()) return;
    UpdatePopupMenu();
    const QFontMetrics metrics = view.fontMetrics();
    menu_->popup(global +
                 QPoint(metrics.horizontalAdvance("X" + Q(trees_.DragNode()->Text)), metrics.height()));
}

void NodeCommands::MakeActive(Vproject* project) {
    desktop_.workspace.SetThisProject(project);
    desktop_.workspace.BroadcastNewThisProject();
}

void NodeCommands::SetActive() {
    if (const Node* node = trees_.DragNode()) MakeActive(trees_.FindProjectFromNode(*node));
}

void NodeCommands::GlobalExpand(bool flag) {
    const Node* node = trees_.DragNode();
    if (!node) return;
    TreeForm& form = node->Tree == &trees_.ProjectTree().Tree() ? static_cast<TreeForm&>(trees_.ProjectTree())
                                                                : trees_.TemplateTree();
    form.GlobalExpand(flag);
}

// ---- add

std::vector<NodeKind> NodeCommands::Offers(const Node* node) const {
    using enum NodeKind;
    std::vector<NodeKind> offers;
    switch (node ? node->Image() : None) {
        case Project:
        case Subproject:
            return {Task, Subproject};
        case Task:
        case Dependency:
        case Assignment:
        case None: {
            if (!node) return {};
            // A placeholder stands below a task or a subproject.
            if (node->Image() == None && node->Parent && node->Parent->Image() != Task)
                return {Task, Subproject};
            offers = {Task, Dependency, Subproject};
            if (node->Image() == Dependency) offers = {Dependency, Task, Subproject};
            if (desktop_.workspace.ThisTemplate()) offers.insert(offers.begin() + 2, Assignment);
            if (node->Image() == Assignment)
                std::rotate(offers.begin(), offers.begin() + 2, offers.begin() + 3);
            return offers;
        }
        case Template:
        case Department:
        case Resource:
            return {Resource, Shift};
        case Shift:
            return {Shift, Resource};
    }
    return {};
}

/// The project that the selected node is, or belongs to; the active one without a node of a project.
Vproject* NodeCommands::ProjectForNew() const {
    for (const Node* node = trees_.DragNode(); node; node = node->Parent) {
        if (node->Image() == NodeKind::Project || node->Image() == NodeKind::Subproject)
            return trees_.FindProjectFromNode(*node);
    }
    return desktop_.workspace.ThisProject();
}

void NodeCommands::New(NodeKind kind) {
    Workspace& workspace = desktop_.workspace;
    const Node* node = trees_.DragNode();
    const auto task = [&]() -> Vtask& {
        if (!node) AssertionFailed();
        return *trees_.TaskOfNode(node->Image() == NodeKind::Task ? *node : *node->Parent);
    };
    switch (kind) {
        case NodeKind::Project:
            return ProjectEntryForm::StartAdd(desktop_);
        case NodeKind::Template:
            return TemplateEntryForm::StartAdd(desktop_);
        case NodeKind::Task:
            return TaskEntryForm::StartAdd(desktop_, *ProjectForNew());
        case NodeKind::Subproject:
            return SubprojectEntryForm::StartAdd(desktop_, *ProjectForNew());
        case NodeKind::Dependency:
            return DependencyEntryForm::StartAdd(desktop_, task());
        case NodeKind::Assignment:
            return AssignmentEntryForm::StartAdd(desktop_, task());
        case NodeKind::Resource:
            return ResourceEntryForm::StartAdd(desktop_, *workspace.ThisTemplate());
        case NodeKind::Shift:
            return ShiftEntryForm::StartAdd(desktop_, *workspace.ThisTemplate());
        default:
            AssertionFailed();
    }
}

void NodeCommands::Insert(const NodeView& view) {
    const Workspace& workspace = desktop_.workspace;
    const bool ofProject = &view == &trees_.ProjectTree().View();
    const Node* node = trees_.DragNode();
    if (node && node->Tree != view.model()) node = nullptr;
    std::vector<NodeKind> offers = Offers(node);
    if (!node) {
        const bool any = ofProject ? workspace.ThisProject() != nullptr : workspace.ThisTemplate() != nullptr;
        if (ofProject) offers = {any ? NodeKind::Task : NodeKind::Project};
        if (!ofProject) offers = {any ? NodeKind::Resource : NodeKind::Template};
        trees_.SetDragNode(nullptr);
    }
    if (offers.size() == 1) return New(offers.front());
    insert_->clear();
    for (const NodeKind kind : offers) {
        new_.at(kind)->setVisible(true);
        insert_->addAction(new_.at(kind));
    }
    insert_->setActiveAction(new_.at(offers.front()));
    const QRect line = view.visualRect(node->Tree->IndexOf(node));
    insert_->popup(view.viewport()->mapToGlobal(line.bottomLeft() + QPoint(view.indentation(), 0)));
}

Vtask* NodeCommands::SelectedTask(const char* warning, const char* title) {
    const Node* node = trees_.DragNode();
    if (node && node->Image() == NodeKind::Task) return trees_.ObjectOf<Vtask>(*node);
    desktop_.platform.MessageBox(warning, title, BoxIcon::Warning, BoxButtons::Ok);
    return nullptr;
}

void NodeCommands::AddDependency() {
    if (Vtask* task = SelectedTask("Please click on a task first.", "No Task Selected"))
        DependencyEntryForm::StartAdd(desktop_, *task);
}

void NodeCommands::AddAssignment() {
    if (Vtask* task = SelectedTask("You must click on a task before trying to add a new assignment.",
                                   "Task Not Selected"))
        AssignmentEntryForm::StartAdd(desktop_, *task);
}

// ---- modify

void NodeCommands::Modify() {
    const Node* node = trees_.DragNode();
    if (!node || node->Image() == NodeKind::None) return;
    switch (node->Image()) {
        case NodeKind::Project:
        case NodeKind::Subproject: {
            Vproject* project = trees_.FindProjectFromNode(*node);
            const bool active = project == desktop_.workspace.ThisProject();
            if (node->Image() == NodeKind::Subproject && !active)
                return SubprojectEntryForm::StartModify(desktop_, *trees_.ObjectOf<Vtask>(*node));
            if (!active) MakeActive(project);
            return ProjectEntryForm::StartModify(desktop_, *project);
        }
        case NodeKind::Task:
            return TaskEntryForm::StartModify(desktop_, *trees_.ObjectOf<Vtask>(*node));
        case NodeKind::Dependency:
            return DependencyEntryForm::StartModify(desktop_, *trees_.ObjectOf<Vdependency>(*node));
        case NodeKind::Assignment:
            return AssignmentEntryForm::StartModify(desktop_, *trees_.ObjectOf<Vassignment>(*node));
        case NodeKind::Template:
            return TemplateEntryForm::StartModify(desktop_, *trees_.ObjectOf<Vtemplate>(*node));
        case NodeKind::Shift:
            return ShiftEntryForm::StartModify(desktop_, *trees_.ObjectOf<Vshift>(*node));
        case NodeKind::Department:
            return RenameDepartment(*node);
        case NodeKind::Resource:
            return ResourceEntryForm::StartModify(desktop_, *trees_.ObjectOf<Vresource>(*node));
        default:
            AssertionFailed();
    }
}

/// The name is that of the resources' field, so it is changed in each of them.
void NodeCommands::RenameDepartment(const Node& node) {
    Vtemplate* active = desktop_.workspace.ThisTemplate();
    if (!active) AssertionFailed();
    const std::string before = node.Text;
    const InputAnswer answer = desktop_.platform.InputBox(
        "New name of the department, for all of its resources:", "Department Name", before);
    const std::string name(Trim(answer.text));
    if (!answer.given || name.empty() || name == before) return;
    for (Vresource* resource : active->ResourceList()) {
        if (resource->Include() && resource->Department() == before) resource->SetDepartment(name);
    }
    trees_.TemplateTree().Start();
    trees_.SetDragNode(trees_.TemplateTree().Tree().FindNodeFromKey(MakeKey(name)));
}

// ---- delete

void NodeCommands::Delete() {
    Node* node = trees_.DragNode();
    if (!node || node->Image() == NodeKind::None) return;
    if (node->Image() == NodeKind::Department) {
        desktop_.platform.MessageBox(
            "A department cannot be deleted by itself.  It goes away when its last resource is deleted or "
            "moved to another department.",
            "Can't Delete Department", BoxIcon::Information, BoxButtons::Ok);
        return;
    }
    if (MayLose(*node) && DeleteConfirmed(*node)) DeleteObject(*node);
}

/// What goes with the file that it was loaded from may have changes that are nowhere else.
bool NodeCommands::MayLose(const Node& node) {
    const PlanObject object = trees_.FindObjectFromNode(node);
    if (Vproject* const* project = std::get_if<Vproject*>(&object))
        return vortan::MayLose(desktop_, **project);
    if (Vtemplate* const* all = std::get_if<Vtemplate*>(&object)) return vortan::MayLose(desktop_, **all);
    return true;
}

bool NodeCommands::DeleteConfirmed(const Node& node) {
    const std::string word = WordOf(node.Image());
    return desktop_.platform.MessageBoxWithDetail(
               "Are you sure you want to delete this " + word + "?",
               TellReferences(desktop_.workspace, trees_.FindObjectFromNode(node)), "Confirm Delete " + word,
               BoxIcon::Warning, BoxButtons::YesNo) == BoxAnswer::Yes;
}

/// The object first, since its node is what leads to it.
void NodeCommands::DeleteObject(Node& node) {
    Workspace& workspace = desktop_.workspace;
    const PlanObject object = trees_.FindObjectFromNode(node);
    if (Vproject* const* project = std::get_if<Vproject*>(&object)) {
        return RemoveProjects(workspace, {*project});
    }
    if (Vtemplate* const* removed = std::get_if<Vtemplate*>(&object)) {
        RemoveTemplate(workspace, **removed);
        return trees_.ProjectTree().RefreshReferences();
    }
    const Vproject* subproject = nullptr;
    std::visit(
        [&](auto condemned) {
            using T = decltype(condemned);
            if constexpr (std::is_same_v<T, Vtask*>) subproject = condemned->Subproject();
            // Resources that work a shift keep it.
            if constexpr (!std::is_same_v<T, std::monostate>) condemned->Delete();
        },
        object);

    Node* above = node.Parent;
    TreeForm& form = node.Tree == &trees_.ProjectTree().Tree() ? static_cast<TreeForm&>(trees_.ProjectTree())
                                                               : trees_.TemplateTree();
    form.RemoveNode(node);
    if (above->Image() == NodeKind::Department && above->Children.empty()) form.RemoveNode(*above);
    if (subproject) {
        // It is a master project now, with a tree of its own.
        workspace.BroadcastNewThisProject();
    } else {
        trees_.ProjectTree().RefreshReferences();
    }
}

}  // namespace vortan
