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
constexpr std::int32_t kFewestGainTrials = 25, kMostGainTrials = 50;

/// The ranks of values, equal ones sharing the middle of theirs, less the mean rank.
std::vector<double> CentredRanks(const std::vector<double>& values) {
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto less = [&](std::size_t a, std::size_t b) { return values[a] < values[b]; };
    if (!std::is_sorted(order.begin(), order.end(), less)) std::sort(order.begin(), order.end(), less);
    std::vector<double> ranks(values.size());
    const double mean = (static_cast<double>(values.size()) - 1) / 2;
    for (std::size_t first = 0; first < order.size();) {
        std::size_t last = first;
        while (last + 1 < order.size() && values[order[last + 1]] == values[order[first]]) ++last;
        for (std::size_t i = first; i <= last; ++i)
            ranks[order[i]] = static_cast<double>(first + last) / 2 - mean;
        first = last + 1;
    }
    return ranks;
}

/// Pearson's correlation, which is Spearman's of what was ranked; 0 if one of both does not vary.
double Correlation(const std::vector<double>& a, const std::vector<double>& b) {
    const double ab = std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
    const double aa = std::inner_product(a.begin(), a.end(), a.begin(), 0.0);
    const double bb = std::inner_product(b.begin(), b.end(), b.begin(), 0.0);
    return aa > 0 && bb > 0 ? ab / std::sqrt(aa * bb) : 0;
}

std::int32_t PlaceOf(const float* rising, std::int32_t count, float value) {
    return static_cast<std::int32_t>(std::lower_bound(rising, rising + count, value) - rising);
}

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

/// The ranks of the sampled minutes of a task, trial by trial.
std::vector<double> RiskSolve::SampleRanks(const Network::Task& task) const {
    const std::size_t n = Index(iterations_);
    const float* const strata = permuteTable_.data();  // the scores of a row, rising
    if (network_.Slices()[Index(task.firstSlice)].next >= 0) return CentredRanks(SampledMinutes(task));
    // Samples rise with scores, so there is nothing to sort.
    const auto slice = Index(task.firstSlice);
    std::vector<double> samples(n), ranks(n);
    for (std::size_t i = 0; i < n; ++i) samples[i] = Sample(baseline_[slice], strata[i]);
    const std::vector<double> rankOf = CentredRanks(samples);
    const float* const scores = permuteTable_.data() + slice * n;
    for (std::size_t i = 0; i < n; ++i) ranks[i] = rankOf[Index(PlaceOf(strata, iterations_, scores[i]))];
    return ranks;
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
    const std::vector<double> finishRanks = CentredRanks(finishes), costRanks = CentredRanks(costs);
    drivers_.clear();
    const auto tasks = network_.Tasks();
    for (std::size_t t = 0; t < tasks.size(); ++t) {
        if (!IsDriver(static_cast<std::int32_t>(t))) continue;
        RiskDriver driver;
        driver.task = tasks[t].object;
        driver.criticality = static_cast<double>(criticalCount_[t]) / iterations_;
        if (tasks[t].optimistic < tasks[t].pessimistic) {
            const std::vector<double> ranks = SampleRanks(tasks[t]);
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
