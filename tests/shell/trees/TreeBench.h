#pragma once

#include <QAbstractItemModelTester>
#include <string>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "shell/Shell.h"
#include "shell/trees/DragDrop.h"
#include "shell/trees/NodeCommands.h"
#include "shell/trees/NodeView.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/TemplateTreeForm.h"

namespace vortan {

/// The desktop with a small plan: project Alpha with the tasks 1 Dig, 2 Build (which has a dependency on 1
/// and an assignment), 10 (without a description), and 3, a link to the project Beta with its task 1 Wire;
/// template Crew with the shifts Standard and Night, the resources 1 Ann and 2 Bob in "yard" and 10 Cid in
/// "Office".
class TreeBench : public Shell {
  public:
    TreeBench() {
        alpha = Project("Alpha");
        beta = Project("Beta");
        crew = workspace.FindOrCreateTemplate("Crew");
        crew->AddJournal(DateTime(37137));
        for (const char* name : {"Standard", "Night"}) crew->FindOrCreateShift(name);
        ann = Resource(1, "Ann", "yard");
        bob = Resource(2, "Bob", "yard");
        cid = Resource(10, "Cid", "Office");
        dig = Task(alpha, 1, "Dig");
        build = Task(alpha, 2, "Build");
        last = Task(alpha, 10, "");
        link = Task(alpha, 3, "");
        link->SetSubproject(beta);
        wire = Task(beta, 1, "Wire");
        needsDig = workspace.NewVObject<Vdependency>();
        needsDig->SetTask(build);
        needsDig->SetTaskRequired(dig);
        annBuilds = workspace.NewVObject<Vassignment>();
        annBuilds->SetTask(build);
        annBuilds->SetResourceRequired(ann);
        workspace.SetThisProject(alpha);
        workspace.SetThisTemplate(crew);
        for (TreeForm* form : Forms()) new QAbstractItemModelTester(&form->Tree(), Fatal, &form->Tree());
        main.resize(1000, 700);
        workspace.BroadcastNewThisProject();
        workspace.BroadcastNewThisTemplate();
        QCoreApplication::processEvents();
    }

    std::array<TreeForm*, 2> Forms() { return {&trees.ProjectTree(), &trees.TemplateTree()}; }

    Vproject* Project(const std::string& name) {
        Vproject* project = workspace.FindOrCreateProject(name);
        project->SetDescription("");
        project->AddJournal(DateTime(37137));
        return project;
    }
    static Vtask* Task(Vproject* project, int id, const std::string& description) {
        Vtask* task = project->FindOrCreateTask(id);
        task->SetDescription(description);
        return task;
    }
    Vresource* Resource(int id, const std::string& name, const std::string& department) {
        Vresource* resource = crew->FindOrCreateResource(id);
        resource->SetDescription(name);
        resource->SetDepartment(department);
        return resource;
    }

    Node& NodeOf(PlanObject object) { return trees.FindNodeFromObject(object); }
    NodeView& ViewOf(const Node& node) {
        return node.Tree == &trees.ProjectTree().Tree() ? trees.ProjectTree().View()
                                                        : trees.TemplateTree().View();
    }
    QRect RectOf(const Node& node) { return ViewOf(node).visualRect(node.Tree->IndexOf(&node)); }
    /// A point on the node's line, in its viewport.
    QPoint PointOf(const Node& node) {
        return RectOf(node).topLeft() + QPoint(30, RectOf(node).height() / 2);
    }

    using Shell::Click;
    void Click(const Node& node) {
        QTest::mouseClick(ViewOf(node).viewport(), Qt::LeftButton, {}, PointOf(node));
    }
    void DoubleClick(const Node& node) {
        Click(node);
        QTest::mouseDClick(ViewOf(node).viewport(), Qt::LeftButton, {}, PointOf(node));
    }
    void Key(const TreeForm& form, Qt::Key key) {
        QTest::keyClick(const_cast<TreeForm&>(form).View().viewport(), key);
    }

    /// One mouse event of a drag, as the widget gets it in which the button went down.
    void Mouse(QEvent::Type type, NodeView& source, const QPoint& global, Qt::MouseButtons held) {
        QMouseEvent event(type, source.viewport()->mapFromGlobal(global), global,
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, held, {});
        QApplication::sendEvent(source.viewport(), &event);
    }
    void BeginDrag(const Node& node) {
        const QPoint at = Global(node);
        Mouse(QEvent::MouseButtonPress, ViewOf(node), at, Qt::LeftButton);
        Mouse(QEvent::MouseMove, ViewOf(node), at + QPoint(1, 0), Qt::LeftButton);
        Mouse(QEvent::MouseMove, ViewOf(node), at + QPoint(QApplication::startDragDistance(), 0),
              Qt::LeftButton);
    }
    void Drag(const Node& from, const Node& onto) {
        NodeView& source = ViewOf(from);
        const QPoint at = Global(onto);
        BeginDrag(from);
        Mouse(QEvent::MouseMove, source, at, Qt::LeftButton);
        Mouse(QEvent::MouseButtonRelease, source, at, Qt::NoButton);
    }
    QPoint Global(const Node& node) { return ViewOf(node).viewport()->mapToGlobal(PointOf(node)); }

    /// The lines of a tree as they can be seen: indented texts; "+" before what can be opened.
    static std::string Seen(const Nodes& nodes, const std::string& indent = "") {
        std::string all;
        for (const auto& node : nodes) {
            all += indent + (!node->Children.empty() && !node->Expanded ? "+" : "") + node->Text + "\n";
            if (node->Expanded) all += Seen(node->Children, indent + " ");
        }
        return all;
    }
    std::string SeenProject() { return Seen(trees.ProjectTree().Tree().Roots()); }
    std::string SeenTemplate() { return Seen(trees.TemplateTree().Tree().Roots()); }

    /// The texts of the lines that are marked in both trees.
    std::string Marked() {
        std::string all;
        for (TreeForm* form : Forms()) {
            for (const QModelIndex& index : form->View().selectionModel()->selectedIndexes())
                all += NodeTree::NodeOf(index)->Text + ";";
        }
        return all;
    }

    static constexpr auto Fatal = QAbstractItemModelTester::FailureReportingMode::Fatal;
    Workspace& workspace = desktop.workspace;
    Trees& trees = main.TheTrees();
    Vproject *alpha, *beta;
    Vtemplate* crew;
    Vresource *ann, *bob, *cid;
    Vtask *dig, *build, *last, *link, *wire;
    Vdependency* needsDig;
    Vassignment* annBuilds;
};

}  // namespace vortan
