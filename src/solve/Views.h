#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "model/DateTime.h"
#include "model/Money.h"

namespace vortan {

class Vresource;
class Vtask;

/// A slice as screens see it: a piece of a task between two percentages, with its dates and cost.
struct Vslice {
    Vtask* task = nullptr;  ///< none if it was deleted since the solve
    int fromPercent = 0, toPercent = 100;
    DateTime earlyStart, earlyFinish, lateStart, lateFinish;
    Money laborCost;

    std::string BuildNodeText() const;
};

/// A stretch of one day of a resource as screens see it.
struct Vslot {
    DateTime startTime, endTime;
    int slotType = 0;               ///< 3 normal, 4 normal on an off day, 5 overtime, 9 break or overload
    Vtask* taskRequired = nullptr;  ///< the task that holds it; none: free
    Money laborCost;

    std::string BuildNodeText() const;
};

/// Whole day numbers from `first` to before `end`.
struct DaySpan {
    std::int32_t first = INT32_MIN, end = INT32_MAX;
};

/// A slot as a task saw it when one of its slices was done.
struct SlotSighting {
    std::int32_t slice = 0;
    const Vresource* resource = nullptr;
    Vslot slot;
};

/// What leads from a slice to another one.
struct SliceArrow {
    std::int32_t slice = 0;  ///< the other one
    double offset = 0;       ///< days
};

/// Which slices wait for which, by their places in solve order. Two slices that several dependencies join
/// have as many arrows.
class SliceArrows {
  public:
    /// Of `count` slices without any.
    explicit SliceArrows(std::size_t count) : forward_(count), backward_(count) {}

    void Add(std::int32_t from, std::int32_t to, double offset) {
        forward_[static_cast<std::size_t>(from)].push_back({to, offset});
        backward_[static_cast<std::size_t>(to)].push_back({from, offset});
    }
    /// The slices that wait for this one; the next of its own task comes last.
    std::span<const SliceArrow> ForwardList(std::int32_t slice) const {
        return forward_[static_cast<std::size_t>(slice)];
    }
    /// The slices that this one waits for, in solve order.
    std::span<const SliceArrow> BackwardList(std::int32_t slice) const {
        return backward_[static_cast<std::size_t>(slice)];
    }

  private:
    std::vector<std::vector<SliceArrow>> forward_, backward_;
};

}  // namespace vortan
