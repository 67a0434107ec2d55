#include "solve/WorkTime.h"

#include <algorithm>
#include <cmath>

namespace vortan {

bool WorkTime::Takes(const Network& network, const Network::Want& want) {
    Week week;
    std::int64_t minutes = 0;
    for (int w = 0; w < kWeekdays; ++w) {
        if (want.minutes[Index(w)] <= 0) continue;
        const auto& day = network.DayOf(network.WeekOf(want.resource), Index(w));
        if (want.minutes[Index(w)] < day.normalMinutes) return false;
        std::int32_t start = 0;
        for (const auto& period : network.PeriodsOf(day)) {
            const auto end = static_cast<std::int32_t>(std::lround(period.end * kMinutesPerDay));
            if (period.kind <= SlotClass::OffDay) {
                week[Index(w)].push_back({start, end});
                minutes += end - start;
            }
            start = end;
        }
    }
    if (week_) return *week_ == week;
    week_ = week;
    weekMinutes_ = minutes;
    return minutes > 0;
}

std::int64_t WorkTime::MinutesAt(double days) const {
    const double whole = DateTime(days).WholeDay();
    const auto day = static_cast<std::int64_t>(whole);
    const auto minute = static_cast<std::int32_t>(std::llrint((days - whole) * kMinutesPerDay));
    // Index 6 of a week is day 0, a Saturday: weeks are counted from there.
    std::int64_t weeks = day / kWeekdays;
    std::int64_t inWeek = day % kWeekdays;
    if (inWeek < 0) {
        inWeek += kWeekdays;
        --weeks;
    }
    std::int64_t minutes = weeks * weekMinutes_;
    for (std::int64_t d = 0; d <= inWeek; ++d) {
        for (const Period& period : (*week_)[Index(WeekdayIndex(static_cast<std::int32_t>(d)))]) {
            const std::int32_t until = d < inWeek ? period.end : std::min(period.end, minute);
            minutes += std::max(until - period.start, 0);
        }
    }
    return minutes;
}

double WorkTime::MomentOf(std::int64_t minutes) const {
    std::int64_t weeks = minutes / weekMinutes_, left = minutes % weekMinutes_;
    if (left <= 0) {  // the end of the week before, not the start of this one
        --weeks;
        left += weekMinutes_;
    }
    for (std::int32_t d = 0;; ++d) {
        for (const Period& period : (*week_)[Index(WeekdayIndex(d % kWeekdays))]) {
            const std::int32_t length = period.end - period.start;
            if (left <= length) {
                const double day = static_cast<double>(weeks * kWeekdays + d);
                return day + static_cast<double>(period.start + left) / kMinutesPerDay;
            }
            left -= length;
        }
    }
}

}  // namespace vortan
