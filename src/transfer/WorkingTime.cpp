#include "transfer/WorkingTime.h"

#include <algorithm>
#include <cmath>

namespace vortan {

namespace {

constexpr std::int64_t kFirstSunday = kMinutesPerDay;  // date 1

/// Rounded down, and what is left.
struct Parts {
    std::int64_t weeks, rest;
};
Parts Split(std::int64_t value, std::int64_t by) {
    std::int64_t weeks = value / by;
    if (value % by < 0) --weeks;
    return {weeks, value - weeks * by};
}

}  // namespace

WorkingTime::WorkingTime(const std::array<MDay, 8>& weekday) {
    for (std::size_t day = 1; day <= 7; ++day) {
        const Minute midnight = static_cast<Minute>(day - 1) * kMinutesPerDay;
        if (!weekday[day].Working) continue;
        for (const MWorkingTime& time : weekday[day].Times) {
            const Minute from = midnight + time.From, to = midnight + time.To;
            perWeek_ += to - from;
            if (!spans_.empty() && spans_.back().to == from) {
                spans_.back().to = to;
            } else {
                spans_.push_back({from, to});
            }
        }
    }
}

WorkingTime::Minute WorkingTime::Of(DateTime date) {
    return std::llround(date.Days() * kMinutesPerDay);
}

WorkingTime::Minute WorkingTime::Until(Minute at) const {
    const auto [weeks, rest] = Split(at - kFirstSunday, kWeek);
    Minute sum = weeks * perWeek_;
    for (const Span& span : spans_) sum += std::clamp(rest, span.from, span.to) - span.from;
    return sum;
}

WorkingTime::Minute WorkingTime::Between(Minute from, Minute to) const {
    return Until(to) - Until(from);
}

WorkingTime::Minute WorkingTime::Forward(Minute at) const {
    if (spans_.empty()) return at;
    const auto [weeks, rest] = Split(at - kFirstSunday, kWeek);
    const Minute sunday = kFirstSunday + weeks * kWeek;
    for (const Span& span : spans_) {
        if (rest < span.to) return sunday + std::max(rest, span.from);
    }
    return sunday + kWeek + spans_.front().from;
}

WorkingTime::Minute WorkingTime::Back(Minute at) const {
    if (spans_.empty()) return at;
    const auto [weeks, rest] = Split(at - kFirstSunday, kWeek);
    const Minute sunday = kFirstSunday + weeks * kWeek;
    for (auto span = spans_.rbegin(); span != spans_.rend(); ++span) {
        if (rest > span->from) return sunday + std::min(rest, span->to);
    }
    return sunday - kWeek + spans_.back().to;
}

WorkingTime::Minute WorkingTime::StartOf(Minute finish, Minute minutes) const {
    if (spans_.empty() || minutes <= 0) return finish;
    const Minute goal = Until(finish) - minutes;
    const auto [weeks, rest] = Split(goal, perWeek_);
    Minute left = rest;
    for (const Span& span : spans_) {
        if (left < span.to - span.from) return kFirstSunday + weeks * kWeek + span.from + left;
        left -= span.to - span.from;
    }
    return finish;
}

WorkingTime::Minute WorkingTime::EndOf(Minute start, Minute minutes) const {
    if (spans_.empty() || minutes <= 0) return start;
    const auto [weeks, rest] = Split(Until(start) + minutes - 1, perWeek_);
    Minute left = rest;  // of the last minute
    for (const Span& span : spans_) {
        if (left < span.to - span.from) return kFirstSunday + weeks * kWeek + span.from + left + 1;
        left -= span.to - span.from;
    }
    return start;
}

}  // namespace vortan
