#include "shell/RateCalculatorForm.h"

#include "shell/ResourceEntryForm.h"
#include "shell/Shell.h"

namespace vortan {
namespace {

class RateCalculatorFormTest : public ::testing::Test {
  protected:
    RateCalculatorFormTest() {
        Vtemplate* owner = workspace.FindOrCreateTemplate("Plant");
        owner->AddJournal(shell.platform.now);
        owner->FindOrCreateShift("Standard");
        workspace.SetThisTemplate(owner);
        workspace.BroadcastNewThisTemplate();
        ResourceEntryForm::StartAdd(shell.desktop);
        resource = &shell.Dialog();
        EXPECT_TRUE(QTest::qWaitForWindowActive(resource));
    }
    void Open(const char* burdenedRate) {
        shell.Type("BurdenedRateText", burdenedRate);
        shell.Click("RateCalculatorCommand");
    }
    /// What the boxes of a form show, with blanks between.
    std::string Shown(std::vector<const char*> boxes) {
        std::string all;
        for (const char* box : boxes) {
            all += (all.empty() ? "" : " ") + S(shell.Find<QLineEdit>(box).text());
        }
        return all;
    }
    std::string Rates() {
        return Shown({"BurdenedRateText(0)", "OvertimeRateText", "OffDayRateText", "HolidayRateText"});
    }
    bool OkEnabled() { return shell.Find<QPushButton>("OkCommand").isEnabled(); }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
    QDialog* resource;
};

TEST_F(RateCalculatorFormTest, WorksOutTheRatesOfAWage) {
    Open("150");
    EXPECT_FALSE(resource->isEnabled());
    EXPECT_EQ(shell.Focus(), "HourlyRateText(0)");
    EXPECT_EQ(Shown({"HourlyRateText(0)", "HourlyRateText(4)", "OverheadText(0)", "OverheadText(3)"}),
              "$100.00 $100.00 $50.00 $50.00");
    EXPECT_EQ(Rates(), "$150.00 $200.00 $250.00 $350.00");
    shell.Press(Qt::Key_Return);
    EXPECT_FALSE(shell.IsOpen("RateCalculatorForm"));
    EXPECT_TRUE(resource->isEnabled());
    EXPECT_EQ(shell.Focus(), "RateCalculatorCommand");
    EXPECT_EQ(Shown({"BurdenedRateText", "OvertimeRateText", "OffDayRateText", "HolidayRateText"}),
              "$150.00 $200.00 $250.00 $350.00");
    EXPECT_FALSE(shell.main.Action("FileNewMenu").isEnabled()) << "the resource form still locks the rest";
    EXPECT_TRUE(workspace.ThisTemplate()->ResourceList().empty());
}

TEST_F(RateCalculatorFormTest, OkNeedsAllNumbers) {
    Open("150");
    const struct {
        const char *box, *text, *rates;
        bool ok;
    } inputs[] = {{"HourlyRateText(0)", "", "   ", false},
                  {"HourlyRateText(0)", "x", "   ", false},
                  {"BurdenedMultiplierText", "x", "   ", false},
                  {"OvertimeMultiplierText", "x", "$150.00  $250.00 $350.00", false},
                  {"OffDayMultiplierText", "", "$150.00 $200.00  $350.00", false},
                  {"HolidayMultiplierText", "3 or 4", "$150.00 $200.00 $250.00 ", false},
                  {"BurdenedMultiplierText", "0", "$0.00 $50.00 $100.00 $200.00", true},
                  {"HourlyRateText(0)", "1,000", "$1,500.00 $2,000.00 $2,500.00 $3,500.00", true}};
    for (const auto& input : inputs) {
        SCOPED_TRACE(std::string(input.box) + " " + input.text);
        const QString before = shell.Find<QLineEdit>(input.box).text();
        shell.Type(input.box, input.text);
        EXPECT_EQ(Rates(), input.rates);
        EXPECT_EQ(OkEnabled(), input.ok);
        shell.Type(input.box, before.toUtf8());
        EXPECT_TRUE(OkEnabled());
    }
    // Cancel takes nothing over, and the next time begins anew.
    shell.Type("OffDayMultiplierText", "9");
    shell.Press(Qt::Key_Escape);
    EXPECT_EQ(Shown({"BurdenedRateText", "OffDayRateText"}), "$150.00 $0.00");
    shell.Click("RateCalculatorCommand");
    EXPECT_EQ(Shown({"OffDayMultiplierText"}), "2");
    workspace.BroadcastNewThisTemplate();
    EXPECT_FALSE(shell.IsOpen("ResourceEntryForm"));
    EXPECT_FALSE(shell.IsOpen("RateCalculatorForm")) << "it has nobody to give its rates to";
    EXPECT_TRUE(shell.main.Action("FileNewMenu").isEnabled());
}

TEST_F(RateCalculatorFormTest, NeedsABurdenedRateToBeginWith) {
    shell.platform.ExpectBox("Invalid Amount", BoxAnswer::Ok, "burdened rate");
    Open("a lot");
    EXPECT_FALSE(shell.IsOpen("RateCalculatorForm"));
    EXPECT_EQ(shell.Focus(), "BurdenedRateText");
}

}  // namespace
}  // namespace vortan
