#include <QClipboard>
#include <QMimeData>
#include <QScrollBar>
#include <random>

#include "model/Fault.h"
#include "paint/ChartPainter.h"
#include "paint/Pictures.h"
#include "shell/Shell.h"
#include "shell/pages/ChartPage.h"
#include "shell/widgets/ElidedLabel.h"
#include "support/Paths.h"

namespace vortan {
namespace {

/// The plan of a house, solved, with its chart in front.
class ChartPageTest : public ::testing::Test {
  protected:
    ChartPageTest() {
        shell.desktop.files.LoadFile(ExampleFile("house.vta"));
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
    EXPECT_EQ(Q(shell.main.FullPage()->Surface()->title), shell.main.FullPage()->Window().windowTitle());
    // Not while the chart is of an old solution.
    workspace.RestartSolve();
    shell.platform.ExpectBox("Waiting For Solve To Complete", BoxAnswer::Ok);
    shell.Choose("GraphicsGanttMenu");
    EXPECT_TRUE(Open() && shell.main.Action("GraphicsGanttMenu").isChecked());
    shell.Solve();
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
    auto& surface = static_cast<SurfaceView&>(view);
    const int heading0 = surface.CellTop(0), row5 = surface.CellTop(5);
    const QImage headingBefore = Seen(heading), bodyBefore = Seen(body);
    ASSERT_GT(view.verticalScrollBar()->maximum(), 100);
    view.verticalScrollBar()->setValue(100);
    EXPECT_EQ(Seen(heading), headingBefore);
    EXPECT_NE(Seen(body), bodyBefore);
    EXPECT_EQ(surface.CellTop(0), heading0);
    EXPECT_EQ(surface.CellTop(5), row5 - 100);
}

TEST_F(ChartPageTest, TheOptionsCanBeDraggedAside) {
    auto& frame = shell.Find<QWidget>("OptionsFrame");
    EXPECT_GT(frame.x(), shell.main.FullPage()->Surface()->surface.ContentWidth() / 15);  // hides nothing
    const QPoint before = frame.pos(), grip(5, 5);
    QTest::mousePress(&frame, Qt::LeftButton, {}, grip);
    QMouseEvent move(QEvent::MouseMove, grip + QPointF(-300, 100),
                     frame.mapToGlobal(grip + QPoint(-300, 100)), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&frame, &move);
    EXPECT_EQ(frame.pos(), before + QPoint(-300, 100));
    workspace.BroadcastNewSolution();
    EXPECT_EQ(frame.pos(), before + QPoint(-300, 100));
    shell.Click("PreferencesCommand");
    EXPECT_TRUE(shell.IsOpen("PreferencesForm"));
}

/// A chart with a fault in its "layout" or its "picture".
struct BrokenForm : ChartForm {
    BrokenForm(const TextMetrics& metrics, const std::string& what)
        : ChartForm(Vwindow::Style::Time, metrics), broken(what) {}
    std::string Name() const override { return "BrokenForm"; }
    std::string Caption() const override { return "Broken"; }
    void Start() override { vwindow_.SetDateRange(DateTime(37137), DateTime(37140)); }
    Answers AnswersTo() const override { return {.newSolution = Answer::Start}; }
    void LayOut() override {
        vwindow_.ClearLayout();
        if (broken == "layout") Refuse("No layout");
        vwindow_.AddTimeColumns();
        vwindow_.EndLayout(0, 0);
    }
    void Draw() override {
        vwindow_.DrawLine(0, 0, 9, 9);
        if (broken == "picture") Refuse("No picture");
        vwindow_.EndGraphics();
    }
    const std::string& broken;
};

TEST_F(ChartPageTest, AFaultEndsNothingButTheDrawing) {
    std::string broken;
    const auto front = [this] { return S(shell.main.FullPage()->FormName()); };
    const auto start = [&](const char* what) {
        broken = what;
        shell.platform.ExpectBox("Internal Error", BoxAnswer::Ignore, "No " + broken);
        ChartPage::Start(shell.desktop, "BrokenForm", [&](const TextMetrics& metrics) {
            return std::make_unique<BrokenForm>(metrics, broken);
        });
    };
    const auto solve = [&] {
        workspace.RestartSolve();
        shell.Solve();
        EXPECT_EQ(shell.desktop.solver.SolveMessage(), "Solve complete");
    };
    // What could not be shown is gone, and hears nothing more.
    start("layout");
    EXPECT_EQ(front(), "GanttForm");
    solve();
    // A picture that was begun is shown, and is not for other programs.
    start("picture");
    ASSERT_EQ(front(), "BrokenForm");
    EXPECT_EQ(shell.main.FullPage()->Surface()->surface.Items().size(), 1u);
    for (const char* action : {"OutputCopyMenu", "OutputPrintMenu"}) {
        shell.platform.ExpectBox("Not Applicable", BoxAnswer::Ok, "There is nothing to ");
        shell.Choose(action);
    }
    broken.clear();
    solve();
    shell.Choose("OutputPrintMenu");
    broken = "layout";
    shell.platform.ExpectBox("Internal Error", BoxAnswer::Ignore);
    solve();
    EXPECT_FALSE(shell.Find<QPushButton>("ContinueCommand(6)").isEnabled());
    EXPECT_TRUE(shell.Find<QPushButton>("ContinueCommand(7)").isEnabled());
    shell.main.grab();
}

/// How far the grey values of a pixel differ at most.
int MostApart(const QImage& a, const QImage& b, const QRect& part) {
    int most = 0;
    const QRect seen = part & a.rect();
    for (int y = seen.top(); y <= seen.bottom(); ++y) {
        for (int x = seen.left(); x <= seen.right(); ++x)
            most = std::max(most, std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))));
    }
    return most;
}

TEST_F(ChartPageTest, PaintedInPiecesItIsTheSame) {
    constexpr int kPixel = 15, kSeen = 50;
    const ShownSurface shown = *shell.main.FullPage()->Surface();
    const QSize size(shown.surface.ContentWidth() / kPixel + 1, shown.surface.ContentHeight() / kPixel + 1);
    const auto paint = [&](QImage& image, const QRect& part) {
        QPainter painter(&image);
        painter.scale(1.0 / kPixel, 1.0 / kPixel);
        const QRect twips(part.topLeft() * kPixel, part.size() * kPixel);
        ChartPainter(shown.surface, shown.metrics).Paint(painter, twips, kPixel);
    };
    QImage whole(size, QImage::Format_RGB32), pieces(size, QImage::Format_RGB32);
    paint(whole, QRect({}, size));
    pieces = whole;
    std::vector<int> arrows;
    for (const DrawItem& item : shown.surface.Items())
        if (item.kind == DrawItem::Kind::Line && item.x1 == item.x2) arrows.push_back(item.x1);
    std::minstd_rand random(1);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    for (int i = 0; i < 400; ++i) {
        QRect part(below(size.width()), below(size.height()), 20 + below(500), 20 + below(300));
        // Edges along an arrow are where it goes wrong.
        const int x = arrows[static_cast<std::size_t>(below(static_cast<int>(arrows.size())))] / kPixel;
        if (i % 3 == 1) part.moveLeft(x);
        if (i % 3 == 2) part.moveRight(x);
        paint(pieces, part);
        ASSERT_LT(MostApart(pieces, whole, part), kSeen)
            << part.x() << " " << part.y() << " " << part.width() << " " << part.height();
    }
}

TEST_F(ChartPageTest, ACopyIsAPictureForOtherPrograms) {
    shell.Choose("OutputCopyMenu");
    EXPECT_EQ(shell.Find<ElidedLabel>("MessagePanel").text(), "Copied to the clipboard");
    const QMimeData& data = *QApplication::clipboard()->mimeData();
    EXPECT_TRUE(data.data("image/svg+xml").contains("Slab cures"));
    const auto image = data.imageData().value<QImage>();
    EXPECT_GT(image.width(), 1000);
    EXPECT_FALSE(data.hasText());

    // In a report the chart stands in the middle of white, as wide as high as it was.
    const std::string rtf = GetPictureText(*shell.main.FullPage()->Surface());
    EXPECT_EQ(rtf.find_first_not_of("0123456789abcdef"), std::string::npos);
    const auto fitted = QImage::fromData(QByteArray::fromHex(QByteArray::fromStdString(rtf)), "PNG");
    EXPECT_EQ(fitted.size(), QSize(1512, 945));
    QRect inked;
    for (int y = 0; y < fitted.height(); ++y) {
        for (int x = 0; x < fitted.width(); ++x)
            if (fitted.pixelColor(x, y) != Qt::white) inked |= QRect(x, y, 1, 1);
    }
    EXPECT_NEAR(inked.width() / double(inked.height()), image.width() / double(image.height()), 0.02);
    EXPECT_NEAR(inked.center().x(), 756, 3);
    EXPECT_NEAR(inked.center().y(), 472, 3);
}

}  // namespace
}  // namespace vortan
