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

TEST_F(TaskEntryFormTest, ATaskIsMade) {
    Task(7, "Dig");
    shell.desktop.settings.WriteSettings("EfficiencyText", ".7");
    Add();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&shell.Dialog()));
    EXPECT_EQ(shell.Focus(), "DescriptionText");
    EXPECT_EQ(Value("TaskIdText"), "8");
    EXPECT_EQ(Value("EfficiencyText"), "0.7");
    EXPECT_EQ(Boxes(), " 0  0  0 | 0 [0] 0 | 0  0  0 ");
    shell.Type("DescriptionText", "Pour");
    shell.Type("MaterialCostText", "1250");
    shell.Type("EstimateText(4)", "1.5");
    EXPECT_EQ(Value("MaterialCostText"), "$1,250.00");
    Ok();
    EXPECT_FALSE(Open());
    const Vtask* task = project->FindTask(8);
    ASSERT_TRUE(task);
    EXPECT_EQ(task->Description(), "Pour");
    EXPECT_EQ(Stored(*task), "-60: 90 90 90");
    EXPECT_EQ(task->MaterialCost(), Money::FromDouble(1250));
    EXPECT_EQ(task->Efficiency(), 0.7);
    EXPECT_TRUE(project->Dirty());
    EXPECT_EQ(shell.main.TheTrees().DragNode()->Text, "8: Pour");

    // Without use of the setting, and given up.
    project->SetDirty(false);
    shell.desktop.settings.WriteSettings("EfficiencyText", "1.01");
    Add();
    EXPECT_EQ(Value("EfficiencyText"), "0.85");
    shell.Type("DescriptionText", "Never");
    Cancel();
    EXPECT_EQ(project->TaskList().size(), 2U);
    EXPECT_FALSE(project->Dirty());
}

TEST_F(TaskEntryFormTest, LoadsEachKind) {
    const struct {
        int units, optimistic, mostLikely, pessimistic;
        const char *control, *unit, *unitCaption, *box;
    } cases[] = {{-1, 90, 90, 90, "Effort", "0", "minutes", "90"},
                 {-60, 90, 100, 120, "Effort", "1", "hours", "1.67"},
                 {-480, 90, 3600, 80, "Effort", "2", "days (8 hours each)", "7.5"},
                 {1440, 0, 3600, 0, "Calendar", "2", "days (24 hours each)", "2.5"},
                 {-2400, 0, 1200, 0, "Effort", "3", "weeks (5 days each)", "0.5"},
                 {10080, 0, 10080, 0, "Calendar", "3", "weeks (7 days each)", "1"},
                 {-9600, 0, 48, 0, "Effort", "4", "months (20 days each)", "0.01"},
                 {43200, 0, 20, 0, "Calendar", "4", "months (30 days each)", "0"},
                 {0, 0, 0, 0, "Specific", "2", "days (24 hours each)", "0"}};
    Vtask* task = Task(1, "Dig");
    for (const auto& one : cases) {
        SCOPED_TRACE(one.units);
        Estimate(task, one.units, one.optimistic, one.mostLikely, one.pessimistic);
        Modify(task);
        std::string chosen;
        for (const auto* option : shell.Dialog().findChildren<QRadioButton*>())
            if (option->isChecked())
                chosen += S(option->objectName() + " " + option->text().remove('&') + ";");
        EXPECT_EQ(chosen.find(one.control), 0U);
        EXPECT_NE(chosen.find("UnitsOption(" + std::string(one.unit) + ") " + one.unitCaption),
                  std::string::npos);
        EXPECT_EQ(Checked("Enable3EstimatesCheck"), one.optimistic < one.pessimistic);
        EXPECT_EQ(Value("EstimateText(4)") + Value("EstimateText(7)"), std::string(one.box) + one.box);
        Cancel();
    }
    EXPECT_FALSE(project->Dirty());
}

TEST_F(TaskEntryFormTest, OneOfPastRestAndTotalFollowsTheOthers) {
    Activate(1);
    Vtask* task = Task(1, "Dig");
    Estimate(task, -60, 3600, 3600, 3600);
    Modify(task);
    EXPECT_EQ(S(shell.Find<QLabel>("EstimateLabel(3)").text()), "prior to 9/6/2001");
    EXPECT_EQ(S(shell.Find<QLabel>("EstimateLabel(4)").text()), "9/6/2001 and later");
    const struct {
        const char *box, *typed, *boxes;
    } steps[] = {
        {"EstimateText(1)", "30", " 30 [30] 30 | 30 [30] 30 | 60 [60] 60 "},
        {"EstimateText(4)", "45", " 30 [30] 30 | 30 [45] 30 | 60 [75] 60 "},
        {"EstimateText(7)", "60", " 30 [30] 30 | 30 [30] 30 | 60 [60] 60 "},
        {"EstimateText(7)", "75", " 30 [30] 30 | 30 [45] 30 | 60 [75] 60 "},
        {"EstimateText(1)", "50", " 50 [50] 50 | 10 [25] 10 | 60 [75] 60 "},
        {"EstimateText(4)", "8h", " 50 [50] 50 | 10 [8h] 10 | 60 [58] 60 "},
        {"EstimateText(4)", "h", " 50 [50] 50 | 10 [h] 10 | 60 [50] 60 "},
        {"EstimateText(4)", "2.25", " 50 [50] 50 | 10 [2.25] 10 | 60 [52.25] 60 "},
    };
    for (const auto& step : steps) {
        shell.Type(step.box, step.typed);
        EXPECT_EQ(Boxes(), step.boxes) << step.box << " " << step.typed;
    }
    Ok();
    EXPECT_EQ(Stored(*task), "-60: 3135 3135 3135");

    // More may have been done than the whole was to take.
    Modify(task);
    shell.Type("EstimateText(1)", "60");
    EXPECT_EQ(Value("EstimateText(4)"), "-7.75");
    Ok();
    EXPECT_FALSE(Open());
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

TEST_F(TaskEntryFormTest, UnitsChangeNoMinutes) {
    Vtask* task = Task(1, "Dig");
    Estimate(task, -60, 3600, 3600, 3600);
    Modify(task);
    const struct {
        const char *click, *box;
    } steps[] = {{"UnitsOption(2)", "7.5"},       {"CalendarTimeOption", "2.5"},  {"UnitsOption(4)", "0.08"},
                 {"UnitsOption(0)", "3600"},      {"EffortDrivenOption", "3600"}, {"UnitsOption(3)", "1.5"},
                 {"SpecificDatesOption", "0.36"}, {"CalendarTimeOption", "0.36"}, {"UnitsOption(1)", "60"}};
    for (const auto& step : steps) {
        shell.Click(step.click);
        EXPECT_EQ(Value("EstimateText(4)"), step.box) << step.click;
    }
    Ok();
    EXPECT_EQ(Stored(*task), "60: 3600 3600 3600");
}

TEST_F(TaskEntryFormTest, WhatCanBeEntered) {
    Vtask* task = Task(1, "Dig");
    Estimate(task, -60, 60, 120, 180);
    for (int journal : {0, 1}) {
        SCOPED_TRACE(journal);
        Activate(journal);
        Modify(task);
        EXPECT_EQ(Boxes(), journal == 0 ? " 0  0  0 |[1][2][3]| 1  2  3 " : "[0][0][0]|[1][2][3]|[1][2][3]");
        EXPECT_EQ(Visible("EstimateLabel(3)"), journal == 1);
        EXPECT_EQ(Visible("EstimateLabel(5)"), journal == 1);
        shell.Click("Enable3EstimatesCheck");
        EXPECT_EQ(Boxes(), journal == 0 ? " 0  0  0 | 1 [2] 3 | 1  2  3 " : " 0 [0] 0 | 1 [2] 3 | 1 [2] 3 ");
        EXPECT_FALSE(Visible("EstimateLabel(0)"));
        for (const char* box : {"EstimateText(0)", "EstimateText(8)", "StartDateText", "FinishDateText"})
            EXPECT_TRUE(Visible(box)) << "shut off, not hidden: " << box;
        shell.Click("Enable3EstimatesCheck");
        EXPECT_TRUE(Visible("EstimateLabel(0)"));
        EXPECT_EQ(shell.Focus(), "EstimateText(4)");
        const QSize size = shell.Dialog().size();
        for (const char* option : {"SpecificDatesOption", "ToFinishOption"}) {
            shell.Click(option);
            EXPECT_FALSE(Visible("EstimatesFrame"));
            EXPECT_FALSE(Visible("Enable3EstimatesCheck"));
            EXPECT_EQ(Boxes(), " 0  0  0 | 1  2  3 | 1  2  3 ");
            const bool dates = Checked("SpecificDatesOption");
            EXPECT_EQ(Visible("SpecificStartLabel"), dates);
            EXPECT_EQ(shell.Find<QWidget>("FinishDateText").isEnabled(), dates);
            EXPECT_EQ(shell.Dialog().size(), size);
        }
        shell.Click("CalendarTimeOption");
        EXPECT_FALSE(shell.Find<QWidget>("StartDateText").isEnabled());
        EXPECT_TRUE(Visible("EstimatesFrame"));
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

TEST_F(TaskEntryFormTest, OneEstimateReplacesThree) {
    Vtask* task = Task(1, "Dig");
    Estimate(task, 60, 60, 120, 180);
    Modify(task);
    shell.Type("EstimateText(5)", "4");
    Ok();
    EXPECT_EQ(Stored(*task), "60: 60 120 240");
    Modify(task);
    shell.Click("Enable3EstimatesCheck");
    Ok();
    EXPECT_EQ(Stored(*task), "60: 120 120 120");
    Modify(task);
    EXPECT_FALSE(Checked("Enable3EstimatesCheck"));
    shell.Click("ToFinishOption");
    Ok();
    EXPECT_EQ(Stored(*task), "0: 0 0 0");
    Modify(task);
    EXPECT_TRUE(Checked("SpecificDatesOption"));
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

TEST_F(TaskEntryFormTest, RefusesWhatCannotBeStored) {
    Vtask* task = Task(1, "Dig");
    Task(3, "Pour");
    const char* whole = "The task ID must be a whole number from 1 to 999999999.";
    const char* range = "The efficiency must be above 0 and not above 1.";
    const char* number = "Invalid Number";
    const struct {
        const char *click, *field, *typed, *title, *text;
    } cases[] = {
        {"EffortDrivenOption", "TaskIdText", "0", number, whole},
        {"EffortDrivenOption", "TaskIdText", "1000000000", number, whole},
        {"ToFinishOption", "TaskIdText", "3", "Task ID In Use", "3: Pour"},
        {"EffortDrivenOption", "MaterialCostText", "much", "Invalid Amount", "The fixed cost"},
        {"EffortDrivenOption", "EfficiencyText", "x", number, "The efficiency must be a number."},
        {"EffortDrivenOption", "EfficiencyText", "0", number, range},
        {"EffortDrivenOption", "EfficiencyText", "1.01", number, range},
        {"CalendarTimeOption", "EstimateText(4)", "", number, "The estimate must be a number."},
        {"EffortDrivenOption", "EstimateText(4)", "3 h", number, "The estimate must be a number."},
        {"EffortDrivenOption", "EstimateText(4)", "-1", number, "The estimate must not be negative."},
        {"EffortDrivenOption", "EstimateText(4)", "35791395", number, "The estimate is too large."},
        {"SpecificDatesOption", "StartDateText", "", "Invalid Date", "Invalid date"},
        {"SpecificDatesOption", "StartDateText", "2/29/2001", "Invalid Date", "Invalid date"},
        {"SpecificDatesOption", "FinishDateText", "soon", "Invalid Date", "Invalid date"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(std::string(one.field) + " " + one.typed);
        Modify(task);
        shell.Click(one.click);
        if (std::string(one.field) == "FinishDateText") shell.Type("StartDateText", "9/3/2001");
        shell.Type(one.field, one.typed);
        ExpectRefused(one.title, one.text, one.field);
        Cancel();
    }
    EXPECT_EQ(Stored(*task) + task->BuildNodeText() + Dates(*task), "-60: 0 0 01: Dig");

    Vtask* next = Task(2, "Next");
    auto* dependency = workspace.NewVObject<Vdependency>();
    dependency->SetTask(next);
    dependency->SetTaskRequired(task);
    Trees& trees = shell.main.TheTrees();
    trees.FindNodeFromObject(dependency);  // opens its task
    Modify(task);
    shell.Type("TaskIdText", "999999999");
    shell.Type("EfficiencyText", "1");
    shell.Type("EstimateText(4)", "35791394");
    Ok();
    EXPECT_EQ(project->FindTask(999999999), task);
    EXPECT_EQ(task->MostLikely(), 2147483640);
    // It moves to its place, and what refers to it follows.
    EXPECT_EQ(trees.DragNode()->Text, "999999999: Dig");
    EXPECT_EQ(trees.DragNode()->Row, 2);
    EXPECT_EQ(trees.FindNodeFromObject(dependency).Text, "999999999: Dig");
    // No number is left for the next.
    project->SetDirty(false);
    Add();
    ExpectRefused(number, whole, "TaskIdText");
}

}  // namespace
}  // namespace vortan
