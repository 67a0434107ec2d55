#include "charts/TimeScale.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vortan {
namespace {

using Period = TimeScale::Period;

constexpr std::array<const char*, 12> kMonths = {"January",   "February", "March",    "April",
                                                 "May",       "June",     "July",     "August",
                                                 "September", "October",  "November", "December"};
constexpr std::size_t kShortMonth = 3;            // characters
constexpr double kLongestPeriods[] = {1, 7, 31};  // days
constexpr double kMinColumn = 1.5;                // average characters
constexpr double kLabelMargin = 0.5;              // average characters, left and right together

std::size_t Index(int number) {
    return static_cast<std::size_t>(number);
}

int MonthsOf(Period period) {
    return period == Period::Quarter ? 3 : 1;
}

/// A moment inside the calendar.
DateTime InCalendar(DateTime date) {
    static const double firstDay = FromParts({.year = 100, .month = 1, .day = 1}).Days();
    if (std::isnan(date.Days())) return DateTime();
    return DateTime(std::clamp(date.Days(), firstDay, kLastDay));
}

/// The beginning of the period that `date` lies in.
double Floor(Period period, DateTime date, TimeScale::WeekStart weekStart = TimeScale::WeekStart::Monday) {
    const double day = date.WholeDay();
    if (period == Period::Day) return day;
    if (period == Period::Week) return day - (Weekday(date) + 7 - static_cast<int>(weekStart)) % 7;
    DateParts parts = ToParts(DateTime(day));
    parts.month -= (parts.month - 1) % MonthsOf(period);
    parts.day = 1;
    return FromParts(parts).Days();
}

/// The beginning of the period after the one that begins at `begin`.
double Next(Period period, double begin) {
    if (period == Period::Day) return begin + 1;
    if (period == Period::Week) return begin + 7;
    DateParts parts = ToParts(DateTime(begin));
    parts.month += MonthsOf(period);
    if (parts.month > 12) {
        parts.month -= 12;
        ++parts.year;
    }
    return FromParts(parts).Days();
}

}  // namespace

const char* TimeScale::MonthName(int month) {
    return kMonths[Index(month - 1)];
}

TimeScale::TimeScale(Period period, DateTime start, DateTime finish, const TextMetrics& metrics,
                     WeekStart weekStart)
    : period_(period) {
    start = InCalendar(start);
    finish = std::max(InCalendar(finish), start);
    bounds_.front() = Floor(period, start, weekStart);
    do bounds_.push_back(Next(period, bounds_.back()));
    while (bounds_.back() < finish.Days());
    MakeLabels(metrics);
    MakeUpperLabels(metrics);
}

TimeScale TimeScale::Fitting(DateTime start, DateTime finish, double width, const TextMetrics& metrics,
                             WeekStart weekStart) {
    const double mostColumns = width / (kMinColumn * metrics.AverageWidth());
    const double days = DaysBetween(InCalendar(start), InCalendar(finish));
    for (const Period period : {Period::Day, Period::Week, Period::Month}) {
        // Centuries of days need not be made to see that they do not fit.
        if (days / kLongestPeriods[static_cast<int>(period)] > mostColumns) continue;
        TimeScale scale(period, start, finish, metrics, weekStart);
        if (static_cast<double>(scale.Count()) * scale.ColumnWidth() <= width) return scale;
    }
    return {Period::Quarter, start, finish, metrics};
}

void TimeScale::MakeLabels(const TextMetrics& metrics) {
    int widest = 0;
    std::array<bool, 32> measured{};
    for (std::size_t col = 0; col + 1 < bounds_.size(); ++col) {
        const DateParts parts = ToParts(DateTime(bounds_[col]));
        int number = parts.day;
        std::string label;
        if (period_ == Period::Month) {
            number = parts.month;
            label = std::string(MonthName(number)).substr(0, kShortMonth);
        } else if (period_ == Period::Quarter) {
            number = (parts.month - 1) / 3 + 1;
            label = "Q" + std::to_string(number);
        } else {
            label = std::to_string(number);
        }
        if (!measured[Index(number)]) {
            measured[Index(number)] = true;
            widest = std::max(widest, metrics.TextWidth(label));
        }
        labels_.push_back(std::move(label));
    }
    const double average = metrics.AverageWidth();
    columnWidth_ =
        static_cast<int>(std::ceil(std::max(kMinColumn * average, widest + kLabelMargin * average)));
}

void TimeScale::Widen(double width, const TextMetrics& metrics) {
    const double each = std::min(width / std::max(Count(), 1), double{kMostWidening} * columnWidth_);
    if (each <= columnWidth_) return;
    columnWidth_ = static_cast<int>(each);
    MakeUpperLabels(metrics);
}

void TimeScale::MakeUpperLabels(const TextMetrics& metrics) {
    upperLabels_.clear();
    const bool byMonth = period_ == Period::Day || period_ == Period::Week;
    for (int first = 0; first < Count();) {
        const DateParts parts = ToParts(DateTime(bounds_[Index(first)]));
        const DateTime end(Next(Period::Month, Floor(Period::Month, DateTime(bounds_[Index(first)]))));
        int last = first + 1;
        while (last < Count() && (byMonth ? bounds_[Index(last)] < end.Days()
                                          : ToParts(DateTime(bounds_[Index(last)])).year == parts.year))
            ++last;
        const std::string year = std::to_string(parts.year);
        std::vector<std::string> forms{year};
        if (byMonth) {
            const std::string month = MonthName(parts.month);
            const std::string shortMonth = month.substr(0, kShortMonth);
            forms = {month + " " + year, shortMonth + " " + year, shortMonth};
        }
        const auto form = std::find_if(forms.begin(), forms.end(), [&](const std::string& text) {
            return metrics.TextWidth(text) + metrics.AverageWidth() <=
                   static_cast<double>(last - first) * columnWidth_;
        });
        upperLabels_.push_back({form == forms.end() ? std::string() : *form, first, last});
        first = last;
    }
}

double TimeScale::ToColumns(DateTime when) const {
    if (Count() == 0) return 0;
    // The column that `when` lies in, the first and last one reaching on for ever.
    const auto inner = std::upper_bound(bounds_.begin() + 1, bounds_.end() - 1, when.Days()) - 1;
    const double begin = *inner, end = *(inner + 1);
    return static_cast<double>(inner - bounds_.begin()) + (when.Days() - begin) / (end - begin);
}

DateTime TimeScale::FromColumns(double columns) const {
    if (Count() == 0) return {};
    const double whole = std::clamp(std::floor(columns), 0.0, static_cast<double>(Count() - 1));
    const auto begin = bounds_.begin() + static_cast<std::ptrdiff_t>(whole);
    return DateTime(*begin + (columns - whole) * (*(begin + 1) - *begin));
}

}  // namespace vortan
