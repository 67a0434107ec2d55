#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/DateTime.h"
#include "transfer/MsProject.h"

namespace vortan {

/// The working hours of a week, and how that program counts with them. Moments are whole minutes since
/// date 0.
class WorkingTime {
  public:
    using Minute = std::int64_t;
    /// `weekday[1]` is Sunday, as in a calendar.
    explicit WorkingTime(const std::array<MDay, 8>& weekday);

    /// Minutes of working time in a week.
    Minute PerWeek() const { return perWeek_; }
    /// Between two moments; negative if `to` is the earlier.
    Minute Between(Minute from, Minute to) const;
    /// The first moment at or after `at` at which work can begin. The same without any working time.
    Minute Forward(Minute at) const;
    /// The last moment at or before `at` at which work can end.
    Minute Back(Minute at) const;
    /// The latest moment from which on `minutes` of work come to an end at `finish`.
    Minute StartOf(Minute finish, Minute minutes) const;

    /// The moment at which `minutes` of work that begins at `start` are done.
    Minute EndOf(Minute start, Minute minutes) const;

    static Minute Of(DateTime date);

  private:
    struct Span {
        Minute from, to;  ///< since the beginning of the week
    };
    static constexpr Minute kWeek = 7 * kMinutesPerDay;
    /// Working minutes from the beginning of the week that holds date 1 to `at`.
    Minute Until(Minute at) const;

    std::vector<Span> spans_;  ///< of one week, ascending
    Minute perWeek_ = 0;
};

}  // namespace vortan
