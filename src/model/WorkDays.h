#pragma once

#include <array>

#include "model/Journaled.h"

namespace vortan {

constexpr int kDayKinds = 9;  ///< 0 Holiday, 1 Sunday to 7 Saturday, 8 Shutdown

/// File field names of the nine kinds of day.
constexpr std::array<const char*, kDayKinds> kWorkDayFields = {
    "WorkOnHoliday",  "WorkOnSunday", "WorkOnMonday",   "WorkOnTuesday", "WorkOnWednesday",
    "WorkOnThursday", "WorkOnFriday", "WorkOnSaturday", "WorkOnShutdown"};

/// On which kinds of day a resource or an assignment works, per journal. The solver reads 1 to 7 alone.
class WorkDays {
  public:
    Journaled<bool>& Field(int day) { return days_.at(static_cast<std::size_t>(day)); }
    const Journaled<bool>& Field(int day) const { return days_.at(static_cast<std::size_t>(day)); }

    /// Bit 0 Sunday to 6 Saturday, in that journal.
    unsigned WeekdaysAt(int index) const {
        unsigned bits = 0;
        for (unsigned w = 0; w < 7; ++w) bits |= static_cast<unsigned>(days_[w + 1].At(index)) << w;
        return bits;
    }

    /// As the fields of the object that has the work days; Monday to Friday when reset.
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        for (std::size_t day = 0; day < kDayKinds; ++day)
            visit(kWorkDayFields[day], self.days_[day], day >= 2 && day <= 6);
    }

  private:
    std::array<Journaled<bool>, kDayKinds> days_;
};

}  // namespace vortan
