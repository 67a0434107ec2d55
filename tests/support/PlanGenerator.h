#pragma once

#include <cstdint>
#include <string>

namespace vortan {

/// The same numbers on every machine (splitmix64).
class FixedRandom {
  public:
    explicit FixedRandom(std::uint64_t seed) : state_(seed) {}

    std::uint64_t Next() {
        std::uint64_t z = state_ += 0x9E3779B97F4A7C15u;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9u;
        z = (z ^ z >> 27) * 0x94D049BB133111EBu;
        return z ^ z >> 31;
    }
    /// `low` to `high`, both included.
    int Between(int low, int high) {
        return low + static_cast<int>(Next() % static_cast<std::uint64_t>(high - low + 1));
    }
    bool Chance(int percent) { return Between(1, 100) <= percent; }

  private:
    std::uint64_t state_;
};

/// What a generated plan is like.
struct PlanKnobs {
    int tasks = 6;        ///< per project, besides links and the closing task
    int masters = 1;      ///< projects without a parent
    int subprojects = 0;  ///< each below one of the projects before it, at most two levels deep
    int templates = 1;    ///< share the numbers of their resources
    int resources = 3;    ///< per template
    int journals = 1;     ///< of which one of the last is active
    int longest = 3000;   ///< minutes of a task's work
    int spread = 30;      ///< days over which the tasks may start
    int partials = 30;    ///< percent of the dependencies that touch the middle of a task
    int offsets = 30;     ///< percent of the dependencies with an offset
    int calendar = 15;    ///< percent of the tasks that pass time on the clock
    int dated = 10;       ///< percent of the tasks that dates drive
    int unset = 0;        ///< percent of the dates that are day 0
    bool oddShifts = true;
    bool oddHours = true;  ///< assignments of parts of hours, of 0 hours and of whole days
    int rule = -1;         ///< of all projects; -1: any of those that never halt
};

/// The text of a plan: the same for the same numbers. It has no circles, one open end to each master project,
/// for each task a rule when to start and, if it needs work, a resource that can give some.
std::string GeneratePlan(std::uint64_t seed, const PlanKnobs& knobs);

/// Knobs that go through everything, with small plans.
PlanKnobs MixedKnobs(std::uint64_t seed);
/// Few resources wanted by many tasks at once, most of which wait for weeks.
PlanKnobs CrowdedKnobs(std::uint64_t seed, int rule);

}  // namespace vortan
