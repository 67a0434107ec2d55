#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "solve/Network.h"

namespace vortan {

/// The hours that all people of a plan share, as one running count of minutes.
class WorkTime {
  public:
    /// Takes the normal hours of a resource on the weekdays of a want, or compares them with those taken
    /// before. False: the want does not take all of these hours, or they are others.
    bool Takes(const Network& network, const Network::Want& want);
    /// Whether there is any time at all.
    bool Empty() const { return weekMinutes_ == 0; }

    /// Working minutes from day 0 to a moment.
    std::int64_t MinutesAt(double days) const;
    /// The first moment with so many minutes behind it.
    double MomentOf(std::int64_t minutes) const;

  private:
    struct Period {
        std::int32_t start, end;  ///< minutes of the day
        bool operator==(const Period&) const = default;
    };
    using Week = std::array<std::vector<Period>, kWeekdays>;

    std::optional<Week> week_;
    std::int64_t weekMinutes_ = 0;
};

}  // namespace vortan
