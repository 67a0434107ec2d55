#include "model/Estimates.h"

namespace vortan {
namespace {

Estimates Of(std::int32_t effortUnits, std::int32_t minutes, std::int32_t past = 0) {
    Estimates made;
    made.minutes = {past, minutes, minutes, minutes};
    made.unit = Estimates::UnitOf(effortUnits);
    made.effortDriven = effortUnits < 0;
    made.manyRows = true;
    return made;
}
/// The three rows of the most likely estimate.
std::string Rows(const Estimates& estimates) {
    return estimates.TextOf(1) + " " + estimates.TextOf(4) + " " + estimates.TextOf(7);
}

TEST(Estimates, ShowTheMinutesInTheirUnit) {
    const std::tuple<int, int, const char*, const char*> cases[] = {
        {-1, 90, "90", "&minutes"},
        {-60, 100, "1.67", "&hours"},
        {-480, 3600, "7.5", "d&ays (8 hours each)"},
        {1440, 3600, "2.5", "d&ays (24 hours each)"},
        {-2400, 1200, "0.5", "&weeks (5 days each)"},
        {10080, -10080, "-1", "&weeks (7 days each)"},
        {-9600, 48, "0.01", "m&onths (20 days each)"},
        {-9600, 47, "0", "m&onths (20 days each)"},
        {43200, -20, "0", "m&onths (30 days each)"},
        {0, 0, "0", "d&ays (24 hours each)"},
        {-77, 480, "1", "d&ays (8 hours each)"}};
    for (const auto& [units, minutes, text, caption] : cases) {
        const Estimates made = Of(units, minutes);
        const auto& kind = Estimates::kUnits[static_cast<std::size_t>(made.unit)];
        EXPECT_EQ(made.TextOf(7), text) << units;
        EXPECT_STREQ(made.effortDriven ? kind.workCaption : kind.clockCaption, caption) << units;
    }
}

TEST(Estimates, OneOfPastRestAndTotalFollowsTheOthers) {
    Estimates made = Of(-60, 3600);
    const std::tuple<int, const char*, const char*> steps[] = {
        {1, "30", "30 30 60"},          {4, "45", "30 45 75"},
        {7, "60", "30 30 60"},          {1, "60", "60 0 60"},
        {1, "67.75", "67.75 -7.75 60"}, {4, "8h", "67.75 8 75.75"},
        {4, "h", "67.75 0 67.75"},      {7, "1e99", "67.75 35791326.37 35791394.12"}};
    for (const auto& [box, typed, rows] : steps) {
        made.Type(box, typed);
        EXPECT_EQ(Rows(made), rows) << box << " " << typed;
    }
    made.Type(6, "1");
    EXPECT_EQ(made.minutes.optimistic, 60);
    EXPECT_EQ(made.Totals().optimistic, made.minutes.mostLikely) << "one estimate is all three";
    made.three = true;
    EXPECT_EQ(made.Totals().optimistic, 60);
    made.Type(5, "2");
    EXPECT_EQ(made.Totals().pessimistic, 4065 + 120);
}

TEST(Estimates, AUnitIsTypedWithTheNumbers) {
    const std::tuple<int, int, const char*, const char*, int, int> cases[] = {
        {-60, 480, "2d", "1 2 3", 480, 1440},
        {-60, 480, "1.5 Weeks ", "0.2 1.5 1.7", 2400, 4080},
        {60, 60, "2 days", "0.04 2 2.04", 1440, 2940},
        {-480, 60, "90 m", "60 90 150", 1, 150},
        {-480, 60, "3;5;8 h", "1 5 6", 60, 540}};
    for (const auto& [units, past, text, rows, now, pessimistic] : cases) {
        Estimates made = Of(units, 0, past);
        made.Type(4, text);
        EXPECT_EQ(Rows(made), rows) << text;
        EXPECT_EQ(made.GetUnits(), now) << text;
        EXPECT_EQ(made.Totals().pessimistic, pessimistic) << text;
    }
}

TEST(Estimates, WhatCannotBeStoredIsRefused) {
    const Estimates made = Of(-60, 120, 60);
    const char *number = "The estimate must be a number.", *negative = "The estimate must not be negative.";
    const char* large = "The estimate is too large.  A task can take at most 2147483647 minutes.";
    const std::tuple<int, const char*, const char*> cases[] = {{4, "", number},
                                                               {4, "3 x", number},
                                                               {1, "3;5;8 h", number},
                                                               {4, "3;5 h", number},
                                                               {4, "1;2;-4 h", negative},
                                                               {7, "223697 mo", large},
                                                               {4, "3 h", nullptr},
                                                               {7, "-0.01", negative},
                                                               {1, "-1", negative},
                                                               {4, "-1", nullptr},
                                                               {4, "-1.01", negative},
                                                               {7, "0", nullptr},
                                                               {7, "35791394.1", nullptr},
                                                               {7, "35791395", large},
                                                               {4, "35791393.5", large},
                                                               {4, "35791393", nullptr}};
    for (const auto& [box, text, refusal] : cases)
        EXPECT_EQ(made.Refusal(box, text).value_or("fits"), refusal ? refusal : "fits") << box << " " << text;
}

}  // namespace
}  // namespace vortan
