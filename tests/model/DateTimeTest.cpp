#include "model/DateTime.h"

#include <gtest/gtest.h>

#include <limits>

namespace vortan {
namespace {

TEST(DateTime, EveryDayOfTheCalendarFollowsTheOneBefore) {
    int year = 100, month = 1, day = 1;
    for (double days = -657434; days <= kLastDay; ++days) {
        const DateParts parts = ToParts(DateTime(days));
        ASSERT_TRUE(parts.year == year && parts.month == month && parts.day == day) << days;
        ASSERT_EQ(FromParts(parts).Days(), days);
        ++day;
        if (!ValidDate(year, month, day)) {
            day = 1;
            if (++month == 13) month = 1, ++year;
        }
    }
    EXPECT_EQ(year, 10000);
    EXPECT_EQ(FromParts({1899, 12, 30}).Days(), 0);
    EXPECT_EQ(Weekday(FromParts({1899, 12, 24, 23, 59, 59})), 1);
    EXPECT_FALSE(ValidDate(99, 1, 1) || ValidDate(10000, 1, 1) || ValidDate(2001, 257, 1) ||
                 ValidDate(2001, 1, 257) || ValidDate(1900, 2, 29) || ValidDate(2001, 0, 1));
}

TEST(DateTime, TimeOfDayRoundsToTheSecond) {
    const DateParts parts = ToParts(DateTime(37137 + (13 * 3600 + 5 * 60 + 9.4) / 86400));
    EXPECT_EQ(parts.hour, 13);
    EXPECT_EQ(parts.minute, 5);
    EXPECT_EQ(parts.second, 9);
    const DateParts next = ToParts(DateTime(37137 + 86399.7 / 86400));
    EXPECT_EQ(next.day, 4);
    EXPECT_EQ(next.hour, 0);
    const DateParts before1900 = ToParts(DateTime(-1.25));
    EXPECT_EQ(before1900.day, 28);
    EXPECT_EQ(before1900.hour, 18);
}

TEST(DateTime, WholeMinutesLieOnTheGridOfAddMinutes) {
    for (int minute = 0; minute < kMinutesPerDay; ++minute) {
        EXPECT_EQ(FromParts({2001, 9, 3, minute / 60, minute % 60, 0}), AddMinutes(DateTime(37137), minute));
    }
    EXPECT_EQ(ToParts(AddMinutes(FromParts({2001, 9, 3, 23, 50, 0}), 15)).minute, 5);
    EXPECT_EQ(AddMinutes(FromParts({2001, 9, 3, 23, 50, 0}), 15).WholeDay(), 37138);
}

TEST(DateTime, ImpossibleMomentsStopAtTheEnds) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (double days : {1e300, infinity, kLastDay + 0.9999999, kLastDay + 1}) {
        const DateParts parts = ToParts(DateTime(days));
        EXPECT_EQ(parts.year, 9999) << days;
        EXPECT_EQ(parts.day, 31) << days;
        EXPECT_EQ(parts.second, 59) << days;
    }
    for (double days : {-1e300, -infinity, -700000.0}) EXPECT_EQ(ToParts(DateTime(days)).year, 100) << days;
    EXPECT_EQ(ToParts(DateTime(std::numeric_limits<double>::quiet_NaN())).year, 1899);
}

}  // namespace
}  // namespace vortan
