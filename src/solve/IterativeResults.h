#pragma once

#include <cstdint>
#include <vector>

#include "model/DateTime.h"
#include "model/Link.h"
#include "model/Money.h"
#include "model/Vtask.h"

namespace vortan {

/// One step of a crash curve: the state that it led to, and what it changed.
struct Vcrash {
    Link<Vtask> task;  ///< whose slice was raised; none in the first record, the starting point
    int fromPercent = 0, toPercent = 0;
    float multiplier = 0;  ///< of the slice's team, after the step
    DateTime endDate;      ///< of the active project, as is the cost
    Money totalCost;
};

/// What a search for a shorter order found.
struct ShortenResult {
    bool searched = false;                 ///< there was one
    bool better = false;                   ///< an order better than the one that stood
    bool optimal = false;                  ///< no order can end the project earlier
    DateTime finishBefore, finish, bound;  ///< of the active project, as are the costs
    Money costBefore, cost;
    std::int64_t moves = 0;  ///< orders tried, behind those that rules gave
};

/// What the last risk and crash solves found. Plain data for charts; not saved with a file.
struct IterativeResults {
    std::int32_t riskIterations = 0;  ///< N; 0: there was no risk solve yet
    /// Element 0 is the most likely finish of the active project, 1 to N the finishes of the iterations in
    /// ascending order.
    std::vector<DateTime> riskDates;
    /// Total cost of the run whose finish stands at the same index.
    std::vector<Money> riskCosts;

    std::vector<Vcrash> crashList;
    float teamIncrement = 0;  ///< of the last crash solve; 0: there was none yet

    ShortenResult shorten;
};

}  // namespace vortan
