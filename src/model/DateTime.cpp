#include "model/DateTime.h"

#include <algorithm>
#include <chrono>

namespace vortan {
namespace {

constexpr int kSecondsPerDay = 86400;
constexpr std::int64_t kFirstDay = -657434;  // 0100-01-01
constexpr std::chrono::sys_days kDayZero = std::chrono::year(1899) / 12 / 30;

std::chrono::year_month_day CalendarDay(int year, int month, int day) {
    return std::chrono::year(year) / month / day;
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
    const std::chrono::year_month_day onCalendar(kDayZero + std::chrono::days(day));
    return {static_cast<int>(onCalendar.year()),
            static_cast<int>(static_cast<unsigned>(onCalendar.month())),
            static_cast<int>(static_cast<unsigned>(onCalendar.day())),
            second / 3600,
            second / 60 % 60,
            second % 60};
}

DateTime FromParts(const DateParts& parts) {
    const double seconds = parts.hour * 3600.0 + parts.minute * 60.0 + parts.second;
    const std::chrono::sys_days day = CalendarDay(parts.year, parts.month, parts.day);
    return DateTime(static_cast<double>((day - kDayZero).count()) + seconds / kSecondsPerDay);
}

bool ValidDate(int year, int month, int day) {
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) return false;
    return CalendarDay(year, month, day).ok();
}

}  // namespace vortan
