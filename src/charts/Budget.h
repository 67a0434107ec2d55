#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "charts/DrawList.h"
#include "model/DateTime.h"
#include "model/Money.h"
#include "model/Vproject.h"

namespace vortan {

enum class CostKind { Material, Labor, Total };

/// Which curves a budget plot shows.
struct BudgetChoice {
    bool plan = true, current = true, earnedValue = false;
    std::array<bool, 3> costs{true, true, true};  ///< by CostKind
    bool pastToday = false;                       ///< curves of the journal in force go on behind its date

    /// Makes it one that can be shown. Of what excludes each other `clicked` stays, the name of the check box
    /// that was clicked last. `replanned`: the plan is not the journal in force.
    void ApplyRules(std::string_view clicked, bool replanned);
};

/// The cost of a project as it adds up day by day.
struct Budget {
    struct Curve {
        const char* label;
        Color color;
        CostKind kind;
        bool ofPlan;  ///< of the plan's journal alone
        bool cut;     ///< ends at the date of the journal, though the days behind are there
        std::int32_t firstDay;
        std::vector<Money> sums;  ///< at the end of each day from `firstDay` on

        std::int32_t LastDay() const { return firstDay + static_cast<std::int32_t>(sums.size()) - 1; }
        /// At the end of a day; nothing before the first, the last sum behind the last.
        Money At(std::int32_t day) const;
    };

    std::string project;
    Money maxCost;              ///< of all, in the plan or in the journal in force
    double increment = 1;       ///< money of one row of the axis
    std::vector<Curve> curves;  ///< in the order of the key

    /// The same kind of cost in the other of plan and journal in force; none if it is not shown.
    const Curve* Counterpart(const Curve& curve) const;
};

/// Plan and current curves spread a task's cost evenly over the calendar days that it touches; those of
/// earned value place it on the day on which the task finishes. `choice` must follow the rules.
Budget BuildBudget(const Vproject& project, const BudgetChoice& choice);

}  // namespace vortan
