#include <QProgressBar>
#include <QRadioButton>

#include "shell/Shell.h"
#include "shell/pages/ChartPage.h"
#include "shell/widgets/ProgressForm.h"
#include "solve/WhyText.h"
#include "support/Paths.h"
#include "support/TextPlan.h"

namespace vortan {
namespace {

/// The plan of a house, solved; its rule lets it extend.
class IterativeCommandsTest : public ::testing::Test {
  protected:
    IterativeCommandsTest() {
        shell.desktop.files.LoadFile(ExampleFile("house.vta"));
        shell.Solve();
    }
    void Answer(const char* action, std::vector<const char*> answers) {
        for (const char* answer : answers) shell.platform.ExpectInput({*answer != 0, answer});
        shell.Choose(action);
    }
    std::string Page() { return shell.main.FullPage() ? S(shell.main.FullPage()->FormName()) : ""; }
    const IterativeResults& Results() { return shell.desktop.iterative.Results(); }

    Shell shell;
};

TEST_F(IterativeCommandsTest, ARiskSolveEndsInItsCurve) {
    shell.platform.ExpectBox("No Risk Data", BoxAnswer::Ok, "Please perform iterative risk solve first.");
    shell.Choose("GraphicsRiskAnalysisMenu");
    EXPECT_FALSE(shell.main.Action("GraphicsRiskAnalysisMenu").isChecked());

    Answer("IterativeDetailedRiskSolveMenu", {"50"});
    EXPECT_EQ(Page(), "RiskForm");
    EXPECT_EQ(Results().riskDates.size(), 51u);
    EXPECT_TRUE(shell.main.windowTitle().contains("50 iterations for House"));
    EXPECT_TRUE(shell.main.Action("GraphicsRiskAnalysisMenu").isChecked());
    EXPECT_TRUE(shell.platform.solveTimerArmed);
    shell.Solve();
    EXPECT_EQ(Page(), "RiskForm");

    const Vwindow& surface = shell.main.FullPage()->Surface()->surface;
    EXPECT_EQ(surface.ColumnTitle(0), "Probability");
    shell.Find<QRadioButton>("TotalCostOption").click();
    EXPECT_EQ(surface.ColumnTitle(0), "Total cost");
    auto& drivers = shell.Find<QTreeWidget>("DriversList");
    ASSERT_EQ(static_cast<std::size_t>(drivers.topLevelItemCount()), Results().drivers.size());
    EXPECT_EQ(S(drivers.topLevelItem(0)->text(0)), Results().drivers[0].task->BuildNodeText());
    shell.Find<QRadioButton>("TornadoOption").click();
    EXPECT_EQ(surface.ColumnTitle(0), "Task");
    EXPECT_EQ(surface.Cell(1, 0), Results().drivers[0].task->BuildNodeText());
    drivers.setCurrentItem(drivers.topLevelItem(0));
    QTest::keyClick(&drivers, Qt::Key_Return);
    EXPECT_EQ(Q(shell.Value("TaskIdText")), QString::number(Results().drivers[0].task->TaskID()));
    shell.Press(Qt::Key_Escape);
    shell.Find<QRadioButton>("TotalCostOption").click();
    Answer("IterativeQuickRiskSolveMenu", {"6.6"});
    EXPECT_EQ(static_cast<std::size_t>(shell.Find<QTreeWidget>("DriversList").topLevelItemCount()),
              Results().drivers.size());
    EXPECT_EQ(surface.ColumnTitle(0), "Total cost");
    EXPECT_TRUE(shell.main.windowTitle().contains("7 iterations"));
    shell.Choose("GraphicsRiskAnalysisMenu");
    EXPECT_EQ(Page(), "");
    shell.Choose("GraphicsRiskAnalysisMenu");
    EXPECT_EQ(Page(), "RiskForm");
    shell.desktop.workspace.BroadcastNewThisProject();
    EXPECT_EQ(Page(), "");
}

TEST_F(IterativeCommandsTest, AnswersThatAreNoNumberStop) {
    for (const char* answer : {"", "0", "0.5", "many"}) Answer("IterativeQuickRiskSolveMenu", {answer});
    EXPECT_TRUE(Results().riskDates.empty()) << "halves go to the even number";
    shell.platform.ExpectBox("Invalid Number", BoxAnswer::Ok);
    shell.platform.ExpectBox("Invalid Number", BoxAnswer::Ok);
    Answer("IterativeQuickRiskSolveMenu", {"2000000", "-3", ""});
    Answer("IterativeQuickCrashSolveMenu", {"0"});
    EXPECT_EQ(shell.platform.offered, "0.25");
    shell.platform.ExpectBox("Invalid Number", BoxAnswer::Ok, "from 0.1 to 1.0");
    Answer("IterativeQuickCrashSolveMenu", {"2", "0"});
    EXPECT_EQ(Page(), "");
    EXPECT_TRUE(Results().riskDates.empty());
    EXPECT_TRUE(Results().crashList.empty());
}

TEST_F(IterativeCommandsTest, AClickOnTheCrashCurveTellsTheMultipliers) {
    Answer("IterativeQuickCrashSolveMenu", {"0.5"});
    ASSERT_EQ(Page(), "CrashForm");
    auto& view = shell.Find<QAbstractScrollArea>("Vwindow");
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {view.viewport()->width() / 2, 100});
    ASSERT_TRUE(shell.IsOpen("CrashDataForm"));
    EXPECT_TRUE(shell.Dialog().windowTitle().startsWith("Crash to "));
    auto* form = dynamic_cast<ChildForm*>(&shell.Dialog());
    const Vwindow& table = form->Surface()->surface;
    EXPECT_EQ(table.ColumnTitle(2), "Multiplier");
    EXPECT_GT(table.Rows(), 1);
    EXPECT_TRUE(shell.main.Action("OutputCopyMenu").isEnabled());
    shell.Press(Qt::Key_Escape);
    EXPECT_FALSE(shell.IsOpen("CrashDataForm"));
    shell.desktop.workspace.BroadcastNewThisProject();
    EXPECT_EQ(Page(), "");
    shell.platform.ExpectBox("Crash Data Unavailable", BoxAnswer::Ok);
    shell.Choose("GraphicsCrashAnalysisMenu");
}

TEST_F(IterativeCommandsTest, AHaltingRuleIsToBeChangedFirst) {
    Workspace& workspace = shell.desktop.workspace;
    const Workspace::Quiet quiet(workspace);  // solved plans as they are
    workspace.ThisProject()->SetSolveRules(SolveRule::OvertimeHalt);
    const char* question = "The project House: Family house, 4 Orchard Lane has a solve rule that halts";
    shell.platform.ExpectBox("Halt Rule Must Be Changed", BoxAnswer::No, question);
    shell.Choose("IterativeDetailedCrashSolveMenu");
    EXPECT_FALSE(shell.IsOpen("ProjectEntryForm"));
    // The form is that of the active project, whatever project was named.
    workspace.ThisProject()->SetSolveRules(SolveRule::NormalExtend);
    workspace.FindOrCreateProject("Other")->SetSolveRules(SolveRule::DayHalt);
    shell.platform.ExpectBox("Halt Rule Must Be Changed", BoxAnswer::Yes, "The project Other");
    shell.Choose("IterativeDetailedCrashSolveMenu");
    ASSERT_TRUE(shell.IsOpen("ProjectEntryForm"));
    EXPECT_EQ(shell.Dialog().findChild<QLineEdit*>("ProjectNameText")->text(), "House");
}

TEST_F(IterativeCommandsTest, CancelLeavesEverythingAsItWas) {
    const DateTime finish = shell.desktop.workspace.ThisProject()->EarlyFinish();
    shell.desktop.iterative.SetProgressInterval(std::chrono::milliseconds(0));
    QTimer cancel;
    int shown = 0;
    QObject::connect(&cancel, &QTimer::timeout, [&] {
        auto* form = dynamic_cast<QDialog*>(QApplication::activeModalWidget());
        if (!form) return;
        EXPECT_TRUE(form->findChild<QProgressBar*>("ProgressBar"));
        if (++shown == 3) form->findChild<QPushButton*>("CancelCommand")->click();
    });
    cancel.start(0);
    Answer("IterativeDetailedRiskSolveMenu", {"100000"});
    EXPECT_EQ(shown, 3);
    EXPECT_EQ(Page(), "");
    EXPECT_TRUE(Results().riskDates.empty());
    EXPECT_EQ(shell.desktop.workspace.ThisProject()->EarlyFinish(), finish);
    EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Idle);
    EXPECT_EQ(shell.desktop.solver.SolveMessage(), "Solve complete");
}

/// As told, the long task of Ann comes first, and Ben waits for her short one.
TEST(ShortenCommand, FindsAnOrderThatIsKeptUndoneAndTakenBack) {
    Shell shell;
    MakePlan(shell.desktop.workspace, R"(template Crew; resource 1 "Ann"; resource 2 "Ben"; project P rule 1;
        task 1 work 4800 start by 1; task 2 work 480 start by 1; task 3 work 4800 after 2 by 2;
        task 4 work 0 after 1 after 3)");
    shell.Solve();
    Vproject& project = *shell.desktop.workspace.ThisProject();
    const DateTime told = project.EarlyFinish();
    shell.platform.ExpectInput({true, "0.05"});
    shell.platform.ExpectBox("Shorten", BoxAnswer::Ok, "instead of " + MomentText(told));
    shell.Choose("IterativeShortenMenu");
    shell.Solve();
    EXPECT_LT(project.EarlyFinish().Days(), told.Days());
    EXPECT_EQ(shell.desktop.solver.SolveMessage(), "Solve complete, in a shortened order");
    shell.Choose("IterativeToldOrderMenu");
    shell.Solve();
    EXPECT_EQ(project.EarlyFinish(), told);
    shell.Choose("EditUndoMenu");
    shell.Solve();
    EXPECT_LT(project.EarlyFinish().Days(), told.Days());
    EXPECT_TRUE(shell.platform.AllBoxesCame());
}

TEST(ProgressFormTest, TimeLeftIsRoundedUp) {
    std::string texts;
    for (const double seconds : {-1.0, 0.0, 1.2, 60.0, 61.0, 3600.0, 3601.0})
        texts += S(TimeLeftText(seconds)) + "|";
    EXPECT_EQ(texts,
              "|1 second left|2 seconds left|60 seconds left|2 minutes left|60 minutes left|2 hours left|");
}

}  // namespace
}  // namespace vortan
