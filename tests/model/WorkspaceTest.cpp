#include "model/Workspace.h"

#include "persist/FieldWriter.h"
#include "support/ModelBench.h"

namespace vortan {
namespace {

TEST(Workspace, NameConflictsGetTheNextLetter) {
    const char* const cases[][2] = {
        {"Alpha", "Alpha(B)"}, {"Alpha(B)", "Alpha(C)"}, {"AB", "AB(B)"},
        {"x)", "x)(B)"},       {"a(Z)", "a([)"},         {"(A)", "(B)"},
        {"a(bc)", "a(bc)(B)"}, {"a(B]", "a(B](B)"},      {"a(\x7f)", "a(\x7f)(B)"}};
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
    using Mode = SolveMode;
    const struct {
        bool (Workspace::*guard)();
        Mode mode;
        const char *title, *part;
    } cases[] = {
        {&Workspace::ThisProjectSet, Mode::Idle, "No Projects in Memory", "There are no projects loaded"},
        {&Workspace::ThisTemplateSet, Mode::Idle, "No Templates in Memory", "use the Template menu"},
        {&Workspace::ThisProjectSolved, Mode::Halted, "No Projects in Memory", ""},
        {&Workspace::ThisProjectSolved, Mode::Halted, "Solve Error",
         "until the error in solve is corrected."},
        {&Workspace::ThisProjectSolved, Mode::Running, "Waiting For Solve To Complete", "background solve"},
        {&Workspace::ThisProjectSolved, Mode::Suspended, "Waiting For Solve To Complete", ""},
    };
    for (const auto& each : cases) {
        if (&each == cases + 3) workspace.SetThisProject(model.Project("P"));
        model.solver.mode = each.mode;
        model.platform.ExpectBox(each.title, BoxAnswer::Ok, each.part);
        EXPECT_FALSE((workspace.*each.guard)());
    }
    model.solver.mode = Mode::Idle;
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

/// Whatever an object was, memory that is used again is like new; owners take along what they own.
TEST(Workspace, ObjectsComeBackReset) {
    for (const bool all : {false, true}) {
        ModelBench model;
        Workspace& workspace = model.workspace;
        Vproject* project = model.Project("P", 2);
        Vtemplate* pool = model.Template("T", 2);
        Vtask* task = project->FindOrCreateTask(1);
        Vresource* resource = pool->FindOrCreateResource(1);
        project->SetCurrentIndex(1);
        Vdependency* dependency = model.Dependency(task, task, DateTime(9));
        Vassignment* assignment = model.Assignment(task, resource);
        task->SetEffortUnits(60);
        project->SetPriority("7");
        resource->SetTitle("Boss");
        workspace.SetThisProject(project);
        workspace.SetThisTemplate(pool);
        const Link<Vproject> link = project;
        if (all) {
            workspace.FreeAllMemory();
            EXPECT_EQ(model.solver.clears, 1);
        } else {
            workspace.FreeVobject(project);
            workspace.FreeVobject(pool);
        }
        EXPECT_TRUE(workspace.ProjectList().empty() && workspace.TemplateList().empty());
        EXPECT_TRUE(!workspace.ThisProject() && !workspace.ThisTemplate() && link.IsDeleted());
        const auto expectNew = [&](auto* used) {
            using T = std::remove_pointer_t<decltype(used)>;
            Workspace untouched(model.platform);
            EXPECT_EQ(used->Id(), 0U);
            T& fresh = *workspace.NewVObject<T>();
            EXPECT_EQ(&fresh, used);
            const auto text = [](const auto& object) {
                std::string fields;
                object.ForEachField(FieldWriter(fields));
                return fields;
            };
            EXPECT_EQ(text(fresh), text(*untouched.NewVObject<T>()));
            EXPECT_EQ(fresh.Holder(), nullptr);
        };
        expectNew(project);
        expectNew(task);
        expectNew(dependency);
        expectNew(assignment);
        EXPECT_FALSE(project->Dirty() || workspace.NewVObject<Vtemplate>()->Dirty());
        EXPECT_TRUE(project->NumJournals() == 0 && task->DependencyList().empty());
    }
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
