#include "charts/GanttForm.h"

#include <cmath>
#include <map>

#include "charts/FixedMetrics.h"
#include "model/ValueText.h"
#include "support/ModelBench.h"

namespace vortan {
namespace {

using Texts = std::vector<std::string>;

/// A chart over a model whose dates the test sets. Days count from a Monday. Leaders, arrows and markers are
/// off. A plain row is 350 high: ninths 0, 1, 2, 3, 4, 6 and 8 lie 0, 39, 78, 117, 156, 233 and 311 down.
class GanttBench : public ModelBench {
  public:
    GanttBench() {
        Set("ListTaskLeaderCheck", "-");
        Set("DependencyArrowsCombo", "None");
        Set("ShowMarkersCheck", "-");
    }
    static DateTime Day(double day) { return DateTime(37137 + day); }
    void Set(const std::string& setting, const std::string& value) { settings.WriteSettings(setting, value); }
    /// Journals are dated every fourth day; the first is active.
    Vproject* Project(const std::string& name, int journals = 1) {
        Vproject* project = workspace.FindOrCreateProject(name);
        for (int i = 0; i < journals; ++i) project->AddJournal(Day(4 * i));
        project->SetCurrentIndex(0);
        if (!workspace.ThisProject()) workspace.SetThisProject(project);
        return project;
    }
    static Vtask* Task(Vproject* project, int id, double start, double finish, double slack = 0) {
        Vtask* task = project->FindOrCreateTask(id);
        task->SetDescription("");
        task->SetEarlyStart(Day(start));
        task->SetEarlyFinish(Day(finish));
        task->SetLateFinish(Day(finish + slack));
        return task;
    }
    Vdependency* On(Vtask* task, Vtask* required, double day) { return Dependency(task, required, Day(day)); }

    int X(double day) { return surface.DateToX(Day(day)); }
    int Y(int row) { return surface.RowPos(row); }
    /// What is drawn but for the date line, joined by "; ", without the key: "rect 1 1+117 3 1+233 black
    /// yellow" goes from day 1 to 3 and from 117 to 233 down in row 1, as in a plain row of the same middle.
    std::string Picture() { return Drawn(false); }
    /// The key alone, in twips from its first sample down.
    std::string Key() { return Drawn(true); }
    std::string Drawn(bool key) {
        form.Start();
        EXPECT_TRUE(surface.IsComplete());
        static const char* const kinds[] = {"line", "rect", "milestone", "triangle"};
        static const std::map<Color, std::string> colors = {
            {kBlack, " black"}, {kRed, " red"}, {kGreen, " green"}, {kYellow, " yellow"}, {kWhite, " white"}};
        const int bottom = Y(surface.Rows() - 1);
        std::string all;
        for (const DrawItem& item : surface.Items()) {
            if (item.border == kBlue || (item.y1 > bottom) != key) continue;
            const auto place = [&](int x, int y) {
                if (key) return " " + std::to_string(x) + " " + std::to_string(y - bottom - 400);
                const auto day = std::lround(double(x - X(0)) / (X(1) - X(0)));
                int row = surface.Rows() - 2;
                while (row > 0 && Y(row) > y) --row;
                return Place(day, x - X(double(day))) + Place(row, y - (Y(row) + Y(row + 1)) / 2 + 175);
            };
            const bool isText = item.kind == DrawItem::Kind::Text;
            all += (all.empty() ? "" : "; ") + (isText ? item.text : kinds[static_cast<int>(item.kind)]);
            if (item.small) all += " small";
            all += place(item.x1, item.y1);
            if (!isText) all += place(item.x2, item.y2) + colors.at(item.border);
            if (!isText && item.kind != DrawItem::Kind::Line) all += colors.at(item.fill);
            if (item.apex != Apex::None) all += " " + std::to_string(static_cast<int>(item.apex));
        }
        return all;
    }
    static std::string Place(long at, int twips) {
        return " " + std::to_string(at) + (twips > 0 ? "+" : "") + (twips ? std::to_string(twips) : "");
    }
    Texts Column(int col) {
        Texts texts;
        for (int row = 1; row < surface.Rows() - 1; ++row) texts.emplace_back(surface.Cell(row, col));
        return texts;
    }

    Settings settings{platform};
    FixedMetrics metrics;
    GanttForm form{workspace, settings, metrics};
    Vwindow& surface = form.TheVwindow();
};

TEST(GanttFormTest, TheBarShowsPlanAndPresent) {
    const std::string planned = "rect 1 1+117 3 1+233 black yellow";
    const std::string worked = "; rect 2 1+156 4 1+233 black black",
                      ahead = "; rect 4 1+156 6 1+233 black green";
    const struct {
        const char* milestones;
        double days[4];  // start and finish in the plan, and at present; the journal is at 4
        std::string plan, present;
    } cases[] = {
        {"-", {1, 3, 2, 6}, planned, worked + ahead},
        {"-", {1, 3, 2, 4}, planned, worked},
        {"-", {1, 3, 4, 6}, planned, ahead},
        {"-",
         {1, 1, 5, 5},
         "milestone 1-58 1+117 1+58 1+233 black yellow",
         "; milestone 5-38 1+156 5+38 1+233 black green"},
        {"X",
         {1, 3, 2, 6},
         "milestone 1-58 1+117 1+58 1+233 black yellow; milestone 3-58 1+117 3+58 1+233 black yellow; "
         "line 1+58 1+175 3-58 1+175 black",
         "; milestone 2-38 1+156 2+38 1+233 black black; milestone 6-38 1+156 6+38 1+233 black green; "
         "line 2+38 1+194 6-38 1+194 black"},
    };
    for (const auto& c : cases) {
        GanttBench g;
        Vproject* project = g.Project("A", 2);
        g.Task(project, 1, c.days[0], c.days[1]);
        g.Set("MilestoneOption", c.milestones);
        EXPECT_EQ(g.Picture(), c.plan);
        project->SetCurrentIndex(1);
        g.Task(project, 1, c.days[2], c.days[3]);
        EXPECT_EQ(g.Picture(), c.plan + c.present);
    }
}

TEST(GanttFormTest, TheCriticalPathIsRed) {
    GanttBench g;
    Vproject* project = g.Project("A");
    Vtask *second = g.Task(project, 2, 2, 4), *first = g.Task(project, 1, 0, 2);
    g.On(first, nullptr, 0);
    g.On(second, first, 2);
    g.On(g.Task(project, 3, 2, 3, 1), first, 2)->SetOffset(1);
    g.Set("CriticalPathRedCheck", "X");
    g.Set("DependencyArrowsCombo", "Control");
    // The arrows: from the top; between two critical tasks; over a row and a day on, to one that is not.
    EXPECT_EQ(g.Picture(),
              "rect 0 1+117 2 1+233 red yellow; rect 2 2+117 4 2+233 red yellow; "
              "rect 2 3+117 3 3+233 black yellow; "
              "line 0 0+233 0 0+311 red; line 0 0+311 0 0+311 red; line 0 0+311 0 1+117 red; "
              "triangle 0-29 0+233 0+29 0+311 red red 3; triangle 0-29 1+39 0+29 1+117 red red 5; "
              "line 2 1+233 2 1+311 red; line 2 1+311 2 1+311 red; line 2 1+311 2 2+117 red; "
              "triangle 2-29 1+233 2+29 1+311 red red 3; triangle 2-29 2+39 2+29 2+117 red red 5; "
              "line 2 1+233 2 2+311 black; line 2 2+311 3 2+311 black; line 3 2+311 3 3+117 black; "
              "triangle 2-29 1+233 2+29 1+311 black black 3; triangle 3-29 3+39 3+29 3+117 black black 5");
}

TEST(GanttFormTest, ADateDependencyShowsAsChosen) {
    const std::pair<const char*, const char*> cases[] = {
        {"Line to top of chart",
         "; line 1 0+233 1 0+311 black; line 1 0+311 2 0+311 black; line 2 0+311 2 1+117 black; "
         "triangle 1-29 0+233 1+29 0+311 black black 3; triangle 2-29 1+39 2+29 1+117 black black 5"},
        {"Short arrow pointing up", "; line 2 1+117 2 1 black; triangle 2-29 1 2+29 1+78 black black 3"},
        {"Triangle pointing right", "; triangle 2 1+39 2+39 1+117 black black 7"},
        {"Do not show", ""},
    };
    for (const auto& [setting, expected] : cases) {
        GanttBench g;
        g.On(g.Task(g.Project("A"), 1, 2, 4), nullptr, 1)->SetOffset(1);
        g.Set("DateDependencyCombo", setting);
        g.Set("DependencyArrowsCombo", "All");
        EXPECT_EQ(g.Picture(), std::string("rect 2 1+117 4 1+233 black yellow") + expected);
    }
}

TEST(GanttFormTest, AMarkerStandsOnTheLatestFinishOfThePlan) {
    GanttBench g;
    Vproject* project = g.Project("A", 2);
    g.Task(project, 1, 0, 2, 2);
    g.Task(project, 2, 0, 2, 99);  // beyond the chart
    project->SetCurrentIndex(1);
    g.Task(project, 1, 0, 3, 5);
    g.Task(project, 2, 0, 10);
    g.Task(project, 3, 4, 6, 1);  // not in the plan, so without a bar of it
    g.Set("ShowMarkersCheck", "X");
    EXPECT_EQ(g.Picture(),
              "rect 0 1+117 2 1+233 black yellow; rect 0 1+156 3 1+233 black black; "
              "rect 0 2+117 2 2+233 black yellow; rect 0 2+156 4 2+233 black black; "
              "rect 4 2+156 10 2+233 black green; rect 4 3+156 6 3+233 black green; "
              "triangle 4-58 1 4+58 1+117 red red 5; triangle 7-58 3 7+58 3+117 red white 5");
}

/// A: tasks 1, 2 (which is B), 3. B: tasks 1, 2 (which is C), 3. C: task 1. A1 and A3 agree in both dates.
class NestedPlan : public GanttBench {
  public:
    NestedPlan() {
        Task(a, 1, 6, 8), Task(a, 3, 6, 8);
        Task(b, 1, 4, 5)->SetDescription("b");
        Task(b, 3, 1, 2)->SetDescription("b");
        Task(c, 1, 2, 3)->SetDescription("c");
        Task(a, 2, 1, 5)->SetSubproject(b);
        Task(b, 2, 2, 3)->SetSubproject(c);
        b->SetDescription("");
        c->SetDescription("");
    }
    Vproject *a = Project("A"), *b = Project("B"), *c = Project("C");
};

TEST(GanttFormTest, RowsFollowDisplayAndOrder) {
    const std::tuple<const char*, const char*, Texts> cases[] = {
        {"One level only", "-", {"1", "2: B", "3"}},
        {"All subprojects", "-", {"1", "2: B", "2: C", "3"}},
        {"Tasks only (flatten)", "-", {"1", "1: b", "1: c", "3: b", "3"}},
        {"One level only", "X", {"2: B", "1", "3"}},
        {"All subprojects", "X", {"2: B", "2: C", "1", "3"}},
        {"Tasks only (flatten)", "X", {"3: b", "1: c", "1: b", "1", "3"}},
    };
    for (const auto& [display, byDate, rows] : cases) {
        NestedPlan g;
        g.Set("SubprojectDisplayCombo", display);
        g.Set("SortByDateCheck", byDate);
        g.form.Start();
        EXPECT_EQ(g.Column(0), rows) << display;
    }
}

TEST(GanttFormTest, AHiddenTaskIsRepresentedByItsSubproject) {
    NestedPlan g;
    Vtask *a1 = g.a->FindTask(1), *b1 = g.b->FindTask(1), *c1 = g.c->FindTask(1);
    g.On(b1, g.b->FindTask(3), 2);  // both hidden in row 2
    g.On(b1, c1, 2);
    g.On(a1, c1, 5);
    g.Set("DependencyArrowsCombo", "All");
    // Three bars and one arrow, from above.
    EXPECT_EQ(g.Picture(),
              "rect 6 1+117 8 1+233 black yellow; rect 1 2+117 5 2+233 black yellow; "
              "rect 6 3+117 8 3+233 black yellow; "
              "line 5 1+233 5 1+311 black; line 5 1+311 5 1+311 black; line 5 1+311 5 2+117 black; "
              "triangle 5-29 1+233 5+29 1+311 black black 3; triangle 5-29 2+39 5+29 2+117 black black 5");
    EXPECT_EQ(g.form.FindRow(c1), 2);
    EXPECT_EQ(g.form.FindRow(nullptr), 0);
    EXPECT_EQ(g.form.FindRow(g.Task(g.Project("Elsewhere"), 1, 0, 1)), 0);
    // Subprojects that hold each other end there; one that two tasks stand for is listed behind each.
    c1->SetSubproject(g.a);
    g.Set("SubprojectDisplayCombo", "All subprojects");
    g.form.Start();
    EXPECT_EQ(g.Column(0), (Texts{"1", "2: B", "2: C", "1: A: <stub>", "3"}));
    c1->SetSubproject(nullptr);
    a1->SetSubproject(g.b);
    g.Set("DependencyArrowsCombo", "None");
    const std::string first = "rect 6 1+117 8 1+233 black yellow; rect 2 2+117 3 2+233 black yellow; ",
                      again = "rect 1 3+117 5 3+233 black yellow; rect 2 4+117 3 4+233 black yellow; ";
    EXPECT_EQ(g.Picture(), first + again + "rect 6 5+117 8 5+233 black yellow");
    EXPECT_EQ(g.Column(0), (Texts{"1: B", "2: C", "2: B", "2: C", "3"}));
    // What no task stands for any longer has no row.
    for (Vtask* task : {a1, g.a->FindTask(2)}) task->SetSubproject(nullptr);
    g.form.Start();
    EXPECT_EQ(g.form.FindRow(b1), 0);
}

TEST(GanttFormTest, CellsTellLeaderDependenciesAndTimeLeft) {
    GanttBench g;
    Vproject *project = g.Project("A", 2), *sub = g.Project("Sub", 2);
    Vtemplate* pool = g.Template("T", 2);
    Vresource *ann = pool->FindOrCreateResource(1), *bob = pool->FindOrCreateResource(2);
    ann->SetDescription("Ann");
    bob->SetDescription("Bob");
    project->SetDescription("House");
    project->SetManager(bob);
    sub->SetManager(bob);
    Vtask *first = g.Task(project, 1, 0, 2, 1.5), *second = g.Task(project, 2, 2, 6);
    project->SetCurrentIndex(1);
    g.Assignment(first, bob)->SetInclude(false);
    g.Assignment(first, ann);
    g.Assignment(first, bob);
    g.On(second, first, 2);
    g.On(second, nullptr, 1);
    g.Task(project, 3, 1, 5)->SetSubproject(sub);
    g.On(g.Task(sub, 1, 1, 5), first, 1);

    g.Set("ListTaskLeaderCheck", "X");
    g.form.Start();
    const int cols = g.surface.Cols();
    EXPECT_EQ(g.Column(0), (Texts{"1\r\n  Ann", "2\r\n", "3: Sub: <stub>\r\n  Bob"}));
    EXPECT_EQ(g.Column(1), (Texts{"", "1\r\n9/4/2001", "(A) 1"}));
    EXPECT_EQ(g.Column(cols - 2), (Texts{"1.5d", "0", "0"}));
    EXPECT_EQ(g.Column(cols - 1), (Texts{"Done", "2d", "1d"}));
    EXPECT_EQ(g.form.GetY(1, 3), g.Y(1) + 183);  // of a unit of 550
    EXPECT_EQ(g.Y(5) - g.Y(4), 8 * 250);

    g.Set("ListTaskLeaderCheck", "-");
    g.form.Start();
    EXPECT_EQ(g.form.GetY(2, 3), g.Y(2) + 100 + 117);  // of a row of 350 in the middle of one of two lines
    g.Set("ListAllDepsCheck", "-");
    g.form.Start();
    EXPECT_EQ(g.Column(0), (Texts{"1", "2", "3: Sub: <stub>"}));
    EXPECT_EQ(g.Column(1), (Texts{"", "1", "(A) 1"}));
    EXPECT_EQ(g.Y(5) - g.Y(4), 5 * 250);

    EXPECT_EQ(g.form.Caption(), "Mechanized Gantt chart for A: House PM:Bob");
    const Texts messages = g.platform.statusMessages;
    EXPECT_EQ(Texts(messages.end() - 2, messages.end()), (Texts{"Building GANTT chart", ""}));

    EXPECT_EQ(g.form.TipAt(g.X(1), g.Y(1) + 175),
              "1\nStart: 9/3/2001\nFinish: 9/5/2001\nSlack: 1.5 days\nResources: Ann, Bob");
    for (const auto& [day, row, down] : {std::tuple(3, 1, 175), {1, 1, 30}, {1, 1, 240}, {1, 4, 175}})
        EXPECT_EQ(g.form.TipAt(g.X(day), g.Y(row) + down), "") << day << " " << row << " " << down;
}

TEST(GanttFormTest, TheKeyNamesWhatIsThere) {
    // A unit is 350, a third of it 117, two ninths 78; "Projected XXX" is 1300 wide.
    const std::string plan = "rect 88 0 700 117 black yellow; Plan 788 -43",
                      present =
                          "; rect 88 301 700 379 black black; Actual 788 219; "
                          "rect 88 564 700 642 black green; Projected 788 482",
                      marker = "; triangle 2029 0 2146 117 red red 5; T   plan 2175 -43; L small 2275 37",
                      marker2 =
                          "; triangle 2029 262 2146 379 red white 5; T   not in plan 2175 219; "
                          "L small 2275 299",
                      arrow =
                          "; line 2088 438 2088 788 black; triangle 2059 438 2116 515 black black 5; "
                          "triangle 2059 710 2116 788 black black 3; Dependencies 2175 482";
    const struct {
        int current;
        const char *milestones, *markers, *arrows;
        std::string expected;
    } cases[] = {
        {0, "-", "X", "Control", plan + marker + arrow},
        {1, "-", "X", "None", plan + present + marker + marker2},
        {1, "-", "-", "All", plan + present + arrow},
        {0, "X", "-", "None", "milestone 88 0 204 117 black yellow; Plan 292 -43"},
    };
    for (const auto& c : cases) {
        GanttBench g;
        Vproject* project = g.Project("A", 2);
        g.Task(project, 1, 0, 4);
        project->SetCurrentIndex(c.current);
        g.Set("MilestoneOption", c.milestones);
        g.Set("ShowMarkersCheck", c.markers);
        g.Set("DependencyArrowsCombo", c.arrows);
        EXPECT_EQ(g.Key(), c.expected);
    }
}

TEST(GanttFormTest, DragsAskForLinksAndDates) {
    GanttBench g;
    g.Set("DependencyArrowsCombo", "All");
    Vproject* project = g.Project("A", 2);
    Vtask *first = g.Task(project, 1, 0, 4), *second = g.Task(project, 2, 4, 8),
          *none = g.Task(project, 3, 8, 8);
    first->SetDescription("Dig");
    second->SetDescription("Wall");
    Vdependency *date = g.On(first, nullptr, 0), *link = g.On(second, first, 4);
    g.form.Start();
    const auto drag = [&g](int row1, double day1, int row2, double day2) {
        g.form.BeginDrag(g.X(day1), g.form.GetY(row1, 5), false);
        g.form.DragTo(g.X(day2), g.form.GetY(row2, 5));
    };
    const struct {
        int row1;
        double day1;
        int row2;
        double day2;
        const char* tip;
        Vtask *required, *task;
        int from, to;
    } cases[] = {
        {1, 3.9, 2, 4.1, "Dig 100% -> Wall 0%", first, second, 100, 0},
        {1, 2.51, 2, 6.49, "Dig 75% -> Wall 50%", first, second, 75, 50},
        {1, 2.49, 2, 6.51, "Dig 50% -> Wall 75%", first, second, 50, 75},
        {3, 8, 1, 3.9, " 100% -> Dig 100%", none, first, 100, 100},
        {1, 3.9, 3, 8, "Dig 100% ->  0%", first, none, 100, 0},
        {1, 3.9, 2, 9, "Dig 100% -> ...", nullptr, nullptr, 0, 0},
        {1, 1, 1, 3.9, "A task cannot depend on itself.", first, first, 25, 100},
    };
    for (const auto& c : cases) {
        drag(c.row1, c.day1, c.row2, c.day2);
        EXPECT_EQ(g.form.DragTip(), c.tip);
        const auto wish = g.form.EndDrag();
        ASSERT_EQ(wish.has_value(), c.task != nullptr) << c.tip;
        if (!wish) continue;
        EXPECT_TRUE(wish->task == c.task && wish->required == c.required) << c.tip;
        EXPECT_TRUE(wish->fromPercent == c.from && wish->toPercent == c.to) << c.tip;
    }
    drag(1, 3.9, 2, 4.1);
    g.form.CancelDrag();
    EXPECT_FALSE(g.form.EndDrag());

    drag(1, 0, 1, 2.4);
    EXPECT_EQ(g.form.DragTip(), "Dig not before " + FormatDate(g.Day(2)));
    const auto moved = g.form.EndDrag();
    ASSERT_TRUE(moved);
    EXPECT_TRUE(moved->dependency == date && moved->date == g.Day(2));
    drag(1, 0, 1, 0.4);
    EXPECT_FALSE(g.form.EndDrag()) << "less than half a day";
    EXPECT_EQ(g.form.BeginDrag(g.X(4), g.form.GetY(2, 5), false), ChartForm::Drag::Link) << "no date decides";

    EXPECT_EQ(g.form.LinkAt(g.X(4), g.form.GetY(1, 8)), link);
    EXPECT_EQ(g.form.LinkAt(g.X(6), g.form.GetY(1, 8)), nullptr);
    EXPECT_TRUE(g.form.SelectAt(g.X(4), g.form.GetY(1, 8)));
    EXPECT_EQ(g.form.SelectedLink(), link);
    link->Delete();
    EXPECT_EQ(g.form.SelectedLink(), nullptr);
}

}  // namespace
}  // namespace vortan
