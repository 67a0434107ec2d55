// What drives the spread of a risk solve.

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "solve/RiskSolve.h"

namespace vortan {
namespace {

constexpr std::size_t kLeading = 12;  // tasks whose gain is measured
// Trials of each: a quarter of the iterations within these bounds.
constexpr std::int32_t kFewestGainTrials = 12, kMostGainTrials = 24;

struct Ranks {
    std::vector<double> ranks;  ///< less their mean
    double spread = 0;          ///< the sum of their squares
};

/// The ranks of values, equal ones sharing the middle of theirs.
Ranks RanksOf(const std::vector<double>& values) {
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto less = [&](std::size_t a, std::size_t b) { return values[a] < values[b]; };
    if (!std::is_sorted(order.begin(), order.end(), less)) std::sort(order.begin(), order.end(), less);
    Ranks found{std::vector<double>(values.size())};
    const double mean = (static_cast<double>(values.size()) - 1) / 2;
    for (std::size_t first = 0; first < order.size();) {
        std::size_t last = first;
        while (last + 1 < order.size() && values[order[last + 1]] == values[order[first]]) ++last;
        const double rank = static_cast<double>(first + last) / 2 - mean;
        for (std::size_t i = first; i <= last; ++i) found.ranks[order[i]] = rank;
        found.spread += static_cast<double>(last + 1 - first) * rank * rank;
        first = last + 1;
    }
    return found;
}

/// Pearson's correlation of ranks, which is Spearman's of what was ranked; 0 if one of both does not vary.
double Correlation(const Ranks& a, const Ranks& b) {
    const double sum = std::inner_product(a.ranks.begin(), a.ranks.end(), b.ranks.begin(), 0.0);
    return a.spread > 0 && b.spread > 0 ? sum / std::sqrt(a.spread * b.spread) : 0;
}

/// Finds scores in the row that has them rising.
class Strata {
  public:
    Strata(const float* rising, std::int32_t count)
        : rising_(rising), first_(Index(count) * kPerScore + 1, 0) {
        const float width = rising[count - 1] - rising[0];
        perScore_ = width > 0 ? static_cast<float>(first_.size() - 1) / width : 0;
        for (std::int32_t i = count - 1; i >= 0; --i) first_[BucketOf(rising[i])] = i;
    }
    std::int32_t PlaceOf(float score) const {
        std::int32_t place = first_[BucketOf(score)];
        while (rising_[place] < score) ++place;
        return place;
    }

  private:
    static constexpr std::size_t kPerScore = 4;  // buckets, so that few scores share one

    std::size_t BucketOf(float score) const {
        return static_cast<std::size_t>((score - rising_[0]) * perScore_);
    }

    const float* rising_;
    std::vector<std::int32_t> first_;  ///< by bucket: its first score
    float perScore_ = 0;               ///< buckets for a difference of 1
};

double Median(std::vector<double> values) {
    const auto upper = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), upper, values.end());
    if (values.size() % 2 == 1) return *upper;
    return (*upper + *std::max_element(values.begin(), upper)) / 2;
}

/// What is known without a gain.
double Weight(const RiskDriver& driver) {
    return driver.criticality * std::abs(driver.finishCorrelation);
}

}  // namespace

/// Tasks of the master project of the one that is looked at, whose estimates spread or which were critical.
bool RiskSolve::IsDriver(std::int32_t index) const {
    const auto& task = network_.Tasks()[Index(index)];
    const auto projects = network_.Projects();
    const bool here =
        projects[Index(task.project)].master == projects[Index(project_)].master && task.subproject < 0;
    return here && task.firstSlice >= 0 &&
           (task.optimistic < task.pessimistic || criticalCount_[Index(index)] > 0);
}

std::vector<double> RiskSolve::SampledMinutes(const Network::Task& task) const {
    std::vector<double> minutes(Index(iterations_), 0);
    for (std::int32_t s = task.firstSlice; s >= 0; s = network_.Slices()[Index(s)].next) {
        const Baseline& slice = baseline_[Index(s)];
        const float* scores = permuteTable_.data() + Index(s) * Index(iterations_);
        for (std::size_t i = 0; i < minutes.size(); ++i)
            minutes[i] += static_cast<double>(Sample(slice, scores[i])) * slice.percent;
    }
    return minutes;
}

void RiskSolve::FindDrivers() {
    std::vector<double> finishes, costs;
    for (std::size_t i = 1; i < trials_.size(); ++i) {
        finishes.push_back(trials_[i].finish);
        costs.push_back(trials_[i].cost.ToDouble());
    }
    const Ranks finishRanks = RanksOf(finishes), costRanks = RanksOf(costs);
    const float* const rising = permuteTable_.data();
    const Strata strata(rising, iterations_);
    const auto rankSamples = [&](const Network::Task& task) {
        if (network_.Slices()[Index(task.firstSlice)].next >= 0) return RanksOf(SampledMinutes(task));
        // Samples rise with scores, so there is nothing to sort.
        const auto slice = Index(task.firstSlice);
        std::vector<double> samples(finishes.size());
        for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = Sample(baseline_[slice], rising[i]);
        const Ranks inOrder = RanksOf(samples);
        Ranks ranks = inOrder;
        const float* const scores = rising + slice * samples.size();
        for (std::size_t i = 0; i < samples.size(); ++i)
            ranks.ranks[i] = inOrder.ranks[Index(strata.PlaceOf(scores[i]))];
        return ranks;
    };
    drivers_.clear();
    const auto tasks = network_.Tasks();
    for (std::size_t t = 0; t < tasks.size(); ++t) {
        if (!IsDriver(static_cast<std::int32_t>(t))) continue;
        RiskDriver driver;
        driver.task = tasks[t].object;
        driver.criticality = static_cast<double>(criticalCount_[t]) / iterations_;
        if (tasks[t].optimistic < tasks[t].pessimistic) {
            const Ranks ranks = rankSamples(tasks[t]);
            driver.finishCorrelation = Correlation(ranks, finishRanks);
            driver.costCorrelation = Correlation(ranks, costRanks);
        }
        drivers_.push_back(driver);
    }
    std::stable_sort(drivers_.begin(), drivers_.end(),
                     [](const RiskDriver& a, const RiskDriver& b) { return Weight(a) > Weight(b); });
}

/// Runs trials again, spread evenly over the finishes that came out, with the leading tasks one at a time at
/// their optimistic and pessimistic estimates and everything else as it was. So what differs is theirs alone.
void RiskSolve::MeasureGains(bool quick, IterationWatch& watch) {
    std::vector<std::int32_t> order(Index(iterations_));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [this](std::int32_t a, std::int32_t b) {
        return trials_[Index(a) + 1].finish < trials_[Index(b) + 1].finish;
    });
    gainTrials_ = std::min(iterations_, std::clamp(iterations_ / 4, kFewestGainTrials, kMostGainTrials));
    chosen_.clear();
    std::vector<double> before;
    for (std::int32_t i = 0; i < gainTrials_; ++i) {
        const auto place = (std::int64_t{2} * i + 1) * iterations_ / (std::int64_t{2} * gainTrials_);
        chosen_.push_back(order[static_cast<std::size_t>(place)]);
        before.push_back(trials_[Index(chosen_.back()) + 1].finish);
    }
    const double median = Median(before);
    finishes_.assign(chosen_.size(), 0);
    const std::size_t leading = std::min(kLeading, drivers_.size());
    runBefore_ = iterations_;
    runInAll_ = iterations_ + 2 * static_cast<std::int32_t>(leading) * gainTrials_;
    for (std::size_t i = 0; i < leading; ++i) {
        if (drivers_[i].criticality == 0) continue;
        fixed_ = network_.IndexOf(drivers_[i].task.Get());
        const auto& task = network_.Tasks()[Index(fixed_)];
        if (task.optimistic == task.pessimistic) {
            drivers_[i].gainKnown = true;
            continue;
        }
        bool known = true;
        for (const bool pessimistic : {false, true}) {
            fixedPessimistic_ = pessimistic;
            RunTrials(quick, watch);
            if (watch.WasCancelled()) return;
            // With other minutes a trial can run into the end of the calendar; then nothing is known.
            if (std::exchange(failure_, std::nullopt)) known = false;
            const double moved = Median(finishes_) - median;
            (pessimistic ? drivers_[i].lossDays : drivers_[i].gainDays) = pessimistic ? moved : 0 - moved;
            runBefore_ += gainTrials_;
        }
        drivers_[i].gainKnown = known;
    }
    std::stable_sort(drivers_.begin(), drivers_.end(), [](const RiskDriver& a, const RiskDriver& b) {
        return a.gainKnown != b.gainKnown ? a.gainKnown : a.gainDays > b.gainDays;
    });
}

}  // namespace vortan
