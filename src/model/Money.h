#pragma once

#include <compare>
#include <cstdint>
#include <limits>

#include "model/Rounding.h"

namespace vortan {

/// An amount of money in the user's currency: a whole number of ten-thousandths. Sums stop at the ends
/// of the range instead of wrapping round.
class Money {
  public:
    static constexpr std::int64_t kUnit = 10000;

    constexpr Money() = default;
    static constexpr Money FromUnits(std::int64_t tenThousandths) { return Money(tenThousandths); }
    /// Rounds to the nearest ten-thousandth, ties to even.
    static Money FromDouble(double amount) { return Money(RoundToInt64(amount * kUnit)); }

    constexpr std::int64_t Units() const { return units_; }
    constexpr double ToDouble() const { return static_cast<double>(units_) / kUnit; }

    Money& operator+=(Money other) {
        std::int64_t sum;
        if (__builtin_add_overflow(units_, other.units_, &sum)) {
            sum = other.units_ > 0 ? std::numeric_limits<std::int64_t>::max()
                                   : std::numeric_limits<std::int64_t>::min();
        }
        units_ = sum;
        return *this;
    }
    friend Money operator+(Money a, Money b) { return a += b; }
    friend Money operator-(Money a, Money b) {
        constexpr auto least = std::numeric_limits<std::int64_t>::min();
        return a += Money(b.units_ == least ? std::numeric_limits<std::int64_t>::max() : -b.units_);
    }
    Money& operator-=(Money other) { return *this = *this - other; }

    constexpr auto operator<=>(const Money&) const = default;

  private:
    constexpr explicit Money(std::int64_t units) : units_(units) {}
    std::int64_t units_ = 0;
};

}  // namespace vortan
