#include "shell/entry/ResourceEntryForm.h"

#include "shell/entry/FormBench.h"

namespace vortan {
namespace {

class ResourceEntryFormTest : public FormBench {};

TEST_F(ResourceEntryFormTest, ANewResourceBeginsWithTheJournal) {
    plant->AddJournal(AddDays(shell.platform.now, 1));
    plant->FindOrCreateResource(8)->Delete();  // its number stays taken
    Add<ResourceEntryForm>();
    EXPECT_EQ(Value("ResourceIdText"), "9");
    shell.Press(Qt::Key_Return);
    EXPECT_TRUE(plant->FindResource(9)->Include());
    plant->SetCurrentIndex(0);
    EXPECT_FALSE(plant->FindResource(9)->Include());

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
