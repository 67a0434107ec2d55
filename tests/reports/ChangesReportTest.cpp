#include "cli/CliRun.h"
#include "model/Vdependency.h"
#include "reports/Builders.h"
#include "support/LoadedPlan.h"

namespace vortan {
namespace {

/// Three journals, of which the others differ from the first.
void MakeJournals(LoadedPlan& plan, bool solveFirst = true) {
    plan.Make(R"(journals 9/3/2001 9/6/2001 9/10/2001; template Crew; resource 1; project Shed "Hut" rule 1
        task 1 "Same" days 1440 start; task 2 "Tie" days 1440 start; task 3 "Tie too" days 2880 start
        task 4 "Last" days 14400 start; task 5 "Gone" days 4320 start; task 6 "Dear" days 1440 start
        task 8 "Short" days 8640 start; task 9 "Noise" days 1440 start
        task 10 "End" days 60 after 5 after 1 after 2 after 3 after 4 after 6 after 8 after 9)");
    plan.Task("Shed", 5)->SetMaterialCost(Money::FromDouble(1));
    if (solveFirst) plan.Solve();
    plan.Make(R"(at 9/6/2001; task 2 days 2880; task 3 days 4320; task 4 days 14460; task 8 days 4320
        task 7 "New" days 5760 start=9/7/2001_8:00; task 10 after 7)");
    plan.Task("Shed", 7)->SetMaterialCost(Money::FromDouble(2));
    plan.Task("Shed", 10)->DependencyList()[0]->Delete();
    plan.Task("Shed", 5)->Delete();
    plan.Task("Shed", 6)->SetMaterialCost(Money::FromDouble(0.005));
    plan.Task("Shed", 9)->SetMaterialCost(Money::FromDouble(0.0049));
}

std::string RowsOf(const LoadedPlan& plan, std::int32_t from, std::int32_t to) {
    const Table table = BuildChangesSpreadsheet({plan.workspace, plan.solver, {}, from, to});
    std::string rows;
    for (std::int32_t row = 0; row < table.Rows(); ++row) {
        for (const int col : {0, 1, 2, 5, 8, 12}) rows += std::string(table.Cell(row, col).text) + "|";
        rows += "\n";
    }
    return table.caption.substr(table.caption.find("from")) + "\n" + rows;
}

TEST(ChangesReport, TellsWhatDiffersByEffectOnTheFinish) {
    LoadedPlan plan;
    MakeJournals(plan);
    plan.Solve();
    const std::string file = SaveRecords(plan.workspace);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(RowsOf(plan, -1, -1), R"(from 9/3/2001 to 9/6/2001 for Shed: Hut
4: Last|later, longer|0|1 hour|1 hour|$0.00|
10: End|later|1 hour|1 hour|0|$0.00|
7: New|added||||$2.00|
5: Gone|removed||||$-1.00|
8: Short|earlier, shorter|0|-3 days|-3 days|$0.00|
2: Tie|later, longer|0|1 day|1 day|$0.00|
3: Tie too|later, longer|0|1 day|1 day|$0.00|
6: Dear|dearer|0|0|0|$0.01|
Total|1 added, 1 removed, 4 later, 1 earlier, 3 longer, 1 shorter, 1 dearer|0|1 hour|1 hour|$1.01|
)");
    EXPECT_EQ(SaveRecords(plan.workspace), file);
    ExpectPart(RowsOf(plan, 1, 0),
               "7: New|removed||||$-2.00|\n5: Gone|added||||$1.00|\n8: Short|later, longer|");
    ExpectPart(RowsOf(plan, 1, 2), "Shed: Hut\nTotal|none|0|0|0|$0.00|");
}

TEST(ChangesReport, AJournalThatWasNeverSolvedIsNotCompared) {
    LoadedPlan plan;
    MakeJournals(plan, false);
    plan.Solve();
    const std::string rows = RowsOf(plan, 0, 1);
    ExpectPart(
        rows,
        "from 9/3/2001 (not solved) to 9/6/2001 for Shed: Hut\n7: New|added||||$2.00|\n1: Same|not solved|");
    ExpectPart(rows, "Total|1 added, 1 removed, 9 not solved|||||");
}

using ChangesCommand = CliFixture;

TEST_F(ChangesCommand, ComparesAnyTwoJournals) {
    LoadedPlan made;
    MakeJournals(made);
    const std::string plan = FileWith("shed.vta", SaveRecords(made.workspace));
    ExpectPart(Done({"report", "changes", plan}), "from 9/3/2001 to 9/6/2001 for Shed");
    ExpectPart(Done({"report", "changes", plan, "--from", "9/10/2001", "--to", "2001-09-03"}),
               "1 removed, 1 later, 4 earlier");
    ExpectPart(Done({"report", "changes", plan, "--from", "9/10/2001"}), "none");
    for (const auto& [from, complaint] : std::initializer_list<std::pair<const char*, const char*>>{
             {"9/4/2001", "no journal of 9/4/2001. It has: 9/3/2001, 9/6/2001, 9/10/2001."},
             {"soon", "\"soon\" is not a date."},
             {"9/6/2001", "both are that of 9/6/2001."}})
        ExpectPart(Refused({"report", "changes", plan, "--from", from}), complaint);
    EXPECT_EQ(Run({"report", "tasks", plan, "--from", "9/3/2001"}).exitCode, kExitUsage);
    const std::string unsolved = FileWith("u.vta", PlanText(R"(journals 9/3/2001 9/6/2001; template Crew
        project Shed "Hut" rule 1; task 1 days 1440 start; at 9/6/2001; task 1 days 2880)"));
    ExpectPart(Done({"report", "changes", unsolved, "--to", "9/6/2001"}), "1 later, 1 longer");
    const std::string one = FileWith("one.vta", UsualShed()), halted = FileWith("halted.vta", UsualShed(0));
    ExpectPart(Run({"report", "changes", halted}).err, "Overtime needed: Task 2");
    ExpectPart(Run({"report", "changes", one}).err, "Plan Equals Current");
}

}  // namespace
}  // namespace vortan
