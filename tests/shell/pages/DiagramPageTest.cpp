#include "charts/HistogramForm.h"
#include "charts/PrecedenceForm.h"
#include "shell/Shell.h"
#include "shell/pages/ChartPage.h"
#include "support/Paths.h"

namespace vortan {
namespace {

/// The plan of a house, solved, and the charts that stay as they were built.
class DiagramPageTest : public ::testing::Test {
  protected:
    DiagramPageTest() {
        shell.desktop.files.LoadFile(ExampleFile("house.vta"));
        shell.Solve();
        first = workspace.ThisProject()->FindTask(1);
    }
    SurfaceView& View() { return static_cast<SurfaceView&>(shell.Find<QAbstractScrollArea>("Vwindow")); }
    template <class Form>
    Form& Chart(const char* name) {
        return static_cast<Form&>(*ChartPage::InFront(shell.desktop, name));
    }
    void Key(int key, Qt::KeyboardModifiers held = {}) {
        QTest::keyClick(&View(), static_cast<Qt::Key>(key), held);
    }
    void ChangeThePlan() {
        shell.desktop.Run("Test:Change", [this] { first->SetMostLikely(first->MostLikely() * 2); });
    }
    bool IsBehind() { return shell.Find<QFrame>("BehindFrame").isVisible(); }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
    Vtask* first;
};

TEST_F(DiagramPageTest, AChartThatIsBehindSaysSoUntilItIsBuiltAnew) {
    for (const char* name : {"Histogram", "Budget", "Precedence", "WorkBreakdown"}) {
        SCOPED_TRACE(name);
        shell.Choose(("Graphics" + std::string(name) + "Menu").c_str());
        EXPECT_FALSE(IsBehind());
        const int top = View().y();
        ChangeThePlan();
        EXPECT_TRUE(IsBehind());
        QCoreApplication::processEvents();
        EXPECT_GT(View().y(), top);
        shell.platform.ExpectBox("Waiting For Solve To Complete", BoxAnswer::Ok);
        Key(Qt::Key_F5);
        EXPECT_TRUE(IsBehind());
        shell.Solve();
        shell.Click("BuildAnewCommand");
        EXPECT_FALSE(IsBehind());
        workspace.BroadcastNewSolution();
        EXPECT_TRUE(IsBehind());
        Key(Qt::Key_F5);
        EXPECT_FALSE(IsBehind());
        Key(Qt::Key_Escape);
        EXPECT_FALSE(shell.main.FullPage());
        EXPECT_FALSE(shell.main.Action(("Graphics" + std::string(name) + "Menu").c_str()).isChecked());
    }
}

TEST_F(DiagramPageTest, BoxesAreWalkedMovedAndOpened) {
    shell.Choose("GraphicsPrecedenceMenu");
    auto& chart = Chart<PrecedenceForm>("PrecedenceForm");
    Key(Qt::Key_Right);  // to the first box
    const auto start = chart.Cursor();
    ASSERT_TRUE(start);
    Key(Qt::Key_Right);
    EXPECT_GT(chart.Cursor()->x1, start->x1);
    Key(Qt::Key_Left);
    EXPECT_EQ(chart.Cursor()->x1, start->x1);
    const int row = chart.Data().boxes[0].row;
    Key(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_GT(chart.Data().boxes[0].row, row);
    ChangeThePlan();
    EXPECT_TRUE(shell.Find<QLabel>("BehindLabel").text().contains("moved"));
    shell.Solve();
    Key(Qt::Key_Return);
    EXPECT_EQ(shell.Value("TaskIdText"), std::to_string(chart.Data().boxes[0].taskID));
    shell.Click("CancelCommand");

    // The mouse does the same, a whole box at a time.
    const auto box = *chart.Cursor();
    const double twips = 1440.0 / View().logicalDpiX();
    const QPoint at((QPointF(box.x1 + box.x2, box.y1 + box.y2) / 2 / twips).toPoint());
    const int moved = chart.Data().boxes[0].row, height = static_cast<int>((box.y2 - box.y1) / twips) + 2;
    QTest::mousePress(View().viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(View().viewport()->cursor().shape(), Qt::SizeVerCursor);
    QTest::mouseMove(View().viewport(), at + QPoint(0, height - 4));
    EXPECT_EQ(chart.Data().boxes[0].row, moved);
    QTest::mouseMove(View().viewport(), at + QPoint(0, 3 * height));
    EXPECT_GT(chart.Data().boxes[0].row, moved);
    QTest::mouseRelease(View().viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(View().viewport()->cursor().shape(), Qt::ArrowCursor);
    shell.Click("StyleOption(3)");
    EXPECT_EQ(chart.Data().boxes[0].row, row);
    EXPECT_FALSE(IsBehind());
}

TEST_F(DiagramPageTest, OptionsFollowEachOther) {
    shell.Choose("GraphicsBudgetMenu");
    const auto on = [this](const char* name) { return shell.Find<QCheckBox>(name).isChecked(); };
    EXPECT_FALSE(on("CurrentCheck")) << "there is one journal";
    shell.Click("EarnedValueCheck");
    EXPECT_TRUE(on("EarnedValueCheck") && !on("PlanCheck") && on("TotalCostCheck") && !on("LaborCostCheck"));
    shell.Click("LaborCostCheck");
    EXPECT_TRUE(on("LaborCostCheck") && !on("TotalCostCheck"));
    shell.Click("PlanCheck");
    EXPECT_TRUE(on("PlanCheck") && !on("EarnedValueCheck"));
    shell.Click("LaborCostCheck");
    EXPECT_TRUE(on("TotalCostCheck"));
}

TEST_F(DiagramPageTest, TheFilterShowsWhatWasChosen) {
    shell.Choose("GraphicsHistogramMenu");
    const std::size_t all = Chart<HistogramForm>("HistogramForm").Data().rows.size();
    shell.Do("FilterCommand!;NarrowText=wEb;NoneCommand!;OkCommand!");
    EXPECT_EQ(Chart<HistogramForm>("HistogramForm").Data().rows.size(), all - 1);
    EXPECT_TRUE(shell.main.windowTitle().contains("filtered"));
    shell.Do("FilterCommand!;NoneCommand!");
    shell.ExpectRefused("Nothing To Show", "Please choose a resource at least.", "ResourceList");
    shell.Do("AllCommand!;OkCommand!");
    EXPECT_FALSE(shell.main.windowTitle().contains("filtered"));
}

TEST_F(DiagramPageTest, AnEmptyHistogramGoesAway) {
    Vtemplate* nobody = workspace.FindOrCreateTemplate("Nobody");
    nobody->AddJournal(*ParseDate("1/1/2027"));
    workspace.SetThisTemplate(nobody);
    shell.Solve();
    shell.platform.ExpectBox("Empty Histogram", BoxAnswer::Ok, "There are no resources to display.");
    shell.Choose("GraphicsHistogramMenu");
    EXPECT_FALSE(shell.main.FullPage());
}

TEST(WorkBreakdownPage, TheLevelsAreAskedForOnce) {
    Shell shell;
    shell.desktop.files.LoadFile(ExampleFile("launch.vta"));
    shell.Solve();
    shell.platform.ExpectInput({false, ""});
    shell.Choose("GraphicsWorkBreakdownMenu");
    EXPECT_FALSE(shell.main.FullPage()) << "nobody said how many levels";
    shell.platform.ExpectInput({true, "4"});
    shell.Choose("GraphicsWorkBreakdownMenu");
    QTest::keyClick(&shell.Find<QAbstractScrollArea>("Vwindow"), Qt::Key_F5);
    EXPECT_TRUE(shell.main.FullPage());
}

}  // namespace
}  // namespace vortan
