#include "model/ValueText.h"
#include "shell/Shell.h"

namespace vortan {
namespace {

/// The forms of projects and templates.
class ContainerFormsTest : public ::testing::Test {
  protected:
    Vproject* AddProject(const char* name, const char* journal = "9/3/2001") {
        auto* project = workspace.NewVObject<Vproject>();
        project->SetProjectName(name);
        project->AddJournal(*ParseDate(journal));
        workspace.SetThisProject(project);
        workspace.BroadcastNewThisProject();
        project->SetDirty(false);
        return project;
    }
    void Link(Vproject& owner, int id, Vproject& subproject) {
        auto* task = workspace.NewVObject<Vtask>();
        task->SetProject(&owner);
        task->SetTaskID(id);
        task->SetSubproject(&subproject);
    }
    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
};

TEST_F(ContainerFormsTest, ChangesReachAsFarAsTheOptionSays) {
    Vproject* master = AddProject("Master");
    Vproject* middle = AddProject("Middle");
    Vproject* leaf = AddProject("Leaf");
    Vproject* side = AddProject("Side");
    Vproject* other = AddProject("Other");
    Link(*master, 1, *middle);
    Link(*middle, 1, *leaf);
    Link(*master, 2, *side);
    const struct {
        const char* option;
        std::vector<Vproject*> reached;
    } cases[] = {{"ApplyOption(0)", {middle}},
                 {"ApplyOption(1)", {middle, leaf}},
                 {"ApplyOption(2)", {master, middle, leaf, side}}};
    workspace.SetThisProject(middle);
    int rule = static_cast<int>(SolveRule::NormalExtend);
    for (const auto& one : cases) {
        SCOPED_TRACE(one.option);
        ++rule;
        for (Vproject* project : workspace.ProjectList()) project->SetDirty(false);
        shell.Choose("ProjectModifyMenu");
        EXPECT_EQ(shell.Focus(), "SolveRulesCombo");
        shell.Find<QComboBox>("SolveRulesCombo").setCurrentIndex(rule);
        shell.Click(one.option);
        shell.Click("OkCommand");
        for (const Vproject* project : {master, middle, leaf, side, other}) {
            const bool reached =
                std::find(one.reached.begin(), one.reached.end(), project) != one.reached.end();
            EXPECT_EQ(static_cast<int>(project->SolveRules()) == rule, reached) << project->ProjectName();
            EXPECT_EQ(project->Dirty(), reached) << project->ProjectName();
        }
        EXPECT_EQ(middle->ProjectName(), "Middle");
    }
}

TEST_F(ContainerFormsTest, ATemplateTakesAnotherName) {
    Vtemplate* crew = workspace.FindOrCreateTemplate("Crew");
    crew->AddJournal(shell.platform.now);
    for (const char* name : {"People", "Team"}) {
        workspace.SetThisTemplate(crew);
        workspace.BroadcastNewThisTemplate();
        shell.Choose("TemplateModifyMenu");
        shell.Do(std::string("TemplateNameText=") + name);
        shell.Press(Qt::Key_Return);
        EXPECT_EQ(crew->TemplateName(), name);
        EXPECT_EQ(shell.main.findChild<QComboBox*>("TemplateCombo")->currentText(), name);
        EXPECT_EQ(shell.main.TheTrees().FindNodeFromObject(crew).Text, name);
    }
}

}  // namespace
}  // namespace vortan
