#include "charts/ZoomTable.h"

#include "charts/FixedMetrics.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "support/LoadedPlan.h"

namespace vortan {
namespace {

constexpr int kYear = 2001;

/// Tasks from Monday 2001-09-03 on, each with one resource of its own.
class ZoomTableTest : public ::testing::Test {
  protected:
    ZoomTableTest() {
        project->AddJournal(DateTime(37137));
        project->SetSolveRules(kUnlimited);
        plan.workspace.SetThisProject(project);
        end = Task(99, 0, nullptr);
    }
    /// Resources take over the first shift, so it must be there before them.
    Vtemplate* Template() {
        Vtemplate* made = plan.workspace.FindOrCreateTemplate("Plant");
        made->AddJournal(DateTime(37137));
        made->FindOrCreateShift("Standard");
        return made;
    }
    Vtask* Task(int id, int hours, Vresource* resource) {
        Vtask* task = project->FindOrCreateTask(id);
        task->SetDescription("");
        task->SetMostLikely(hours * 60);
        Depend(task, nullptr);
        if (!resource) return task;
        auto* assignment = plan.workspace.NewVObject<Vassignment>();
        assignment->SetTask(task);
        assignment->SetResourceRequired(resource);
        assignment->SetHours(8);
        Depend(end, task);
        return task;
    }
    void Depend(Vtask* task, Vtask* required) {
        auto* dependency = plan.workspace.NewVObject<Vdependency>();
        dependency->SetTask(task);
        dependency->SetTaskRequired(required);
        dependency->SetDepDate(DateTime(37137));
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
            for (int col = 0; col < window.Cols(); ++col) text += window.Cell(row, col) + "|";
            char color[16];
            std::snprintf(color, sizeof color, "%06X\n", window.CellColor(row, window.Cols() - 1));
            text += color;
        }
        return text;
    }

    LoadedPlan plan;
    FixedMetrics metrics;
    Vtemplate* plant = Template();
    Vproject* project = plan.workspace.FindOrCreateProject("House");
    Vresource* miller = plant->FindOrCreateResource(7);
    Vtask* end = nullptr;
};

TEST_F(ZoomTableTest, TheMostDemandingBookingOfADayCounts) {
    plan.Solve();
    EXPECT_EQ(Keys(7), "1111122") << "nothing booked";
    Task(1, 20, miller);
    plan.Solve();
    EXPECT_EQ(Keys(7), "3331122");

    // A second task on the same resource takes its overtime, and then what is left of the day.
    Task(2, 8, miller);
    Task(3, 16, miller);
    plan.Solve();
    EXPECT_EQ(Keys(2), "93");

    // Weekends are normal time for those who work then, off days for those who are made to.
    Vresource* night = plant->FindOrCreateResource(8);
    for (int day = 1; day <= 7; ++day) night->SetWorkDay(day, day >= 6 || day == 1);
    Vtask* late = Task(4, 30, night);
    plan.Solve();
    EXPECT_EQ(Keys(7).substr(4), "333");
    night->SetWorkDay(7, false);
    late->AssignmentList().front()->SetWorkDay(7, true);
    plan.Solve();
    EXPECT_EQ(Keys(7).substr(4), "343");

    night->Delete();
    EXPECT_EQ(Keys(7).substr(4), "322");
}

TEST_F(ZoomTableTest, RowsAreTheSlotsThatTasksHold) {
    miller->SetDescription("Miller");
    Task(1, 6, miller)->SetDescription("Dig");
    plan.Solve();
    const std::string morning = "8:00:00 AM|12:00:00 PM|House: <stub>|1: Dig|Normal|C0FFC0\n";
    const std::string noon = "1:00:00 PM|3:00:00 PM|House: <stub>|1: Dig|Normal|C0FFC0\n";
    EXPECT_EQ(Table(false, *miller, 37137), morning + noon);
    EXPECT_EQ(Table(true, *miller, 37137.9), "Plant|7: Miller|" + morning + "Plant|7: Miller|" + noon);
    EXPECT_EQ(Table(true, *miller, 37138), "");
    EXPECT_EQ(Table(true, *miller, 99999), "");
}

}  // namespace
}  // namespace vortan
