#pragma once

#include <QAbstractItemModelTester>
#include <string>

#include "shell/Shell.h"

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
