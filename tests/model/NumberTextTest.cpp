#include "model/NumberText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

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

/// What `format` makes of the values, with blanks between.
template <class Value, class Format>
std::string Texts(const std::vector<Value>& values, Format&& format) {
    std::string all;
    for (const Value& value : values) all += (all.empty() ? "" : " ") + format(value);
    return all;
}

std::vector<std::string> Words(const std::string& text) {
    std::vector<std::string> words;
    std::istringstream in(text);
    for (std::string word; std::getline(in, word, '|');) words.push_back(word);
    return words;
}

TEST(NumberText, Doubles) {
    const std::vector<double> values = {0,    -0.0,    -17,  0.85, -0.5,   1.0 / 3, 0.1 + 0.2, 1e-7,
                                        1e-8, 1.5e-10, 1e14, 1e15, 1.5e20, kMax,    HUGE_VAL,  NAN};
    EXPECT_EQ(
        Texts(values, [](double value) { return FormatNumber(value); }),
        "0 0 -17 .85 -.5 .3333333333333333 .30000000000000004 .0000001 1E-08 1.5E-10 100000000000000 1E+15 "
        "1.5E+20 1.7976931348623157E+308 1.7976931348623157E+308 0");
}

TEST(NumberText, MoneyBothWays) {
    const std::vector<std::int64_t> values = {0, 1, 8500, 10050, -123450000, kMaxUnits, kMinUnits};
    const auto bothWays = [](std::int64_t units) {
        const std::string text = FormatNumber(Money::FromUnits(units));
        EXPECT_EQ(ScanMoney(text).Units(), units) << text;
        EXPECT_EQ(ParseMoney(text), Money::FromUnits(units)) << text;
        return text;
    };
    EXPECT_EQ(Texts(values, bothWays), "0 .0001 .85 1.005 -12345 922337203685477.5807 -922337203685477.5808");
}

TEST(NumberText, ScanTakesTheLongestNumberInFront) {
    const auto scan = [](const std::string& text) { return FormatNumber(ScanNumber(text)); };
    EXPECT_EQ(Texts(Words("|abc|-|.|+.e1|- 3|0x10|nan|1e-99999999999999999999"), scan), "0 0 0 0 0 0 0 0 0");
    EXPECT_EQ(Texts(Words("  12|\t-12|.85|5.|-.5x|1e3|1D3|1e|1e+|1,234|2.5e-1"), scan),
              "12 -12 .85 5 -.5 1000 1 1 1 1 .25");
    EXPECT_EQ(ScanNumber("1e400") - ScanNumber("-1e400"), HUGE_VAL);
    EXPECT_EQ(ScanNumber("1e400"), kMax);
    EXPECT_EQ(ScanNumber("5E-324"), 5e-324);
    EXPECT_EQ(ScanNumber("2.2250738585072011e-308"), 2.2250738585072011e-308);
    EXPECT_EQ(ScanNumber("9007199254740993"), 9007199254740992.0);
    EXPECT_EQ(ScanNumber("123456789012345678901234567890"), 123456789012345678901234567890.0);
    EXPECT_EQ(ScanNumber(".00000000000000000000000000001"), 1e-29);
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
    EXPECT_EQ(Texts(Words("0.00005|0.00015|0.000050001|0.00025|1.00005|12E-2x|1e-5|9e-99999"),
                    [](const std::string& text) { return std::to_string(ScanMoney(text).Units()); }),
              "0 2 1 2 10000 1200 0 0");
    for (const char* text : {"922337203685477.58075", "1e15", "99999999999999999999999999", "1e999999999999"})
        EXPECT_EQ(ScanMoney(text).Units(), kMaxUnits) << text;
    EXPECT_EQ(ScanMoney("-1e15").Units(), kMinUnits);
    EXPECT_EQ(ParseMoney("922337203685477.5808"), std::nullopt);
    EXPECT_EQ(ParseMoney("12x"), std::nullopt);
}

TEST(NumberText, ScanInt32RoundsHalfToEvenAndSaturates) {
    EXPECT_EQ(Texts(Words("0.5|2.5|2147483647|1e20|-1e20| 480 minutes|x"),
                    [](const std::string& text) { return std::to_string(ScanInt32(text)); }),
              "0 2 2147483647 2147483647 -2147483648 480 0");
}

TEST(NumberText, Booleans) {
    for (const char* text : {"True", "TRUE", "true", " tRuE ", "-1", "1", "0.5"})
        EXPECT_EQ(ParseBool(text), true) << text;
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
