#include <QTextBrowser>
#include <QWheelEvent>

#include "charts/GanttForm.h"
#include "shell/Shell.h"
#include "shell/main/ContextPage.h"
#include "shell/pages/ChartPage.h"
#include "shell/pages/WhyPane.h"
#include "solve/WhyText.h"
#include "support/TextPlan.h"

namespace vortan {
namespace {

/// Two tasks of one person, the first on a date, in a plan with two journals.
class GrabTest : public ::testing::Test {
  protected:
    GrabTest() {
        MakePlan(shell.desktop.workspace,
                 "journals 9/3/2001 9/6/2001; template Crew; resource 1 \"Ann\" $50; project Shed rule 1; "
                 "task 1 \"Dig\" work 960 start=9/3/2001_8:00 by 1; task 2 \"Wall\" work 960 after 1 by 1; "
                 "task 3 \"End\" dates after 2");
        workspace.BroadcastNewThisTemplate();
        workspace.BroadcastNewThisProject();
        shell.desktop.Run("Test", [] {});
        Solve();
    }
    void Solve() {
        while (shell.platform.solveTimerArmed) shell.desktop.SolveTimerTick();
    }
    Vtask& Task(int id) { return *workspace.ThisProject()->FindTask(id); }
    std::string Undoable() { return workspace.TheHistory().UndoName(); }

    SurfaceView& View() { return static_cast<SurfaceView&>(shell.Find<QAbstractScrollArea>("Vwindow")); }
    GanttForm& Chart() { return static_cast<GanttForm&>(*ChartPage::InFront(shell.desktop, "GanttForm")); }
    /// Within the bar of a task, in pixels of the view.
    QPoint At(int id, double share) {
        const Vwindow& surface = Chart().TheVwindow();
        const double x1 = surface.DateToX(Task(id).EarlyStart()),
                     x2 = surface.DateToX(Task(id).EarlyFinish());
        return (QPointF(x1 + share * (x2 - x1), Chart().GetY(id, 5)) * View().logicalDpiX() / 1440.0)
            .toPoint();
    }
    void Drag(const QPoint& from, const QPoint& to, bool escape = false) {
        QTest::mousePress(View().viewport(), Qt::LeftButton, {}, from);
        QTest::mouseMove(View().viewport(), to);
        if (escape) QTest::keyClick(&View(), Qt::Key_Escape);
        QTest::mouseRelease(View().viewport(), Qt::LeftButton, {}, to);
        Solve();
    }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
};

TEST_F(GrabTest, EachGestureIsOneStep) {
    shell.Choose("GraphicsGanttMenu");
    const std::string before = Undoable();
    Drag(At(1, 0.5), At(2, 0.5), true);
    shell.platform.ExpectBox("Invalid Task", BoxAnswer::Ok);
    Drag(At(1, 0.5), At(1, 0.9));
    EXPECT_TRUE(shell.platform.AllBoxesCame());
    EXPECT_EQ(Undoable(), before);

    Drag(At(2, 0.5), At(3, 0));
    const Vdependency* made = Task(3).DependencyList().back();
    EXPECT_EQ(Task(3).DependencyList().size(), 2u);
    EXPECT_TRUE(made->TaskRequired() == &Task(2) && made->FromPercent() == 50 && made->ToPercent() == 0);
    shell.Choose("EditUndoMenu");
    Solve();
    EXPECT_EQ(Task(3).DependencyList().size(), 1u);
    EXPECT_EQ(Undoable(), before);

    shell.Choose("GraphicsGanttMenu");
    const DateTime start = Task(1).EarlyStart();
    const QPoint edge = At(1, 0), day = At(1, 1) - edge;
    Drag(edge, edge + day);  // 9/3 8:00 to 9/4 17:00
    EXPECT_EQ(DaysBetween(start, Task(1).EarlyStart()), 1);

    const double scale = View().logicalDpiX() / 1440.0;
    const QPoint link(At(2, 0).x(), static_cast<int>(Chart().GetY(1, 8) * scale));
    QTest::mouseClick(View().viewport(), Qt::LeftButton, {}, link);
    ASSERT_EQ(Chart().SelectedLink(), Task(2).DependencyList().front());
    shell.platform.ExpectBox("Confirm Delete dependency", BoxAnswer::Yes);
    QTest::keyClick(&View(), Qt::Key_Delete);
    EXPECT_TRUE(Task(2).DependencyList().empty());
    Solve();

    const DateTime under = Chart().TheVwindow().XToDate(View().ToSurface(At(2, 0.5)).x());
    const auto period = Chart().TheVwindow().ThePeriod();
    const QPoint at = At(2, 0.5);
    QWheelEvent wheel(at, View().viewport()->mapToGlobal(at), {}, {0, -120}, {}, Qt::ControlModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(View().viewport(), &wheel);
    EXPECT_NE(Chart().TheVwindow().ThePeriod(), period);
    EXPECT_NEAR(Chart().TheVwindow().DateToX(under), View().ToSurface(at).x(), 1440);

    QTest::mouseDClick(View().viewport(), Qt::LeftButton, {}, At(2, 0.5));
    EXPECT_EQ(shell.Value("TaskIdText"), "2");
}

TEST_F(GrabTest, ThePaneFollowsTheSelectionAndEachEdit) {
    const auto why = [this] { return S(shell.Find<QTextBrowser>("WhyText").toPlainText()); };
    const auto effect = [this] { return S(shell.Find<QTextBrowser>("EffectText").toPlainText()); };
    shell.Choose("EditWhyMenu");
    EXPECT_TRUE(why().starts_with("Select a task"));
    shell.Select(&Task(2));
    Solve();
    const WhyReport report = ExplainTask(shell.desktop.solver, Task(2));
    EXPECT_FALSE(report.stretches.empty()) << "the solve watched it";
    QString expected = Q(WhyText(Task(2), report)).replace(QRegularExpression("\\n+ *"), "\n").trimmed();
    EXPECT_EQ(why(), S(expected));

    shell.desktop.Run("Test", [this] { Task(1).SetMaterialCost(Money::FromDouble(5)); });
    Solve();
    EXPECT_EQ(effect(), "Material +$5.00");
    shell.desktop.Run("Test", [this] { Task(1).DependencyList()[0]->SetDepDate(DateTime(37138)); });
    Solve();
    EXPECT_TRUE(effect().starts_with("Finish of Shed 9/6/2001")) << effect();

    // The first link in the text is the task that it waits for.
    emit shell.Find<QTextBrowser>("WhyText").anchorClicked(QUrl("0"));
    Solve();
    EXPECT_NE(why().find("Task 1: Dig"), std::string::npos) << why();
    EXPECT_EQ(shell.Marked(), Task(1).BuildNodeText() + ";");
    EXPECT_EQ(ContextPage(shell.main.Why(), shell.TheTrees(), workspace), "Why");
    shell.Choose("EditWhyMenu");
    EXPECT_EQ(shell.desktop.settings.ReadSettings("WhyPane"), "-");
}

TEST_F(GrabTest, AnEmptyProjectTellsHowToGoOn) {
    auto& hint = shell.Find<QLabel>("NextStepLabel");
    EXPECT_TRUE(hint.isHidden());
    shell.desktop.Run("Test", [this] {
        Vproject* barn = workspace.FindOrCreateProject("Barn");
        barn->AddJournal(workspace.ThisProject()->Journal());
        workspace.SetThisProject(barn);
        workspace.BroadcastNewThisProject();
    });
    EXPECT_FALSE(hint.isHidden());
    emit hint.linkActivated("TaskNew");
    shell.Do("DescriptionText=Dig;OkCommand!");
    EXPECT_TRUE(hint.isHidden());
}

}  // namespace
}  // namespace vortan
