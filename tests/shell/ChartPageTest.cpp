#include <QScrollBar>

#include "paint/Pictures.h"
#include "shell/ChartPage.h"
#include "shell/Shell.h"

namespace vortan {
namespace {

/// The plan of a house, solved, with its chart in front.
class ChartPageTest : public ::testing::Test {
  protected:
    ChartPageTest() {
        shell.desktop.files.LoadFile(EXAMPLES "/house.vta");
        shell.Solve();
        shell.Choose("GraphicsGanttMenu");
    }
    bool Open() { return shell.main.FullPage() != nullptr; }
    QImage Seen(const QRect& part) {
        return shell.Find<QAbstractScrollArea>("Vwindow").viewport()->grab(part).toImage();
    }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
};

TEST_F(ChartPageTest, TheCommandOpensAndCloses) {
    EXPECT_TRUE(Open());
    EXPECT_TRUE(shell.main.Action("GraphicsGanttMenu").isChecked());
    EXPECT_TRUE(
        shell.main.windowTitle().endsWith("Mechanized Gantt chart for House: Family house, 4 Orchard "
                                          "Lane PM:Maria Holt"));
    shell.Click("Toolbar.Mechanized Gantt");
    EXPECT_FALSE(Open());
    EXPECT_FALSE(shell.main.Action("GraphicsGanttMenu").isChecked());
    EXPECT_FALSE(shell.main.windowTitle().contains("Gantt"));
    EXPECT_TRUE(shell.Find<QWidget>("ProjectTreeForm").isVisible());
    shell.Choose("GraphicsGanttMenu");
    workspace.BroadcastNewThisProject();
    EXPECT_FALSE(Open());
}

TEST_F(ChartPageTest, ANewSolutionIsDrawn) {
    const QRect everything(0, 0, 2000, 2000);
    const QImage before = Seen(everything);
    Vtask* first = workspace.ThisProject()->FindTask(1);
    first->SetMostLikely(first->MostLikely() * 3);
    workspace.RestartSolve();
    shell.Solve();
    EXPECT_TRUE(Open());
    EXPECT_NE(Seen(everything), before);
}

TEST_F(ChartPageTest, HeadingsStayInViewWhileTheRestScrolls) {
    auto& view = shell.Find<QAbstractScrollArea>("Vwindow");
    const QRect heading(0, 0, view.viewport()->width(), 20), body(0, 100, 300, 200);
    const QImage headingBefore = Seen(heading), bodyBefore = Seen(body);
    ASSERT_GT(view.verticalScrollBar()->maximum(), 100);
    view.verticalScrollBar()->setValue(100);
    EXPECT_EQ(Seen(heading), headingBefore);
    EXPECT_NE(Seen(body), bodyBefore);
}

TEST_F(ChartPageTest, PicturesHoldTheWholeSurface) {
    QFont font("Times New Roman");
    font.setPointSizeF(9);
    const QtTextMetrics metrics(font);
    GanttForm chart(workspace, shell.desktop.settings, metrics);
    chart.Start();
    const Vwindow& surface = chart.TheVwindow();
    const auto make = [&](PictureType type) { return MakePicture(surface, metrics, type, "House", 144); };
    const QImage png = QImage::fromData(make(PictureType::Png), "PNG");
    EXPECT_NEAR(png.width(), surface.ContentWidth() / 10, 2);
    EXPECT_NEAR(png.height(), surface.ContentHeight() / 10, 2);
    EXPECT_TRUE(make(PictureType::Svg).contains("Slab cures"));
    EXPECT_TRUE(make(PictureType::Pdf).startsWith("%PDF"));
    EXPECT_FALSE(PictureTypeOf("plan.gif"));
    EXPECT_EQ(PictureTypeOf("plan.SVG"), PictureType::Svg);
}

}  // namespace
}  // namespace vortan
