#include "shell/entry/FormBench.h"
#include "shell/entry/ResourceEntryForm.h"

namespace vortan {
namespace {

class RateCalculatorFormTest : public FormBench {
  protected:
    void Open(const char* burdenedRate) {
        Add<ResourceEntryForm>();
        resource = &shell.Dialog();
        shell.Type("BurdenedRateText", burdenedRate);
        shell.Click("RateCalculatorCommand");
    }
    std::string Rates() {
        return Values({"BurdenedRateText(0)", "OvertimeRateText", "OffDayRateText", "HolidayRateText"});
    }

    QDialog* resource = nullptr;
};

TEST_F(RateCalculatorFormTest, WorksOutTheRatesOfAWage) {
    Open("150");
    EXPECT_FALSE(resource->isEnabled());
    EXPECT_EQ(shell.Focus(), "HourlyRateText(0)");
    EXPECT_EQ(Values({"HourlyRateText(0)", "HourlyRateText(4)", "OverheadText(0)", "OverheadText(3)"}),
              "$100.00 $100.00 $50.00 $50.00");
    EXPECT_EQ(Rates(), "$150.00 $200.00 $250.00 $350.00");
    shell.Press(Qt::Key_Return);
    EXPECT_FALSE(shell.IsOpen("RateCalculatorForm"));
    EXPECT_EQ(shell.Focus(), "RateCalculatorCommand");
    EXPECT_EQ(Values({"BurdenedRateText", "OvertimeRateText", "OffDayRateText", "HolidayRateText"}),
              "$150.00 $200.00 $250.00 $350.00");
    EXPECT_FALSE(shell.main.Action("FileNewMenu").isEnabled()) << "the resource form still locks the rest";
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
        shell.Type(input.box, input.text);
        EXPECT_EQ(Rates(), input.rates);
        EXPECT_EQ(Enabled("OkCommand"), input.ok);
        shell.Type(input.box, before.c_str());
    }
    // Cancel takes nothing over, and the next time begins anew.
    shell.Type("OffDayMultiplierText", "9");
    shell.Press(Qt::Key_Escape);
    EXPECT_EQ(Values({"BurdenedRateText", "OffDayRateText"}), "$150.00 $0.00");
    shell.Click("RateCalculatorCommand");
    EXPECT_EQ(Value("OffDayMultiplierText"), "2");
    workspace.BroadcastNewThisTemplate();
    EXPECT_FALSE(shell.IsOpen("ResourceEntryForm"));
    EXPECT_FALSE(shell.IsOpen("RateCalculatorForm")) << "it has nobody to give its rates to";
}

TEST_F(RateCalculatorFormTest, NeedsABurdenedRateToBeginWith) {
    shell.platform.ExpectBox("Invalid Amount", BoxAnswer::Ok, "burdened rate");
    Open("a lot");
    EXPECT_FALSE(shell.IsOpen("RateCalculatorForm"));
    EXPECT_EQ(shell.Focus(), "BurdenedRateText");
}

}  // namespace
}  // namespace vortan
