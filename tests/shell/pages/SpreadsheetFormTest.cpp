#include "shell/pages/SpreadsheetForm.h"

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollBar>

#include "model/LinkText.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "shell/Shell.h"
#include "support/Paths.h"
#include "support/PlanFiles.h"

namespace vortan {
namespace {

/// A plan with two journals, solved.
class SpreadsheetFormTest : public ::testing::Test {
  protected:
    SpreadsheetFormTest() {
        shell.desktop.files.LoadFile(ExampleFile("programme.vta"));
        shell.Solve();
    }
    SpreadsheetForm& Form() { return *SpreadsheetForm::InFront(shell.desktop); }
    GridView& View() { return static_cast<GridView&>(shell.Find<QAbstractScrollArea>("Vwindow")); }
    void Open(int kind) { shell.Choose(("SpreadsheetTypeMenu(" + std::to_string(kind) + ")").c_str()); }
    bool Checked(int kind) {
        return shell.main.Action(("SpreadsheetTypeMenu(" + std::to_string(kind) + ")").c_str()).isChecked();
    }
    std::string Shown(int row, int col) { return std::string(Form().Surface()->surface.Cell(row, col)); }
    QPoint PointOf(int row, int col) { return {View().CellLeft(col) + 3, View().CellTop(row) + 3}; }
    void Click(int row, int col, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(View().viewport(), button, {}, PointOf(row, col));
    }
    void Key(int key, Qt::KeyboardModifiers held = {}) {
        QTest::keyClick(&View(), static_cast<Qt::Key>(key), held);
    }
    std::string Copied() { return S(QApplication::clipboard()->text()); }

    Shell shell;
};

TEST_F(SpreadsheetFormTest, EachKindReplacesTheOneBefore) {
    for (const int kind : {1, 2, 3, 4, 5, 6, 7, 10}) {
        Open(kind);
        ASSERT_TRUE(shell.main.FullPage()) << kind;
        for (int other = 1; other <= 10; ++other) EXPECT_EQ(Checked(other), other == kind);
    }
    Open(10);
    EXPECT_FALSE(shell.main.FullPage());
    shell.platform.ExpectBox("Spreadsheet Empty", BoxAnswer::Ok);
    Open(9);
    EXPECT_FALSE(shell.main.FullPage() || Checked(9));
}

TEST_F(SpreadsheetFormTest, CellsAreSelectedAndCopied) {
    Open(2);
    Click(2, 0);
    Key(Qt::Key_Down, Qt::ShiftModifier);
    Key(Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(&View(), Qt::Key_C, Qt::ControlModifier);
    const std::string two = Shown(2, 0) + "\t" + Shown(2, 1) + "\r\n" + Shown(3, 0) + "\t" + Shown(3, 1);
    EXPECT_EQ(Copied(), two + "\r\n");
    EXPECT_TRUE(QApplication::clipboard()->mimeData()->html().contains("<td"));
    EXPECT_FALSE(QApplication::clipboard()->mimeData()->html().contains("<th"));
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(Copied().starts_with(Shown(0, 0) + "\t")) << Copied();
    // By the mouse, from corner to corner, and no further than there are cells.
    QTest::mousePress(View().viewport(), Qt::LeftButton, {}, PointOf(3, 1));
    QTest::mouseMove(View().viewport(), PointOf(2, 0));
    QTest::mouseRelease(View().viewport(), Qt::LeftButton, {}, PointOf(2, 0));
    Key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(Copied(), two + "\r\n");
    Key(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(View().Selection().bottom, Form().Surface()->surface.Rows() - 1);
    QTest::mouseDClick(View().viewport(), Qt::LeftButton, {}, PointOf(View().Selection().top, 0));
    EXPECT_TRUE(shell.IsOpen("TaskEntryForm"));
}

TEST_F(SpreadsheetFormTest, TitlesSortUpAndDownAndTotalsStay) {
    Open(3);
    const int last = Form().Surface()->surface.Rows() - 1;
    const std::string first = Shown(1, 0), total = Shown(last, 0);
    Click(0, 0);
    const std::string least = Shown(1, 0);
    Click(0, 0);
    EXPECT_EQ(Shown(last - 1, 0), least);
    EXPECT_EQ(Shown(last, 0), total);
    EXPECT_EQ(Form().Shown().Cell(0, 0).text, Shown(1, 0));
    Click(0, 0);
    EXPECT_EQ(Shown(1, 0), first);
}

TEST_F(SpreadsheetFormTest, TablesAreExportedAsTheyStand) {
    const std::string folder = shell.platform.Directory() + "/";
    const auto exportTo = [&](const std::string& name) {
        InBox([&] { shell.Choose("OutputExportMenu"); },
              [&](QWidget& box) {
                  box.findChild<QLineEdit*>("fileNameEdit")->setText(Q(folder + name));
                  QMetaObject::invokeMethod(&box, "accept");
              });
        return FileBytes(folder + name);
    };
    shell.platform.ExpectBox("Not Applicable", BoxAnswer::Ok, "There is no table to export.");
    shell.Choose("OutputExportMenu");
    Open(2);
    Click(0, 1);
    Click(0, 1);
    const std::string first = Shown(1, 0) + "," + Shown(1, 1);
    EXPECT_NE(exportTo("tasks.csv").find("\r\n" + first), std::string::npos);
    EXPECT_TRUE(exportTo("tasks.xlsx").starts_with("PK"));
    EXPECT_TRUE(exportTo("tasks.pdf").starts_with("%PDF"));
    for (const char* chart : {"GraphicsGanttMenu", "GraphicsHistogramMenu", "GraphicsBudgetMenu",
                              "GraphicsPrecedenceMenu", "GraphicsWorkBreakdownMenu"}) {
        shell.Choose(chart);
        EXPECT_NE(exportTo(chart + std::string(".html")).find("<table"), std::string::npos) << chart;
    }
}

TEST_F(SpreadsheetFormTest, MonthsTurn) {
    Open(7);
    const DateTime month = Form().Shown().month;
    Click(2, 1);
    EXPECT_EQ(Form().Shown().month, MonthBefore(month));
    Click(2, 1, Qt::RightButton);
    EXPECT_EQ(Form().Shown().month, month);
    Key(Qt::Key_PageDown);
    EXPECT_EQ(Form().Shown().month, MonthAfter(month));
    shell.Click("MonthBeforeCommand");
    EXPECT_EQ(Form().Shown().month, month);
    Open(7);
    Open(7);
    EXPECT_EQ(Form().Shown().month, month);
}

TEST_F(SpreadsheetFormTest, AnEntryTableIsTypedIn) {
    Open(2);
    Vproject& project = *shell.desktop.workspace.ThisProject();
    Vtask& first = *project.TaskList()[0];
    const std::string before = first.Description();
    auto& entry = shell.Find<QLineEdit>("EntryText");
    Click(1, 1);
    QTest::keyClicks(&View(), "D");
    QTest::keyClicks(&entry, "ig");
    QTest::keyClick(&entry, Qt::Key_Escape);
    EXPECT_EQ(first.Description(), before);
    Key(Qt::Key_F2);
    QTest::keyClicks(&entry, "Dig");  // all was selected
    QTest::keyClick(&entry, Qt::Key_Tab);
    EXPECT_EQ(first.Description() + "|" + Shown(1, 1), "Dig|Dig");
    int named = 0;  // where other tasks wait for it
    for (int row = 1; row < Form().Shown().Rows(); ++row)
        named += Shown(row, 5).starts_with("1: Dig") ? 1 : 0;
    EXPECT_EQ(named, 2);
    // What is refused stays, with the reason beside it, and nothing is taken.
    QTest::keyClicks(&entry, "soon");
    QTest::keyClick(&entry, Qt::Key_Return);
    EXPECT_TRUE(entry.isVisible());
    EXPECT_EQ(S(shell.Find<QLabel>("EntryRefusal").text()), "The estimate must be a number.");
    QTest::keyClick(&entry, Qt::Key_Escape);
    EXPECT_FALSE(entry.isVisible());
    shell.desktop.Run("Test:Undo", [&] { shell.desktop.workspace.TheHistory().Undo(); });
    EXPECT_EQ(first.Description(), before);
    // Another table in place of this one takes what is typed.
    Click(1, 1);
    QTest::keyClicks(&View(), "K");
    QTest::keyClicks(&entry, "ept");
    Open(1);
    EXPECT_EQ(first.Description(), "Kept");
}

/// A task with its effort, its link and its person: seven keys beside their letters.
TEST_F(SpreadsheetFormTest, ATaskIsTypedWithFewKeys) {
    Open(2);
    Vproject& project = *shell.desktop.workspace.ThisProject();
    const auto count = project.TaskList().size();
    auto& entry = shell.Find<QLineEdit>("EntryText");
    Click(static_cast<int>(Form().Shown().Rows()), 1);
    Key(Qt::Key_Down);
    const std::string texts[] = {"Paint", "2d", "", "", "1 50%-0%", "Mei Tanaka 50%"};
    for (const std::string& text : texts) {
        QTest::keyClicks(&entry, Q(text));
        QTest::keyClick(&entry, Qt::Key_Tab);
    }
    ASSERT_EQ(project.TaskList().size(), count + 1);
    const Vtask& painted = *project.TaskList()[count];
    EXPECT_EQ(painted.Description() + "|" + DependencyLine(painted) + "|" + AssignmentLine(painted),
              "Paint|1 50%-0%|Mei Tanaka @4");
    EXPECT_EQ(painted.MostLikely(), 960);
    EXPECT_TRUE(entry.isVisible());  // for the next task
    QTest::keyClick(&entry, Qt::Key_Escape);
    EXPECT_EQ(Form().Shown().Rows(), View().Selection().top);
}

TEST_F(SpreadsheetFormTest, BlocksArePastedAndFilledDownAsOneStep) {
    Open(2);
    Vproject& project = *shell.desktop.workspace.ThisProject();
    const auto count = project.TaskList().size();
    const auto description = [&](std::size_t i) { return project.TaskList()[i]->Description(); };
    const std::string first = description(0);
    Click(static_cast<int>(Form().Shown().Rows()), 1);
    const std::string last = description(count - 1);
    QApplication::clipboard()->setText("One\t1 d\r\n\"Two\t2\"\tsoon\r\n");
    shell.platform.ExpectBox("Cannot Paste", BoxAnswer::Ok);
    QTest::keyClick(&View(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(description(count - 1), last);
    QApplication::clipboard()->setText("One\t1 d\r\n\"Two\t2\"\t3 d\r\n");
    QTest::keyClick(&View(), Qt::Key_V, Qt::ControlModifier);
    ASSERT_EQ(project.TaskList().size(), count + 1);
    EXPECT_EQ(description(count - 1) + "|" + description(count), "One|Two\t2");
    View().SelectRow(1);  // in sight
    Click(1, 1);
    for (int i = 0; i < 8; ++i) Key(Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&View(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(description(1), first);
    for (int i = 0; i < 2; ++i)
        shell.desktop.Run("Test:Undo", [&] { shell.desktop.workspace.TheHistory().Undo(); });
    EXPECT_EQ(project.TaskList().size(), count);
    EXPECT_NE(description(1), first);
    EXPECT_EQ(description(count - 1), last);
}

TEST_F(SpreadsheetFormTest, AReportThatIsBehindSaysSo) {
    shell.main.resize(700, 300);
    Open(2);
    QCoreApplication::processEvents();
    Key(Qt::Key_End, Qt::ControlModifier);
    const int scrolled = View().verticalScrollBar()->value();
    ASSERT_GT(scrolled, 0);
    auto& behind = shell.Find<QFrame>("BehindFrame");
    EXPECT_FALSE(behind.isVisible());
    Vtask& task = *shell.desktop.workspace.ThisProject()->TaskList()[0];
    shell.desktop.Run("Test:Change", [&] { task.SetDescription("Another name"); });
    EXPECT_TRUE(behind.isVisible());
    EXPECT_EQ(S(shell.Find<QLabel>("BehindLabel").text()),
              "The plan has changed since this report was built.");
    shell.Solve();
    Key(Qt::Key_F5);
    EXPECT_FALSE(behind.isVisible());
    EXPECT_EQ(Shown(1, 1), "Another name");
    EXPECT_EQ(View().verticalScrollBar()->value(), scrolled);
    EXPECT_FALSE(View().Selection().Empty());
    Key(Qt::Key_Escape);
    EXPECT_FALSE(shell.main.FullPage());
}

}  // namespace
}  // namespace vortan
