#include "solve/RiskSolve.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <exception>
#include <numeric>
#include <system_error>

#include "model/Rounding.h"
#include "solve/CriticalCount.h"
#include "solve/ThreadCrew.h"

namespace vortan {

namespace {

// Scores of one slice for as many iterations share a cache line of the table.
constexpr std::int32_t kMostPerBlock = 16;
constexpr int kBlocksPerWorker = 4;
// How long the calling thread sleeps between two looks at the progress, when it has no trial left to run.
constexpr std::chrono::milliseconds kLook{20};

}  // namespace

float PtoZ(float p) {
    const float q = p <= 0.5F ? p : 1 - p;
    const float t = std::sqrt(-2 * std::log(q));
    const float num = 2.515517F + 0.802853F * t + 0.010328F * t * t;
    const float den = 1 + 1.432788F * t + 0.189269F * t * t + 0.001308F * t * t * t;
    const float z = t - num / den;
    return p >= 0.5F ? z : -z;
}

std::vector<float> BuildPermuteTable(std::size_t slices, std::int32_t iterations, Rnd& rnd) {
    const std::size_t n = Index(iterations);
    std::vector<float> table(slices * n);
    if (slices == 0) return table;
    for (std::size_t i = 0; i < n; ++i) {
        table[i] = PtoZ(static_cast<float>(static_cast<double>(2 * i + 1) / static_cast<double>(2 * n)));
    }
    for (std::size_t row = n; row < table.size(); row += n) {
        float* const scores = table.data() + row;
        scores[0] = table[0];
        for (std::size_t i = 1; i < n; ++i) {
            const std::size_t j = Index(rnd.Below(static_cast<std::int32_t>(i)));
            scores[i] = scores[j];
            scores[j] = table[i];
        }
    }
    return table;
}

/// Runs trials on one thread.
class RiskSolve::Worker : private ForwardRun::Poll {
  public:
    /// `watch` is that of the calling thread, none elsewhere.
    Worker(RiskSolve& solve, IterationWatch* watch) : solve_(solve), watch_(watch) {
        if (solve.withDrivers_ && solve.fixed_ < 0) critical_.emplace(solve.network_);
    }

    void Run(bool quick) {
        for (;;) {
            const std::int32_t first = solve_.next_.fetch_add(solve_.block_);
            const auto count = static_cast<std::int32_t>(solve_.chosen_.size());
            const std::int32_t last = std::min(first + solve_.block_, count);
            if (first >= solve_.end_) break;
            LoadScores(first, last);
            for (std::int32_t i = first; i < last && i < solve_.end_; ++i) {
                if (Stop(0)) return;
                if (quick) {
                    QuickTrial(i - first);
                } else if (!DetailedTrial(solve_.chosen_[Index(i)], i - first)) {
                    continue;
                }
                const auto totals =
                    ForwardRun::Totals(solve_.network_.Projects()[Index(solve_.project_)], run_.Clocks());
                if (solve_.fixed_ >= 0) {
                    solve_.finishes_[Index(i)] = totals.finish;
                } else {
                    solve_.trials_[Index(i) + 1] = {totals.finish, totals.laborCost + totals.materialCost};
                    if (critical_) critical_->Add(run_);
                }
                ++solve_.done_;
            }
        }
        if (!critical_) return;
        const std::scoped_lock lock(solve_.mutex_);
        for (std::size_t t = 0; t < critical_->Counts().size(); ++t)
            solve_.criticalCount_[t] += critical_->Counts()[t];
    }

  private:
    /// The scores of a block, so that a trial reads them in a row.
    void LoadScores(std::int32_t first, std::int32_t last) {
        const std::size_t slices = solve_.baseline_.size(), block = Index(solve_.block_);
        scores_.resize(slices * block);
        for (std::size_t s = 0; s < slices; ++s) {
            const float* row = solve_.permuteTable_.data() + s * Index(solve_.iterations_);
            for (std::int32_t i = first; i < last; ++i)
                scores_[Index(i - first) * slices + s] = row[solve_.chosen_[Index(i)]];
        }
    }
    std::int32_t Minutes(std::size_t s, float score) const {
        const Baseline& slice = solve_.baseline_[s];
        const bool fixed = solve_.fixed_ >= 0 && solve_.network_.Slices()[s].task == solve_.fixed_;
        if (!fixed) return Sample(slice, score);
        return solve_.fixedPessimistic_ ? slice.pessimistic : slice.optimistic;
    }
    bool DetailedTrial(std::int32_t iteration, std::int32_t column) {
        bookings_.Reset(solve_.network_);
        run_.Prepare(solve_.network_, bookings_);
        const float* scores = scores_.data() + Index(column) * solve_.baseline_.size();
        for (std::size_t s = 0; s < solve_.baseline_.size(); ++s) {
            const Baseline& slice = solve_.baseline_[s];
            const auto share = std::int64_t{Minutes(s, scores[s])} * slice.percent;
            run_.SetUseMinutes(static_cast<std::int32_t>(s), RoundToInt32(static_cast<double>(share) / 100));
        }
        const auto outcome = run_.SolveAllSlices(this);
        if (outcome == ForwardRun::Outcome::Done) return true;
        if (outcome != ForwardRun::Outcome::Stopped)
            solve_.Fail({iteration + 1, outcome, run_.ProblemTask()});
        return false;
    }
    void QuickTrial(std::int32_t column) {
        run_.Prepare(solve_.network_, bookings_);
        const float* scores = scores_.data() + Index(column) * solve_.baseline_.size();
        for (std::size_t s = 0; s < solve_.baseline_.size(); ++s) {
            const Baseline& slice = solve_.baseline_[s];
            const std::int32_t sample = Minutes(s, scores[s]);
            double days = 0;
            Money cost;
            if (slice.mostLikelyDuration > 0 && sample > 0) {
                // Of an estimate of 0 there is no multiple: what was not planned for keeps its duration.
                const double scale = slice.mostLikely > 0 ? slice.mostLikely : sample;
                days = slice.mostLikelyDuration * sample / scale;
                cost = slice.mostLikelyCost;
                if (cost != Money()) cost = Money::FromDouble(cost.ToDouble() * sample / scale);
            }
            run_.PlaceScaled(static_cast<std::int32_t>(s), days, cost);
        }
    }
    bool Stop(std::int32_t) override {
        if (watch_) {
            const double part = solve_.PartDone();
            if (watch_->Cancelled(solve_.PercentDone(), part)) solve_.cancel_ = true;
        }
        return solve_.cancel_;
    }

    RiskSolve& solve_;
    IterationWatch* watch_;
    Bookings bookings_;
    ForwardRun run_;
    std::vector<float> scores_;              ///< of a block, trial by trial
    std::optional<CriticalCount> critical_;  ///< if that is asked for
};

RiskSolve::RiskSolve(const Solver& solver, std::int32_t project, std::int32_t iterations, int workers)
    : standing_(solver.Standing()), network_(standing_.network), project_(project), iterations_(iterations) {
    workers_ = std::clamp(workers, 1, iterations);
    block_ = std::clamp(iterations / (workers_ * kBlocksPerWorker), 1, kMostPerBlock);
}

double RiskSolve::MemoryNeeded(const Solver& solver, std::int32_t iterations, int workers) {
    const double slices = solver.SliceCount(), n = iterations;
    const auto tasks = static_cast<double>(solver.Standing().network.Tasks().size());
    const double table = slices * n * sizeof(float);
    const double results = n * (2 * sizeof(Trial) + sizeof(std::int32_t));
    const double run =
        slices * (kMostPerBlock * sizeof(float) + 4 * sizeof(double)) + tasks * sizeof(ForwardRun::Clock);
    // A trial books more in parts of days than the solution that stands.
    const double bookings = 2.0 * static_cast<double>(solver.Standing().bookings.MemoryBytes());
    return table + results + std::min(workers, iterations) * (run + bookings);
}

void RiskSolve::PrepareRiskSolve(Rnd& rnd) {
    const auto slices = network_.Slices();
    permuteTable_ = BuildPermuteTable(slices.size(), iterations_, rnd);
    trials_.assign(Index(iterations_) + 1, {});
    const ForwardRun& stands = standing_.run;
    const auto totals = ForwardRun::Totals(network_.Projects()[Index(project_)], stands.Clocks());
    trials_[0] = {totals.finish, totals.laborCost + totals.materialCost};
    baseline_.clear();
    baseline_.reserve(slices.size());
    for (std::size_t s = 0; s < slices.size(); ++s) {
        const auto& task = network_.Tasks()[Index(slices[s].task)];
        baseline_.push_back({task.optimistic, task.mostLikely, task.pessimistic,
                             slices[s].to - slices[s].from, stands.SliceFinish()[s] - stands.SliceStart()[s],
                             stands.SliceCost()[s]});
    }
}

/// The minutes of the slice's whole task: a third of the way to an estimate is a standard deviation.
std::int32_t RiskSolve::Sample(const Baseline& slice, float score) {
    const double m = slice.mostLikely;
    const double reach = score > 0 ? slice.pessimistic - m : m - slice.optimistic;
    return RoundToInt32(m + score * reach / 3);
}

int RiskSolve::PercentDone() const {
    const std::int64_t iteration = std::min(runBefore_ + done_ + 1, runInAll_);
    return static_cast<int>(iteration * 100 / (runInAll_ + 1));
}

double RiskSolve::PartDone() const {
    return static_cast<double>(runBefore_ + done_) / runInAll_;
}

void RiskSolve::Solve(bool quick, IterationWatch& watch) {
    chosen_.resize(Index(iterations_));
    std::iota(chosen_.begin(), chosen_.end(), 0);
    fixed_ = -1;
    runBefore_ = 0;
    runInAll_ = iterations_;
    criticalCount_.assign(network_.Tasks().size(), 0);
    RunTrials(quick, watch);
    if (!withDrivers_ || watch.WasCancelled() || failure_) return;
    FindDrivers();
    MeasureGains(quick, watch);
}

/// Trials before the one that failed are still run, so that the first one is found.
void RiskSolve::Fail(const Failure& failure) {
    const std::scoped_lock lock(mutex_);
    if (failure_ && failure_->iteration <= failure.iteration) return;
    failure_ = failure;
    end_ = failure.iteration - 1;
}

void RiskSolve::RunTrials(bool quick, IterationWatch& watch) {
    next_ = done_ = 0;
    end_ = static_cast<std::int32_t>(chosen_.size());
    cancel_ = false;
    failure_.reset();
    if (watch.Cancelled(PercentDone(), PartDone())) return;
    int running = 0;
    std::condition_variable ended;
    std::exception_ptr fault;
    {
        ThreadCrew crew{cancel_};
        crew.threads.reserve(Index(workers_));
        for (int i = 1; i < workers_; ++i) {
            {
                const std::scoped_lock lock(mutex_);
                ++running;
            }
            try {
                crew.threads.emplace_back([&, quick] {
                    std::exception_ptr mine;
                    try {
                        Worker(*this, nullptr).Run(quick);
                    } catch (...) {
                        mine = std::current_exception();
                        cancel_ = true;
                    }
                    const std::scoped_lock lock(mutex_);
                    if (mine) fault = mine;
                    --running;
                    ended.notify_one();
                });
            } catch (const std::system_error&) {  // no more threads to be had
                const std::scoped_lock lock(mutex_);
                --running;
                break;
            }
        }
        Worker(*this, &watch).Run(quick);
        for (;;) {
            {
                std::unique_lock lock(mutex_);
                if (ended.wait_for(lock, kLook, [&] { return running == 0; })) break;
            }
            if (watch.Cancelled(PercentDone(), PartDone())) cancel_ = true;
        }
    }
    if (fault) std::rethrow_exception(fault);
}

void RiskSolve::MoveResults(IterativeResults& results) {
    permuteTable_ = {};
    // Equal dates keep the order of iterations.
    std::vector<std::int32_t> order(trials_.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin() + 1, order.end(), [this](std::int32_t a, std::int32_t b) {
        return trials_[Index(a)].finish < trials_[Index(b)].finish;
    });
    std::vector<DateTime> dates;
    std::vector<Money> costs;
    dates.reserve(order.size());
    costs.reserve(order.size());
    for (const std::int32_t i : order) {
        dates.emplace_back(trials_[Index(i)].finish);
        costs.push_back(trials_[Index(i)].cost);
    }
    results.drivers = std::move(drivers_);
    results.gainTrials = gainTrials_;
    results.riskIterations = iterations_;
    results.riskDates = std::move(dates);
    results.riskCosts = std::move(costs);
}

}  // namespace vortan
