#include <set>

#include "charts/FixedMetrics.h"
#include "charts/PageCuts.h"
#include "charts/PrecedenceForm.h"
#include "charts/TextLines.h"
#include "charts/WorkBreakdownForm.h"
#include "cli/ChartData.h"
#include "cli/CliRun.h"
#include "reports/ChartTables.h"
#include "reports/CsvFile.h"
#include "support/Json.h"
#include "support/LoadedPlan.h"
#include "support/ModelBench.h"
#include "support/PlanGenerator.h"

namespace vortan {
namespace {

using DragState = ChartForm::DragState;
using Key = ChartForm::Key;
const FixedMetrics metrics;

template <class Data>
std::string JsonOf(const Data& data) {
    JsonWriter json;
    WriteChartJson(json, data);
    return json.Line();
}

/// Boxes in their order and links in any, without texts.
std::string PlacesIn(const QJsonValue& json) {
    std::string text;
    for (const QJsonValue box : json["boxes"].toArray()) {
        text += box["project"].toString().toStdString();
        for (const char* name : {"number", "task", "from", "to", "col", "row"})
            text += " " + std::to_string(box[name].toInt());
        text += "\n";
    }
    std::multiset<std::pair<int, int>> links;
    for (const QJsonValue link : json["links"].toArray()) links.emplace(link[0].toInt(), link[1].toInt());
    for (const auto& [from, to] : links) text += std::to_string(from) + "-" + std::to_string(to) + " ";
    return text + std::to_string(json["columns"].toInt()) + " by " + std::to_string(json["rows"].toInt());
}

TEST(PrecedenceData, GoldenPlansHaveTheKnownPlaces) {
    int compared = 0;
    for (const std::string& path : FilesIn(TestFile("golden/reports"), ".json")) {
        if (!path.ends_with(".precedence.json")) continue;
        LoadedPlan plan(FileBytes(path.substr(0, path.size() - 16) + ".vta"));
        PrecedenceForm form(plan.workspace, plan.solver, metrics);
        for (int i = 0; i < 2; ++i) form.Start();
        EXPECT_EQ(PlacesIn(ParseJson(JsonOf(form))), PlacesIn(ParseJson(FileBytes(path)))) << path;
        ++compared;
    }
    EXPECT_EQ(compared, 6);
}

TEST(PrecedenceData, EveryBoxHasAPlaceOfItsOwnRightOfWhatItWaitsFor) {
    std::size_t boxes = 0;
    for (std::uint64_t seed = 1; seed <= 60; ++seed) {
        PlanKnobs knobs = MixedKnobs(seed);
        knobs.tasks = 12;
        const LoadedPlan plan(GeneratePlan(seed, knobs));
        const Precedence made = BuildPrecedence(plan.workspace, plan.solver);
        std::set<std::pair<int, int>> places;
        for (const auto& box : made.boxes) {
            EXPECT_TRUE(places.emplace(box.col, box.row).second) << seed;
            EXPECT_GE(box.row, 0) << seed;
        }
        std::vector<int> longest(made.boxes.size());
        for (const auto& [from, to] : made.links) {
            ASSERT_LT(from, to);
            longest[std::size_t(to)] = std::max(longest[std::size_t(to)], longest[std::size_t(from)] + 1);
        }
        for (std::size_t i = 0; i < longest.size(); ++i) EXPECT_EQ(made.boxes[i].col, longest[i]) << seed;
        boxes += made.boxes.size();
    }
    EXPECT_GT(boxes, 1000u);
}

TEST(PrecedenceData, ABoxTellsTimesInEachStyle) {
    Precedence made;
    made.boxes.resize(2);
    made.boxes[0].earlyStart = DateTime(37137.25);
    auto& box = made.boxes[1];
    box.project = "P";
    box.title = "5: Walls (50%-100%)";
    box.earlyStart = DateTime(37140);
    box.earlyFinish = DateTime(37143.5);
    box.lateStart = DateTime(37139.75);
    box.lateFinish = DateTime(37143.25);
    using Style = PrecedenceStyle;
    using Units = PrecedenceUnits;
    const struct {
        Style style;
        Units units;
        bool showProject;
        const char* texts;
    } cases[] = {
        {Style::Index, Units::Days, true, "2"},
        {Style::Elapsed, Units::Weeks, false, "5: Walls (50%-100%)|0.4|0.5|0.9|0.4|0.0|0.9"},
        {Style::Elapsed, Units::Days, true, "P|5: Walls (50%-100%)|2.8|3.5|6.3|2.5|-0.3|6.0"},
        {Style::Elapsed, Units::Minutes, false,
         "5: Walls (50%-100%)|3960.0|5040.0|9000.0|3600.0|-360.0|8640.0"},
        {Style::Elapsed, Units::Months, false, "5: Walls (50%-100%)|0.1|0.1|0.2|0.1|0.0|0.2"},
        {Style::Date, Units::Hours, false,
         "5: Walls (50%-100%)|9/6/2001|84.0|9/9/2001|9/5/2001|-6.0|9/9/2001"},
        {Style::DateTime, Units::Days, false,
         "5: Walls (50%-100%)|9/6/2001\r\n12:00:00 AM|3.5|9/9/2001\r\n12:00:00 PM|"
         "9/5/2001\r\n6:00:00 PM|-0.3|9/9/2001\r\n6:00:00 AM"},
    };
    for (const auto& c : cases) {
        made.showProject = c.showProject;
        std::string texts;
        for (const std::string& text : BoxTexts(made, 1, c.style, c.units))
            texts += (texts.empty() ? "" : "|") + text;
        EXPECT_EQ(texts, c.texts);
    }
}

/// Columns 0: Dig 1, Pipes 3, Drawings 5; 1: Permit 2, half of Walls 4; 2: the other 3; 3: Paint 3. In
/// numbers a box is 300 wide and 250 high, the gap 300.
struct ShedDiagram : LoadedPlan {
    explicit ShedDiagram(PrecedenceStyle style = PrecedenceStyle::Index) : LoadedPlan(UsualShed()) {
        form.SetStyle(style);
        form.Start();
    }
    std::string Rows() const {
        std::string text;
        for (const auto& box : form.Data().boxes) text += std::to_string(box.row) + " ";
        return text;
    }
    /// The number of the box of the cursor after each key.
    std::string Walk(const std::vector<Key>& keys) {
        std::string text;
        for (const Key key : keys) {
            const bool done = form.Press(key);
            const Vtask* task = form.SubjectAtCursor().task;
            text += (done ? "" : "!") + std::to_string(task ? task->TaskID() : 0) + " ";
        }
        return text;
    }
    PrecedenceForm form{workspace, solver, metrics};
    const Vwindow& surface = form.TheVwindow();
};

TEST(PrecedenceFormTest, BoxesLieOnLines) {
    const struct {
        PrecedenceStyle style;
        int width, height, pitch, texts, rules;
    } cases[] = {{PrecedenceStyle::Index, 300, 250, 600, 1, 0},
                 {PrecedenceStyle::Elapsed, 3900, 750, 5000, 7, 4},
                 {PrecedenceStyle::DateTime, 3900, 1250, 5000, 7, 4}};
    for (const auto& c : cases) {
        ShedDiagram bench(c.style);
        const auto& items = bench.surface.Items();
        ASSERT_EQ(items.size(), 8u + 7 * std::size_t(1 + c.texts + c.rules));
        EXPECT_EQ(bench.form.GetX(3) - bench.form.GetX(0), 3 * c.pitch);
        const DrawItem& box = items[8];
        EXPECT_EQ(box.x2 - box.x1, c.width);
        EXPECT_EQ(box.y2 - box.y1, c.height);
        EXPECT_EQ(items[9].x1 + items[9].x2, box.x1 + box.x2) << "centred";
        EXPECT_EQ(items[0].x1, bench.form.GetX(0) + c.width);
        EXPECT_EQ(items[0].y1, items[8].y1 + c.height / 2);
        EXPECT_TRUE(bench.surface.IsComplete());
    }
    const ShedDiagram bench;
    EXPECT_EQ(bench.Rows(), "1 3 5 2 4 3 3 ");
    const int x = bench.form.GetX(2), y = bench.form.GetY(3);
    const std::string tip = bench.form.TipAt(x, y + 250);
    ExpectPart(tip,
               "5: Walls (50%-100%)\nBox 6\nStart: 9/9/2001 12:00:00 PM\nFinish: 9/10/2001 5:00:00 PM\n");
    ExpectPart(tip, "\nStarts after 4: Permit");
    ExpectPart(bench.form.TipAt(x - 150, bench.form.GetY(2) + 250), "4: Permit\nis before\n5: Walls (50%");
    EXPECT_EQ(bench.form.TipAt(0, 0), "");
}

TEST(PrecedenceFormTest, ADragFromTheRightEdgeIsALink) {
    ShedDiagram bench;
    const auto& boxes = bench.form.Data().boxes;
    const auto x = [&](std::size_t place) { return bench.form.GetX(boxes[place].col); };
    const auto y = [&](std::size_t place) { return bench.form.GetY(boxes[place].row) + 100; };
    for (const bool shift : {false, true}) {
        ASSERT_EQ(bench.form.BeginDrag(x(0) + (shift ? 10 : 299), y(0), shift), ChartForm::Drag::Link);
        bench.form.DragTo(x(6) + 10, y(6));
        const auto wish = bench.form.EndDrag();
        ASSERT_TRUE(wish);
        EXPECT_TRUE(wish->required == boxes[0].task.Get() && wish->task == boxes[6].task.Get());
        EXPECT_TRUE(wish->fromPercent == 100 && wish->toPercent == 0);
    }
    bench.form.BeginDrag(x(0) + 299, y(0), false);
    bench.form.CancelDrag();
    EXPECT_FALSE(bench.form.EndDrag());
    EXPECT_FALSE(bench.form.HasMovedBoxes());
}

TEST(PrecedenceFormTest, ADragJumpsOverBoxesAndPushesTheOthersAtTheTop) {
    ShedDiagram bench;
    EXPECT_EQ(bench.form.BeginDrag(100, 0, false), ChartForm::Drag::None);
    ASSERT_EQ(bench.form.BeginDrag(200, 320, false), ChartForm::Drag::UpDown);
    EXPECT_EQ(bench.form.DragTo(0, 570), DragState::Still);
    EXPECT_FALSE(bench.form.HasMovedBoxes());
    EXPECT_EQ(bench.form.DragTo(0, 571), DragState::Moved);
    EXPECT_EQ(bench.form.DragTo(0, 1070), DragState::Still) << "the next row is held";
    EXPECT_EQ(bench.form.DragTo(0, 1071), DragState::Moved);
    EXPECT_EQ(bench.Rows(), "4 3 5 2 4 3 3 ");
    for (const int y : {0, 0, 0}) EXPECT_EQ(bench.form.DragTo(0, y), DragState::Moved);
    EXPECT_EQ(bench.Rows(), "0 3 5 2 4 3 3 ");
    EXPECT_EQ(bench.form.DragTo(0, -500), DragState::None);
    EXPECT_EQ(bench.Rows(), "0 4 6 3 5 4 4 ");
    EXPECT_EQ(bench.form.DragTo(0, 900), DragState::None);
    EXPECT_TRUE(bench.form.HasMovedBoxes());
    EXPECT_EQ(bench.surface.Items()[8].y1, bench.form.GetY(0));
    bench.form.Start();
    EXPECT_EQ(bench.Rows(), "1 3 5 2 4 3 3 ");
    EXPECT_FALSE(bench.form.HasMovedBoxes());
}

TEST(PrecedenceFormTest, KeysWalkAlongLinksAndColumns) {
    ShedDiagram bench;
    EXPECT_FALSE(bench.form.Cursor());
    EXPECT_EQ(bench.Walk({Key::Right, Key::Up, Key::Down, Key::Down, Key::Right, Key::Right, Key::Left,
                          Key::Left, Key::Left}),
              "1 !1 2 3 5 5 4 3 !3 ");
    EXPECT_EQ(bench.Walk({Key::MoveUp, Key::MoveUp}), "3 3 ");
    EXPECT_EQ(bench.Rows(), "1 3 2 2 4 3 3 ");
    EXPECT_EQ(bench.form.Cursor()->y1, bench.form.GetY(2));
}

TEST(PrecedenceFormTest, WithoutTasksItSaysSo) {
    LoadedPlan empty;
    PrecedenceForm form(empty.workspace, empty.solver, metrics);
    empty.platform.ExpectBox("Empty Precedence Diagram", BoxAnswer::Ok, "There are no tasks to display.");
    form.Start();
    EXPECT_TRUE(form.IsEmpty());
    EXPECT_TRUE(form.TheVwindow().IsComplete());
    EXPECT_FALSE(form.Press(Key::Down));
    EXPECT_EQ(JsonOf(form),
              "{\"chart\":\"precedence\",\"boxes\":[],\"links\":[],\"columns\":0,\"rows\":0}\n");
}

TEST(FittingPart, CutsBetweenCharacters) {
    EXPECT_EQ(FittingPart("abc", 300, metrics), "abc");
    EXPECT_EQ(FittingPart("abc", 299, metrics), "ab");
    EXPECT_EQ(FittingPart("abc", 99, metrics), "");
    EXPECT_EQ(FittingPart("a\xF0\x9F\x9A\xA7z", 400, metrics), "a");
    EXPECT_EQ(FittingPart("ab\r\nabc", 200, metrics), "ab\r\nab");
}

/// Letters are 100 wide and 200 high; a page is 15000 by 9000.
struct BreakdownBench : ModelBench {
    Vproject* Named(const std::string& name) {
        Vproject* project = Project(name);
        project->SetDescription("");
        return project;
    }
    Vtask* Task(Vproject* project, int id, const std::string& text, Vproject* subproject = nullptr) {
        Vtask* task = project->FindOrCreateTask(id);
        task->SetDescription(text);
        if (subproject) task->SetSubproject(subproject);
        return task;
    }
    std::string Made() {
        form.Start();
        std::string text;
        const auto add = [&](const WorkBreakdown::Text& each) {
            text += each.text + " " + std::to_string(each.level) + " " + std::to_string(each.x) + " " +
                    std::to_string(each.y) + "; ";
        };
        for (const auto& box : form.Data().boxes) add(box);
        text += "| ";
        for (const auto& line : form.Data().lines) add(line);
        return text;
    }
    std::string Strokes() const {
        std::string text;
        for (const auto& s : form.Data().strokes) {
            for (const int at : {s.x1, s.y1, s.x2, s.y2}) text += std::to_string(at) + " ";
            text += "; ";
        }
        return text;
    }
    Vproject* top = (workspace.SetThisProject(Named("P")), workspace.ThisProject());
    WorkBreakdownForm form{workspace, metrics};
};

TEST(WorkBreakdownFormTest, SubprojectsHangFromABus) {
    BreakdownBench bench;
    Vproject* s = bench.Named("S");
    bench.Task(bench.top, 1, "A");
    bench.Task(bench.top, 2, "", s);
    bench.Task(bench.top, 3, "Gone")->Delete();
    bench.Task(s, 1, "B");
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(bench.Made(), "P 0 6800 200; S 1 400 1050; | 1: A 0 7100 450; 1: B 1 700 1300; ");
    EXPECT_EQ(bench.Strokes(),
              "6900 550 7100 550 ; 6900 450 6900 550 ; 6900 550 6900 800 ; 550 800 6900 800 ; "
              "550 800 550 1050 ; 500 1400 700 1400 ; 500 1300 500 1400 ; ");
    EXPECT_EQ(bench.form.SubjectAt(410, 1060).task->TaskID(), 2);
    ExpectPart(bench.form.TipAt(7150, 460), "1: A\nStart: ");
    EXPECT_EQ(DataCsvOf(TableOf(bench.form.Data())).substr(0, 77),
              "Kind,Level,Text,X,Y,Width,Height\r\nbox,0,P,6800,200,200,200\r\nbox,1,S,400,1050,");
    // The first one that is too wide for a page stands below all the same.
    s->SetDescription(std::string(10000, 'x'));
    bench.top->SetDescription(std::string(10000, 'x'));
    bench.form.Start();
    EXPECT_EQ(bench.form.Data().boxes[0].x, 100);
    EXPECT_EQ(bench.form.Data().boxes[1].y, 1050);
    EXPECT_EQ(bench.form.Data().across, 67);
}

TEST(WorkBreakdownFormTest, NestedSubprojectsAreAskedForOnce) {
    const struct {
        const char* answer;
        const char* lines;  // none: empty
    } cases[] = {{"4", "1: N 1 700 1100; 1: C 2 1000 1300; "},
                 {"3", "1: N 1 700 1100; "},
                 {"2", "1: N 1 700 1100; "},
                 {"1", nullptr},
                 {"", nullptr},
                 {"x", nullptr}};
    for (const auto& c : cases) {
        BreakdownBench bench;
        Vproject *s = bench.Named("S"), *n = bench.Named("N");
        bench.Task(bench.top, 1, "", s);
        bench.Task(s, 1, "", n);
        bench.Task(n, 1, "C");
        bench.platform.ExpectInput({*c.answer != '\0', c.answer});
        const std::string made = bench.Made();
        EXPECT_EQ(bench.platform.offered, "3");
        EXPECT_EQ(bench.form.IsEmpty(), !c.lines) << c.answer;
        if (!c.lines) continue;
        EXPECT_EQ(made.substr(made.find("| ") + 2), c.lines);
        EXPECT_EQ(bench.Made(), made) << "not asked again";
    }
}

TEST(WorkBreakdownFormTest, LinesFallOnPagesAsTheyAreCut) {
    BreakdownBench bench;
    for (int id = 1; id <= 50; ++id) bench.Task(bench.top, id, "A");
    bench.form.Start();
    const auto& lines = bench.form.Data().lines;
    EXPECT_EQ(lines[41].y, 8650);
    EXPECT_EQ(lines[42].y, 9200) << "not across the edge";
    EXPECT_EQ(bench.form.Data().down, 2);
    const Vwindow& surface = bench.form.TheVwindow();
    const auto pieces =
        PageCuts(PageStatsOf(surface, surface.ThePage())).Pieces(PageCuts::Choice::SingleHeading);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[1].y1, 9000);
}

TEST(DiagramForms, AnyNameGivesAChart) {
    for (const std::string& name : {std::string(10000, 'x'), std::string("\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D"),
                                    std::string("\xF0\x9F\x9A\xA7\xF0\x9F\x9A\xA7")}) {
        for (const auto style :
             {PrecedenceStyle::Index, PrecedenceStyle::Elapsed, PrecedenceStyle::DateTime}) {
            ShedDiagram bench(style);
            bench.Task("Shed", 1)->SetDescription(name);
            bench.workspace.ThisProject()->SetDescription(name);
            bench.form.Start();
            EXPECT_EQ(bench.form.Data().boxes[0].title, "1: " + name);
            for (const DrawItem& item : bench.surface.Items())
                EXPECT_TRUE(item.kind != DrawItem::Kind::Text || item.x2 - item.x1 <= 3900);
            WorkBreakdownForm breakdown(bench.workspace, metrics);
            breakdown.Start();
            EXPECT_EQ(breakdown.Data().lines[0].text, "1: " + name);
        }
    }
    // Projects that hold each other.
    BreakdownBench bench;
    Vproject* s = bench.Named("S");
    bench.Task(bench.top, 1, "", s);
    bench.Task(s, 1, "", bench.top);
    bench.form.SetLevels(99);
    EXPECT_EQ(bench.Made().substr(0, 8), "P 0 7100");
}

class DiagramCommands : public CliFixture {};

TEST_F(DiagramCommands, OptionsAreThoseOfTheKind) {
    const std::string plan = FileWith("shed.vta", UsualShed());
    ExpectPart(Done({"chart", "precedence", plan, "--json", "--style", "elapsed", "--units", "hours"}),
               "\"lines\":[\"4: Permit\",\"76.0\",\"72.0\",");
    Done({"chart", "precedence", plan, "-o", PathOf("a.csv")});
    ExpectPart(FileBytes(PathOf("a.csv")), "\r\n4,Shed,4,0,100,1,2,6 7,4\r\n");
    ExpectPart(Done({"chart", "wbs", plan, "--json"}),
               "{\"chart\":\"wbs\",\"pages\":{\"across\":1,\"down\":1},");
    ExpectPart(Refused({"chart", "precedence", plan, "--json", "--style", "round"}), "no style");
    ExpectPart(Refused({"chart", "precedence", plan, "--json", "--units", "years"}), "no unit");
    ExpectPart(Refused({"chart", "wbs", plan, "--json", "--levels", "1"}), "2 or more");
    for (const char* kind : {"wbs", "gantt"})
        EXPECT_NE(Refused({"chart", kind, plan, "-o", PathOf("a.svg"), "--style", "date"}), "");
}

}  // namespace
}  // namespace vortan
