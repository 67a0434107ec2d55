#include "cli/TextTable.h"

#include <gtest/gtest.h>

#include <sstream>

namespace vortan {
namespace {

using Align = TextTable::Align;

std::vector<int> LineWidths(const std::string& text) {
    std::vector<int> widths;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) widths.push_back(TextWidth(line));
    return widths;
}

TEST(TextTableTest, WidthCountsColumnsAndNotBytes) {
    const std::pair<const char*, int> cases[] = {{"", 0},        {"abc", 3}, {"prüfen", 6},  {"計画", 4},
                                                 {"e\u0301", 1}, {"…", 1},   {"\xFF\xC3", 2}};
    for (const auto& [text, width] : cases) EXPECT_EQ(TextWidth(text), width) << text;
}

TEST(TextTableTest, FittedTextIsCutBetweenCharacters) {
    EXPECT_EQ(FitText("Walls", 5), "Walls");
    EXPECT_EQ(FitText("Walls", 4), "Wal…");
    EXPECT_EQ(FitText("prüfen", 4), "prü…");
    EXPECT_EQ(FitText("計画計画", 6), "計画…");  // a half of a wide character is not shown
    EXPECT_EQ(FitText("a\tb\x1B[31m", 20), "a b [31m");
}

TEST(TextTableTest, WrappedTextKeepsItsWords) {
    EXPECT_EQ(WrapText("one two three", 7), "one two\nthree");
    EXPECT_EQ(WrapText("one two three", 0), "one two three");
    EXPECT_EQ(WrapText("unbreakable it is", 5), "unbreakable\nit is");
}

TEST(TextTableTest, ColumnsAreAlignedAcrossWideCharacters) {
    TextTable table({"Id", "Name", "Cost"}, {Align::Right, Align::Left, Align::Right}, 1);
    table.AddRow({"1", "計画", "$5.00"});
    table.AddRow({"10", "Café", "$15.00"});
    table.AddRule();
    table.AddRow({"", "Total", "$20.00"});
    EXPECT_EQ(table.Print(0),
              "Id  Name     Cost\n"
              "-----------------\n"
              " 1  計画    $5.00\n"
              "10  Café   $15.00\n"
              "-----------------\n"
              "    Total  $20.00\n");
}

TEST(TextTableTest, TheElasticColumnGivesWayFirst) {
    TextTable table({"Id", "Description", "Cost"}, {Align::Right, Align::Left, Align::Right}, 1);
    table.AddRow({"1", "Outside insulation and render", "$7,630.00"});
    EXPECT_EQ(table.Print(31),
              "Id  Description            Cost\n"
              "-------------------------------\n"
              " 1  Outside insulat…  $7,630.00\n");
    EXPECT_EQ(table.ReadableWidth(), 2 + 2 + 20 + 2 + 9);
    for (const int width : {12, 15, 20, 31, 44, 100}) {
        for (const int line : LineWidths(table.Print(width))) EXPECT_LE(line, width);
    }
}

}  // namespace
}  // namespace vortan
