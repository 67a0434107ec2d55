#include "charts/PageCuts.h"

#include <gtest/gtest.h>

#include "charts/AdjustColors.h"
#include "charts/FixedMetrics.h"

namespace vortan {
namespace {

using Choice = PageCuts::Choice;

/// On pages of 1000 by 500.
PageStats Stats(std::vector<int> colPos, std::vector<int> rowPos, int fixedCols = 0, int fixedRows = 0) {
    PageStats stats{1000, 500, colPos.back(), rowPos.back(), fixedRows, fixedCols, true, {}, {}};
    stats.colPos = std::move(colPos);
    stats.rowPos = std::move(rowPos);
    return stats;
}

TEST(PageCuts, ButtonsFollowTheFit) {
    const std::tuple<int, int, bool, float, const char*> cases[] = {
        // what is enabled, by index
        {1000, 500, true, 1, "11000011"},    {2000, 250, true, 0.5, "11101111"},
        {2000, 250, false, 0.5, "11101011"}, {500, 100, true, 2, "11010011"},
        {100, 1000, true, 0.5, "11101111"},  {1, 1, true, 500, "11010011"},
    };
    for (const auto& [width, height, headings, fit, expected] : cases) {
        PageStats stats = Stats({0, width}, {0, height});
        stats.hasHeadings = headings;
        const PageCuts cuts(stats);
        EXPECT_EQ(cuts.Fit(), fit);
        std::string enabled;
        for (int i = 0; i < 8; ++i) enabled += cuts.IsEnabled(static_cast<Choice>(i)) ? '1' : '0';
        EXPECT_EQ(enabled, expected) << width;
    }
}

TEST(PageCuts, OnePage) {
    using Pieces = std::vector<Piece>;
    const PageCuts large(Stats({0, 2000}, {0, 250}));
    EXPECT_EQ(large.Pieces(Choice::ReduceToFit), (Pieces{{true, 0.495, 0, 0, 2020, 1010, 0, 0}}));
    EXPECT_EQ(large.Pieces(Choice::CenterOnPage), (Pieces{{true, 1, 0, 0, 1000, 250, 0, 125}}));
    const PageCuts small(Stats({0, 400}, {0, 100}));
    EXPECT_EQ(small.Pieces(Choice::ExpandToFit), (Pieces{{true, 2.475, 0, 0, 404, 202, 0, 0}}));
    EXPECT_EQ(small.Pieces(Choice::CenterOnPage), (Pieces{{true, 1, 0, 0, 400, 100, 300, 200}}));
    EXPECT_TRUE(small.Pieces(Choice::Cancel).empty());
}

/// "p" for a piece that starts a page, then its part of the surface and its place.
std::string Text(const std::vector<Piece>& pieces) {
    std::string text;
    for (const Piece& p : pieces) {
        text += p.newPage ? "p" : " ";
        for (const int number : {p.x1, p.y1, p.x2, p.y2, p.destX, p.destY})
            text += " " + std::to_string(number);
        text += "\n";
    }
    return text;
}

TEST(PageCuts, PagesAreCutAlongTheGrid) {
    // Two pages across, two down.
    const PageCuts chart(Stats({0, 200, 600, 900, 1400}, {0, 100, 300, 450, 700}, 1, 1));
    EXPECT_EQ(
        Text(chart.Pieces(Choice::MultipleHeadings)),
        "p 0 0 200 100 0 0\n  200 0 900 100 200 0\n  0 100 200 450 0 100\n  200 100 900 450 200 100\n"
        "p 0 0 200 100 0 0\n  900 0 1400 100 200 0\n  0 100 200 450 0 100\n  900 100 1400 450 200 100\n"
        "p 0 0 200 100 0 0\n  200 0 900 100 200 0\n  0 450 200 700 0 100\n  200 450 900 700 200 100\n"
        "p 0 0 200 100 0 0\n  900 0 1400 100 200 0\n  0 450 200 700 0 100\n  900 450 1400 700 200 100\n");
    EXPECT_EQ(Text(chart.Pieces(Choice::SingleHeading)),
              "p 0 0 900 450 0 0\np 900 0 1400 450 0 0\np 0 450 900 700 0 0\np 900 450 1400 700 0 0\n");
    const PageCuts exact(Stats({0, 500, 1000}, {0, 250, 500}));
    EXPECT_EQ(Text(exact.Pieces(Choice::SingleHeading)), "p 0 0 1000 500 0 0\n");
    // Rows to be repeated, but no columns: the corner is empty and starts the page all the same.
    const PageCuts table(Stats({0, 900}, {0, 100, 400, 800}, 0, 1));
    EXPECT_EQ(Text(table.Pieces(Choice::MultipleHeadings)),
              "p 0 0 0 100 0 0\n  0 0 900 100 0 0\n  0 100 0 400 0 100\n  0 100 900 400 0 100\n"
              "p 0 0 0 100 0 0\n  0 0 900 100 0 0\n  0 400 0 800 0 100\n  0 400 900 800 0 100\n");
}

TEST(PageCuts, WhatIsLargerThanAPageIsClipped) {
    const PageCuts wide(Stats({0, 100, 1500, 1600}, {0, 50, 700}, 1, 1));
    EXPECT_EQ(Text(wide.Pieces(Choice::SingleHeading)),
              "p 0 0 100 50 0 0\np 100 0 1100 50 0 0\np 1500 0 1600 50 0 0\n"
              "p 0 50 100 550 0 0\np 100 50 1100 550 0 0\np 1500 50 1600 550 0 0\n");
    EXPECT_EQ(Text(wide.Pieces(Choice::MultipleHeadings)),
              "p 0 0 100 50 0 0\n  100 0 1000 50 100 0\n  0 50 100 500 0 50\n  100 50 1000 500 100 50\n"
              "p 0 0 100 50 0 0\n  1500 0 1600 50 100 0\n  0 50 100 500 0 50\n  1500 50 1600 500 100 50\n");
    // Headings as wide as the page are not repeated.
    const PageCuts names(Stats({0, 1000, 1100}, {0, 50}, 1, 0));
    EXPECT_EQ(Text(names.Pieces(Choice::MultipleHeadings)), "p 0 0 1000 50 0 0\np 1000 0 1100 50 0 0\n");
    // All is heading, on one page and on more.
    const PageCuts fixed(Stats({0, 600, 1100}, {0, 50}, 2, 1));
    EXPECT_EQ(Text(fixed.Pieces(Choice::MultipleHeadings)),
              "p 0 0 0 50 0 0\n  0 0 600 50 0 0\n  0 50 0 50 0 50\n  0 50 600 50 0 50\n"
              "p 0 0 0 50 0 0\n  600 0 1100 50 0 0\n  0 50 0 50 0 50\n  600 50 1100 50 0 50\n");
}

TEST(AdjustColors, ColoursStayApart) {
    std::vector<Color> colors{kBlack, kWhite, kRed, kGreen, kYellow, kBlue, 0xFFFF00, 0xFF00FF};
    for (unsigned i = 1; i <= 8; ++i)  // the pale ones of stacked bars
        colors.push_back(((i & 1) * 80 + 160) | ((i & 2) * 40 + 160) << 8 | ((i & 4) * 20 + 160) << 16);
    std::vector<BlackWhiteFill> fills;
    for (const Color color : colors) {
        const BlackWhiteFill fill = AdjustedFill(color);
        EXPECT_EQ(std::count(fills.begin(), fills.end(), fill), 0) << color;
        EXPECT_EQ((fill.fill ^ fill.fill >> 8) & 0xFFFF, 0U) << "a grey";
        fills.push_back(fill);
    }
    EXPECT_EQ(fills[0], (BlackWhiteFill{kBlack, Hatch::Solid}));
    EXPECT_EQ(fills[1], (BlackWhiteFill{kWhite, Hatch::Solid}));
    EXPECT_EQ(AdjustedFill(0xA0A0F0, Hatch::Downward).hatch, Hatch::Downward);
    EXPECT_EQ(AdjustedFill(kRed, Hatch::Transparent), (BlackWhiteFill{kRed, Hatch::Transparent}));
    EXPECT_EQ(AdjustedLine(kBlue), kBlack);
    EXPECT_EQ(AdjustedLine(kWhite), kWhite);
    const DrawItem adjusted =
        Adjusted({.kind = DrawItem::Kind::Milestone, .border = kRed, .fill = kGreen, .text = {}});
    EXPECT_EQ(adjusted.border, kBlack);
    EXPECT_EQ(adjusted.fill, AdjustedFill(kGreen).fill);
}

}  // namespace
}  // namespace vortan
