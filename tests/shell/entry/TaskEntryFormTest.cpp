#include "shell/entry/TaskEntryForm.h"

#include "shell/entry/TaskEntryFormBench.h"

namespace vortan {
namespace {

class TaskEntryFormTest : public TaskFormTest {
  protected:
    void Add() { TaskEntryForm::StartAdd(shell.desktop, *workspace.ThisProject()); }
    void Modify(Vtask* task) {
        Select(task);
        TaskEntryForm::StartModify(shell.desktop, *task);
    }
    static std::string Box(int index) { return "EstimateText(" + std::to_string(index) + ")"; }
    /// All nine boxes, row by row; brackets around those that can be entered.
    std::string Boxes() {
        std::string all;
        for (int i = 0; i < 9; ++i) {
            const auto& box = shell.Find<QLineEdit>(Box(i));
            const std::string text = S(box.text());
            all += (i % 3 == 0 && i > 0 ? "|" : "") + (box.isEnabled() ? "[" + text + "]" : " " + text + " ");
        }
        return all;
    }
    static std::string Stored(const Vtask& task) {
        return std::to_string(task.EffortUnits()) + ": " + std::to_string(task.Optimistic()) + " " +
               std::to_string(task.MostLikely()) + " " + std::to_string(task.Pessimistic());
    }
    static std::string Dates(const Vtask& task) {
        std::string all;
        for (const Vdependency* dependency : task.DependencyList()) {
            if (dependency->Include()) all += (all.empty() ? "" : ", ") + dependency->BuildNodeText();
        }
        return all;
    }
    static void Estimate(Vtask* task, int units, int optimistic, int mostLikely, int pessimistic) {
        task->SetEffortUnits(units);
        task->SetOptimistic(optimistic);
        task->SetMostLikely(mostLikely);
        task->SetPessimistic(pessimistic);
    }
};

TEST_F(TaskEntryFormTest, ANewTaskHasTheUsualEfficiency) {
    for (const auto& [setting, shown] : {std::pair(".7", "0.7"), std::pair("1.01", "0.85")}) {
        shell.desktop.settings.WriteSettings("EfficiencyText", setting);
        Add();
        EXPECT_EQ(Value("EfficiencyText"), shown);
        EXPECT_EQ(Boxes(), " 0  0  0 | 0 [0] 0 | 0  0  0 ");
        ASSERT_TRUE(QTest::qWaitForWindowActive(&shell.Dialog()));
        shell.Do("MaterialCostText=1250;EfficiencyText=1");
        EXPECT_EQ(Value("MaterialCostText"), "$1,250.00");
        Cancel();
    }
    EXPECT_TRUE(project->TaskList().empty());
}

TEST_F(TaskEntryFormTest, TheBoxesFollowWhatIsTypedAndChosen) {
    Activate(1);
    Vtask* task = Task(1, "Dig");
    Estimate(task, -60, 3600, 3600, 3600);
    Modify(task);
    EXPECT_EQ(S(shell.Find<QLabel>("EstimateLabel(3)").text()), "prior to 9/6/2001");
    EXPECT_EQ(S(shell.Find<QLabel>("EstimateLabel(4)").text()), "9/6/2001 and later");
    const std::pair<const char*, const char*> steps[] = {
        {"EstimateText(1)=30", " 30 [30] 30 | 30 [30] 30 | 60 [60] 60 "},
        {"EstimateText(4)=8h", " 30 [30] 30 | 30 [8h] 30 | 60 [38] 60 "},
        {"EstimateText(7)=60", " 30 [30] 30 | 30 [30] 30 | 60 [60] 60 "},
        {"UnitsOption(2)!", " 3.75 [3.75] 3.75 | 3.75 [3.75] 3.75 | 7.5 [7.5] 7.5 "},
        {"CalendarTimeOption!", " 1.25 [1.25] 1.25 | 1.25 [1.25] 1.25 | 2.5 [2.5] 2.5 "},
        {"UnitsOption(4)!", " 0.04 [0.04] 0.04 | 0.04 [0.04] 0.04 | 0.08 [0.08] 0.08 "}};
    for (const auto& [step, boxes] : steps) {
        shell.Do(step);
        EXPECT_EQ(Boxes(), boxes) << step;
    }
    Ok();
    EXPECT_EQ(Stored(*task), "43200: 3600 3600 3600");
    Modify(task);
    shell.Do("ToFinishOption!");
    Ok();
    EXPECT_EQ(Stored(*task), "0: 0 0 0");
    Modify(task);
    EXPECT_TRUE(Checked("SpecificDatesOption"));
    EXPECT_TRUE(Checked("UnitsOption(2)"));
}

TEST_F(TaskEntryFormTest, ANewNumberMovesTheTaskAndWhatRefersToIt) {
    Vtask* task = Task(1, "Dig");
    Task(3, "Pour");
    auto* dependency = workspace.NewVObject<Vdependency>();
    dependency->SetTask(Task(2, "Next"));
    dependency->SetTaskRequired(task);
    Trees& trees = shell.main.TheTrees();
    trees.FindNodeFromObject(dependency);  // opens its task
    Modify(task);
    shell.Do("TaskIdText=999999999");
    Ok();
    EXPECT_EQ(trees.DragNode()->Text, "999999999: Dig");
    EXPECT_EQ(trees.DragNode()->Row, 2);
    EXPECT_EQ(trees.FindNodeFromObject(dependency).Text, "999999999: Dig");
    // No number is left for the next.
    project->SetDirty(false);
    Add();
    ExpectRefused("Invalid Number", "The task ID must be a whole number from 1 to 999999999.", "TaskIdText");
}

TEST_F(TaskEntryFormTest, ThePastIsWhatHasBeenBooked) {
    auto* owner = workspace.FindOrCreateTemplate("People");
    owner->AddJournal(*ParseDate("9/3/2001"));
    auto* shift = workspace.NewVObject<Vshift>();
    shift->SetTemplate(owner);
    shift->SetShiftName("Standard");
    auto* resource = workspace.NewVObject<Vresource>();
    resource->SetTemplate(owner);
    resource->SetResourceID(1);
    resource->SetShift(shift);
    Vtask* task = Task(1, "Dig");
    Estimate(task, -60, 2400, 2400, 2400);
    auto* dependency = workspace.NewVObject<Vdependency>();
    dependency->SetTask(task);
    dependency->SetDepDate(*ParseDate("9/3/2001"));
    auto* assignment = workspace.NewVObject<Vassignment>();
    assignment->SetTask(task);
    assignment->SetResourceRequired(resource);
    Activate(1);
    project->SetDirty(true);
    shell.Solve();
    ASSERT_EQ(shell.desktop.solver.Mode(), SolveMode::Idle);
    Modify(task);
    EXPECT_EQ(Boxes(), " 24 [24] 24 | 16 [16] 16 | 40 [40] 40 ");
}

TEST_F(TaskEntryFormTest, WhatCanBeEntered) {
    Vtask* task = Task(1, "Dig");
    Estimate(task, -60, 60, 120, 180);
    for (const int journal : {0, 1}) {
        SCOPED_TRACE(journal);
        Activate(journal);
        Modify(task);
        EXPECT_EQ(Boxes(), journal == 0 ? " 0  0  0 |[1][2][3]| 1  2  3 " : "[0][0][0]|[1][2][3]|[1][2][3]");
        EXPECT_EQ(Visible("EstimateLabel(3)") + Visible("EstimateLabel(5)"), 2 * journal);
        shell.Click("Enable3EstimatesCheck");
        EXPECT_EQ(Boxes(), journal == 0 ? " 0  0  0 | 1 [2] 3 | 1  2  3 " : " 0 [0] 0 | 1 [2] 3 | 1 [2] 3 ");
        EXPECT_FALSE(Visible("EstimateLabel(0)"));
        EXPECT_TRUE(Visible("EstimateText(0)") && Visible("StartDateText")) << "shut off, not hidden";
        shell.Click("Enable3EstimatesCheck");
        EXPECT_TRUE(Visible("EstimateLabel(0)"));
        EXPECT_EQ(shell.Focus(), "EstimateText(4)");
        const QSize size = shell.Dialog().size();
        for (const char* option : {"SpecificDatesOption", "ToFinishOption", "CalendarTimeOption"}) {
            shell.Click(option);
            EXPECT_EQ(Visible("EstimatesFrame"), Checked("CalendarTimeOption"));
            EXPECT_EQ(Visible("SpecificStartLabel"), Checked("SpecificDatesOption"));
            EXPECT_EQ(shell.Find<QWidget>("FinishDateText").isEnabled(), Checked("SpecificDatesOption"));
            EXPECT_EQ(shell.Dialog().size(), size);
        }
        Cancel();
    }
}

TEST_F(TaskEntryFormTest, TabStopsInReadingOrderAtWhatCanBeEntered) {
    Vtask* task = Task(1, "Dig");
    Estimate(task, 1440, 0, 60, 0);
    Modify(task);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&shell.Dialog()));
    EXPECT_TRUE(shell.Dialog().testAttribute(Qt::WA_KeyboardFocusChange)) << "frames before the first Tab";
    std::string stops;
    for (int i = 0; i < 10; ++i, shell.Press(Qt::Key_Tab)) stops += shell.Focus().substr(0, 4) + " ";
    EXPECT_EQ(stops, "Desc Mate Effi Cale Enab Esti Unit OkCo Canc Task ");
    shell.Click("EffortDrivenOption");
    EXPECT_FALSE(shell.Dialog().testAttribute(Qt::WA_KeyboardFocusChange));
}

TEST_F(TaskEntryFormTest, SpecificDatesAreDependencies) {
    Vtask* task = Task(2, "Dig");
    auto* other = workspace.NewVObject<Vdependency>();
    other->SetTask(task);
    other->SetDepDate(*ParseDate("1/1/2001"));
    other->SetToPercent(50);
    const struct {
        const char *start, *finish, *dates;
    } steps[] = {{"2001-09-05", "9/7/2001 5:00 pm", "1/1/2001: PD, 9/5/2001, 9/7/2001 5:00:00 PM: FD"},
                 {"9/6/2001", "9/7/2001 5:00:00 PM", "1/1/2001: PD, 9/6/2001, 9/7/2001 5:00:00 PM: FD"},
                 {"", "9/8/2001", "1/1/2001: PD, 9/8/2001: FD"},
                 {"9/6/2001", "", "1/1/2001: PD, 9/6/2001"}};
    const char *start = "", *finish = "";
    for (const auto& step : steps) {
        SCOPED_TRACE(step.dates);
        Modify(task);
        EXPECT_EQ(Value("StartDateText"), start[0] == '2' ? "9/5/2001" : start);
        EXPECT_EQ(Value("FinishDateText").substr(0, 8), std::string(finish).substr(0, 8));
        shell.Click("SpecificDatesOption");
        shell.Type("StartDateText", start = step.start);
        shell.Type("FinishDateText", finish = step.finish);
        Ok();
        EXPECT_EQ(Dates(*task), step.dates);
    }
    Modify(task);
    const QString spoken = shell.Find<QToolButton>("StartDateTextCalendar").accessibleName();
    EXPECT_EQ(S(spoken), "Calendar for the specific start date");
    auto& box = shell.Find<QLineEdit>("StartDateText");
    QTest::mouseDClick(&box, Qt::LeftButton);
    EXPECT_EQ(Value("StartDateText"), "9/3/2001");
}

}  // namespace
}  // namespace vortan
