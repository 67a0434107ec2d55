#pragma once

#include <cmath>
#include <compare>
#include <cstdint>

namespace vortan {

/// A moment on the calendar: days since 1899-12-30 00:00, the fraction being the time of day, without
/// time zone. The day 0 means "not set", which for a task means "not solved".
class DateTime {
  public:
    constexpr DateTime() = default;
    constexpr explicit DateTime(double days) : days_(days) {}

    constexpr double Days() const { return days_; }
    /// Midnight at which the day of this moment begins.
    double WholeDay() const {
        if (!(days_ > -1e9 && days_ < 1e9)) return std::floor(days_);
        const auto whole =
            static_cast<double>(static_cast<std::int64_t>(days_));  // quicker than a library call
        return whole > days_ ? whole - 1 : whole;
    }
    constexpr bool IsSet() const { return days_ != 0; }

    constexpr auto operator<=>(const DateTime&) const = default;

  private:
    double days_ = 0;
};

constexpr int kMinutesPerDay = 1440;
/// 9999-12-31, the last day that a plan may reach.
constexpr double kLastDay = 2958465;

/// The days between two moments, with fraction.
constexpr double DaysBetween(DateTime from, DateTime to) {
    return to.Days() - from.Days();
}

/// `days` elapsed days later, with no regard to shifts or work days.
constexpr DateTime AddDays(DateTime date, double days) {
    return DateTime(date.Days() + days);
}

/// `minutes` later, rounded so that the result lies on a whole minute of its day. All bookings go
/// through here, so they all lie on the minute grid.
inline DateTime AddMinutes(DateTime date, std::int64_t minutes) {
    const double day = date.WholeDay();
    const auto sum = std::llrint((date.Days() - day) * kMinutesPerDay + static_cast<double>(minutes));
    return DateTime(day + static_cast<double>(sum) / kMinutesPerDay);
}

/// 1 for Sunday to 7 for Saturday.
inline int Weekday(DateTime date) {
    const auto day = static_cast<std::int64_t>(date.WholeDay());
    return static_cast<int>(((day - 1) % 7 + 7) % 7) + 1;  // day 1 is Sunday, 1899-12-31
}

/// A calendar day in the proleptic Gregorian calendar and the time of day in whole seconds.
struct DateParts {
    int year = 0, month = 0, day = 0;
    int hour = 0, minute = 0, second = 0;
};

/// Takes a moment apart, rounded to the nearest second. A moment outside the years 100 to 9999 counts as the
/// nearest one inside, "not a number" as day 0.
DateParts ToParts(DateTime date);
/// The reverse. The parts must name a real day; ValidDate tells.
DateTime FromParts(const DateParts& parts);
/// Whether there is such a day, in the years 100 to 9999.
bool ValidDate(int year, int month, int day);

}  // namespace vortan
