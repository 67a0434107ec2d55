#include "model/ValueText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "model/Conventions.h"
#include "model/Fault.h"
#include "model/NumberText.h"

namespace vortan {
namespace {

TEST(ValueText, Durations) {
    const std::vector<double> minutes = {
        0, 0.1, 0.5, 1, 1.5, 60, 90, 100, 1439, 1440, -2880, 2873, 10081, 43199, 64800, 43200 * 1000.5, NAN};
    std::string longTexts, shortTexts;
    for (const double each : minutes) {
        longTexts += FormatDuration(each / 1440, true) + "|";
        shortTexts += FormatDuration(each / 1440, false) + "|";
    }
    EXPECT_EQ(longTexts,
              "0|0|0|1 minute|2 minutes|1 hour|1.5 hours|1.67 hours|23.98 hours|1 day|-2 days|2 days|1 week|"
              "4.29 weeks|1.5 months|1000.5 months|0|");
    EXPECT_EQ(shortTexts, "0|0|0|1mi|2mi|1h|1.5h|1.67h|23.98h|1d|-2d|2d|1w|4.29w|1.5mo|1000.5mo|0|");
    EXPECT_EQ(FormatDuration(1e300, true), "213503982334601.29 months");
    EXPECT_EQ(FormatDuration(-std::numeric_limits<double>::infinity(), false), "-213503982334601.29mo");
}

TEST(ValueText, DurationsAreReadBack) {
    const std::pair<const char*, double> cases[] = {
        {"5", 5.0 / 24},    {"5 min", 5.0 / 1440},
        {"1d4h", 1.0 / 24},  // the number in front, and the unit at the end
        {"2 mo", 60},       {"2m", 60},
        {"1.5d", 1.5},      {"-2w", -14},
        {"3 HOURS", .125},  {"", 0},
        {" .5 h ", .5 / 24}};
    for (const auto& [text, days] : cases) EXPECT_DOUBLE_EQ(TextToDuration(text).value(), days) << text;
    EXPECT_LE(TextToDuration("1e308 months").value(), std::numeric_limits<double>::max());
    for (const char* text : {"5 years", "abc", "1x"}) EXPECT_FALSE(TextToDuration(text)) << text;
}

TEST(ValueText, TwoDecimalsAreCutOff) {
    const std::pair<float, const char*> cases[] = {
        {1.999f, "1.99"},        {1.995f, "1.99"}, {0.29f, "0.29"},
        {-1.999f, "-1.99"},      {-0.001f, "0"},   {0, "0"},
        {12345.67f, "12345.67"}, {1.009f, "1"},    {2147483648.0f, "2147483648"}};
    for (const auto& [value, text] : cases) EXPECT_EQ(FormatTwoDecimals(value), text);
    EXPECT_EQ(FormatTwoDecimals(std::numeric_limits<float>::quiet_NaN()), "0");
    EXPECT_EQ(FormatTwoDecimals(std::numeric_limits<float>::infinity()).size(), 39u);
}

TEST(ValueText, HundredthsSurviveTwoDecimals) {
    for (int i = 1; i < 1000000; i += 7) {
        const std::string text = FormatTwoDecimals(static_cast<float>(i / 100.0));
        ASSERT_EQ(std::lround(std::stod(text) * 100), i) << text;
    }
}

TEST(ValueText, EffortAndHours) {
    EXPECT_EQ(FormatEffort(-60, 9480, 12480, 15480, true), "158;208;258 hours");
    EXPECT_EQ(FormatEffort(-60, 9480, 12480, 15480, false), "158;208;258h");
    EXPECT_EQ(FormatEffort(-480, 480, 480, 480, true), "1 day");
    EXPECT_EQ(FormatEffort(1440, 480, 480, 480, true), "0.33 days");
    EXPECT_EQ(FormatEffort(43200, 0, 86400, 0, false), "2mo");
    EXPECT_EQ(FormatEffort(-2400, 0, 0, 0, true), "0");
    EXPECT_EQ(FormatEffort(0, 1, 2, 3, true), "<dates>");
    for (int units : {2, 480, -1440}) EXPECT_THROW(FormatEffort(units, 1, 1, 1, true), Fault) << units;
    const std::pair<float, const char*> cases[] = {{0, "0.0"},      {8, "8.0"},        {0.25f, "0.3"},
                                                   {0.35f, "0.4"},  {0.34f, "0.3"},    {99.99f, "100.0"},
                                                   {-0.04f, "0.0"}, {-9.95f, "-10.0"}, {0.01f, "0.0"}};
    for (const auto& [hours, text] : cases) EXPECT_EQ(FormatHours(hours, false), text);
    EXPECT_EQ(FormatHours(0, true), "");
}

TEST(ValueText, Currency) {
    std::string texts;
    for (const std::int64_t units :
         {std::int64_t{0}, std::int64_t{12345000}, std::int64_t{50}, std::int64_t{-50}, std::int64_t{-49},
          std::int64_t{9999950}, INT64_MAX, INT64_MIN}) {
        const std::string text = FormatCurrency(Money::FromUnits(units), "$");
        texts += text + "|";
        ASSERT_TRUE(ParseCurrency(text, "$")) << text << " can be read again";
        EXPECT_EQ(FormatCurrency(*ParseCurrency(text, "$"), "$"), text);
    }
    EXPECT_EQ(
        texts,
        "$0.00|$1,234.50|$0.01|$-0.01|$0.00|$1,000.00|$922,337,203,685,477.58|$-922,337,203,685,477.58|");
    EXPECT_EQ(FormatCurrency(Money(), ""), "$0.00");
    EXPECT_EQ(FormatCurrency(Money(), "EUR "), "EUR 0.00");
    EXPECT_EQ(FormatCurrency(Money(), std::string("kr\0junk", 7)), "kr0.00");
    EXPECT_EQ(FormatCurrency("", "$"), "$0.00");
    EXPECT_EQ(FormatCurrency("1234.5", "$"), "$1,234.50");
    EXPECT_THROW(FormatCurrency("free", "$"), Fault);
}

TEST(ValueText, TypedAmounts) {
    const std::pair<const char*, std::int64_t> cases[] = {
        {"12", 120000},     {"$12", 120000}, {" $ 1,234.5 ", 12345000},
        {"-$5", -50000},    {"$-5", -50000}, {"+.25", 2500},
        {"1.23456", 12346}, {"5$", 50000},   {"-1,000,000", -10000000000},
        {"1e3", 10000000}};
    for (const auto& [text, units] : cases)
        EXPECT_EQ(ParseCurrency(text, "$"), Money::FromUnits(units)) << text;
    EXPECT_EQ(ParseCurrency("7 \xE2\x82\xAC", "\xE2\x82\xAC"), Money::FromUnits(70000));
    for (const char* text : {"", "$", "abc", "1 2", "--1", "-$-1", "1.2,3", "$$1", ",5", "1x", "1e20",
                             "\xE2\x82\xAC"
                             "5"}) {
        EXPECT_EQ(ParseCurrency(text, "$"), std::nullopt) << text;
    }
}

TEST(ValueText, DatesOnScreen) {
    std::string texts;
    for (const double days : {37137.0, 37137 + 485.0 / 1440, 37137 + 47109.0 / 86400, 37137 + 86399.9 / 86400,
                              0.0, 0.5242592592592593, -1.0, -1e-9})
        texts += FormatDate(DateTime(days)) + "|";
    EXPECT_EQ(texts,
              "9/3/2001|9/3/2001 8:05:00 AM|9/3/2001 1:05:09 PM|9/4/2001|12:00:00 AM|12:34:56 PM|12/29/1899|"
              "12:00:00 AM|");
    EXPECT_EQ(FormatShortDate(DateTime(37137.5)) + FormatShortDate(DateTime()), "9/3/200112/30/1899");
}

TEST(ValueText, TypedDates) {
    const std::pair<const char*, double> cases[] = {{"9/3/2001", 37137},
                                                    {" 09/03/2001 ", 37137},
                                                    {"2001-09-03", 37137},
                                                    {"2001-9-3 18:00", 37137.75},
                                                    {"9/3/2001 8:05:00 AM", 37137 + 485.0 / 1440},
                                                    {"9/3/2001 6:00pm", 37137.75},
                                                    {"9/3/01", 37137}};
    for (const auto& [text, days] : cases)
        EXPECT_EQ(ParseDate(text, DateTime(37137)), DateTime(days)) << text;
    const struct {
        int today;
        const char* text;
        int year;
    } shortYears[] = {{2027, "1/1/77", 1977}, {2027, "1/1/76", 2076}, {2027, "1/1/27", 2027},
                      {1999, "1/1/00", 2000}, {2000, "1/1/50", 1950}, {2000, "1/1/49", 2049}};
    for (const auto& each : shortYears) {
        EXPECT_EQ(ParseDate(each.text, FromParts({each.today, 12, 31})), FromParts({each.year, 1, 1}))
            << each.today << " " << each.text;
    }
    for (const char* text :
         {"", "9/3", "9/31/2001", "2/29/1900", "3/9-2001", "01-09-03", "9/3/2001x", "9/3/20011", "9/3/2001 x",
          "9/3/2001 8", "8:00", "tomorrow", "-9/3/2001", "9//3"}) {
        EXPECT_EQ(ParseDate(text), std::nullopt) << text;
    }
}

TEST(ValueText, JDateTakesTheFirstWord) {
    EXPECT_EQ(JDate("9/10/2001 [Current]"), DateTime(37144));
    EXPECT_EQ(JDate("2001-09-10"), DateTime(37144));
    for (const char* text : {"<journal n/a>", ""}) EXPECT_THROW(JDate(text), Fault) << text;
}

struct Country {
    const char *datePattern, *clock, *point, *groups;
    const char *date, *shortDate, *money, *number, *duration;
};
/// The patterns are those of the toolkit and of the C library.
const Country kCountries[] = {
    {"M/d/yy", "12", ".", ",", "9/3/2001 5:08:00 PM", "9/3/2001", "$-1,234,567.50", "1234.25", "1.5 days"},
    {"%m/%d/%Y", "12", ".", ",", "9/3/2001 5:08:00 PM", "9/3/2001", "$-1,234,567.50", "1234.25", "1.5 days"},
    {"dd.MM.yy", "24", ",", ".", "03.09.2001 17:08:00", "03.09.2001", "$-1.234.567,50", "1234,25",
     "1,5 days"},
    {"%d/%m/%Y", "24", ",", "\u202f", "03/09/2001 17:08:00", "03/09/2001", "$-1\u202f234\u202f567,50",
     "1234,25", "1,5 days"},
    {"yyyy-MM-dd", "24", ",", "\u00a0", "2001-09-03 17:08:00", "2001-09-03", "$-1\u00a0234\u00a0567,50",
     "1234,25", "1,5 days"},
    {"dd-MM-yyyy", "24", ",", ".", "03-09-2001 17:08:00", "03-09-2001", "$-1.234.567,50", "1234,25",
     "1,5 days"},
    {"%Y\u5e74%m\u6708%d", "24", ".", ",", "2001/09/03 17:08:00", "2001/09/03", "$-1,234,567.50", "1234.25",
     "1.5 days"},
    {"%D", "12", "\u066b", "\u066c", "9/3/2001 5:08:00 PM", "9/3/2001", "$-1,234,567.50", "1234.25",
     "1.5 days"}};

TEST(ValueText, FollowsTheCountryBothWays) {
    const DateTime moment = AddMinutes(FromParts({2001, 9, 3}), 17 * 60 + 8);
    const Money amount = Money::FromDouble(-1234567.5);
    for (const Country& country : kCountries) {
        SCOPED_TRACE(country.datePattern);
        Conventions conventions;
        conventions.TakeDatePattern(country.datePattern);
        conventions.halfDayClock = country.clock == std::string("12");
        conventions.TakeNumberSigns(country.point, country.groups);
        {
            const UseConventions inForce(conventions);
            EXPECT_EQ(FormatDate(moment), country.date);
            EXPECT_EQ(FormatShortDate(moment), country.shortDate);
            EXPECT_EQ(FormatCurrency(amount, ""), country.money);
            EXPECT_EQ(PlainNumber(1234.25), country.number);
            EXPECT_EQ(FormatDuration(1.5, true), country.duration);
            EXPECT_EQ(ParseDate(country.date), moment);
            EXPECT_EQ(JDate(country.shortDate + std::string(" [Current]")), DateTime(moment.WholeDay()));
            EXPECT_EQ(ParseDate("2001-09-03"), DateTime(moment.WholeDay())) << "in every country";
            EXPECT_EQ(ParseCurrency(country.money, ""), amount);
            EXPECT_EQ(ParseNumber(PlainTyped(country.number)), 1234.25);
            EXPECT_EQ(TextToDuration(country.duration), 1.5);
            EXPECT_EQ(HourName(13, true), "01pm");
        }
        EXPECT_EQ(FormatShortDate(moment), "9/3/2001") << "as before";
    }
}

TEST(ValueText, APointIsReadWhereItCannotBeMistaken) {
    Conventions german;
    german.TakeDatePattern("dd.MM.yyyy");
    german.TakeNumberSigns(",", ".");
    const UseConventions inForce(german);
    const std::pair<const char*, double> cases[] = {{"1.5", 1.5},         {"1.234", 1234},
                                                    {"0.500", 0.5},       {"1.234,5", 1234.5},
                                                    {"1234.500", 1234.5}, {"-12.345.678", -12345678},
                                                    {",5", 0.5},          {"1.23", 1.23}};
    for (const auto& [text, number] : cases) EXPECT_EQ(ParseNumber(PlainTyped(text)), number) << text;
    for (const char* text : {"1,2,3", "1.2.3", "x"}) EXPECT_FALSE(ParseNumber(PlainTyped(text))) << text;
    const DateTime today = FromParts({2026, 1, 1});
    EXPECT_EQ(ParseDate("3.9.01", today), FromParts({2001, 9, 3}));
    EXPECT_EQ(ParseDate("3/9/2001 8:00", today), AddMinutes(FromParts({2001, 9, 3}), 480));
    EXPECT_FALSE(ParseDate("31.2.2001", today));
    EXPECT_EQ(WithoutSeconds(FormatDate(FromParts({2001, 9, 3, 17, 8, 0}))), "03.09.2001 5:08 PM");
}

}  // namespace
}  // namespace vortan
