#include "model/ValueText.h"
#include "shell/Shell.h"
#include "shell/entry/ProjectEntryForm.h"
#include "shell/entry/SubprojectEntryForm.h"
#include "shell/entry/TemplateEntryForm.h"

namespace vortan {
namespace {

/// The forms of projects, templates and subprojects.
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

TEST_F(ContainerFormsTest, AProjectIsMadeWithItsJournal) {
    shell.Choose("ProjectNewMenu");
    EXPECT_FALSE(shell.Find<QWidget>("ApplyFrame").isVisible());
    EXPECT_EQ(shell.Value("InitialJournalText"), "9/3/2001");
    shell.Type("ProjectNameText", "   ");
    shell.ExpectRefused("Project Name Is Blank", "The Project name must be filled in.", "ProjectNameText");
    shell.Type("ProjectNameText", " Bridge");
    shell.Type("InitialJournalText", "soon");
    shell.ExpectRefused("Invalid Date", "Invalid date", "InitialJournalText");
    shell.Type("InitialJournalText", "2027-01-04");
    for (const char* bad : {"", "x", "256", "-1", "1.5"}) {
        shell.Type("PriorityText", bad);
        shell.ExpectRefused("Invalid Number", "The priority must be a whole number from 0 to 255.",
                            "PriorityText");
    }
    EXPECT_TRUE(workspace.ProjectList().empty());
    shell.Type("PriorityText", "7");
    shell.Find<QComboBox>("SolveRulesCombo").setCurrentIndex(kDayHalt);
    shell.Press(Qt::Key_Return);

    const Vproject* project = workspace.ThisProject();
    ASSERT_TRUE(project);
    EXPECT_EQ(project->ProjectName(), " Bridge");
    EXPECT_EQ(FormatDate(project->Journal()), "1/4/2027");
    EXPECT_EQ(project->Priority(), "7");
    EXPECT_EQ(project->SolveRules(), kDayHalt);
    EXPECT_TRUE(project->Dirty());
    EXPECT_FALSE(shell.IsOpen("ProjectEntryForm"));

    // The next one is offered the same journal.
    shell.Choose("ProjectNewMenu");
    EXPECT_EQ(shell.Value("InitialJournalText"), "1/4/2027");
    shell.Press(Qt::Key_Escape);
    EXPECT_EQ(workspace.ProjectList().size(), 1U);
}

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
    int rule = kNormalExtend;
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
            EXPECT_EQ(project->SolveRules() == rule, reached) << project->ProjectName();
            EXPECT_EQ(project->Dirty(), reached) << project->ProjectName();
        }
        EXPECT_EQ(middle->ProjectName(), "Middle");
    }
}

TEST_F(ContainerFormsTest, ATemplateIsMadeWithAShift) {
    shell.Choose("TemplateNewMenu");
    shell.ExpectRefused("Template Name Is Blank", "The Template name must be filled in.", "TemplateNameText");
    EXPECT_EQ(shell.Find<QLineEdit>("ViewPasswordText").echoMode(), QLineEdit::Password);
    shell.Type("TemplateNameText", "People");
    shell.Type("ModifyPasswordText", "secret");
    shell.Press(Qt::Key_Return);
    const Vtemplate* made = workspace.ThisTemplate();
    ASSERT_TRUE(made);
    EXPECT_EQ(made->ModifyPassword(), "secret");
    EXPECT_EQ(FormatDate(made->Journal()), "9/3/2001");
    ASSERT_EQ(made->ShiftList().size(), 1U);
    EXPECT_EQ(made->ShiftList()[0]->ShiftName(), "Standard");
    EXPECT_EQ(shell.Find<QComboBox>("TemplateCombo").currentText(), "People");

    shell.Choose("TemplateNewMenu");
    shell.Type("TemplateNameText", "People");
    shell.ExpectRefused("Template Name In Use", "There is already a template with the name \"People\"",
                        "TemplateNameText");
    shell.Click("CancelCommand");

    shell.Choose("TemplateModifyMenu");
    EXPECT_EQ(shell.Value("TemplateNameText"), "People");
    shell.Type("TemplateNameText", "Crew");
    shell.Press(Qt::Key_Return);
    EXPECT_EQ(made->TemplateName(), "Crew");
    EXPECT_EQ(shell.Find<QComboBox>("TemplateCombo").currentText(), "Crew");
}

TEST_F(ContainerFormsTest, ASubprojectIsAnotherMaster) {
    shell.platform.ExpectBox("No Projects in Memory", BoxAnswer::Ok);
    shell.Click("Toolbar.Subproject");
    Vproject* master = AddProject("Master");
    Vproject* part = AddProject("Part");
    auto* task = workspace.NewVObject<Vtask>();
    task->SetProject(part);
    task->SetTaskID(4);
    task->SetDescription("Dig");
    Vproject* third = AddProject("Third");

    workspace.SetThisProject(part);
    workspace.BroadcastNewThisProject();
    shell.Click("Toolbar.Subproject");
    auto& box = *shell.Dialog().findChild<QComboBox*>("ProjectCombo");
    EXPECT_EQ(shell.Value("TaskIdText"), "5");
    ASSERT_EQ(box.count(), 3);
    EXPECT_EQ(box.itemText(0) + box.itemText(1) + box.currentText(),
              "MasterThird<choose one of the following projects>");
    shell.Type("TaskIdText", "0");
    shell.ExpectRefused("No Project Selected", "Please select a parent project, or click [Cancel].",
                        "ProjectCombo");
    box.setCurrentText("Third");
    shell.Type("TaskIdText", "4");
    shell.ExpectRefused("Task ID In Use", "4: Dig", "TaskIdText");
    shell.Type("TaskIdText", "0");
    shell.ExpectRefused("Invalid Number", "from 1 to 999999999", "TaskIdText");
    shell.Type("TaskIdText", "9");
    shell.Click("OkCommand");
    EXPECT_EQ(third->Parent(), part);
    ASSERT_TRUE(part->FindTask(9));
    EXPECT_EQ(part->FindTask(9)->Subproject(), third);
    EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Restart);

    // A project cannot come to lie within itself.
    Link(*master, 1, *part);
    workspace.SetThisProject(third);
    workspace.BroadcastNewThisProject();
    shell.Click("Toolbar.Subproject");
    auto& again = *shell.Dialog().findChild<QComboBox*>("ProjectCombo");
    again.setCurrentText("Master");
    shell.ExpectRefused("Project Contains Itself", "Third is itself a part of Master", "ProjectCombo");
    shell.Click("CancelCommand");
    EXPECT_TRUE(third->TaskList().empty());
}

}  // namespace
}  // namespace vortan
