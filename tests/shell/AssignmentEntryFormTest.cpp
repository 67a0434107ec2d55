#include "shell/AssignmentEntryForm.h"

#include "shell/ProjectTreeForm.h"
#include "shell/Shell.h"

namespace vortan {
namespace {

/// A project with one task; a template with Miller, Mills and a resource that has gone; another with a crane.
class AssignmentEntryFormTest : public ::testing::Test {
  protected:
    AssignmentEntryFormTest() {
        Vproject* project = workspace.FindOrCreateProject("Bridge");
        project->AddJournal(shell.platform.now);
        task = project->FindOrCreateTask(5);
        plant = AddTemplate("Plant");
        miller = AddResource(plant, 7, "Miller");
        mills = AddResource(plant, 12, "Mills");
        AddResource(plant, 20, "Gone")->Delete();
        mills->SetWorkDay(7, true);
        mills->SetWorkDay(2, false);
        mills->Shift()->SetMatrix(8, "NNNNNNXXXXXX");
        yard = AddTemplate("Yard");
        crane = AddResource(yard, 7, "Crane");
        workspace.SetThisProject(project);
        workspace.BroadcastNewThisProject();
        UseTemplate(plant);
        project->SetDirty(false);
    }
    Vtemplate* AddTemplate(const char* name) {
        Vtemplate* made = workspace.FindOrCreateTemplate(name);
        made->AddJournal(shell.platform.now);
        made->FindOrCreateShift("Standard");
        return made;
    }
    static Vresource* AddResource(Vtemplate* owner, int id, const char* name) {
        Vresource* made = owner->FindOrCreateResource(id);
        made->SetDescription(name);
        return made;
    }
    void UseTemplate(Vtemplate* one) {
        workspace.SetThisTemplate(one);
        workspace.BroadcastNewThisTemplate();
    }
    template <class T>
    Node& NodeOf(T* object) {
        return shell.main.TheTrees().FindNodeFromObject(object);
    }
    template <class T>
    void Select(T* object) {
        shell.main.TheTrees().SetDragNode(&NodeOf(object));
    }
    Vassignment* Assign(Vresource* resource) {
        auto* made = workspace.NewVObject<Vassignment>();
        made->SetTask(task);
        made->SetResourceRequired(resource);
        shell.main.TheTrees().ProjectTree().RebuildTaskSubTree(*task, true);
        return made;
    }
    QComboBox& Box(const char* name) { return *shell.Dialog().findChild<QComboBox*>(name); }
    std::string Hours() { return S(shell.Find<QLineEdit>("HoursText").text()); }
    /// The kinds of day that are checked.
    std::string Days() {
        std::string days;
        for (int day = 0; day < kDayKinds; ++day) {
            if (shell.Find<QCheckBox>("WorkDayCheck(" + std::to_string(day) + ")").isChecked()) {
                days += std::to_string(day);
            }
        }
        return days;
    }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
    Vtask* task;
    Vtemplate *plant, *yard;
    Vresource *miller, *mills, *crane;
};

TEST_F(AssignmentEntryFormTest, AResourceIsFoundByTypingAndBringsItsHours) {
    Select(task);
    AssignmentEntryForm::StartAdd(shell.desktop);
    EXPECT_EQ(shell.Focus(), "ResourceIdCombo");
    EXPECT_EQ(Box("TemplateCombo").currentText(), "Plant");
    EXPECT_EQ(Box("ResourceIdCombo").count(), 2);
    EXPECT_EQ(Box("ResourceIdCombo").currentText(), "");
    EXPECT_EQ(Hours(), "0");
    EXPECT_EQ(Days(), "23456");
    shell.Type("ResourceIdCombo", "mills");
    shell.Press(Qt::Key_Tab);
    EXPECT_EQ(Box("ResourceIdCombo").currentText(), "12: Mills");
    EXPECT_EQ(Hours(), "7.5");
    EXPECT_EQ(Days(), "34567");
    shell.Type("HoursText", "4");
    shell.Click("WorkDayCheck(0)");
    shell.Click("OkCommand");

    ASSERT_EQ(task->AssignmentList().size(), 1U);
    Vassignment* made = task->AssignmentList()[0];
    EXPECT_EQ(made->ResourceRequired(), mills);
    EXPECT_EQ(made->Hours(), 4);
    EXPECT_TRUE(made->WorkDay(0) && made->WorkDay(7) && !made->WorkDay(2));
    EXPECT_TRUE(task->Project()->Dirty());
    EXPECT_EQ(NodeOf(made).Text, "12: Mills @4 HoTuWeThFrSa");
}

TEST_F(AssignmentEntryFormTest, WhatDoesNotFitIsRefused) {
    Select(task);
    AssignmentEntryForm::StartAdd(shell.desktop);
    const struct {
        const char *field, *text, *title;
    } refused[] = {
        {"ResourceIdCombo", "", "Missing Resource"},   {"ResourceIdCombo", "Mill", "Missing Resource"},
        {"ResourceIdCombo", "20", "Missing Resource"}, {"ResourceIdCombo", "Crane", "Missing Resource"},
        {"HoursText", "", "Invalid Number"},           {"HoursText", "8h", "Invalid Number"},
        {"HoursText", "0", "Invalid Hours"},           {"HoursText", "-1", "Invalid Hours"},
        {"HoursText", "24.01", "Invalid Hours"}};
    for (const auto& one : refused) {
        SCOPED_TRACE(std::string(one.field) + " " + one.text);
        const bool ofResource = std::string(one.field) == "ResourceIdCombo";
        if (!ofResource) shell.Type("ResourceIdCombo", "7");
        shell.Type(one.field, one.text);
        shell.platform.ExpectBox(one.title, BoxAnswer::Ok);
        shell.Click("OkCommand");
        EXPECT_EQ(shell.Focus(), one.field);
        EXPECT_TRUE(task->AssignmentList().empty());
    }
    shell.Press(Qt::Key_Escape);
    EXPECT_FALSE(task->Project()->Dirty());

    shell.main.TheTrees().SetDragNode(nullptr);
    shell.platform.ExpectBox("Task Not Selected", BoxAnswer::Ok,
                             "You must click on a task before trying to add a new assignment.");
    AssignmentEntryForm::StartAdd(shell.desktop);
    EXPECT_FALSE(shell.IsOpen("AssignmentEntryForm"));
}

TEST_F(AssignmentEntryFormTest, AnotherTemplateBecomesTheActiveOne) {
    Vassignment* assignment = Assign(miller);
    Select(assignment);
    UseTemplate(yard);
    Select(assignment);
    AssignmentEntryForm::StartModify(shell.desktop);
    EXPECT_EQ(workspace.ThisTemplate(), plant) << "that of the resource";
    EXPECT_EQ(Box("ResourceIdCombo").currentText(), "7: Miller");
    Box("TemplateCombo").setFocus();
    shell.Press(Qt::Key_Down);
    EXPECT_EQ(workspace.ThisTemplate(), yard);
    EXPECT_TRUE(shell.IsOpen("AssignmentEntryForm"));
    EXPECT_EQ(Box("ResourceIdCombo").currentText(), "");
    shell.Type("ResourceIdCombo", "7");
    shell.Click("OkCommand");
    EXPECT_EQ(assignment->ResourceRequired(), crane);
    EXPECT_EQ(NodeOf(assignment).Text, "7: Crane @8 MoTuWeThFr");
}

TEST_F(AssignmentEntryFormTest, OkKeepsTheHoursOfTheSameResource) {
    Vassignment* assignment = Assign(miller);
    assignment->SetHours(2.5);
    for (const char* field : {"ResourceIdCombo", "HoursText"}) {
        Select(assignment);
        AssignmentEntryForm::StartModify(shell.desktop);
        EXPECT_EQ(Hours(), "2.5");
        shell.Find<QWidget>(field).setFocus();
        shell.Press(Qt::Key_Return);
        EXPECT_FALSE(shell.IsOpen("AssignmentEntryForm"));
        EXPECT_EQ(assignment->Hours(), 2.5);
    }
    Select(assignment);
    AssignmentEntryForm::StartModify(shell.desktop);
    shell.Type("HoursText", "3");
    shell.Press(Qt::Key_Escape);
    EXPECT_EQ(assignment->Hours(), 2.5);
}

}  // namespace
}  // namespace vortan
