#include "cli/CliRun.h"
#include "reports/Builders.h"
#include "support/LoadedPlan.h"

namespace vortan {
namespace {

/// Two journals that differ, and a third one like the second. Only task 4 decides the finish.
void MakeTwoJournals(LoadedPlan& plan) {
    plan.Make(
        "journals 9/3/2001 9/6/2001 9/10/2001; template Crew; resource 1 \"Ann\" $50; project Shed rule 1"
        "; task 1 \"Same\" clock 1440 start; task 2 \"Tie\" clock 1440 start"
        "; task 3 \"Tie too\" clock 2880 start; task 4 \"Last\" clock 14400 start"
        "; task 5 \"Gone\" clock 2880 start; task 6 \"Dear\" clock 1440 start"
        "; task 8 \"Short\" clock 8640 start; task 9 \"Noise\" clock 1440 start"
        "; task 10 \"Cent\" clock 1440 start");
    plan.Solve();
    plan.Make(
        "at 9/6/2001; task 2 clock 2880; task 3 clock 4320; task 4 clock 14460"
        "; task 7 \"New\" clock 4320 start=9/7/2001_8:00; task 8 clock 4320");
    plan.Task("Shed", 5)->Delete();
    plan.Task("Shed", 6)->SetMaterialCost(Money::FromDouble(5.005));
    plan.Task("Shed", 9)->SetMaterialCost(Money::FromDouble(0.0049));
    plan.Task("Shed", 10)->SetMaterialCost(Money::FromDouble(0.005));
}

std::string RowsOf(const LoadedPlan& plan, std::int32_t from, std::int32_t to) {
    const Table table = BuildChangesSpreadsheet({plan.workspace, plan.solver, {}, from, to});
    std::string rows;
    for (std::int32_t row = 0; row < table.Rows(); ++row) {
        for (const int col : {0, 1, 2, 5, 8, 12}) rows += table.Cell(row, col).text + "|";
        rows += "\n";
    }
    return table.caption.substr(table.caption.find("from")) + "\n" + rows;
}

TEST(ChangesReport, TellsWhatDiffersByEffectOnTheFinish) {
    LoadedPlan plan;
    MakeTwoJournals(plan);
    plan.Solve();
    for (int i = 0; i < 2; ++i) EXPECT_EQ(RowsOf(plan, -1, -1), "");
    EXPECT_EQ(RowsOf(plan, 1, 0), "");
    EXPECT_EQ(RowsOf(plan, 1, 2), "");
}

TEST(ChangesReport, AJournalThatWasNeverSolvedIsNotCompared) {
    LoadedPlan made, plan;
    MakeTwoJournals(made);
    for (Vtask* task : made.workspace.ThisProject()->TaskList()) (void)task;
    EXPECT_EQ(RowsOf(made, 0, 1), "");
}

using ChangesCommand = CliFixture;

TEST_F(ChangesCommand, ComparesAnyTwoJournals) {
    LoadedPlan made;
    MakeTwoJournals(made);
    const std::string plan = FileWith("shed.vta", SaveRecords(made.workspace));
    ExpectPart(Done({"report", "changes", plan}), "from 9/3/2001 to 9/6/2001 for Shed");
    ExpectPart(Done({"report", "changes", plan, "--from", "9/10/2001", "--to", "2001-09-03"}), "XX");
    ExpectPart(Done({"report", "changes", plan, "--from", "9/10/2001"}), "none");
    for (const auto& [from, complaint] : std::initializer_list<std::pair<const char*, const char*>>{
             {"9/4/2001", "no journal of 9/4/2001. It has: 9/3/2001, 9/6/2001, 9/10/2001."},
             {"soon", "\"soon\" is not a date."},
             {"9/6/2001", "both are that of 9/6/2001."}})
        ExpectPart(Refused({"report", "changes", plan, "--from", from}), complaint);
    EXPECT_EQ(Run({"report", "tasks", plan, "--from", "9/3/2001"}).exitCode, kExitUsage);
    const std::string one = FileWith("one.vta", UsualShed()), halted = FileWith("halted.vta", UsualShed(0));
    ExpectPart(Run({"report", "changes", one}).err, "Plan Equals Current");
}

}  // namespace
}  // namespace vortan
