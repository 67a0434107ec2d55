#include <QAccessible>
#include <QDropEvent>
#include <QHeaderView>
#include <QMimeData>
#include <QToolBar>

#include "model/Vproject.h"
#include "model/Vtask.h"
#include "shell/Shell.h"

namespace vortan {
namespace {

class AtAGlanceTest : public ::testing::Test {
  protected:
    AtAGlanceTest() {
        shell.desktop.Run("Test", [this] { shell.OpenExample("programme.vta"); });
        shell.Solve();
    }
    static QString Read(QWidget& widget, int part) {
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&widget);
        QAccessibleInterface* child = told ? told->child(part) : nullptr;
        if (!child) return {};
        EXPECT_EQ(child->parent()->object(), &widget);
        EXPECT_EQ(told->indexOfChild(child), part);
        return child->text(QAccessible::Name);
    }
    static int Parts(QWidget& widget) { return QAccessible::queryAccessibleInterface(&widget)->childCount(); }

    Shell shell;
};

TEST_F(AtAGlanceTest, PaintedScreensAreReadOut) {
    shell.Choose("GraphicsGanttMenu");
    auto& gantt = shell.Find<QAbstractScrollArea>("Vwindow");
    const auto tasks = shell.desktop.workspace.ThisProject()->TaskList().size();
    ASSERT_GE(Parts(gantt), static_cast<int>(tasks));
    QString all;
    for (int part = 0; part < Parts(gantt); ++part) all += Read(gantt, part) + "|";
    EXPECT_TRUE(all.contains("4: Rating engine\nStart: ")) << S(all.left(500));
    shell.Choose("SpreadsheetTypeMenu(2)");
    auto& table = shell.Find<QAbstractScrollArea>("Vwindow");
    EXPECT_EQ(S(Read(table, 1)), "Description: Programme start and scope");
    QTest::keyClick(&table, Qt::Key_Down);
    QAccessibleInterface* focus = QAccessible::queryAccessibleInterface(&table)->focusChild();
    ASSERT_TRUE(focus);
    EXPECT_TRUE(focus->state().focusable);
    shell.Choose("GraphicsBudgetMenu");
    auto& budget = shell.Find<QAbstractScrollArea>("Vwindow");
    EXPECT_TRUE(Read(budget, Parts(budget) - 1).contains("$")) << "the last day of the table";
    shell.Choose("CalendarMenu");
    auto& january = shell.Find<QWidget>("MonthGrid(1)");
    EXPECT_EQ(Parts(january), 31);
    EXPECT_TRUE(Read(january, 1).startsWith("Tuesday 1/2/2001: ")) << S(Read(january, 1));
    shell.Choose("ShiftNew");
    auto& day = shell.Find<QWidget>("Grid");
    EXPECT_EQ(S(Read(day, 8 * 12 + 1) + "|" + Read(day, 12 * 12)), "8:05am: Normal|12:00pm: Break");
}

TEST_F(AtAGlanceTest, TheTreeShowsColumnsAndTips) {
    ProjectTreeForm& form = shell.main.TheTrees().ProjectTree();
    Vtask& task = *shell.desktop.workspace.ThisProject()->FindTask(4);
    const QModelIndex line = form.Tree().IndexOf(&shell.NodeOf(&task));
    EXPECT_TRUE(form.View().isHeaderHidden());
    for (const bool shown : {true, false, true}) {
        shell.Choose("EditTreeColumnsMenu");
        EXPECT_EQ(form.View().isHeaderHidden(), !shown);
        EXPECT_EQ(form.Tree().columnCount({}), shown ? 6 : 1);
    }
    const auto text = [&](int column) { return S(line.siblingAtColumn(column).data().toString()); };
    EXPECT_EQ(text(1), "48;56;64 days");
    EXPECT_EQ(text(3), FormatShortDate(task.EarlyFinish()));
    EXPECT_EQ(text(5), "Mei Tanaka, Carlos Vega");
    const std::string before = text(3);
    shell.desktop.Run("Test", [&] {
        task.SetMostLikely(task.MostLikely() * 3);
        task.SetPessimistic(task.MostLikely());
    });
    shell.Solve();
    EXPECT_NE(text(3), before);  // with the new solution
    const QString tip = line.data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(tip.contains("Finish: " + Q(text(3))) && tip.contains("People: Mei")) << S(tip);
    // Clicks on the columns are clicks on the node.
    const QRect cell = form.View().visualRect(line.siblingAtColumn(2));
    QTest::mouseClick(form.View().viewport(), Qt::LeftButton, {}, cell.center());
    EXPECT_EQ(shell.main.TheTrees().DragNode(), &shell.NodeOf(&task));
}

TEST_F(AtAGlanceTest, TabReachesTheToolbarAndItsKeysWork) {
    auto* bar = shell.main.findChild<QToolBar*>("Toolbar");
    QWidget* at = &shell.main.TheTrees().ProjectTree().View();
    int reached = 0;
    for (int i = 0; i < 200; ++i) {
        at = at->nextInFocusChain();
        if (bar->isAncestorOf(at) && (at->focusPolicy() & Qt::TabFocus)) ++reached;
    }
    EXPECT_GE(reached, 15);
    auto* gantt = bar->widgetForAction(&shell.main.Action("GraphicsGanttMenu"));
    ASSERT_TRUE(gantt);
    QTest::keyClick(gantt, Qt::Key_Space);
    EXPECT_TRUE(shell.main.FullPage());
}

TEST_F(AtAGlanceTest, EscClosesWhatOpenedLast) {
    shell.Choose("SpreadsheetTypeMenu(2)");
    shell.Choose("EditFindMenu");
    auto& find = shell.Find<QLineEdit>("FindText");
    shell.Choose("ProjectModifyMenu");
    shell.Press(Qt::Key_Escape);
    EXPECT_FALSE(shell.IsOpen("ProjectEntryForm"));
    ASSERT_TRUE(find.isVisible() && shell.main.FullPage());
    QTest::keyClick(&find, Qt::Key_Escape);
    EXPECT_FALSE(find.isVisible());
    ASSERT_TRUE(shell.main.FullPage());
    QTest::keyClick(&shell.Find<QAbstractScrollArea>("Vwindow"), Qt::Key_Escape);
    EXPECT_FALSE(shell.main.FullPage());
}

TEST_F(AtAGlanceTest, OneFileThatIsDroppedIsOpened) {
    const auto drop = [&](const QList<QUrl>& files) {
        QMimeData data;
        data.setUrls(files);
        QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
        enter.ignore();
        QApplication::sendEvent(&shell.main, &enter);
        if (!enter.isAccepted()) return false;
        QDropEvent event(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&shell.main, &event);
        QCoreApplication::processEvents();
        return true;
    };
    const QUrl one = QUrl::fromLocalFile(Q(ExampleFile("house.vta")));
    EXPECT_FALSE(drop({one, one}));
    EXPECT_FALSE(drop({QUrl("https://example.org/plan.vta")}));
    shell.platform.ExpectBox("Delete All Projects and Templates", BoxAnswer::Cancel);
    EXPECT_TRUE(drop({one}));
    shell.Choose("ProjectModifyMenu");
    EXPECT_FALSE(drop({one})) << "while a form is open";
}

TEST_F(AtAGlanceTest, FieldsHaveFramesInHighContrast) {
    const QPalette before = QApplication::palette();
    QPalette high;
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
        high.setColor(role, Qt::black);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        high.setColor(role, Qt::white);
    for (const QPalette& palette : {high, before}) {
        QApplication::setPalette(palette);
        QCoreApplication::processEvents();
        EXPECT_EQ(qApp->styleSheet().isEmpty(), palette == before);
        shell.Choose("TaskNew");
        for (const char* name : {"DescriptionText", "Enable3EstimatesCheck"}) {
            const QImage field = shell.Find<QWidget>(name).grab().toImage();
            int darkest = 255, lightest = 0;
            for (int x = 0; x < field.height(); ++x) {
                const int light = field.pixelColor(x, field.height() / 2).lightness();
                darkest = std::min(darkest, light);
                lightest = std::max(lightest, light);
            }
            EXPECT_GT(lightest - darkest, 60) << name;
        }
        shell.Press(Qt::Key_Escape);
    }
}

TEST_F(AtAGlanceTest, AnEntryFormKeepsTheSizeItWasLeftAt) {
    shell.Choose("ProjectModifyMenu");
    const QSize usual = shell.Dialog().size();
    shell.Press(Qt::Key_Escape);
    shell.Choose("ProjectModifyMenu");
    EXPECT_EQ(shell.Dialog().size(), usual);
    shell.Dialog().resize(usual + QSize(40, 30));
    shell.Press(Qt::Key_Escape);
    shell.Choose("ProjectModifyMenu");
    EXPECT_EQ(shell.Dialog().size(), usual + QSize(40, 30));
}

}  // namespace
}  // namespace vortan
