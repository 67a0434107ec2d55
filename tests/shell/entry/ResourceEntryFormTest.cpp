#include "shell/entry/ResourceEntryForm.h"

#include "shell/entry/FormBench.h"

namespace vortan {
namespace {

class ResourceEntryFormTest : public FormBench {};

TEST_F(ResourceEntryFormTest, ANewResourceBeginsWithTheJournal) {
    plant->AddJournal(DateTime(37140));
    plant->FindOrCreateResource(8)->Delete();  // its number stays taken
    Add<ResourceEntryForm>();
    EXPECT_EQ(Value("ResourceIdText"), "9");
    Ok();
    EXPECT_TRUE(plant->FindResource(9)->Include());
    plant->SetCurrentIndex(0);
    EXPECT_FALSE(plant->FindResource(9)->Include());

    // A template without a shift, and a department that is blank, are no obstacle.
    UseTemplate(workspace.FindOrCreateTemplate("Bare"));
    Add<ResourceEntryForm>();
    Type("DepartmentCombo", "  ");
    Ok();
    const Vresource& bare = *workspace.ThisTemplate()->ResourceList()[0];
    EXPECT_EQ(bare.Department(), "None");
    EXPECT_EQ(bare.Shift(), nullptr);
}

TEST_F(ResourceEntryFormTest, TheNodeFollowsTheResource) {
    miller->SetBurdenedRate(Money::FromUnits(333333));
    Vshift* deleted = miller->Shift();
    deleted->Delete();
    plant->FindOrCreateShift("Night");
    Modify<ResourceEntryForm>(miller);
    EXPECT_EQ(Value("BurdenedRateText"), "$33.33");
    Type("DescriptionText", "Smith");
    Ok();
    EXPECT_EQ(miller->BurdenedRate(), Money::FromUnits(333333)) << "what was not touched stays exact";
    EXPECT_EQ(miller->Shift(), deleted);
    ASSERT_TRUE(TheTrees().DragNode());
    EXPECT_EQ(TheTrees().DragNode()->Text, "7: Smith");

    Modify<ResourceEntryForm>(miller);
    Type("DepartmentCombo", " Paint shop ");
    Ok();
    EXPECT_EQ(NodeOf(miller).Parent->Text, "Paint shop");

    Modify<ResourceEntryForm>(miller);
    Type("ResourceIdText", "70");
    Ok();
    EXPECT_EQ(plant->FindResource(70), miller);
    EXPECT_EQ(NodeOf(miller).Text, "70: Smith");
    Modify<ResourceEntryForm>(miller);
    workspace.BroadcastNewJournal();
    EXPECT_FALSE(IsOpen("ResourceEntryForm")) << "the selection it started from is gone";
}

class RateCalculatorFormTest : public FormBench {
  protected:
    void Open(const char* burdenedRate) {
        Add<ResourceEntryForm>();
        resource = &Dialog();
        Type("BurdenedRateText", burdenedRate);
        Click("RateCalculatorCommand");
    }
    std::string Rates() {
        return Values({"BurdenedRateText(0)", "OvertimeRateText", "OffDayRateText", "HolidayRateText"});
    }

    QDialog* resource = nullptr;
};

TEST_F(RateCalculatorFormTest, WorksOutTheRatesOfAWage) {
    Open("150");
    EXPECT_FALSE(resource->isEnabled());
    EXPECT_EQ(Focus(), "HourlyRateText(0)");
    EXPECT_EQ(Values({"HourlyRateText(0)", "HourlyRateText(4)", "OverheadText(0)", "OverheadText(3)"}),
              "$100.00 $100.00 $50.00 $50.00");
    EXPECT_EQ(Rates(), "$150.00 $200.00 $250.00 $350.00");
    Ok();
    EXPECT_FALSE(IsOpen("RateCalculatorForm"));
    EXPECT_EQ(Focus(), "RateCalculatorCommand");
    EXPECT_EQ(Values({"BurdenedRateText", "OvertimeRateText", "OffDayRateText", "HolidayRateText"}),
              "$150.00 $200.00 $250.00 $350.00");
    EXPECT_FALSE(main.Action("FileNewMenu").isEnabled()) << "the resource form still locks the rest";
    EXPECT_EQ(plant->ResourceList().size(), 1U);
}

TEST_F(RateCalculatorFormTest, OkNeedsAllNumbers) {
    Open("150");
    const struct {
        const char *box, *text, *rates;
        bool ok;
    } inputs[] = {{"HourlyRateText(0)", "", "   ", false},
                  {"BurdenedMultiplierText", "x", "   ", false},
                  {"OvertimeMultiplierText", "x", "$150.00  $250.00 $350.00", false},
                  {"OffDayMultiplierText", "", "$150.00 $200.00  $350.00", false},
                  {"HolidayMultiplierText", "3 or 4", "$150.00 $200.00 $250.00 ", false},
                  {"BurdenedMultiplierText", "0", "$0.00 $50.00 $100.00 $200.00", true},
                  {"HourlyRateText(0)", "1,000", "$1,500.00 $2,000.00 $2,500.00 $3,500.00", true}};
    for (const auto& input : inputs) {
        SCOPED_TRACE(std::string(input.box) + " " + input.text);
        const std::string before = Value(input.box);
        Type(input.box, input.text);
        EXPECT_EQ(Rates(), input.rates);
        EXPECT_EQ(Enabled("OkCommand"), input.ok);
        Type(input.box, before.c_str());
    }
    // Cancel takes nothing over, and the next time begins anew.
    Type("OffDayMultiplierText", "9");
    Cancel();
    EXPECT_EQ(Values({"BurdenedRateText", "OffDayRateText"}), "$150.00 $0.00");
    Click("RateCalculatorCommand");
    EXPECT_EQ(Value("OffDayMultiplierText"), "2");
    workspace.BroadcastNewThisTemplate();
    EXPECT_FALSE(IsOpen("ResourceEntryForm"));
    EXPECT_FALSE(IsOpen("RateCalculatorForm")) << "it has nobody to give its rates to";
}

TEST_F(RateCalculatorFormTest, NeedsABurdenedRateToBeginWith) {
    platform.ExpectBox("Invalid Amount", BoxAnswer::Ok, "burdened rate");
    Open("a lot");
    EXPECT_FALSE(IsOpen("RateCalculatorForm"));
    EXPECT_EQ(Focus(), "BurdenedRateText");
}

}  // namespace
}  // namespace vortan
