#include "shell/Shell.h"
#include "support/TextPlan.h"

namespace vortan {
namespace {

TEST(ContainerForms, ChangesReachAsFarAsTheOptionSays) {
    Shell shell;
    Workspace& workspace = MakePlan(
        shell.desktop.workspace, R"(project Master; project Middle; project Leaf; project Side; project Other
        project Master; task 1 is Middle; task 2 is Side; project Middle; task 1 is Leaf)");
    workspace.SetThisProject(workspace.ProjectList().Find("Middle"));
    workspace.BroadcastNewThisProject();
    int rule = static_cast<int>(SolveRule::NormalExtend);
    for (const auto& [option, reached] : {std::pair("ApplyOption(0)", "Middle "),
                                          {"ApplyOption(1)", "Middle Leaf "},
                                          {"ApplyOption(2)", "Master Middle Leaf Side "}}) {
        ++rule;
        for (Vproject* project : workspace.ProjectList()) project->SetDirty(false);
        shell.Choose("ProjectModifyMenu");
        EXPECT_EQ(shell.Focus(), "SolveRulesCombo");
        shell.Find<QComboBox>("SolveRulesCombo").setCurrentIndex(rule);
        shell.Click(option);
        shell.Click("OkCommand");
        std::string changed, dirty;
        for (const Vproject* project : workspace.ProjectList()) {
            if (static_cast<int>(project->SolveRules()) == rule) changed += project->ProjectName() + " ";
            if (project->Dirty()) dirty += project->ProjectName() + " ";
        }
        EXPECT_EQ(changed, reached);
        EXPECT_EQ(dirty, reached);
    }
}

TEST(ContainerForms, ATemplateTakesAnotherName) {
    Shell shell;
    Workspace& workspace = MakePlan(shell.desktop.workspace, "template Crew");
    Vtemplate* crew = workspace.ThisTemplate();
    workspace.BroadcastNewThisTemplate();
    for (const char* name : {"People", "Team"}) {
        shell.Choose("TemplateModifyMenu");
        shell.Do(std::string("TemplateNameText=") + name);
        shell.Press(Qt::Key_Return);
        EXPECT_EQ(crew->TemplateName(), name);
        EXPECT_EQ(shell.main.findChild<QComboBox*>("TemplateCombo")->currentText(), name);
        EXPECT_EQ(shell.NodeOf(crew).Text, name);
    }
}

}  // namespace
}  // namespace vortan
