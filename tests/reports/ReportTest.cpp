#include "reports/Table.h"

#include "charts/FixedMetrics.h"
#include "cli/CliRun.h"
#include "cli/ReportData.h"
#include "model/Vproject.h"
#include "reports/Builders.h"
#include "reports/CsvFile.h"
#include "reports/HtmlFile.h"
#include "support/Json.h"
#include "support/LoadedPlan.h"
#include "support/ModelBench.h"
#include "support/TextPlan.h"

namespace vortan {
namespace {

Table Build(const LoadedPlan& plan, const char* kind, DateTime month = {}) {
    return ReportKindOf(kind).build({plan.workspace, plan.solver, month});
}

std::string RowText(const Table& table, std::int32_t row) {
    std::string text;
    for (std::int32_t col = 0; col < table.Cols(); ++col) {
        const std::string cell(table.Cell(row, col).text);
        if (!cell.empty()) text += (text.empty() ? "" : "|") + cell;
    }
    return text;
}

std::string EmptyShed() {
    return PlanText("template Crew; resource 1 \"Ann\" $50; project Shed rule 1");
}

TEST(Reports, GoldenPlansGiveTheKnownTables) {
    const auto tolerance = [](const QString&) { return 1e-6; };
    int compared = 0;
    for (const std::string& file : FilesIn(TestFile("golden/reports"), ".vta")) {
        LoadedPlan plan(FileBytes(file));
        for (const ReportKind& kind : ReportKinds()) {
            if (kind.twoJournals) continue;
            const std::string answer = file.substr(0, file.size() - 3) + kind.name + ".json";
            const bool planOnly = std::string(kind.name) == "update" && PlanIsCurrent(plan.workspace);
            if (planOnly) plan.platform.ExpectBox("Plan Equals Current", BoxAnswer::Ok);
            EXPECT_EQ(MayBuild(plan.workspace, kind), !planOnly);
            if (planOnly) continue;
            const QJsonValue golden = ParseJson(FileBytes(answer));
            // Twice, and without a trace: journals, solution and file are as they were.
            for (int i = 0; i < 2; ++i) {
                const Table table = kind.build({plan.workspace, plan.solver});
                EXPECT_EQ(JsonDifference(ParseJson(ReportJson(kind, table)), golden, tolerance), "")
                    << answer;
            }
            EXPECT_TRUE(plan.Complete());
            EXPECT_FALSE(plan.workspace.ThisProject()->Dirty());
            ++compared;
        }
    }
    EXPECT_EQ(compared, 57);
}

TEST(Reports, EffortsAreToldInEveryUnit) {
    struct Case {
        std::int32_t units, optimistic, likely, pessimistic;
        const char* text;
    };
    ModelBench bench;
    Vtask* task = bench.Project("Shed", 2)->FindOrCreateTask(1);
    for (const Case& each :
         {Case{-60, 0, 60, 0, "1 hour"}, Case{0, 0, 0, 0, "0"}, Case{0, 0, 2880, 0, "2 days"},
          Case{0, 720, 1440, 2880, "0.5;1;2 days"}, Case{7, 0, 7, 0, "1 ???"},
          Case{-2147483647 - 1, 1, 0, 2, "0;0;0 ???"}, Case{7, 0, 0, 0, "0"}}) {
        task->SetEffortUnits(each.units);
        task->SetOptimistic(each.optimistic);
        task->SetMostLikely(each.likely);
        task->SetPessimistic(each.pessimistic);
        EXPECT_EQ(EffortText(*task, 1), each.text);
    }
    task->SetEffortUnits(-60);
    task->Project()->SetCurrentIndex(1);
    task->SetMostLikely(120);
    EXPECT_EQ(EffortText(*task, 0) + ", " + EffortText(*task, 1), "0, 2 hours");
    task->SetSubproject(bench.Project("Roof"));
    EXPECT_EQ(EffortText(*task, 0), "");
}

TEST(Reports, TotalsFollowWhatStandsAboveThem) {
    struct Case {
        const char *symbol, *totals;
    };
    for (const Case& each :
         {Case{"$", "Total|0|0|0"}, Case{"€", "Total|0|0|0"}, Case{"L", "Total|0|L0.00|0"}}) {
        LoadedPlan plan(EmptyShed());
        plan.platform.currencySymbol = each.symbol;
        const Table table = Build(plan, "summary");
        EXPECT_EQ(RowText(table, 0), each.totals);
        EXPECT_EQ(table.totalRows, table.Rows());
    }
    LoadedPlan plan(UsualShed());
    plan.platform.currencySymbol = "€";
    const Table table = Build(plan, "summary");
    EXPECT_EQ(RowText(table, 6), "Total|€0.00|€4,520.00|€4,520.00");
}

/// One task of so many minutes for Ann, from eight on.
std::string OneTask(int minutes, const std::string& project = "Shed") {
    return PlanText("template Crew; resource 1 \"Ann\" $50; project " + project +
                    " \"Garden shed\" rule 1; task 1 \"Dig\" work " + std::to_string(minutes) +
                    " start=9/3/2001_8:00 by 1");
}

TEST(Loading, HoursAreRoundedAsEachReportDoes) {
    struct Case {
        int minutes;
        const char *summary, *day, *dayTotal;
    };
    for (const Case& each :
         {Case{2, "0.0", "0.0", ""}, Case{3, "0.0", "0.1", "0.1"}, Case{15, "0.0", "0.3", "0.3"},
          Case{30, "0.0", "0.5", "0.5"}, Case{31, "1.0", "0.5", "0.5"}, Case{90, "2.0", "1.5", "1.5"},
          Case{150, "2.0", "2.5", "2.5"}, Case{243, "4.0", "4.1", "4.1"}, Case{241, "4.0", "4.0", "4.0"}}) {
        LoadedPlan plan(OneTask(each.minutes));
        const Table summary = Build(plan, "loading-by-resource"), byDay = Build(plan, "loading-by-day");
        ASSERT_EQ(summary.Rows(), 1) << each.minutes;
        EXPECT_EQ(summary.Cell(0, 9).text, each.summary) << each.minutes;
        EXPECT_EQ(summary.Cell(0, 5).text, std::string(each.summary) == "0.0" ? "" : each.summary);
        ASSERT_EQ(byDay.Rows(), 4) << each.minutes;
        EXPECT_EQ(byDay.Cell(2, 4).text, each.day) << each.minutes;
        EXPECT_EQ(byDay.Cell(3, 4).text, each.dayTotal) << each.minutes;
    }
}

TEST(Loading, RowsOfADayGroupByProjectWhateverItsName) {
    LoadedPlan plan(OneTask(60, "-x"));
    plan.Load(OneTask(60, "A"));
    plan.Solve();
    const Table table = Build(plan, "loading-by-day");
    std::string rows;
    for (std::int32_t row = 1; row < table.Rows(); ++row) rows += std::string(table.Cell(row, 1).text) + "; ";
    EXPECT_EQ(rows, "-x: Garden shed; - 1: Dig; A: Garden shed; - 1: Dig; Total; ");
}

TEST(Loading, TheMonthIsThatOfTheProjectOrTheBookingsOrToday) {
    LoadedPlan plan(OneTask(60));
    const auto shown = [&](DateTime month = {}) {
        return MonthText(Build(plan, "loading-by-day", month).month);
    };
    const DateTime march = FromParts({2002, 3, 15});
    EXPECT_EQ(shown(), "September 2001");
    EXPECT_EQ(shown(march), "March 2002");
    plan.platform.now = march;
    plan.workspace.SetThisProject(nullptr);
    EXPECT_EQ(shown(), "September 2001");
    plan.workspace.FreeAllMemory();
    EXPECT_EQ(shown(), "March 2002");

    struct Case {
        DateParts month;
        const char *before, *after;
        int columns;
    };
    for (const Case& each : {Case{{2001, 1, 31}, "December 2000", "February 2001", 33},
                             Case{{2001, 2, 1}, "January 2001", "March 2001", 30},
                             Case{{2000, 12, 31}, "November 2000", "January 2001", 33},
                             Case{{9999, 12, 1}, "November 9999", "December 9999", 33},
                             Case{{100, 1, 1}, "January 100", "February 100", 33}}) {
        const DateTime month = FromParts(each.month);
        EXPECT_EQ(MonthText(MonthBefore(month)), each.before);
        EXPECT_EQ(MonthText(MonthAfter(month)), each.after);
        EXPECT_EQ(Build(plan, "loading-by-day", month).Cols(), each.columns);
    }
}

TEST(Loading, NobodyBookedGivesNoRows) {
    LoadedPlan plan(EmptyShed());
    for (const char* kind :
         {"loading-by-resource", "loading-by-project", "overtime", "overload", "tasks", "date-dependencies"})
        EXPECT_EQ(Build(plan, kind).Rows(), 0) << kind;
    EXPECT_EQ(Build(plan, "loading-by-day").Rows(), 1);
}

/// Three rows and a total; the middle one has no amount.
Table SmallTable(const std::string& name = "10: b") {
    Table table("Costs & more", {{"Name", Alignment::Left}, {"To\r\npay", Alignment::Right}}, 1);
    RowWriter(table).Text(name).Amount(Money::FromUnits(90000), "$");
    RowWriter(table).Text("9: a");
    RowWriter(table).Text("c").Amount(Money::FromUnits(123456789), "$");
    RowWriter(table).Text("Total").Amount(Money::FromUnits(123546789), "$");
    table.totalRows = 1;
    return table;
}

TEST(TableTest, RowsSortByValuesAndTotalsStay) {
    using Order = std::vector<std::int32_t>;
    const Table table = SmallTable();
    EXPECT_EQ(table.SortedRows(1, false), (Order{0, 2, 1, 3}));
    EXPECT_EQ(table.SortedRows(1, true), (Order{2, 0, 1, 3}));
    EXPECT_EQ(table.SortedRows(0, false), (Order{1, 0, 2, 3}));
    LoadedPlan plan(UsualShed());
    const Table summary = Build(plan, "summary");
    std::string durations;
    for (const auto row : summary.SortedRows(7, false))
        durations += std::string(summary.Cell(row, 7).text) + ";";
    EXPECT_EQ(durations, "1.04 days;2.17 days;3 days;5.21 days;1.05 weeks;1.34 weeks;;");
    const FixedMetrics metrics;
    Vwindow surface(Vwindow::Style::Table, metrics);
    FillSurface(surface, table, table.SortedRows(0, false));
    EXPECT_EQ(
        std::string(surface.Cell(1, 0)) + std::string(surface.Cell(2, 0)) + std::string(surface.Cell(4, 1)),
        "9: a10: b$12,354.68");
    EXPECT_TRUE(surface.IsComplete());
}

TEST(TableTest, NoTextComesAliveInAFile) {
    struct Case {
        const char* text;
        bool guarded;
    };
    for (const Case& each : {Case{"=1+1", true}, Case{"+1", true}, Case{"@SUM(A1)", true}, Case{"-1+1", true},
                             Case{"- 5: 6", true}, Case{"-", true}, Case{"\t=1", true}, Case{"-1 A1", true},
                             Case{"-1.48 months", false}, Case{"-1", false}, Case{"a=b", false},
                             Case{"\xD7\xA9=", false}, Case{"$-1.00", false}}) {
        const Table table = SmallTable(each.text);
        EXPECT_EQ(CsvOf(table).find(std::string("\n'") + each.text) != std::string::npos, each.guarded)
            << each.text;
        EXPECT_EQ(HtmlOf(table).find("<td class=\"t\">&#8203;") != std::string::npos, each.guarded)
            << each.text;
    }
}

TEST(TableTest, FilesSayWhatTheTableSays) {
    EXPECT_EQ(CsvOf(SmallTable("say \"hi\",\r\nx")),
              "\xEF\xBB\xBFName,To pay\r\n\"say \"\"hi\"\",\r\nx\",$9.00\r\n9: a,\r\nc,\"$12,345.68\"\r\n"
              "Total,\"$12,354.68\"\r\n");
    const std::string html = HtmlOf(SmallTable("<script>\x01\"&\r\nx"));
    ExpectPart(html, "<td>&lt;script&gt; &quot;&amp;<br>x</td>");
    ExpectPart(html, "<title>Costs &amp; more</title>");
    ExpectPart(html, "<td sdval=\"12345.6789\" sdnum=\"1033;1033;#,##0.00\">$12,345.68</td>");
    EXPECT_EQ(TitleLine("M\r\no\r\nn") + TitleLine("Off day\r\nrate"), "MonOff day rate");
}

}  // namespace
}  // namespace vortan
