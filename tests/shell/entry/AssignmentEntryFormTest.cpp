#include "shell/entry/AssignmentEntryForm.h"

#include "shell/entry/FormBench.h"

namespace vortan {
namespace {

class AssignmentEntryFormTest : public FormBench {
  protected:
    AssignmentEntryFormTest() {
        mills->SetDescription("Mills");
        mills->SetWorkDay(7, true);
        mills->SetWorkDay(2, false);
        mills->Shift()->SetMatrix(8, "NNNNNNXXXXXX");
    }
    Vassignment* Assign() { return Task(5, "Dig", "by 12")->AssignmentList().front(); }
    /// While the list of what matches is open, it gets the keys.
    void TypeResource(const char* text, Qt::Key end) {
        Type("ResourceIdCombo", text);
        QWidget* list = QApplication::activePopupWidget();
        QTest::keyClick(list ? list : Dialog().focusWidget(), end);
    }
    /// The kinds of day that are checked.
    std::string Days() {
        std::string days;
        for (const char day : std::string("012345678"))
            if (Checked((std::string("WorkDayCheck(") + day + ")").c_str())) days += day;
        return days;
    }

    Vtask* task = Task(5, "Dig");
    Vresource* mills = plant->FindOrCreateResource(12);
};

TEST_F(AssignmentEntryFormTest, AResourceIsFoundByTypingAndBringsItsHours) {
    Select(task);
    Click("Toolbar.Assignment");
    WaitForForm();
    EXPECT_EQ(Focus(), "ResourceIdCombo");
    EXPECT_EQ(Value("TaskText"), "5: Dig");
    EXPECT_EQ(Chosen("ResourceIdCombo"), "");
    EXPECT_EQ(Value("HoursText") + " " + Days(), "0 23456");
    TypeResource("mills", Qt::Key_Tab);
    EXPECT_EQ(Chosen("ResourceIdCombo"), "12: Mills");
    EXPECT_EQ(Value("HoursText") + " " + Days(), "7.5 34567");
    Type("HoursText", "4");
    Click("WorkDayCheck(0)");
    Click("OkCommand");

    ASSERT_EQ(task->AssignmentList().size(), 1U);
    EXPECT_EQ(NodeOf(task->AssignmentList()[0]).Text, "12: Mills @4 HoTuWeThFrSa");
    EXPECT_TRUE(task->Project()->Dirty());
}

TEST_F(AssignmentEntryFormTest, AnotherTemplateBecomesTheActiveOne) {
    Vassignment* assignment = Assign();
    MakePlan(workspace, "template Yard; resource 7");
    Vtemplate* yard = workspace.TemplateList().Find("Yard");
    UseTemplate(yard);
    Modify<AssignmentEntryForm>(assignment);
    EXPECT_EQ(workspace.ThisTemplate(), plant) << "that of the resource";
    EXPECT_EQ(Chosen("ResourceIdCombo"), "12: Mills");
    Combo("TemplateCombo").setFocus();
    Press(Qt::Key_Down);
    EXPECT_EQ(workspace.ThisTemplate(), yard);
    EXPECT_EQ(Chosen("ResourceIdCombo"), "");
    TypeResource("7", Qt::Key_Return);
    Click("OkCommand");
    EXPECT_EQ(assignment->ResourceRequired(), yard->FindResource(7));
    EXPECT_EQ(NodeOf(assignment).Text, "7: <stub> @8 MoTuWeThFr");
}

TEST_F(AssignmentEntryFormTest, AnyHoursAreKeptAsTyped) {
    Vassignment* assignment = Assign();
    for (const double hours : {2.5, 0.0, 24.5, -1.0}) {
        for (const char* field : {"ResourceIdCombo", "HoursText"}) {
            Modify<AssignmentEntryForm>(assignment);
            Type("HoursText", PlainNumber(hours).c_str());
            Find<QWidget>(field).setFocus();
            Ok();
            EXPECT_FALSE(IsOpen("AssignmentEntryForm"));
            EXPECT_EQ(assignment->Hours(), hours);
        }
    }
}

}  // namespace
}  // namespace vortan
