#include "model/NumberText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace vortan {
namespace {

std::string FileDateText(DateTime date) {
    std::string text;
    AppendFileDate(text, date);
    return text;
}

constexpr double kMax = std::numeric_limits<double>::max();
constexpr std::int64_t kMaxUnits = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kMinUnits = std::numeric_limits<std::int64_t>::min();

TEST(NumberText, Doubles) {
    const std::pair<double, const char*> cases[] = {
        {0, "0"},
        {-0.0, "0"},
        {-17, "-17"},
        {0.85, ".85"},
        {-0.5, "-.5"},
        {0.0104166666666667, ".0104166666666667"},
        {1.0 / 3, ".3333333333333333"},
        {0.1 + 0.2, ".30000000000000004"},
        {1e-7, ".0000001"},
        {1.5e-10, "1.5E-10"},
        {1e-8, "1E-08"},
        {1e14, "100000000000000"},
        {1e15, "1E+15"},
        {1.5e20, "1.5E+20"},
        {std::numeric_limits<double>::infinity(), "1.7976931348623157E+308"},
        {std::numeric_limits<double>::quiet_NaN(), "0"}};
    for (const auto& [value, text] : cases) EXPECT_EQ(FormatNumber(value), text);
}

TEST(NumberText, MoneyBothWays) {
    const std::pair<std::int64_t, const char*> cases[] = {{0, "0"},
                                                          {1, ".0001"},
                                                          {8500, ".85"},
                                                          {10050, "1.005"},
                                                          {-123450000, "-12345"},
                                                          {kMaxUnits, "922337203685477.5807"},
                                                          {kMinUnits, "-922337203685477.5808"}};
    for (const auto& [units, text] : cases) {
        EXPECT_EQ(FormatNumber(Money::FromUnits(units)), text);
        EXPECT_EQ(ScanMoney(text).Units(), units) << text;
        EXPECT_EQ(ParseMoney(text), Money::FromUnits(units)) << text;
    }
}

TEST(NumberText, ScanTakesTheLongestNumberInFront) {
    const std::pair<const char*, double> cases[] = {
        {"", 0},
        {"abc", 0},
        {"-", 0},
        {".", 0},
        {"+.e1", 0},
        {"  12", 12},
        {"\t-12", -12},
        {"- 3", 0},
        {".85", .85},
        {"0.85", .85},
        {"5.", 5},
        {"-.5x", -.5},
        {"1e3", 1000},
        {"1D3", 1},
        {"2.5e-1", .25},
        {"1e", 1},
        {"1e+", 1},
        {"1,234", 1},
        {"0x10", 0},
        {"nan", 0},
        {"1e400", kMax},
        {"-1e400", -kMax},
        {"1e-99999999999999999999", 0},
        {"5E-324", 5e-324},
        {"2.2250738585072011e-308", 2.2250738585072011e-308},
        {"9007199254740993", 9007199254740992.0},
        {"123456789012345678901234567890", 123456789012345678901234567890.0},
        {".00000000000000000000000000001", 1e-29}};
    for (const auto& [text, value] : cases) EXPECT_EQ(ScanNumber(text), value) << text;
    EXPECT_EQ(ScanNumber("0." + std::string(500, '0') + "25E+501"), 2.5);
    std::string digits(400, '7');
    EXPECT_EQ(ScanNumber(digits), kMax);
    digits += "E-500";
    EXPECT_EQ(ScanNumber(digits), 7.77777777777777777e-101);
    // The view ends inside a longer number.
    EXPECT_EQ(ScanNumber(std::string_view("123456", 3)), 123);
    EXPECT_EQ(ScanNumber(std::string_view("1.2345678901234567890", 6)), 1.2345);
    EXPECT_EQ(ScanFloat("1e39"), std::numeric_limits<float>::max());
    EXPECT_EQ(ScanFloat("1e-60"), 0);
}

TEST(NumberText, ScanMoneyRoundsHalfToEvenAndSaturates) {
    const std::pair<const char*, std::int64_t> cases[] = {{"0.00005", 0},
                                                          {"0.00015", 2},
                                                          {"0.000050001", 1},
                                                          {"0.00025", 2},
                                                          {"1.00005", 10000},
                                                          {"12E-2x", 1200},
                                                          {"1e-5", 0},
                                                          {"9e-99999", 0},
                                                          {"922337203685477.58075", kMaxUnits},
                                                          {"1e15", kMaxUnits},
                                                          {"1e999999999999", kMaxUnits},
                                                          {"-1e15", kMinUnits},
                                                          {"99999999999999999999999999", kMaxUnits}};
    for (const auto& [text, units] : cases) EXPECT_EQ(ScanMoney(text).Units(), units) << text;
    EXPECT_EQ(ParseMoney("922337203685477.5808"), std::nullopt);
    EXPECT_EQ(ParseMoney("12x"), std::nullopt);
}

TEST(NumberText, ScanInt32RoundsHalfToEvenAndSaturates) {
    const std::pair<const char*, std::int32_t> cases[] = {{"0.5", 0},
                                                          {"2.5", 2},
                                                          {"2147483647", 2147483647},
                                                          {"1e20", 2147483647},
                                                          {"-1e20", -2147483647 - 1},
                                                          {" 480 minutes", 480},
                                                          {"x", 0}};
    for (const auto& [text, value] : cases) EXPECT_EQ(ScanInt32(text), value) << text;
}

TEST(NumberText, Booleans) {
    for (const char* text : {"True", "TRUE", "true", " tRuE ", "-1", "1", "0.5"}) {
        EXPECT_EQ(ParseBool(text), true) << text;
    }
    for (const char* text : {"False", "false", "0", "-0", "0.0"}) EXPECT_EQ(ParseBool(text), false) << text;
    for (const char* text : {"", "yes", "Truely", "Tru", "1x", "-"})
        EXPECT_EQ(ParseBool(text), std::nullopt) << text;
}

TEST(NumberText, NumbersReadBackToTheSameBits) {
    std::mt19937_64 random(20010903);
    for (int i = 0; i < 200000; ++i) {
        const std::uint64_t bits = random();
        const auto number = std::bit_cast<double>(bits);
        if (std::isfinite(number)) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(ScanNumber(FormatNumber(number))), bits) << number;
        }
        const auto single = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        if (std::isfinite(single)) {
            ASSERT_EQ(std::bit_cast<std::uint32_t>(ScanFloat(FormatNumber(single))),
                      static_cast<std::uint32_t>(bits))
                << single;
        }
        const auto money = Money::FromUnits(static_cast<std::int64_t>(bits) >> (random() % 64));
        ASSERT_EQ(ScanMoney(FormatNumber(money)), money);
        // Values of everyday size: dates, rates and fractions of days.
        const double minutes = static_cast<double>(bits % 100000000) / kMinutesPerDay;
        ASSERT_EQ(ScanNumber(FormatNumber(minutes)), minutes);
    }
}

TEST(NumberText, FileDatesAreReadByColumns) {
    const std::pair<const char*, double> cases[] = {{"09/03/2001 08:00am", 37137 + 480 / 1440.0},
                                                    {"12/30/1899 12:00am", 0},
                                                    {"09/03/2001", 37137},
                                                    {"09/03/2001   ", 37137},
                                                    {"09-03.2001 12:30PM", 37137 + 750 / 1440.0},
                                                    {"09/03/2001 13:05", 37137 + 785 / 1440.0},
                                                    {"09/03/2001 1:05:30 pm ", 37137 + 47130 / 86400.0}};
    for (const auto& [text, days] : cases) EXPECT_EQ(ParseFileDate(text), DateTime(days)) << text;
    for (int i : {0, 1}) EXPECT_EQ(FileDateText(DateTime(cases[i].second)), cases[i].first);
    EXPECT_EQ(FileDateText(DateTime(37137 + 86370.0 / 86400)), "09/03/2001 11:59pm");
    EXPECT_EQ(FileDateText(DateTime(37137 + 59.9 / 86400)), "09/03/2001 12:01am");
    EXPECT_EQ(FileDateText(DateTime(1e300)), "12/31/9999 11:59pm");
    for (const char* text :
         {"", "9/3/2001", "09/03/200", "13/03/2001", "02/30/2001", "09/03/0099", "ab/cd/efgh", "09/0x/2001",
          "09/03/2001 25:00", "09/03/2001 13:00pm", "09/03/2001 10:60am", "09/03/2001 10",
          "09/03/2001 10:", "09/03/2001 10:00:99", "09/03/2001 am", "09/03/2001 10:00xm", "09/03/2001 100:00",
          "09/03/2001 -1:00"}) {
        EXPECT_EQ(ParseFileDate(text), std::nullopt) << text;
    }
}

TEST(NumberText, FileDatesReadBackOnWholeMinutes) {
    std::mt19937_64 random(1);
    const auto first = static_cast<std::int64_t>(FromParts({100, 1, 1}).Days());
    const auto days = static_cast<std::uint64_t>(kLastDay) + static_cast<std::uint64_t>(1 - first);
    for (int i = 0; i < 200000; ++i) {
        const auto day = static_cast<double>(first + static_cast<std::int64_t>(random() % days));
        const DateTime date = AddMinutes(DateTime(day), static_cast<std::int64_t>(random() % kMinutesPerDay));
        const std::string text = FileDateText(date);
        ASSERT_EQ(text.size(), 18u);
        ASSERT_EQ(ParseFileDate(text), date) << text;
    }
}

}  // namespace
}  // namespace vortan
