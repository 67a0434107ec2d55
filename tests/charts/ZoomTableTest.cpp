#include "charts/ZoomTable.h"

#include "charts/FixedMetrics.h"
#include "support/LoadedPlan.h"

namespace vortan {
namespace {

constexpr int kYear = 2001;

class ZoomTableTest : public ::testing::Test {
  protected:
    /// Makes tasks from Monday on, behind which 99 ends.
    void Solve(const std::string& words) {
        plan.Make(words);
        plan.Solve();
    }
    /// The keys of the days from the third of September on.
    std::string Keys(int days) {
        const auto keys = DayKeysOfYear(plan.solver, kYear);
        const auto first = static_cast<std::size_t>(37137 - FromParts({kYear, 1, 1}).Days());
        std::string text;
        for (std::size_t i = 0; i < static_cast<std::size_t>(days); ++i)
            text += std::to_string(keys.at(first + i));
        return text;
    }
    /// The rows of a day, each with its colour behind it.
    std::string Table(bool showResource, const Vresource& resource, double day) {
        Vwindow window(Vwindow::Style::Table, metrics);
        StartZoomVwindow(window, showResource);
        FillInZoomVwindow(window, showResource, plan.solver, resource, DateTime(day));
        window.EndLayout(0, 0);
        std::string text;
        for (int row = 1; row < window.Rows(); ++row) {
            for (int col = 0; col < window.Cols(); ++col) text += std::string(window.Cell(row, col)) + "|";
            char color[16];
            std::snprintf(color, sizeof color, "%06X\n", window.CellColor(row, window.Cols() - 1));
            text += color;
        }
        return text;
    }

    LoadedPlan plan;
    FixedMetrics metrics;
    Vtemplate* plant = MakePlan(plan.workspace, R"(template Plant; resource 7 "Miller"
                                                   project House rule 6; task 99 start)")
                           .ThisTemplate();
};

TEST_F(ZoomTableTest, TheMostDemandingBookingOfADayCounts) {
    plan.Solve();
    EXPECT_EQ(Keys(7), "1111122") << "nothing booked";
    Solve("task 1 work 1200 start by 7; task 99 after 1");
    EXPECT_EQ(Keys(7), "3331122");
    // A second task on the same resource takes its overtime, and then what is left of the day.
    Solve("task 2 work 480 start by 7; task 3 work 960 start by 7; task 99 after 2 after 3");
    EXPECT_EQ(Keys(2), "93");
    // Weekends are normal time for those who work then, off days for those who are made to.
    plan.Make("resource 8");
    Vresource* night = plant->FindResource(8);
    for (int day = 1; day <= 7; ++day) night->SetWorkDay(day, day >= 6 || day == 1);
    Solve("task 4 work 1800 start by 8; task 99 after 4");
    EXPECT_EQ(Keys(7).substr(4), "333");
    night->SetWorkDay(7, false);
    plan.Task("House", 4)->AssignmentList().front()->SetWorkDay(7, true);
    plan.Solve();
    EXPECT_EQ(Keys(7).substr(4), "343");
    night->Delete();
    EXPECT_EQ(Keys(7).substr(4), "322");
}

TEST_F(ZoomTableTest, RowsAreTheSlotsThatTasksHold) {
    Solve("task 1 \"Dig\" work 360 start by 7; task 99 after 1");
    const Vresource& miller = *plant->FindResource(7);
    const std::string morning = "8:00:00 AM|12:00:00 PM|House: <stub>|1: Dig|Normal|C0FFC0\n";
    const std::string noon = "1:00:00 PM|3:00:00 PM|House: <stub>|1: Dig|Normal|C0FFC0\n";
    EXPECT_EQ(Table(false, miller, 37137), morning + noon);
    EXPECT_EQ(Table(true, miller, 37137.9), "Plant|7: Miller|" + morning + "Plant|7: Miller|" + noon);
    EXPECT_EQ(Table(true, miller, 37138) + Table(true, miller, 99999), "");
}

}  // namespace
}  // namespace vortan
