#pragma once

#include <cstdint>

namespace vortan {

/// The random numbers of the iterative solves: the same sequence on every machine, from a start of the
/// caller's choice on.
class Rnd {
  public:
    Rnd() = default;
    explicit Rnd(std::uint64_t seed) : state_(seed) {}

    /// Uniform in 0 to `count` - 1.
    std::int32_t Below(std::int32_t count) {
        return static_cast<std::int32_t>((Next() >> 32) * static_cast<std::uint64_t>(count) >> 32);
    }

  private:
    /// A counter in steps of the golden ratio, stirred (splitmix64).
    std::uint64_t Next() {
        std::uint64_t z = state_ += 0x9E3779B97F4A7C15U;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9U;
        z = (z ^ z >> 27) * 0x94D049BB133111EBU;
        return z ^ z >> 31;
    }

    std::uint64_t state_ = 0;
};

}  // namespace vortan
