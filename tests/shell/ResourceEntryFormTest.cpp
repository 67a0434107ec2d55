#include "shell/ResourceEntryForm.h"

#include "shell/Shell.h"

namespace vortan {
namespace {

class ResourceEntryFormTest : public ::testing::Test {
  protected:
    ResourceEntryFormTest() {
        owner->SetTemplateName("Plant");
        owner->AddJournal(shell.platform.now);
        owner->FindOrCreateShift("Standard");
        owner->FindOrCreateShift("Night");
        miller = owner->FindOrCreateResource(7);
        miller->SetDescription("Miller");
        miller->SetDepartment("Assembly");
        workspace.SetThisTemplate(owner);
        workspace.BroadcastNewThisTemplate();
        owner->SetDirty(false);
    }
    Node& NodeOf(Vresource* resource) { return shell.main.TheTrees().FindNodeFromObject(resource); }
    void Modify() {
        shell.main.TheTrees().SetDragNode(&NodeOf(miller));
        ResourceEntryForm::StartModify(shell.desktop);
    }
    std::string Value(const char* box) { return S(shell.Find<QLineEdit>(box).text()); }
    QComboBox& Combo(const char* box) { return shell.Find<QComboBox>(box); }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
    Vtemplate* owner = workspace.NewVObject<Vtemplate>();
    Vresource* miller;
};

TEST_F(ResourceEntryFormTest, ANewResourceJoinsTheTemplate) {
    owner->AddJournal(DateTime(shell.platform.now.Days() + 1));
    owner->FindOrCreateResource(8)->Delete();  // its number stays taken
    ResourceEntryForm::StartAdd(shell.desktop);
    EXPECT_EQ(shell.Focus(), "DescriptionText");
    EXPECT_EQ(Value("TemplateText"), "Plant");
    EXPECT_EQ(Value("ResourceIdText"), "9");
    EXPECT_EQ(Combo("ShiftCombo").currentText(), "Standard");
    EXPECT_EQ(Combo("DepartmentCombo").currentText(), "None");
    EXPECT_EQ(Combo("DepartmentCombo").count(), 1);
    shell.Type("DescriptionText", "Crane");
    shell.Type("DepartmentCombo", "Ass");
    shell.Type("TitleText", "Lifter");
    shell.Type("OvertimeRateText", "1234.5");
    shell.Type("HolidayRateText", "12.34");
    EXPECT_EQ(Value("OvertimeRateText"), "$1,234.50");
    Combo("ShiftCombo").setFocus();
    shell.Press(Qt::Key_Down);
    shell.Click("WorkDayCheck(7)");
    shell.Click("WorkDayCheck(2)");
    shell.Press(Qt::Key_Return);

    Vresource* crane = owner->FindResource(9);
    ASSERT_TRUE(crane);
    EXPECT_EQ(crane->BuildNodeText(), "9: Crane");
    EXPECT_EQ(crane->Department(), "Ass");
    EXPECT_EQ(crane->Title(), "Lifter");
    EXPECT_EQ(crane->Shift()->ShiftName(), "Night");
    EXPECT_EQ(crane->OvertimeRate(), Money::FromDouble(1234.5));
    EXPECT_EQ(crane->HolidayRate(), Money::FromDouble(12.34));
    for (int day = 0; day < kDayKinds; ++day) EXPECT_EQ(crane->WorkDay(day), day >= 3 && day <= 7);
    EXPECT_TRUE(owner->Dirty());
    EXPECT_EQ(NodeOf(crane).Parent->Text, "Ass");
    owner->SetCurrentIndex(0);
    EXPECT_FALSE(crane->Include());
}

TEST_F(ResourceEntryFormTest, WhatDoesNotFitIsRefused) {
    owner->FindOrCreateResource(8);
    Modify();
    const struct {
        const char *field, *text, *title, *fragment;
    } refused[] = {{"ResourceIdText", "", "Invalid Number", "whole number from 1 to 999999999"},
                   {"ResourceIdText", "0", "Invalid Number", "Resource ID"},
                   {"ResourceIdText", "1.5", "Invalid Number", "Resource ID"},
                   {"ResourceIdText", "1000000000", "Invalid Number", "Resource ID"},
                   {"ResourceIdText", "8", "Resource ID In Use", "The Resource ID 8 is already in use."},
                   {"DepartmentCombo", "", "Missing Department", "The department must be filled in."},
                   {"DepartmentCombo", "   ", "Missing Department", ""},
                   {"BurdenedRateText", "", "Invalid Amount", "burdened rate"},
                   {"OvertimeRateText", "much", "Invalid Amount", "overtime rate"},
                   {"OffDayRateText", "1e99", "Invalid Amount", "off day rate"},
                   {"HolidayRateText", "$", "Invalid Amount", "holiday rate"}};
    shell.Type("DescriptionText", "Other");
    for (const auto& one : refused) {
        SCOPED_TRACE(std::string(one.field) + " " + one.text);
        auto* combo = qobject_cast<QComboBox*>(&shell.Find<QWidget>(one.field));
        const QString before = combo ? combo->currentText() : shell.Find<QLineEdit>(one.field).text();
        shell.Type(one.field, one.text);
        shell.platform.ExpectBox(one.title, BoxAnswer::Ok, one.fragment);
        shell.Press(Qt::Key_Return);
        EXPECT_EQ(shell.Focus(), one.field);
        EXPECT_EQ(miller->Description(), "Miller");
        shell.Type(one.field, before.toUtf8());
    }
    EXPECT_FALSE(owner->Dirty());
    shell.Press(Qt::Key_Escape);
    EXPECT_EQ(miller->Description(), "Miller");

    Vtemplate* bare = workspace.FindOrCreateTemplate("Bare");
    bare->AddJournal(shell.platform.now);
    workspace.SetThisTemplate(bare);
    workspace.BroadcastNewThisTemplate();
    ResourceEntryForm::StartAdd(shell.desktop);
    shell.platform.ExpectBox("Missing Shift", BoxAnswer::Ok);
    shell.Press(Qt::Key_Return);
    EXPECT_EQ(shell.Focus(), "ShiftCombo");
    shell.Press(Qt::Key_Escape);
    EXPECT_TRUE(bare->ResourceList().empty());
}

TEST_F(ResourceEntryFormTest, TheNodeFollowsTheResource) {
    miller->SetBurdenedRate(Money::FromUnits(333333));
    Modify();
    EXPECT_EQ(Value("BurdenedRateText"), "$33.33");
    shell.Type("DescriptionText", "Smith");
    shell.Press(Qt::Key_Return);
    EXPECT_EQ(miller->BurdenedRate(), Money::FromUnits(333333)) << "what was not touched stays exact";
    const Node* selected = shell.main.TheTrees().DragNode();
    ASSERT_TRUE(selected);
    EXPECT_EQ(selected->Text, "7: Smith");

    Modify();
    shell.Type("DepartmentCombo", " Paint shop ");
    shell.Press(Qt::Key_Return);
    EXPECT_EQ(miller->Department(), "Paint shop");
    EXPECT_EQ(NodeOf(miller).Parent->Text, "Paint shop");

    Modify();
    shell.Type("ResourceIdText", "70");
    shell.Press(Qt::Key_Return);
    EXPECT_EQ(owner->FindResource(70), miller);
    EXPECT_EQ(NodeOf(miller).Text, "70: Smith");
    Modify();
    workspace.BroadcastNewJournal();
    EXPECT_FALSE(shell.IsOpen("ResourceEntryForm")) << "the selection it started from is gone";
}

}  // namespace
}  // namespace vortan
