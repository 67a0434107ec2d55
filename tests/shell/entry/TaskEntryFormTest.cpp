#include "shell/entry/TaskEntryForm.h"

#include "shell/entry/FormBench.h"

namespace vortan {
namespace {

class TaskEntryFormTest : public FormBench {
  protected:
    void Add() { TaskEntryForm::StartAdd(desktop, *project); }
    void Modify(Vtask* task) { FormBench::Modify<TaskEntryForm>(task); }
    /// All nine boxes, row by row; brackets around those that can be entered.
    std::string Boxes() {
        std::string all;
        for (int i = 0; i < 9; ++i) {
            const auto& box = Find<QLineEdit>("EstimateText(" + std::to_string(i) + ")");
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
};

TEST_F(TaskEntryFormTest, ANewTaskHasTheUsualEfficiency) {
    for (const auto& [setting, shown] : {std::pair(".7", "0.7"), std::pair("1.01", "0.85")}) {
        desktop.settings.WriteSettings("EfficiencyText", setting);
        Add();
        EXPECT_EQ(Value("EfficiencyText"), shown);
        EXPECT_EQ(Boxes(), " 0  0  0 | 0 [0] 0 | 0  0  0 ");
        ASSERT_TRUE(QTest::qWaitForWindowActive(&Dialog()));
        Do("MaterialCostText=1250;EfficiencyText=1");
        EXPECT_EQ(Value("MaterialCostText"), "$1,250.00");
        Cancel();
    }
    EXPECT_TRUE(project->TaskList().empty());
}

TEST_F(TaskEntryFormTest, TheBoxesFollowWhatIsTypedAndChosen) {
    Activate(1);
    Vtask* task = Task(1, "Dig", "work 3600");
    Modify(task);
    EXPECT_EQ(S(Find<QLabel>("EstimateLabel(3)").text()), "prior to 9/6/2001");
    EXPECT_EQ(S(Find<QLabel>("EstimateLabel(4)").text()), "9/6/2001 and later");
    const std::pair<const char*, const char*> steps[] = {
        {"EstimateText(1)=30", " 30 [30] 30 | 30 [30] 30 | 60 [60] 60 "},
        {"EstimateText(4)=8h", " 30 [30] 30 | 30 [8h] 30 | 60 [38] 60 "},
        {"EstimateText(7)=60", " 30 [30] 30 | 30 [30] 30 | 60 [60] 60 "},
        {"UnitsOption(2)!", " 3.75 [3.75] 3.75 | 3.75 [3.75] 3.75 | 7.5 [7.5] 7.5 "},
        {"CalendarTimeOption!", " 1.25 [1.25] 1.25 | 1.25 [1.25] 1.25 | 2.5 [2.5] 2.5 "},
        {"UnitsOption(4)!", " 0.04 [0.04] 0.04 | 0.04 [0.04] 0.04 | 0.08 [0.08] 0.08 "}};
    for (const auto& [step, boxes] : steps) {
        Do(step);
        EXPECT_EQ(Boxes(), boxes) << step;
    }
    Ok();
    EXPECT_EQ(Stored(*task), "43200: 3600 3600 3600");
    Modify(task);
    Type("EstimateText(4)", "3;5;8 h");
    EXPECT_TRUE(Checked("UnitsOption(1)") && Checked("Enable3EstimatesCheck"));
    Find<QLineEdit>("EstimateText(4)").editingFinished();
    EXPECT_EQ(Boxes(), "[0][0][0]|[3][5][8]|[3][5][8]");
    Ok();
    EXPECT_EQ(Stored(*task), "60: 180 300 480");
    Modify(task);
    Do("ToFinishOption!");
    Ok();
    EXPECT_EQ(Stored(*task), "0: 0 0 0");
    Modify(task);
    EXPECT_TRUE(Checked("SpecificDatesOption"));
    EXPECT_TRUE(Checked("UnitsOption(2)"));
}

TEST_F(TaskEntryFormTest, ANewNumberMovesTheTaskAndWhatRefersToIt) {
    Vtask* task = Task(1, "Dig");
    Task(3, "Pour");
    Vdependency* dependency = Task(2, "Next", "after 1")->DependencyList().front();
    NodeOf(dependency);  // opens its task
    Modify(task);
    Do("TaskIdText=999999999");
    Ok();
    EXPECT_EQ(TheTrees().DragNode()->Text, "999999999: Dig");
    EXPECT_EQ(TheTrees().DragNode()->Row, 2);
    EXPECT_EQ(NodeOf(dependency).Text, "999999999: Dig");
    // No number is left for the next.
    project->SetDirty(false);
    Add();
    ExpectRefused("Invalid Number", "The task ID must be a whole number from 1 to 999999999.", "TaskIdText");
    EXPECT_FALSE(project->Dirty());
}

TEST_F(TaskEntryFormTest, ThePastIsWhatHasBeenBooked) {
    Vtask* task = Task(1, "Dig", "work 2400 start=9/3/2001 by 7");
    Activate(1);
    workspace.RestartSolve();
    Solve();
    ASSERT_EQ(desktop.solver.SolveMessage(), "Solve complete");
    Modify(task);
    EXPECT_EQ(Boxes(), " 24 [24] 24 | 16 [16] 16 | 40 [40] 40 ");
}

TEST_F(TaskEntryFormTest, WhatCanBeEntered) {
    Vtask* task = Task(1, "Dig", "work 60/120/180");
    for (const int journal : {0, 1}) {
        SCOPED_TRACE(journal);
        Activate(journal);
        Modify(task);
        EXPECT_EQ(Boxes(), journal == 0 ? " 0  0  0 |[1][2][3]| 1  2  3 " : "[0][0][0]|[1][2][3]|[1][2][3]");
        EXPECT_EQ(Visible("EstimateLabel(3)") + Visible("EstimateLabel(5)"), 2 * journal);
        Click("Enable3EstimatesCheck");
        EXPECT_EQ(Boxes(), journal == 0 ? " 0  0  0 | 1 [2] 3 | 1  2  3 " : " 0 [0] 0 | 1 [2] 3 | 1 [2] 3 ");
        EXPECT_FALSE(Visible("EstimateLabel(0)"));
        EXPECT_TRUE(Visible("EstimateText(0)") && Visible("StartDateText")) << "shut off, not hidden";
        Click("Enable3EstimatesCheck");
        EXPECT_TRUE(Visible("EstimateLabel(0)"));
        EXPECT_EQ(Focus(), "EstimateText(4)");
        const QSize size = Dialog().size();
        for (const char* option : {"SpecificDatesOption", "ToFinishOption", "CalendarTimeOption"}) {
            Click(option);
            EXPECT_EQ(Visible("EstimatesFrame"), Checked("CalendarTimeOption"));
            EXPECT_EQ(Visible("SpecificStartLabel"), Checked("SpecificDatesOption"));
            EXPECT_EQ(Find<QWidget>("FinishDateText").isEnabled(), Checked("SpecificDatesOption"));
            EXPECT_EQ(Dialog().size(), size);
        }
        Cancel();
    }
}

TEST_F(TaskEntryFormTest, TabStopsInReadingOrderAtWhatCanBeEntered) {
    Modify(Task(1, "Dig", "days 0/60/0"));
    EXPECT_TRUE(Dialog().testAttribute(Qt::WA_KeyboardFocusChange)) << "frames before the first Tab";
    std::string stops;
    for (int i = 0; i < 10; ++i, Press(Qt::Key_Tab)) stops += Focus().substr(0, 4) + " ";
    EXPECT_EQ(stops, "Desc Mate Effi Cale Enab Esti Unit OkCo Canc Task ");
    Click("EffortDrivenOption");
    EXPECT_FALSE(Dialog().testAttribute(Qt::WA_KeyboardFocusChange));
}

TEST_F(TaskEntryFormTest, SpecificDatesAreDependencies) {
    Vtask* task = Task(2, "Dig", "start=1/1/2001>50");
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
        Click("SpecificDatesOption");
        Type("StartDateText", start = step.start);
        Type("FinishDateText", finish = step.finish);
        Ok();
        EXPECT_EQ(Dates(*task), step.dates);
    }
    Modify(task);
    const QString spoken = Find<QToolButton>("StartDateTextCalendar").accessibleName();
    EXPECT_EQ(S(spoken), "Calendar for the specific start date");
    auto& box = Find<QLineEdit>("StartDateText");
    QTest::mouseDClick(&box, Qt::LeftButton);
    EXPECT_EQ(Value("StartDateText"), "9/3/2001");
}

}  // namespace
}  // namespace vortan
