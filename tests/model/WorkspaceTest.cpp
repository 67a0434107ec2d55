#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "model/Workspace.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "support/ModelBench.h"

namespace vortan {
namespace {

TEST(Workspace, NameConflictsGetTheNextLetter) {
    const char* const cases[][2] = {{"Alpha", "Alpha(B)"}, {"Alpha(B)", "Alpha(C)"}, {"AB", "AB(B)"},
                                    {"x)", "x)(B)"},       {"a(Z)", "a([)"},         {"(A)", "(B)"},
                                    {"a(bc)", "a(bc)(B)"}, {"a(B]", "a(B](B)"}};
    for (const auto& [before, after] : cases) {
        std::string name = before;
        Workspace::FixNameConflict(name);
        EXPECT_EQ(name, after);
    }
}

TEST(Workspace, ProjectsAreNeverRefusedForTheirName) {
    ModelBench model;
    Vproject* first = model.Project("Alpha");
    auto* second = model.workspace.NewVObject<Vproject>();
    second->SetProjectName("Alpha");
    EXPECT_EQ(second->ProjectName(), "Alpha(B)");
    EXPECT_EQ(model.workspace.ProjectList().Find("Alpha"), first);
    EXPECT_EQ(model.workspace.ProjectList().Find("Alpha(B)"), second);
    second->SetProjectName("Beta");
    EXPECT_EQ(model.workspace.ProjectList().Find("Alpha(B)"), nullptr);
    first->Delete();
    EXPECT_EQ(model.workspace.ProjectList().size(), 1U);
    EXPECT_EQ(model.workspace.FindOrCreateProject(""), nullptr);
    EXPECT_EQ(model.workspace.FindOrCreateProject("Beta"), second);
    EXPECT_EQ(model.workspace.FindOrCreateProject("New")->BuildNodeText(), "New: <stub>");
}

// However often one name comes, each project ends with one of its own, in ASCII.
TEST(Workspace, ManyProjectsOfOneName) {
    ModelBench model;
    for (int i = 0; i < 300; ++i) model.workspace.NewVObject<Vproject>()->SetProjectName("Same");
    EXPECT_EQ(model.workspace.ProjectList().size(), 300U);
    for (const Vproject* project : model.workspace.ProjectList()) {
        for (const char c : project->ProjectName()) EXPECT_TRUE(c > ' ' && c <= '\x7f');
    }
}

TEST(Workspace, TemplatesAreRefusedForTheirName) {
    ModelBench model;
    Vtemplate* first = model.Template("Staff");
    Vtemplate* second = model.Template("Rooms");
    EXPECT_EQ(RefusalOf([&] { second->SetTemplateName("Staff"); }),
              "There is already a template with the name \"Staff\"");
    EXPECT_EQ(second->TemplateName(), "Rooms");
    EXPECT_EQ(model.workspace.TemplateList().Find("Rooms"), second);
    second->SetTemplateName("Rooms");
    first->Delete();
    second->SetTemplateName("Staff");
    EXPECT_EQ(model.workspace.TemplateList().Find("Staff"), second);
    EXPECT_EQ(second->Tag(), "lStaff");
}

TEST(Workspace, GuardsShowTheirWarning) {
    ModelBench model;
    Workspace& workspace = model.workspace;
    const auto expect = [&](const char* title, const char* part) {
        model.platform.ExpectBox(title, BoxAnswer::Ok, part);
    };
    expect("No Projects in Memory", "There are no projects loaded in memory.\n\nPlease use the File menu");
    EXPECT_FALSE(workspace.ThisProjectSet());
    expect("No Templates in Memory", "or more templates, or use the Template menu to create a New one.");
    EXPECT_FALSE(workspace.ThisTemplateSet());
    model.solver.mode = SolveMode::Halted;
    expect("No Projects in Memory", "");
    EXPECT_FALSE(workspace.ThisProjectSolved());
    workspace.SetThisProject(model.Project("P"));
    expect("Solve Error", "cannot be performed until the error in solve is corrected.");
    EXPECT_FALSE(workspace.ThisProjectSolved());
    for (const SolveMode mode : {SolveMode::Running, SolveMode::Restart, SolveMode::Suspended}) {
        model.solver.mode = mode;
        expect("Waiting For Solve To Complete", "until the background solve is complete.");
        EXPECT_FALSE(workspace.ThisProjectSolved());
    }
    model.solver.mode = SolveMode::Idle;
    EXPECT_TRUE(workspace.ThisProjectSolved());
}

TEST(Workspace, LinksNeverBecomeAnotherObject) {
    ModelBench model;
    Vtask* first = model.Project("P")->FindOrCreateTask(1);
    const Link<Vtask> none, link = first, same = first;
    EXPECT_TRUE(none.IsNone() && !none.IsDeleted() && !none);
    EXPECT_TRUE(link == same && link.Get() == first && !link.IsNone() && !link.IsDeleted());
    model.workspace.FreeVobject(first);
    EXPECT_TRUE(link.IsDeleted() && !link && !link.IsNone() && link != none && link == same);
    Vtask* second = model.Project("P")->FindOrCreateTask(2);
    EXPECT_EQ(second, first) << "memory is reused, or this test shows nothing";
    EXPECT_TRUE(link.IsDeleted() && link.Get() == nullptr && link != Link<Vtask>(second));
    model.workspace.FreeVobject<Vtask>(nullptr);
}

TEST(Workspace, ObjectsComeBackReset) {
    ModelBench model;
    Vproject* project = model.Project("P", 2);
    Vtask* task = project->FindOrCreateTask(1);
    Vdependency* dependency = model.Dependency(task, nullptr, DateTime(9));
    project->SetCurrentIndex(1);
    task->SetEffortUnits(60);
    dependency->SetToPercent(50);
    project->SetPriority("7");
    project->SetDirty(true);
    model.workspace.FreeVobject(project);
    EXPECT_TRUE(model.workspace.ProjectList().empty());
    EXPECT_EQ(dependency->Id(), 0U) << "a project takes its tasks along, a task its dependencies";
    const auto* fresh = model.workspace.NewVObject<Vproject>();
    EXPECT_EQ(fresh, project);
    EXPECT_EQ(fresh->Priority(), "1");
    EXPECT_EQ(fresh->NumJournals(), 0);
    EXPECT_FALSE(fresh->Dirty());
    const auto* newTask = model.workspace.NewVObject<Vtask>();
    EXPECT_EQ(newTask->EffortUnits(), -60);
    EXPECT_EQ(newTask->Efficiency(), 0.85);
    EXPECT_TRUE(newTask->Include());
    EXPECT_TRUE(newTask->DependencyList().empty());
    EXPECT_EQ(model.workspace.NewVObject<Vdependency>()->ToPercent(), 0);
}

TEST(Workspace, FreeAllMemoryLeavesNothing) {
    ModelBench model;
    Vproject* project = model.Project("P", 2);
    Vtemplate* pool = model.Template("T");
    Vresource* resource = pool->FindOrCreateResource(1);
    resource->SetShift(pool->FindOrCreateShift("Standard"));
    model.Assignment(project->FindOrCreateTask(1), resource);
    model.Dependency(nullptr, project->FindOrCreateTask(2));
    project->SetDirty(true);
    pool->SetDirty(true);
    model.workspace.SetThisProject(project);
    model.workspace.SetThisTemplate(pool);
    const Link<Vproject> link = project;
    model.workspace.FreeAllMemory();
    EXPECT_TRUE(model.workspace.ProjectList().empty() && model.workspace.TemplateList().empty());
    EXPECT_TRUE(!model.workspace.ThisProject() && !model.workspace.ThisTemplate() && link.IsDeleted());
    EXPECT_EQ(model.solver.clears, 1);
    EXPECT_FALSE(model.Project("P")->Dirty());
    EXPECT_FALSE(model.Template("T")->Dirty());
    EXPECT_EQ(model.Template("T")->HighestResourceID(), 0);
}

/// Notes each message in a log, then does what it is told.
struct Screen : Listener {
    Screen(std::string& messages, char letter) : log(messages), name(letter) {}
    void NewJournal() override {
        log += name;
        if (const auto act = std::exchange(then, nullptr)) act();
    }
    std::string& log;
    char name;
    std::function<void()> then;
};

TEST(Workspace, ListenersComeAndGoWhileAMessageIsDelivered) {
    ModelBench model;
    Workspace& workspace = model.workspace;
    std::string log;
    Screen a(log, 'a'), b(log, 'b'), c(log, 'c'), late(log, 'l');
    for (Screen* screen : {&a, &b, &c}) workspace.AddListener(screen);
    workspace.BroadcastNewSolution();
    a.then = [&] {
        workspace.RemoveListener(&b);
        for (int i = 0; i < 50; ++i) workspace.AddListener(&late);
        for (int i = 1; i < 50; ++i) workspace.RemoveListener(&late);
        workspace.BroadcastNewJournal();  // a message within the message reaches the new listener too
    };
    c.then = [&] { workspace.RemoveListener(&c); };
    workspace.BroadcastNewJournal();
    EXPECT_EQ(log, "aacl");
    log.clear();
    workspace.BroadcastNewJournal();
    EXPECT_EQ(log, "al");
    workspace.RemoveListener(&b);
}

}  // namespace
}  // namespace vortan
