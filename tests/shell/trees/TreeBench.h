#pragma once

#include <QAbstractItemModelTester>
#include <string>

#include "shell/Shell.h"
#include "support/TextPlan.h"

namespace vortan {

/// The desktop with a small plan: project Alpha with the tasks 1 Dig, 2 Build (which has a dependency on 1
/// and an assignment), 10 (without a description), and 3, a link to the project Beta with its task 1 Wire;
/// template Crew with the shifts Standard and Night, the resources 1 Ann and 2 Bob in "yard" and 10 Cid in
/// "Office".
class TreeBench : public Shell {
  public:
    TreeBench() {
        for (TreeForm* form : Forms()) new QAbstractItemModelTester(&form->Tree(), Fatal, &form->Tree());
        main.resize(1000, 700);
        workspace.BroadcastNewThisProject();
        workspace.BroadcastNewThisTemplate();
        QCoreApplication::processEvents();
    }
    Vproject* Project(const std::string& name) {
        MakePlan(workspace, "project " + name + " \"\"");
        return workspace.FindOrCreateProject(name);
    }
    static Vtask* Task(Vproject* project, int id, const std::string& description) {
        Vtask* task = project->FindOrCreateTask(id);
        task->SetDescription(description);
        return task;
    }
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

    static constexpr auto Fatal = QAbstractItemModelTester::FailureReportingMode::Fatal;
    Workspace& workspace = MakePlan(desktop.workspace, R"(template Crew; shift Night
        resource 1 "Ann" in yard; resource 2 "Bob" in yard; resource 10 "Cid" in Office
        project Alpha ""; project Beta ""; task 1 "Wire"
        project Alpha; task 1 "Dig"; task 2 "Build" after 1 by 1; task 10 ""; task 3 "" is Beta)");
    Trees& trees = main.TheTrees();
    Vproject *alpha = workspace.ThisProject(), *beta = workspace.ProjectList()[1];
    Vtemplate* crew = workspace.ThisTemplate();
    Vresource *ann = crew->FindResource(1), *bob = crew->FindResource(2), *cid = crew->FindResource(10);
    Vtask *dig = alpha->FindTask(1), *build = alpha->FindTask(2), *link = alpha->FindTask(3),
          *last = alpha->FindTask(10), *wire = beta->FindTask(1);
    Vdependency* needsDig = build->DependencyList().front();
    Vassignment* annBuilds = build->AssignmentList().front();
};

}  // namespace vortan
