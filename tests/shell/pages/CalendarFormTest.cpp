#include "shell/pages/CalendarForm.h"

#include "charts/ZoomTable.h"
#include "paint/ScreenColor.h"
#include "shell/Shell.h"
#include "shell/pages/ZoomForm.h"
#include "support/Paths.h"

namespace vortan {
namespace {

/// The plan of a launch in 2027; the clock stands in 2001.
class CalendarFormTest : public ::testing::Test {
  protected:
    CalendarFormTest() {
        shell.desktop.files.LoadFile(ExampleFile("launch.vta"));
        shell.Solve();
        shell.Choose("CalendarMenu");
    }
    CalendarForm& Calendar() { return shell.Find<CalendarForm>("CalendarForm"); }
    MonthGrid& Month(int month) { return shell.Find<MonthGrid>("MonthGrid(" + std::to_string(month) + ")"); }
    QPoint CellOf(int month, int day) {
        MonthGrid& grid = Month(month);
        for (int row = 1; row < MonthGrid::kRows; ++row) {
            for (int col = 0; col < MonthGrid::kCols; ++col)
                if (grid.DayAt(row, col) == day) return grid.CellRect(row, col).center();
        }
        return {};
    }
    void DoubleClick(int month, const QPoint& point) {
        QTest::mouseClick(&Month(month), Qt::LeftButton, {}, point);
        QTest::mouseDClick(&Month(month), Qt::LeftButton, {}, point);
    }
    /// The days of a month as they stand in the grid, a row each; "." for no day.
    std::string Days(int month) {
        std::string text;
        for (int row = 1; row < MonthGrid::kRows; ++row) {
            for (int col = 0; col < MonthGrid::kCols; ++col) {
                const int day = Month(month).DayAt(row, col);
                const bool grey = Month(month).CellColor(row, col) == QColor(0x80, 0x80, 0x80);
                EXPECT_EQ(day == 0, grey);
                text += day == 0 ? "." : std::to_string(day) + " ";
            }
            text += "\n";
        }
        return text;
    }
    std::string Selected() {
        const DateTime date = Calendar().SelectedDate();
        return date.IsSet() ? FormatDate(date) : "";
    }

    Shell shell;
};

TEST_F(CalendarFormTest, YearsAreChosen) {
    EXPECT_EQ(Calendar().ThisYear(), 2001);
    EXPECT_EQ(S(Calendar().windowTitle()), "Calendar for template Aurora team");
    EXPECT_EQ(S(shell.Find<QPushButton>("NextYearCommand").text()), "2002");
    shell.Click("PrevYearCommand");
    EXPECT_EQ(S(shell.Find<QLabel>("YearLabel").text()), "2000");
    EXPECT_EQ(Days(2).substr(0, 8), "..1 2 3 ");
    EXPECT_NE(Days(2).find("29 ...."), std::string::npos) << "a leap year";
    // Six weeks, and four full ones.
    Calendar().SetYear(2027);
    EXPECT_NE(Days(1).find("31 ......\n"), std::string::npos);
    Calendar().SetYear(2026);
    EXPECT_EQ(Days(2).substr(Days(2).find("28")), "28 \n.......\n.......\n");
    // What is new in memory does not change the year.
    shell.desktop.workspace.BroadcastNewSolution();
    EXPECT_EQ(Calendar().ThisYear(), 2026);
    for (const int year : {100, 9999}) {
        Calendar().SetYear(year);
        EXPECT_FALSE(
            shell.Find<QPushButton>(year == 100 ? "PrevYearCommand" : "NextYearCommand").isEnabled());
    }
    shell.Choose("CalendarMenu");
    EXPECT_FALSE(shell.IsOpen("CalendarForm"));
    shell.Choose("CalendarMenu");
    EXPECT_EQ(Calendar().ThisYear(), 9999);
    EXPECT_EQ(S(shell.Find<QFrame>("KeyPicture(6)").accessibleName()), "Color of Holiday");
}

TEST_F(CalendarFormTest, DaysAreClickedAndZoomedIn) {
    Calendar().SetYear(2027);
    const QPoint booked = CellOf(1, 11);
    const QImage seen = Month(1).grab().toImage();
    EXPECT_EQ(seen.pixelColor((QPointF(booked) * seen.devicePixelRatio()).toPoint() - QPoint(8, 8)),
              ScreenColor(LookOf(kNormalKey).color));
    DoubleClick(1, booked);
    auto* zoom = shell.main.findChild<ZoomForm*>("ZoomForm");
    ASSERT_TRUE(zoom);
    EXPECT_EQ(S(zoom->windowTitle()), "Zoom in on 1/11/2027");
    EXPECT_EQ(zoom->Surface()->surface.Cell(1, 1), "1: Nadia Osei");
    // The table is to be seen whole.
    auto& view = shell.Find<QAbstractScrollArea>("Vwindow");
    EXPECT_EQ(view.horizontalScrollBar()->maximum() + view.verticalScrollBar()->maximum(), 0);
    EXPECT_TRUE(shell.main.Action("OutputPrintMenu").isEnabled());
    EXPECT_FALSE(shell.main.Action("CalendarMenu").isEnabled());
    shell.desktop.workspace.BroadcastNewSolution();
    EXPECT_TRUE(shell.IsOpen("ZoomForm"));
    shell.Press(Qt::Key_Escape);

    shell.platform.ExpectBox("Nothing Scheduled on 12/31/2027", BoxAnswer::Ok,
                             "There is nothing scheduled for 12/31/2027");
    DoubleClick(12, CellOf(12, 31));
    EXPECT_FALSE(shell.IsOpen("ZoomForm"));
    EXPECT_EQ(Selected(), "12/31/2027");
    for (const QPoint& beside : {Month(1).CellRect(1, 0).center(), Month(1).CellRect(0, 3).center()}) {
        DoubleClick(1, beside);
        EXPECT_EQ(Selected(), "");
        EXPECT_FALSE(shell.IsOpen("ZoomForm"));
    }
}

TEST_F(CalendarFormTest, KeysWalkOverTheDays) {
    const std::pair<Qt::Key, const char*> keys[] = {
        {Qt::Key_Right, "9/3/2001"},  {Qt::Key_Up, "8/27/2001"}, {Qt::Key_Left, "8/26/2001"},
        {Qt::Key_Down, "9/2/2001"},   {Qt::Key_PageDown, ""},    {Qt::Key_Right, "1/1/2002"},
        {Qt::Key_Left, "12/31/2001"}, {Qt::Key_PageUp, ""},      {Qt::Key_Up, "1/1/2000"}};
    for (const auto& [key, selected] : keys) {
        QTest::keyClick(&Calendar(), key);
        EXPECT_EQ(Selected(), selected);
    }
    Calendar().SetYear(2027);
    QTest::mouseClick(&Month(1), Qt::LeftButton, {}, CellOf(1, 11));
    QTest::keyClick(&Calendar(), Qt::Key_Return);
    EXPECT_TRUE(shell.IsOpen("ZoomForm"));
}

}  // namespace
}  // namespace vortan
