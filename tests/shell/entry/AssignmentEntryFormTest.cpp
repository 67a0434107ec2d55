#include "shell/entry/AssignmentEntryForm.h"

#include "model/ValueText.h"
#include "shell/entry/FormBench.h"
#include "shell/trees/ProjectTreeForm.h"

namespace vortan {
namespace {

class AssignmentEntryFormTest : public FormBench {
  protected:
    AssignmentEntryFormTest() {
        workspace.SetThisProject(task->Project());
        workspace.BroadcastNewThisProject();
        mills->SetDescription("Mills");
        mills->SetWorkDay(7, true);
        mills->SetWorkDay(2, false);
        mills->Shift()->SetMatrix(8, "NNNNNNXXXXXX");
        task->Project()->SetDirty(false);
    }
    void AddToTask() {
        shell.main.TheTrees().SetDragNode(&NodeOf(task));
        shell.Click("Toolbar.Assignment");
        WaitForForm();
    }
    Vassignment* Assign(Vresource* resource) {
        auto* made = workspace.NewVObject<Vassignment>();
        made->SetTask(task);
        made->SetResourceRequired(resource);
        shell.main.TheTrees().ProjectTree().RebuildTaskSubTree(*task, true);
        return made;
    }
    /// While the list of what matches is open, it gets the keys.
    void TypeResource(const char* text, Qt::Key end) {
        shell.Type("ResourceIdCombo", text);
        QWidget* list = QApplication::activePopupWidget();
        QTest::keyClick(list ? list : shell.Dialog().focusWidget(), end);
    }
    /// The kinds of day that are checked.
    std::string Days() {
        std::string days;
        for (const char* day : {"0", "1", "2", "3", "4", "5", "6", "7", "8"}) {
            if (shell.Find<QCheckBox>(std::string("WorkDayCheck(") + day + ")").isChecked()) days += day;
        }
        return days;
    }

    Vtask* task = workspace.FindOrCreateProject("Bridge")->FindOrCreateTask(5);
    Vresource* mills = plant->FindOrCreateResource(12);
};

TEST_F(AssignmentEntryFormTest, AResourceIsFoundByTypingAndBringsItsHours) {
    AddToTask();
    EXPECT_EQ(shell.Focus(), "ResourceIdCombo");
    EXPECT_EQ(Value("TaskText"), "5: <stub>");
    EXPECT_EQ(Combo("ResourceIdCombo").currentText(), "");
    EXPECT_EQ(Value("HoursText") + " " + Days(), "0 23456");
    TypeResource("mills", Qt::Key_Tab);
    EXPECT_EQ(Combo("ResourceIdCombo").currentText(), "12: Mills");
    EXPECT_EQ(Value("HoursText") + " " + Days(), "7.5 34567");
    shell.Type("HoursText", "4");
    shell.Click("WorkDayCheck(0)");
    shell.Click("OkCommand");

    ASSERT_EQ(task->AssignmentList().size(), 1U);
    EXPECT_EQ(NodeOf(task->AssignmentList()[0]).Text, "12: Mills @4 HoTuWeThFrSa");
    EXPECT_TRUE(task->Project()->Dirty());
}

TEST_F(AssignmentEntryFormTest, AnotherTemplateBecomesTheActiveOne) {
    Vtemplate* yard = AddTemplate("Yard");
    Vresource* crane = yard->FindOrCreateResource(7);
    Vassignment* assignment = Assign(mills);
    UseTemplate(yard);
    Modify<AssignmentEntryForm>(assignment);
    EXPECT_EQ(workspace.ThisTemplate(), plant) << "that of the resource";
    EXPECT_EQ(Combo("ResourceIdCombo").currentText(), "12: Mills");
    Combo("TemplateCombo").setFocus();
    shell.Press(Qt::Key_Down);
    EXPECT_EQ(workspace.ThisTemplate(), yard);
    EXPECT_EQ(Combo("ResourceIdCombo").currentText(), "");
    TypeResource("7", Qt::Key_Return);
    shell.Click("OkCommand");
    EXPECT_EQ(assignment->ResourceRequired(), crane);
    EXPECT_EQ(NodeOf(assignment).Text, "7: <stub> @8 MoTuWeThFr");
}

TEST_F(AssignmentEntryFormTest, AnyHoursAreKeptAsTyped) {
    Vassignment* assignment = Assign(mills);
    for (const double hours : {2.5, 0.0, 24.5, -1.0}) {
        for (const char* field : {"ResourceIdCombo", "HoursText"}) {
            Modify<AssignmentEntryForm>(assignment);
            shell.Type("HoursText", PlainNumber(hours).c_str());
            shell.Find<QWidget>(field).setFocus();
            shell.Press(Qt::Key_Return);
            EXPECT_FALSE(shell.IsOpen("AssignmentEntryForm"));
            EXPECT_EQ(assignment->Hours(), hours);
        }
    }
}

}  // namespace
}  // namespace vortan
