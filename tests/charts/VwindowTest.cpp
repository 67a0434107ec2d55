#include "charts/Vwindow.h"

#include <gtest/gtest.h>

#include <random>

#include "charts/FixedMetrics.h"
#include "charts/PageCuts.h"
#include "charts/TableText.h"
#include "model/Fault.h"

namespace vortan {
namespace {

using Style = Vwindow::Style;
using Period = Vwindow::Period;

const FixedMetrics metrics;

DateTime Day(int year, int month, int day) {
    return FromParts({.year = year, .month = month, .day = day});
}

/// A chart "Task" | time columns | "Left" over a range, without rows.
Vwindow TimeChart(DateTime start, DateTime finish, int pageWidth = 15120) {
    Vwindow w(Style::Time, metrics);
    w.SetPage({.width = pageWidth});
    w.SetDateRange(start, finish);
    w.ClearLayout();
    w.AddColumn("Task", Alignment::Left);  // 500 wide
    w.AddTimeColumns();
    w.AddColumn("Time\r\nleft", Alignment::Right);  // 500 wide
    w.EndLayout(1, 0);
    return w;
}

std::vector<int> RowPositions(const Vwindow& w) {
    return PageStatsOf(w, {}).rowPos;
}

std::vector<int> ColPositions(const Vwindow& w) {
    return PageStatsOf(w, {}).colPos;
}

TEST(Vwindow, RowsAndColumnsFollowTheirText) {
    Vwindow w(Style::Table, metrics);
    w.ClearLayout();
    w.AddColumn("Name", Alignment::Left);
    w.AddColumn("Two\r\nlines", Alignment::Right);
    w.EndColumns();
    w.EndLayout(0, 0);
    EXPECT_EQ(RowPositions(w), (std::vector{0, 550}));
    EXPECT_EQ(ColPositions(w), (std::vector{0, 500, 1100}));
    EXPECT_TRUE(w.IsComplete());
    EXPECT_THROW(w.ColPos(3), Fault);
    EXPECT_THROW(w.RowPos(2), Fault);

    for (const char* name : {"a", "bb\r\n\r\nlonger", "c"}) {
        w.AddRow();
        w.SetCell(w.Rows() - 1, 0, name);
    }
    w.EndLayout(1, 2);
    EXPECT_EQ(RowPositions(w), (std::vector{0, 550, 900, 1650, 2000, 2500}));
    EXPECT_EQ(ColPositions(w), (std::vector{0, 700, 1300}));
    EXPECT_THROW(w.Cell(4, 0), Fault) << "the footer";
    EXPECT_THROW(w.SetCell(1, 2, "x"), Fault);
    EXPECT_THROW(w.AddRow(0), Fault) << "the heading stays first";

    // A row between others; the footer waits for the layout.
    w.AddRow(2);
    EXPECT_EQ(std::string(w.Cell(2, 0)) + std::string(w.Cell(4, 0)), "c");
    w.AddRow(w.Rows());
    w.SetCell(5, 1, "last");
    w.RefreshRows();
    EXPECT_EQ(RowPositions(w), (std::vector{0, 550, 900, 1250, 2000, 2350, 2700}));

    w.ClearLayout();
    EXPECT_EQ(w.Rows(), 1);
    EXPECT_EQ(w.Cols(), 0);
}

TEST(Vwindow, FixedPart) {
    Vwindow w(Style::Table, metrics);
    w.ClearLayout();
    w.AddColumn("R", Alignment::Left);
    for (int day = 0; day < 2; ++day) w.AddColumn("January 2027", Alignment::DayColumn);
    w.AddRow();
    w.SetCell(1, 2, "12.5");
    w.EndColumns(true);
    w.EndLayout(7, 0);
    EXPECT_EQ(w.FixedRows() * 10 + w.FixedCols(), 23);
    EXPECT_EQ(ColPositions(w), (std::vector{0, 200, 700, 1200})) << "days do not follow their title";
}

/// Two columns of one row, and a picture that is corrected while it is drawn.
struct CorrectedChart : Vwindow::Owner {
    void LayOut() override {
        w.ClearLayout();
        w.AddColumn("Hours", Alignment::RightBottom);
        w.AddTimeColumns();
        w.EndLayout(1, 0);
    }
    void Draw() override {
        w.DrawLine(0, 0, 10, 10);
        EXPECT_FALSE(w.IsComplete());
        EXPECT_TRUE(w.IsLaidOut());
        if (++calls == 1) {
            w.AddRow();
            EXPECT_FALSE(w.IsLaidOut());
            w.SetCell(w.Rows() - 1, 0, "a long label, too wide for days");
            w.EndLayout(1, 2);
            return;
        }
        w.DrawDateLine(Day(2027, 1, 2), kBlue);
        w.DrawDateLine(Day(2028, 1, 2), kBlue);
        w.DrawText(keyLeft, w.RowPos(w.Rows() - 1) + 10, "Key\r\nof two", kRed);
        w.EndGraphics();
    }
    void DateClick(DateTime when) override { clicked = when; }

    Vwindow w{Style::Time, metrics, this};
    int calls = 0, keyLeft = 15000;
    DateTime clicked;
};

TEST(Vwindow, ATableIsTextForOtherPrograms) {
    Vwindow w(Style::Table, metrics);
    w.ClearLayout();
    w.AddColumn("Task", Alignment::Left);
    w.AddColumn("Time\r\nleft", Alignment::Right);
    w.EndColumns();
    w.AddRow();
    w.SetCell(1, 0, "1: Cut & <fold>\r\n\tAnn");
    w.SetCell(1, 1, "3d");
    w.AddRow();
    w.SetCell(2, 1, "Done");
    w.SetCellMarkB(2, 1, true);
    w.SetCellMarkC(2, 1, true);
    w.SetCellColor(2, 1, 0xC0FFC1);
    w.EndLayout(0, 0);
    EXPECT_EQ(TableAsTabs(w, WholeTable(w)), "Task\tTime left\r\n1: Cut & <fold>  Ann\t3d\r\n\tDone\r\n");
    const std::string html = TableAsHtml(w, WholeTable(w));
    for (const char* part :
         {"<th style=\"text-align:center\">Time<br>left</th>", ">1: Cut &amp; &lt;fold&gt;<br>",
          "<td style=\"text-align:right\">3d</td>",
          "<td style=\"text-align:center;font-weight:bold;background-color:#c1ffc0\">Done</td>"})
        EXPECT_NE(html.find(part), std::string::npos) << part << " is not in\n" << html;
}

TEST(Vwindow, LongTextsWrap) {
    Vwindow w(Style::Table, metrics);
    w.WrapText = true;
    w.ClearLayout();
    w.AddColumn("Name", Alignment::Left);
    w.AddColumn("Hours", Alignment::Right);
    const std::string ten = "abcdefghi ", word(35, 'w');
    const std::pair<std::string, std::vector<std::string_view>> cases[] = {
        {"", {""}},
        {ten + ten + "abcdefghij", {"abcdefghi abcdefghi abcdefghij"}},
        {ten + ten + "abcdefghijk", {"abcdefghi abcdefghi", "abcdefghijk"}},
        {"  " + word + " x\r\ny", {"  wwwwwwwwwwwwwwwwwwwwwwwwwwww", "wwwwwww x", "y"}},
        {ten + ten + ten + "     ", {"abcdefghi abcdefghi abcdefghi "}},
    };
    for (const auto& c : cases) {
        w.AddRow();
        w.SetCell(w.Rows() - 1, 0, c.first);
        w.SetCell(w.Rows() - 1, 1, std::string(40, '1'));
    }
    w.EndLayout(0, 0);
    std::vector<std::string_view> lines;
    int row = 1;
    for (const auto& c : cases) {
        w.CellLines(row, 0, lines);
        EXPECT_EQ(lines, c.second) << row;
        EXPECT_EQ(w.RowPos(row + 1) - w.RowPos(row), 150 + 200 * static_cast<int>(c.second.size())) << row;
        ++row;
    }
    EXPECT_EQ(ColPositions(w), (std::vector{0, 3100, 7200})) << "numbers do not wrap";
}

TEST(Vwindow, ThePeriodIsTheFinestThatFits) {
    const DateTime start = Day(2027, 1, 4);  // a Monday
    const struct {
        DateTime finish;
        int pageWidth;
        Period period;
        int columns, width;
        const char *first, *last;
        DateTime end;
    } cases[] = {
        {start, 15120, Period::Day, 1, 150, "4", "4", Day(2027, 1, 5)},
        {Day(2027, 1, 14), 3500, Period::Day, 10, 250, "4", "13", Day(2027, 1, 14)},
        {AddDays(Day(2027, 1, 14), 0.001), 3500, Period::Week, 2, 250, "4", "11", Day(2027, 1, 18)},
        {Day(2027, 12, 31), 14250, Period::Week, 52, 250, "4", "27", Day(2028, 1, 3)},
        {Day(2027, 12, 31), 14249 - 250, Period::Month, 12, 350, "Jan", "Dec", Day(2028, 1, 1)},
        {Day(2027, 12, 31), 5199, Period::Quarter, 4, 250, "Q1", "Q4", Day(2028, 1, 1)},
        {Day(2028, 1, 2), 100, Period::Quarter, 5, 250, "Q1", "Q1", Day(2028, 4, 1)},
        {Day(2026, 1, 1), 15120, Period::Day, 1, 150, "4", "4", Day(2027, 1, 5)},
    };
    for (const auto& c : cases) {
        const Vwindow w = TimeChart(start, c.finish, c.pageWidth);
        SCOPED_TRACE(std::to_string(c.finish.Days()) + " on " + std::to_string(c.pageWidth));
        EXPECT_EQ(w.ThePeriod(), c.period);
        ASSERT_EQ(w.Cols(), c.columns + 2);
        EXPECT_EQ(w.ColPos(2) - w.ColPos(1), c.width);
        EXPECT_EQ(w.ColPos(c.columns + 2), 1000 + c.columns * c.width);
        EXPECT_EQ(w.ColumnTitle(1), c.first);
        EXPECT_EQ(w.ColumnTitle(c.columns), c.last);
        EXPECT_EQ(w.ColumnTitle(c.columns + 1), "Time\r\nleft");
        DateTime first, last;
        w.GetShownDates(first, last);
        EXPECT_EQ(last, c.end);
    }
}

TEST(Vwindow, CellsRightOfTheScaleStayThereWhenThePeriodChanges) {
    Vwindow w(Style::Time, metrics);
    w.SetDateRange(Day(2027, 1, 1), Day(2027, 2, 22));
    w.ClearLayout();
    w.AddColumn("Task", Alignment::Left);
    w.AddTimeColumns();
    w.AddColumn("Left", Alignment::Right);
    w.AddRow();
    w.SetCell(1, 0, "too wide a name for a scale of days");
    w.SetCell(1, w.Cols() - 1, "Done");
    EXPECT_THROW(w.SetCell(1, 1, "on the scale"), Fault);
    w.EndLayout(1, 0);
    EXPECT_EQ(w.ThePeriod(), Period::Week);
    ASSERT_EQ(w.Cols(), 10);
    EXPECT_EQ(std::string(w.Cell(1, 9)) + std::string(w.Cell(1, 1)), "Done");
}

TEST(Vwindow, UpperLabelsShrinkToTheirColumns) {
    const auto labels = [](DateTime start, DateTime finish, int pageWidth) {
        std::string texts;
        const Vwindow w = TimeChart(start, finish, pageWidth);
        for (const auto& label : w.UpperLabels())
            texts += std::to_string(label.firstCol) + " " + label.text + ", ";
        return texts;
    };
    EXPECT_EQ(labels(Day(2027, 1, 26), Day(2027, 3, 2), 15120), "1 January 2027, 7 February 2027, 35 , ");
    EXPECT_EQ(labels(Day(2027, 1, 28), Day(2027, 3, 3), 15120), "1 Jan 2027, 5 February 2027, 33 Mar, ");
    EXPECT_EQ(labels(Day(2027, 12, 1), Day(2028, 2, 2), 2500), "1 , 2 2028, ");
}

TEST(Vwindow, DatesBecomePositionsAndBack) {
    const Vwindow w = TimeChart(Day(2027, 2, 10), Day(2027, 4, 20), 2100);  // Feb, Mar, Apr of 350
    const std::pair<DateTime, int> cases[] = {
        {Day(2027, 2, 1), 500},      {Day(2027, 2, 15), 675},       {Day(2027, 3, 1), 850},
        {Day(2027, 4, 16), 1375},    {Day(2027, 5, 1), 1550},       {Day(2027, 5, 31), 1900},
        {Day(2027, 1, 4), 150},      {DateTime(1e300), 2147483647}, {DateTime(-1e300), -2147483647 - 1},
        {DateTime(std::nan("")), 0},
    };
    for (const auto& [when, x] : cases) {
        EXPECT_EQ(w.DateToX(when), x) << when.Days();
        EXPECT_TRUE(x <= 0 || x >= 2000 || w.XToDate(x) == when) << x;
    }
}

TEST(Vwindow, ANestedLayoutReplacesThePicture) {
    CorrectedChart chart;
    Vwindow& w = chart.w;
    w.SetDateRange(Day(2027, 1, 1), Day(2027, 2, 22));
    EXPECT_EQ(chart.calls, 2);
    EXPECT_TRUE(w.IsComplete());
    EXPECT_EQ(w.ThePeriod(), Period::Day) << "columns counted before stay good";
    ASSERT_EQ(w.Items().size(), 3U);
    EXPECT_EQ(w.Items()[1].x1, 3200 + 250);
    EXPECT_EQ(w.Items()[1].y2, 1400) << "through the footer";
    EXPECT_EQ(w.Items()[2].y2, 910 + 400);
    EXPECT_EQ(w.ContentWidth(), 3200 + 52 * 250);
    EXPECT_EQ(w.ContentHeight(), 1400);
    const std::pair<int, int> clicks[] = {{w.ColPos(2), 600}, {10, 600}, {w.ColPos(2), w.ContentHeight()}};
    for (const auto& [x, y] : clicks) {
        chart.clicked = {};
        w.Press(x, y);
        EXPECT_EQ(chart.clicked, x > 10 && y == 600 ? Day(2027, 1, 2) : DateTime());
    }
    chart.keyLeft = 17000;
    w.EndLayout(1, 2);
    EXPECT_EQ(w.ContentWidth(), 17600) << "a key wider than the chart";
}

TEST(Vwindow, AFreeDrawingGrowsWithItsPicture) {
    Vwindow w(Style::Free, metrics);
    w.ClearLayout();
    w.AddColumn("", Alignment::Center);
    w.AddRow();
    EXPECT_EQ(w.ColPos(1), 1000);
    EXPECT_EQ(w.RowPos(1), 1000);
    w.ClearLayout();
    w.EndLayout(0, 0);
    w.DrawRect(3000, 2500, -5, 400, kBlack, kWhite);
    EXPECT_EQ(ColPositions(w), (std::vector{0, 1000, 2000, 3000}));
    EXPECT_EQ(RowPositions(w), (std::vector{0, 1000, 2000, 3000}));
    w.DrawText(3000, 2500, "x");
    EXPECT_EQ(w.ContentWidth(), 4000);
    EXPECT_EQ(w.FixedRows() + w.FixedCols(), 0);
    EXPECT_EQ(w.Items()[0].x1, -5);
    EXPECT_EQ(w.Items()[0].y2, 2500) << "corners are put in order";
}

TEST(Vwindow, ItemsInAPartAreThoseOfAFullSearch) {
    Vwindow w(Style::Free, metrics);
    w.ClearLayout();
    std::mt19937 random(7);
    const auto upTo = [&](unsigned limit) { return static_cast<int>(random() % limit); };
    for (int i = 0; i < 3000; ++i) {
        const int y = upTo(200000) - 500, height = upTo(50) == 0 ? upTo(200000) : upTo(5000);
        const int x = upTo(20000);
        w.DrawLine(x, y, x - upTo(9000), y - height);
    }
    w.DrawLine(5000, -2e9, 5000, 3e9);
    w.DrawLine(5000, 2e9, 5000, 2e9);
    std::vector<std::int32_t> found, expected;
    const int left = 4000, right = 6000;
    const std::pair<int, int> ranges[] = {
        {0, 0}, {3200, 6399}, {150000, 170000}, {-9000, -1}, {1999999999, 2100000000}, {5, 4}};
    for (const auto& [top, bottom] : ranges) {
        expected.clear();
        for (std::size_t i = 0; i < w.Items().size() && top <= bottom; ++i) {
            const auto [low, high] = std::minmax(w.Items()[i].y1, w.Items()[i].y2);
            const auto [from, to] = std::minmax(w.Items()[i].x1, w.Items()[i].x2);
            const bool across = from - 15LL <= right && to + 15LL >= left;
            if (low - 15LL <= bottom && high + 15LL >= top && across)
                expected.push_back(static_cast<std::int32_t>(i));
        }
        w.ItemsIn(left, top, right, bottom, found);
        EXPECT_EQ(found, expected) << top;
    }
}

}  // namespace
}  // namespace vortan
