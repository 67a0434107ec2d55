#include "shell/entry/ResourceEntryForm.h"

#include "shell/entry/FormBench.h"

namespace vortan {
namespace {

class ResourceEntryFormTest : public FormBench {};

TEST_F(ResourceEntryFormTest, ANewResourceJoinsTheTemplate) {
    plant->FindOrCreateShift("Night");
    plant->AddJournal(AddDays(shell.platform.now, 1));
    plant->FindOrCreateResource(8)->Delete();  // its number stays taken
    Add<ResourceEntryForm>();
    EXPECT_EQ(shell.Focus(), "DescriptionText");
    EXPECT_EQ(Values({"TemplateText", "ResourceIdText"}), "Plant 9");
    EXPECT_EQ(Combo("ShiftCombo").currentText(), "Standard");
    EXPECT_EQ(Combo("DepartmentCombo").currentText(), "None");
    EXPECT_EQ(Combo("DepartmentCombo").count(), 1);
    shell.Type("DescriptionText", "Crane");
    shell.Type("DepartmentCombo", "Ass");
    shell.Type("OvertimeRateText", "1234.5");
    shell.Type("HolidayRateText", "12.34");
    EXPECT_EQ(Value("OvertimeRateText"), "$1,234.50");
    Combo("ShiftCombo").setFocus();
    shell.Press(Qt::Key_Down);
    shell.Click("WorkDayCheck(7)");
    shell.Click("WorkDayCheck(2)");
    shell.Press(Qt::Key_Return);

    Vresource* crane = plant->FindResource(9);
    ASSERT_TRUE(crane);
    EXPECT_EQ(crane->Shift()->ShiftName(), "Night");
    EXPECT_EQ(crane->OvertimeRate(), Money::FromDouble(1234.5));
    EXPECT_EQ(crane->HolidayRate(), Money::FromDouble(12.34));
    for (int day = 0; day < kDayKinds; ++day) EXPECT_EQ(crane->WorkDay(day), day >= 3 && day <= 7);
    EXPECT_TRUE(plant->Dirty());
    EXPECT_EQ(NodeOf(crane).Text, "9: Crane");
    EXPECT_EQ(NodeOf(crane).Parent->Text, "Ass");
    plant->SetCurrentIndex(0);
    EXPECT_FALSE(crane->Include());
}

TEST_F(ResourceEntryFormTest, WhatDoesNotFitIsRefused) {
    plant->FindOrCreateResource(8);
    Modify<ResourceEntryForm>(miller);
    const Refused refused[] = {
        {"ResourceIdText", "", "Invalid Number", "whole number from 1 to 999999999"},
        {"ResourceIdText", "1.5", "Invalid Number", "Resource ID"},
        {"ResourceIdText", "8", "Resource ID In Use", "The Resource ID 8 is already in use."},
        {"DepartmentCombo", "", "Missing Department", "The department must be filled in."},
        {"BurdenedRateText", "", "Invalid Amount", "burdened rate"},
        {"OvertimeRateText", "much", "Invalid Amount", "overtime rate"},
        {"OffDayRateText", "1e99", "Invalid Amount", "off day rate"},
        {"HolidayRateText", "$", "Invalid Amount", "holiday rate"}};
    shell.Type("DescriptionText", "Other");
    for (const auto& one : refused) ExpectRefused(one);
    shell.Type("ResourceIdText", "");
    ExpectRefused({"DepartmentCombo", "", "Missing Department", ""});  // comes first
    shell.Press(Qt::Key_Escape);
    EXPECT_EQ(miller->Description(), "Miller");
    EXPECT_FALSE(plant->Dirty());

    // A template without a shift, and a department that is blank, are no obstacle.
    UseTemplate(workspace.FindOrCreateTemplate("Bare"));
    Add<ResourceEntryForm>();
    shell.Type("DepartmentCombo", "  ");
    shell.Press(Qt::Key_Return);
    ASSERT_EQ(workspace.ThisTemplate()->ResourceList().size(), 1U);
    EXPECT_EQ(workspace.ThisTemplate()->ResourceList()[0]->Department(), "None");
    EXPECT_EQ(workspace.ThisTemplate()->ResourceList()[0]->Shift(), nullptr);
}

TEST_F(ResourceEntryFormTest, TheNodeFollowsTheResource) {
    miller->SetBurdenedRate(Money::FromUnits(333333));
    Vshift* deleted = miller->Shift();
    deleted->Delete();
    plant->FindOrCreateShift("Night");
    Modify<ResourceEntryForm>(miller);
    EXPECT_EQ(Value("BurdenedRateText"), "$33.33");
    shell.Type("DescriptionText", "Smith");
    shell.Press(Qt::Key_Return);
    EXPECT_EQ(miller->BurdenedRate(), Money::FromUnits(333333)) << "what was not touched stays exact";
    EXPECT_EQ(miller->Shift(), deleted);
    ASSERT_TRUE(shell.main.TheTrees().DragNode());
    EXPECT_EQ(shell.main.TheTrees().DragNode()->Text, "7: Smith");

    Modify<ResourceEntryForm>(miller);
    shell.Type("DepartmentCombo", " Paint shop ");
    shell.Press(Qt::Key_Return);
    EXPECT_EQ(NodeOf(miller).Parent->Text, "Paint shop");

    Modify<ResourceEntryForm>(miller);
    shell.Type("ResourceIdText", "70");
    shell.Press(Qt::Key_Return);
    EXPECT_EQ(plant->FindResource(70), miller);
    EXPECT_EQ(NodeOf(miller).Text, "70: Smith");
    Modify<ResourceEntryForm>(miller);
    workspace.BroadcastNewJournal();
    EXPECT_FALSE(shell.IsOpen("ResourceEntryForm")) << "the selection it started from is gone";
}

}  // namespace
}  // namespace vortan
