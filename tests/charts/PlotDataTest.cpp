#include <random>

#include "charts/FixedMetrics.h"
#include "charts/HistogramForm.h"
#include "charts/KeyColumns.h"
#include "cli/ChartData.h"
#include "cli/CliRun.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "reports/ChartTables.h"
#include "reports/CsvFile.h"
#include "support/Json.h"
#include "support/LoadedPlan.h"
#include "support/ModelBench.h"
#include "support/TextPlan.h"

namespace vortan {
namespace {

using Period = TimeScale::Period;
const FixedMetrics metrics;

template <class Form>
QJsonValue DataOf(const Form& form) {
    JsonWriter json;
    WriteChartJson(json, form.Data());
    return ParseJson(json.Line());
}

/// A plan of one resource.
std::string ShedText(const std::string& tasks) {
    return PlanText("template Crew; resource 1 \"Ann\" $50; project Shed rule 1; " + tasks);
}

std::string StemOfPlan(const std::string& path) {
    return path.substr(0, path.find('.', path.rfind('/')));
}

TEST(PlotData, GoldenPlansGiveTheKnownNumbers) {
    const auto tolerance = [](const QString&) { return 1e-6; };
    int compared = 0;
    for (const std::string& path : FilesIn(TestFile("golden/reports"), ".json")) {
        const bool histogram = path.ends_with(".histogram.json");
        if (!histogram && !path.ends_with(".budget.json")) continue;
        LoadedPlan plan(FileBytes(StemOfPlan(path) + ".vta"));
        HistogramForm hours(plan.workspace, plan.solver, metrics);
        BudgetForm costs(plan.workspace, metrics);
        hours.TheVwindow().FixedPeriod = Period::Day;
        // Twice: what the first start leaves must not matter.
        for (int i = 0; i < 2; ++i) histogram ? hours.Start() : costs.Start();
        const QJsonValue golden = ParseJson(FileBytes(path));
        EXPECT_EQ(JsonDifference(histogram ? DataOf(hours) : DataOf(costs), golden, tolerance), "") << path;
        ++compared;
    }
    EXPECT_EQ(compared, 12);
}

/// The shed, by default with a bar for each resource.
struct HistogramBench : LoadedPlan {
    explicit HistogramBench(const std::string& text = UsualShed()) : LoadedPlan(text) {}
    /// "Ann 40 28; Bob 20 8; = 60 36" in hours by period, built anew.
    std::string Hours(Period period) {
        form.TheVwindow().FixedPeriod = period;
        form.Start();
        std::string text;
        const auto add = [&](double hours) { text += " " + PlainNumber(hours); };
        for (const auto& row : form.Data().rows) {
            text += row.label;
            for (std::int32_t i = 0; i < form.Data().Periods(); ++i) {
                const auto* cell = form.Data().FindCell(row, i);
                cell ? add(double(cell->tenths) / 10) : void(text += " -");
            }
            text += "; ";
        }
        text += "=";
        for (const auto tenths : form.Data().totals) add(double(tenths) / 10);
        return text;
    }
    /// Of the tip in the middle of a bar that reaches from `low` to `high` hours.
    int Y(double low, double high) {
        const Vwindow& surface = form.TheVwindow();
        const int base = surface.RowPos(surface.Rows() - 1), step = base - surface.RowPos(surface.Rows() - 2);
        return base - int((low + high) / 2 / form.Data().increment * step);
    }

    HistogramForm form{workspace, solver, metrics};
};

TEST(HistogramFormTest, HoursAddUpByPeriod) {
    HistogramBench bench;
    // Weeks begin on Sunday the second: the first has five days of Ann.
    EXPECT_EQ(bench.Hours(Period::Week), "Ann 40 28; Bob 20 8; = 60 36");
    EXPECT_EQ(bench.form.Data().bounds.front(), 37136);
    EXPECT_EQ(bench.form.Data().maxHours, 60);
    EXPECT_EQ(bench.form.Data().increment, 10);
    EXPECT_EQ(bench.Hours(Period::Month), "Ann 68; Bob 28; = 96");
    EXPECT_TRUE(bench.Hours(Period::Day).starts_with("Ann 8 8 8 8 8 - - 8 8 8 "));
    bench.form.SetByDepartment(true);
    EXPECT_EQ(bench.Hours(Period::Week), "None 60 36; = 60 36");
    bench.form.SetFilter(HistogramFilter{{}, {2}});
    EXPECT_EQ(bench.Hours(Period::Week), "None 20 8; = 20 8");
    EXPECT_EQ(bench.form.Caption(), "Histogram for template Crew (filtered)");
    bench.form.SetFilter(HistogramFilter{{"None"}, {}});
    EXPECT_EQ(bench.Hours(Period::Week), "None 60 36; = 60 36");
    // Who is not included is not shown, whatever is booked.
    bench.form.SetFilter({});
    bench.Resource("Crew", 1)->Delete();
    EXPECT_EQ(bench.Hours(Period::Week), "None 20 8; = 20 8");
    EXPECT_EQ(ChoicesOf(*bench.workspace.ThisTemplate()).resources.size(), 1u);
    EXPECT_EQ(bench.form.Caption(), "Histogram for template Crew");
}

TEST(HistogramFormTest, AShortSlotMakesARowWithoutHours) {
    HistogramBench bench(ShedText("task 1 \"Look\" work 5 start by 1"));
    EXPECT_EQ(bench.Hours(Period::Day), "Ann 0; = 0");
    EXPECT_FALSE(bench.form.IsEmpty());
    EXPECT_EQ(bench.form.TheVwindow().Cell(1, 0), "0.0");
    EXPECT_EQ(bench.form.TheVwindow().Rows(), 3);  // heading, one row of the axis, key
}

TEST(HistogramFormTest, BarsStandOnEachOtherAndTellWhatTheyAre) {
    HistogramBench bench;
    bench.Hours(Period::Week);
    const Vwindow& surface = bench.form.TheVwindow();
    const int x = surface.ColPos(1) + 50, ann = bench.Y(0, 40), bob = bench.Y(40, 60);
    EXPECT_EQ(bench.form.TipAt(x, ann), "Ann\n9/2/2001 to 9/8/2001\n40.0 hours\n40.0: (Shed) 1: Dig");
    EXPECT_EQ(bench.form.TipAt(x, bob),
              "Bob\n9/2/2001 to 9/8/2001\n20.0 hours\n12.0: (Shed) 3: Drawings\n8.0: (Shed) 5: Walls");
    EXPECT_EQ(bench.form.SubjectAt(x, bob).resource, bench.Resource("Crew", 2));
    EXPECT_EQ(bench.form.TipAt(surface.ColPos(2) + 50, bob), "") << "above the bars of the second week";
    // First the bars, then the key; the first row is at the bottom.
    const auto& items = surface.Items();
    EXPECT_EQ(items[0].y2, surface.RowPos(surface.Rows() - 1));
    EXPECT_EQ(items[0].y1, items[2].y2);
    EXPECT_EQ(items[0].fill, 0xA0A0F0u);
    EXPECT_EQ(items[2].fill, 0xA0F0A0u);
    EXPECT_EQ(items[0].hatch, Hatch::Horizontal);
    bench.form.Frame().options[0].click(false);
    bench.form.Start();
    EXPECT_EQ(items[0].hatch, Hatch::Solid);
    EXPECT_FALSE(bench.form.Frame().options[0].on);
    EXPECT_LE(items.back().y2, surface.RowPos(surface.Rows())) << "the date line ends with the key";
}

TEST(HistogramFormTest, NothingToShowIsTold) {
    HistogramBench bench;
    bench.platform.ExpectBox("Empty Histogram", BoxAnswer::Ok, "There are no resources to display.");
    bench.form.SetFilter(HistogramFilter{});
    bench.form.Start();
    EXPECT_TRUE(bench.form.IsEmpty());
    EXPECT_EQ(bench.platform.statusMessages.back(), "");
    bench.platform.ExpectBox("No Templates in Memory", BoxAnswer::Ok);
    bench.workspace.SetThisTemplate(nullptr);
    bench.form.Start();
    EXPECT_TRUE(bench.form.IsEmpty());
}

/// The rule as it is told: entry by entry, for one more row at a time.
KeyColumns SlowKeyColumns(const std::vector<int>& widths, int first, int gap, int right) {
    for (int rows = 1;; ++rows) {
        KeyColumns columns{rows, {first}};
        int end = first;
        for (int i = 1; i <= int(widths.size()); ++i) {
            end = std::max(end, columns.left.back() + widths[std::size_t(i) - 1]);
            if (i < int(widths.size()) && i % rows == 0) columns.left.push_back(end + gap);
        }
        if (end < right || rows >= int(widths.size())) return columns;
    }
}

TEST(KeyColumns, AreAsFewRowsAsTheRoomAllows) {
    std::mt19937 random(7);
    for (int i = 0; i < 300; ++i) {
        std::vector<int> widths(1 + random() % 40);
        for (int& width : widths) width = int(random() % 900);
        const int right = int(random() % 6000);
        const KeyColumns fast = FitKeyColumns(widths, 100, 200, right);
        const KeyColumns slow = SlowKeyColumns(widths, 100, 200, right);
        EXPECT_EQ(fast.rows, slow.rows);
        if (fast.rows < int(widths.size())) {
            EXPECT_EQ(fast.left, slow.left);
        }
    }
}

TEST(BudgetChoice, WhatWasClickedLastStays) {
    const struct {
        const char *before, *clicked;
        bool replanned;
        const char* after;  ///< p plan, c current, e earned value, m material, l labor, t total
    } cases[] = {
        {"pcmlt", "", true, "pcmlt"},
        {"pcmlt", "CurrentCheck", false, "pmlt"},
        {"cmlt", "PlanCheck", false, "pmlt"},
        {"p", "TotalCostCheck", true, "pt"},
        {"m", "CurrentCheck", true, "pm"},
        {"pet", "EarnedValueCheck", true, "et"},
        {"pet", "PlanCheck", true, "pt"},
        {"cet", "CurrentCheck", true, "ct"},
        {"pcet", "", true, "et"},
        {"eml", "MaterialCostCheck", true, "em"},
        {"elt", "LaborCostCheck", true, "el"},
        {"eml", "EarnedValueCheck", true, "et"},
        {"e", "TotalCostCheck", true, "et"},
        {"cet", "CurrentCheck", false, "et"},
    };
    for (const auto& [before, clicked, replanned, after] : cases) {
        const auto has = [&](char c) { return std::string_view(before).find(c) != std::string_view::npos; };
        BudgetChoice choice{has('p'), has('c'), has('e'), {has('m'), has('l'), has('t')}, false};
        choice.ApplyRules(clicked, replanned);
        const std::pair<char, bool> now[] = {{'p', choice.plan},        {'c', choice.current},
                                             {'e', choice.earnedValue}, {'m', choice.costs[0]},
                                             {'l', choice.costs[1]},    {'t', choice.costs[2]}};
        std::string text;
        for (const auto& [letter, on] : now)
            if (on) text += letter;
        EXPECT_EQ(text, after) << before << " " << clicked;
    }
}

constexpr double kFriday = 37134;  // 31 August 2001

/// A project with a plan and a journal in force, whose results the test sets.
struct BudgetBench : ModelBench {
    BudgetBench() {
        project->AddJournal(DateTime(kFriday));
        project->AddJournal(DateTime(kFriday + 2));
        project->SetCurrentIndex(0);
        project->SetDescription("Garden");
        workspace.SetThisProject(project);
    }
    void Result(Vtask* task, int journal, double start, double finish, double material, double labor) {
        project->SetCurrentIndex(journal);
        task->SetEarlyStart(DateTime(kFriday + start));
        task->SetEarlyFinish(DateTime(kFriday + finish));
        task->SetMaterialCost(Money::FromDouble(material));
        task->SetLaborCost(Money::FromDouble(labor));
    }
    /// "Plan Total 0: 1 2.5; ..." with the first day behind the label, "|" behind a curve that is cut.
    std::string Sums() {
        form.Start();
        std::string text;
        for (const auto& curve : form.Data().curves) {
            text += (text.empty() ? "" : "; ") + std::string(curve.label) + " " +
                    PlainNumber(curve.firstDay - kFriday) + ":";
            for (const Money sum : curve.sums) text += " " + PlainNumber(sum.ToDouble());
            if (curve.cut) text += " |";
        }
        return text;
    }

    Vproject* project = workspace.FindOrCreateProject("Shed");
    BudgetForm form{workspace, metrics};
};

TEST(BudgetFormTest, CostsAddUpDayByDay) {
    BudgetBench bench;
    Vtask *a = bench.project->FindOrCreateTask(1), *b = bench.project->FindOrCreateTask(2);
    bench.Result(a, 0, 0.5, 3.5, 40, 8);  // a quarter on each of four days
    bench.Result(b, 0, 1, 2, 0, 7);       // ends at midnight: one day
    bench.Result(a, 1, 0.5, 2.5, 60, 0);
    bench.Result(b, 1, 1.5, 1.5, 100, 1);  // without duration
    EXPECT_EQ(bench.Sums(),
              "Plan Material 0: 10 20 30 40; Current Material 0: 20 40 60 |; Plan Labor 0: 2 11 13 15; "
              "Current Labor 0: 0 0 0 |; Plan Total 0: 12 31 43 55; Current Total 0: 20 40 60 |");
    EXPECT_EQ(bench.form.Caption(), "Plan and current for Shed: Garden");
    EXPECT_EQ(bench.form.Data().maxCost, Money::FromDouble(161));
    EXPECT_EQ(bench.form.Data().increment, 20);

    bench.form.SetChoice({false, false, true, {false, false, true}, true});
    EXPECT_EQ(bench.Sums(), "BCWS 0: 0 0 7 55; BCWP 0: 0 7 55; ACWP 0: 0 101 161");
    EXPECT_EQ(bench.form.Caption(), "Earned value for Shed: Garden");
    b->SetInclude(false);  // in the journal in force: it has earned nothing
    EXPECT_EQ(bench.Sums(), "BCWS 0: 0 0 7 55; BCWP 0: 0 0 48; ACWP 0: 0 0 60");
    bench.project->SetCurrentIndex(0);
    bench.form.SetChoice({});
    EXPECT_TRUE(bench.Sums().starts_with("Plan Material 0: 10 20 30 40; Plan Labor"));
}

TEST(BudgetFormTest, SharesAreRoundedToTheEvenTenThousandth) {
    BudgetBench bench;
    Vtask* task = bench.project->FindOrCreateTask(1);
    const std::pair<double, const char*> cases[] = {{0.0001, "Plan Material 0: 0 0"},
                                                    {0.0003, "Plan Material 0: 0.0002 0.0004"},
                                                    {-0.0003, "Plan Material 0: -0.0002 -0.0004"},
                                                    {0.0005, "Plan Material 0: 0.0002 0.0004"}};
    for (const auto& [cost, sums] : cases) {
        bench.Result(task, 0, 0, 1.5, cost, 0);
        bench.form.SetChoice({true, false, false, {true, false, false}, false});
        EXPECT_EQ(bench.Sums(), sums) << cost;
    }
}

TEST(BudgetFormTest, ACurveEndsAtTheJournalWithADotAtTheEndOfAll) {
    BudgetBench bench;
    Vtask* task = bench.project->FindOrCreateTask(1);
    bench.Result(task, 0, 0, 4, 400, 0);
    bench.Result(task, 1, 0, 5, 1000, 0);
    bench.form.SetChoice({true, true, false, {true, false, false}, false});
    bench.form.Start();
    const Vwindow& surface = bench.form.TheVwindow();
    const auto x = [&](double day) { return surface.DateToX(DateTime(kFriday + day)); };
    int drawnTo = 0, dot = 0;
    for (const DrawItem& item : surface.Items()) {
        if (item.border != 0x0000C8 || item.y1 > surface.RowPos(surface.Rows() - 1)) continue;
        if (item.kind == DrawItem::Kind::Line) drawnTo = std::max(drawnTo, item.x2);
        if (item.kind == DrawItem::Kind::Rect) dot = (item.x1 + item.x2) / 2;
    }
    EXPECT_EQ(drawnTo, x(2));
    EXPECT_EQ(dot, x(6));
    const auto y = [&](double cost) { return int(bench.form.CostToY(Money::FromDouble(cost))); };
    EXPECT_EQ(bench.form.TipAt(x(1.99), y(200)),
              "9/1/2001\nPlan Material: $200.00\nCurrent less plan: $200.00");
    EXPECT_EQ(bench.form.TipAt(x(1.5), y(900)), "");
    EXPECT_EQ(bench.form.TipAt(x(4.5), y(1000)), "") << "not drawn";
}

/// Names of 10,000 letters, of the right to left, of pictures; no cost; a century; nothing at all.
TEST(PlotForms, AnyPlanGivesAChart) {
    const std::string names[] = {std::string(10000, 'x'), "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D",
                                 "\xF0\x9F\x9A\xA7,\""};
    for (const std::string& name : names) {
        HistogramBench bench(ShedText(
            "task 1 \"Dig\" work 480 start by 1; task 2 \"Late\" work 480 after 1 start=9/3/2101_8:00 by 1"));
        bench.Resource("Crew", 1)->SetDescription(name);
        bench.Resource("Crew", 1)->SetDepartment(name);
        for (const bool byDepartment : {false, true}) {
            bench.form.SetByDepartment(byDepartment);
            bench.form.Start();
            EXPECT_EQ(DataOf(bench.form)["rows"].toArray().at(0)["label"].toString().toStdString(), name);
            const Vwindow& surface = bench.form.TheVwindow();
            EXPECT_EQ(surface.ContentWidth(), surface.ColPos(surface.Cols()))
                << "a key in the room that it has";
        }
        BudgetForm costs(bench.workspace, metrics);
        costs.Start();
        EXPECT_EQ(costs.Data().curves[0].sums.size(), 36527u) << "from a Monday to the one behind a weekend";
        EXPECT_LT(costs.TheVwindow().Items().size(), 100u) << "level days are one line";
    }
    LoadedPlan empty;
    BudgetForm(empty.workspace, metrics).Start();
    empty.Load(SmallPlan("Shed"));
    BudgetForm costs(empty.workspace, metrics);
    costs.Start();
    EXPECT_EQ(costs.Data().increment, 1);
    EXPECT_EQ(DataCsvOf(TableOf(costs.Data(), "")),
              "Date,Plan Material,Plan Labor,Plan Total\r\n12/31/1899,0,0,0\r\n");
}

TEST(ChartCsv, QuotesWhatNeedsIt) {
    HistogramBench bench;
    bench.Resource("Crew", 1)->SetDescription("Ann, \"A\"");
    bench.Hours(Period::Week);
    EXPECT_EQ(DataCsvOf(TableOf(bench.form.Data())),
              "Key,Label,9/2/2001,9/9/2001\r\n1,\"Ann, \"\"A\"\"\",40,28\r\n2,Bob,20,8\r\n,Total,60,36\r\n");
}

}  // namespace
}  // namespace vortan
