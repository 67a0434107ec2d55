#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

/// Conversions of floating point numbers to whole numbers, the only ones used in VORTAN. All round to
/// the nearest whole number, ties to the even one, and stop at the ends of the target's range; "not a
/// number" becomes 0.
namespace vortan {

inline std::int64_t RoundToInt64(double value) {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (value >= limit) return std::numeric_limits<std::int64_t>::max();
    if (value < -limit) return std::numeric_limits<std::int64_t>::min();
    if (value != value) return 0;
    return std::llrint(value);
}

inline std::int32_t RoundToInt32(double value) {
    constexpr double limit = 2147483647.0;
    if (value >= limit) return std::numeric_limits<std::int32_t>::max();
    if (value <= -limit - 1) return std::numeric_limits<std::int32_t>::min();
    if (value != value) return 0;
    return static_cast<std::int32_t>(std::lrint(value));
}

}  // namespace vortan
