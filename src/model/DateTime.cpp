#include "model/DateTime.h"

#include <algorithm>

namespace vortan {
namespace {

constexpr int kSecondsPerDay = 86400;
constexpr std::int64_t kFirstDay = -657434;  // 0100-01-01
constexpr std::int64_t kDaysTo1970 = 25569;  // from 1899-12-30 to 1970-01-01

// The Gregorian calendar repeats every 400 years, an era of 146097 days. Years are counted from March, so
// that the leap day is the last of its year and every month begins at a fixed day of the year. Eras are
// counted from 0000-03-01, which lies 719468 days before 1970-01-01.
constexpr std::int64_t kDaysPerEra = 146097;
constexpr std::int64_t kEraOffset = 719468 - kDaysTo1970;

std::int64_t FloorDivide(std::int64_t a, std::int64_t b) {
    return (a >= 0 ? a : a - b + 1) / b;
}

std::int64_t DayNumber(std::int64_t year, std::int64_t month, std::int64_t day) {
    if (month <= 2) --year;
    const std::int64_t era = FloorDivide(year, 400);
    const std::int64_t yearOfEra = year - era * 400;
    const std::int64_t monthFromMarch = month > 2 ? month - 3 : month + 9;
    const std::int64_t dayOfYear = (153 * monthFromMarch + 2) / 5 + day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * kDaysPerEra + dayOfEra - kEraOffset;
}

void SetCalendarDay(DateParts& parts, std::int64_t dayNumber) {
    const std::int64_t z = dayNumber + kEraOffset;
    const std::int64_t era = FloorDivide(z, kDaysPerEra);
    const auto dayOfEra = static_cast<int>(z - era * kDaysPerEra);
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int monthFromMarch = (5 * dayOfYear + 2) / 153;
    parts.day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
    parts.month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    parts.year = static_cast<int>(era) * 400 + yearOfEra + (parts.month <= 2 ? 1 : 0);
}

}  // namespace

DateParts ToParts(DateTime date) {
    double days = date.Days();
    if (days != days) days = 0;
    days = std::clamp(days, static_cast<double>(kFirstDay), kLastDay + 1);
    auto day = static_cast<std::int64_t>(std::floor(days));
    auto second = static_cast<int>(
        std::nearbyint((days - static_cast<double>(day)) * static_cast<double>(kSecondsPerDay)));
    if (second == kSecondsPerDay) {
        ++day;
        second = 0;
    }
    if (static_cast<double>(day) > kLastDay) {
        day = static_cast<std::int64_t>(kLastDay);
        second = kSecondsPerDay - 1;
    }
    DateParts parts;
    SetCalendarDay(parts, day);
    parts.hour = second / 3600;
    parts.minute = second / 60 % 60;
    parts.second = second % 60;
    return parts;
}

DateTime FromParts(const DateParts& parts) {
    const double seconds = parts.hour * 3600.0 + parts.minute * 60.0 + parts.second;
    return DateTime(static_cast<double>(DayNumber(parts.year, parts.month, parts.day)) +
                    seconds / kSecondsPerDay);
}

bool ValidDate(int year, int month, int day) {
    static constexpr int kMonthDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1) return false;
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return day <= kMonthDays[month - 1] + (leap && month == 2 ? 1 : 0);
}

}  // namespace vortan
