#include <cmath>

#include "charts/CrashForm.h"
#include "charts/FixedMetrics.h"
#include "charts/PlotAxis.h"
#include "charts/RiskForm.h"
#include "reports/ChartTables.h"
#include "reports/CsvFile.h"
#include "support/ModelBench.h"

namespace vortan {
namespace {

constexpr double kMonday = 37137;
constexpr Color kProbability = 0x008000, kMostLikely = 0x000080, kCost = 0x800000;

TEST(PlotAxis, TheIncrementGivesAboutTenRows) {
    const std::pair<double, double> cases[] = {{0, 1},      {10, 1},    {11, 2},  {20, 2},
                                               {21, 5},     {50, 5},    {51, 10}, {100, 10},
                                               {1001, 200}, {2e6, 2e5}, {0.5, 1}, {-3, 1}};
    for (const auto& [maxValue, increment] : cases)
        EXPECT_EQ(ComputeIncrement(maxValue), increment) << maxValue;
}

/// The labels of the axis, and the lines of a colour in days and rows: "0 0 1.5 0" goes from the first moment
/// of the scale at value 0 to a day and a half later.
struct Plot {
    static std::string Labels(const Vwindow& surface) {
        std::string text;
        for (int row = 1; row < surface.Rows() - 1; ++row) text += std::string(surface.Cell(row, 0)) + " ";
        return text;
    }
    static std::string Lines(const Vwindow& surface, Color color) {
        const int base = surface.RowPos(surface.Rows() - 1), step = base - surface.RowPos(surface.Rows() - 2);
        std::string text;
        for (const DrawItem& item : surface.Items()) {
            if (item.kind != DrawItem::Kind::Line || item.border != color) continue;
            EXPECT_EQ(item.width, 2);
            text += text.empty() ? "" : "; ";
            text += Number(surface.XToDate(item.x1).Days() - kMonday) + " " +
                    Number(double(base - item.y1) / step) + " " +
                    Number(surface.XToDate(item.x2).Days() - kMonday) + " " +
                    Number(double(base - item.y2) / step);
        }
        return text;
    }
    static std::string Number(double value) {
        const double tenths = std::round(value * 10) / 10;
        std::string text = std::to_string(tenths == 0 ? 0.0 : tenths);
        text.resize(text.find('.') + 2);
        return text.ends_with(".0") ? text.substr(0, text.size() - 2) : text;
    }
};

/// A risk plot of results by hand: the most likely run first.
struct RiskBench : ModelBench {
    void Show(const std::vector<std::pair<double, int>>& runs) {
        results.riskDates.clear();
        results.riskCosts.clear();
        for (const auto& [day, cost] : runs) {
            results.riskDates.emplace_back(kMonday + day);
            results.riskCosts.push_back(Money::FromUnits(cost * Money::kUnit));
        }
        results.riskIterations = static_cast<std::int32_t>(runs.size()) - 1;
        form.Start();
    }
    void ShowCosts() {
        form.Frame().options[1].click(true);
        form.Start();
    }

    IterativeResults results;
    FixedMetrics metrics;
    RiskForm form{workspace, results, Money(), metrics};
    const Vwindow& surface = form.TheVwindow();
};

TEST(RiskFormTest, TheCurveClimbsToAllIterations) {
    RiskBench bench;
    bench.Show({{1.5, 100}, {0.5, 100}, {0.5, 110}, {2, 120}, {3, 130}});
    EXPECT_EQ(Plot::Labels(bench.surface), "100% 90% 80% 70% 60% 50% 40% 30% 20% 10% 0% ");
    // Two runs of one date are one rise, drawn in two pieces.
    EXPECT_EQ(
        Plot::Lines(bench.surface, kProbability),
        "0 0 0.5 0; 0.5 0 0.5 2.5; 0.5 2.5 0.5 5; 0.5 5 2 5; 2 5 2 7.5; 2 7.5 3 7.5; 3 7.5 3 10; 3 10 3 10");
    EXPECT_EQ(bench.surface.UpperLabels().size(), 1U) << "one month, in a scale that was made wider";
    const auto& items = bench.surface.Items();
    const auto line = std::find_if(items.begin(), items.end(),
                                   [](const DrawItem& item) { return item.border == kMostLikely; });
    ASSERT_EQ(items.end() - line, 3);  // line, name, triangle
    EXPECT_EQ(line->x1, bench.surface.DateToX(DateTime(kMonday + 1.5)));
    EXPECT_EQ(line->y1, bench.surface.RowPos(1));
    EXPECT_EQ(line->y2, bench.surface.RowPos(12) + 180);
    EXPECT_EQ(line[1].text, "Most likely");
    EXPECT_EQ(line[1].x1 + line[1].x2, 2 * line->x1);
    EXPECT_EQ(bench.form.TipAt(line->x1, bench.surface.RowPos(3)), "9/4/2001\n50% finish by then");
    const std::string csv = DataCsvOf(*TableOf(static_cast<const ChartForm&>(bench.form), "$"));
    EXPECT_EQ(csv.substr(0, 98),
              "Run,Finish,% by then,Total cost\r\nMost likely,9/4/2001 12:00:00 PM,,100\r\n"
              "1,9/3/2001 12:00:00 PM,25,");
}

TEST(RiskFormTest, PointsTooCloseToSeeArePassedOverButTheLast) {
    RiskBench bench;
    std::vector<std::pair<double, int>> runs(5001, {1, 100});
    for (std::size_t i = 1; i < runs.size(); ++i) runs[i].first = static_cast<double>(i) / 5000;
    bench.Show(runs);
    const auto lines = static_cast<int>(bench.surface.Items().size());
    EXPECT_LT(lines, 2000);
    const std::string text = Plot::Lines(bench.surface, kProbability);
    EXPECT_TRUE(text.ends_with(" 1 10; 1 10 1 10")) << text.substr(text.size() - 40);
    bench.Show({{0, 1}, {0, 1}});
    EXPECT_TRUE(Plot::Lines(bench.surface, kProbability).ends_with("0 10; 0 10 1 10"));
}

TEST(RiskFormTest, CostsAreGroupedByDay) {
    RiskBench bench;
    bench.Show({{1, 5}, {0.2, 3}, {0.9, 9}, {2.1, 12}, {2.2, 15}, {2.3, 12}});
    bench.ShowCosts();
    EXPECT_EQ(Plot::Labels(bench.surface), "$16.00 $14.00 $12.00 $10.00 $8.00 $6.00 $4.00 $2.00 $0.00 ");
    EXPECT_EQ(Plot::Lines(bench.surface, kCost), "0.5 4.5 0.5 1.5; 0.5 3 2.5 6.5; 2.5 7.5 2.5 6");
    // The axis keeps the highest cost of the run of the program.
    bench.Show({{1, 5}, {0.2, 3}});
    EXPECT_EQ(Plot::Labels(bench.surface), "$16.00 $14.00 $12.00 $10.00 $8.00 $6.00 $4.00 $2.00 $0.00 ");
    EXPECT_EQ(Plot::Lines(bench.surface, kCost), "0.5 1.5 0.5 1.5");
}

/// A crash curve by hand: records of task, part, multiplier, finish and cost.
struct CrashBench : ModelBench {
    CrashBench() {
        a = Project("A")->FindOrCreateTask(1);
        b = Project("B")->FindOrCreateTask(1);
        a2 = Project("A")->FindOrCreateTask(2);
        Add(nullptr, 0, 0, 10, 1000);
        Add(a, 0, 1.5, 8, 1100);
        Add(b, 0, 1.5, 7, 1150);
        Add(a, 50, 1.5, 6, 1200);
        Add(a, 0, 2, 5, 1350);
        Add(a2, 0, 1.5, 5, 1400);
        form.ShowCrashData = [this](DateTime finish, const std::vector<Vcrash>& multipliers) {
            shown = Plot::Number(finish.Days() - kMonday) + ":";
            for (const Vcrash& crash : multipliers)
                shown += " " + crash.task->Project()->ProjectName() + std::to_string(crash.task->TaskID()) +
                         "/" + std::to_string(crash.fromPercent) + "x" + Plot::Number(crash.multiplier);
        };
        form.Start();
    }
    void Add(Vtask* task, int from, double multiplier, double day, int cost) {
        crashList.push_back({task, from, 100, static_cast<float>(multiplier), DateTime(kMonday + day),
                             Money::FromUnits(cost * Money::kUnit)});
    }
    std::string Click(double day) {
        shown.clear();
        surface.Press(surface.DateToX(DateTime(kMonday + day)), surface.RowPos(2));
        return shown;
    }

    Vtask *a, *b, *a2;
    std::vector<Vcrash> crashList;
    FixedMetrics metrics;
    CrashForm form{workspace, crashList, metrics};
    Vwindow& surface = form.TheVwindow();
    std::string shown;
};

TEST(CrashFormTest, TheCurveBeginsAtTheFootOfTheAxis) {
    CrashBench bench;
    EXPECT_EQ(Plot::Labels(bench.surface),
              "$400.00 $350.00 $300.00 $250.00 $200.00 $150.00 $100.00 $50.00 $0.00 ");
    EXPECT_EQ(Plot::Lines(bench.surface, kCost), "10 0 8 2; 8 2 7 3; 7 3 6 4; 6 4 5 7; 5 7 5 8");
    bench.form.Frame().options[1].click(true);
    bench.form.Start();
    EXPECT_TRUE(Plot::Lines(bench.surface, kCost).starts_with("10 5 8 5.5; "));
}

TEST(CrashFormTest, AClickAsksForTheMultipliersOfADate) {
    CrashBench bench;
    EXPECT_EQ(bench.Click(6.5), "7: A1/0x1.5 B1/0x1.5");
    // The later part of a task first; the latest multiplier of a slice only.
    EXPECT_EQ(bench.Click(5.5), "6: A1/50x1.5 A1/0x1.5 B1/0x1.5");
    EXPECT_EQ(bench.Click(5), "5: A1/0x2 A1/50x1.5 A2/0x1.5 B1/0x1.5");
    EXPECT_EQ(bench.Click(9.5), "8: A1/0x1.5");  // never the starting point
    bench.b->Delete();
    bench.workspace.FreeVobject(bench.b);
    EXPECT_EQ(bench.Click(6.5), "7: A1/0x1.5");
    EXPECT_EQ(DataCsvOf(*TableOf(static_cast<const ChartForm&>(bench.form), "$")).substr(56, 69),
              "0,9/13/2001,1000,,,,,\r\n1,9/11/2001,1100,A: <stub>,1: <stub>,0,100,1.5");
    bench.crashList.resize(1);
    bench.form.Start();
    EXPECT_EQ(bench.Click(9.5), "");
}

}  // namespace
}  // namespace vortan
