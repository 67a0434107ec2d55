#pragma once

#include <cstdint>
#include <optional>
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

/// What a risk solve knows of a task: how much of the spread of finish and cost comes from it.
struct RiskDriver {
    Link<Vtask> task;
    double criticality = 0;  ///< share of the trials in which it had no slack, 0 to 1
    /// Of its sampled duration with the finish of the active project and with its cost: Spearman's rank
    /// correlation, -1 to 1; 0 where nothing spreads.
    double finishCorrelation = 0, costCorrelation = 0;
    /// Days that the median finish would be earlier if the task always took its optimistic estimate, and
    /// later with the pessimistic one; known of the leading tasks, from `gainTrials` trials each.
    double gainDays = 0, lossDays = 0;
    bool gainKnown = false;
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
    /// The share of the iterations that ended by that moment and cost no more than that.
    double ChanceOfBoth(std::optional<DateTime> by, std::optional<Money> within) const {
        std::size_t met = 0;
        for (std::size_t i = 1; i < riskDates.size(); ++i)
            met += (!by || riskDates[i] <= *by) && (!within || riskCosts[i] <= *within) ? 1 : 0;
        return riskDates.size() < 2 ? 0
                                    : static_cast<double>(met) / static_cast<double>(riskDates.size() - 1);
    }

    /// The tasks that make the spread, what matters most first; empty if they were not asked for.
    std::vector<RiskDriver> drivers;
    std::int32_t gainTrials = 0;

    std::vector<Vcrash> crashList;
    float teamIncrement = 0;  ///< of the last crash solve; 0: there was none yet

    ShortenResult shorten;
};

}  // namespace vortan
