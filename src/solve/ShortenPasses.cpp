// ShortenSolve where calendars, teams or rules differ: every order tried is a pass.

#include <algorithm>
#include <cmath>

#include "solve/ShortenSolve.h"

namespace vortan {

namespace {

constexpr double kSameDay = 1e-6;  ///< days

}  // namespace

/// What the annealing makes small: minutes, or money.
double ShortenSolve::Energy(const Value& value) const {
    constexpr double kMinutesPerLate = 4 * kMinutesPerDay;
    if (options_.forCost) return value.cost.ToDouble() + value.late * start_.cost.ToDouble();
    return value.finish * kMinutesPerDay + value.late * kMinutesPerLate;
}

/// Takes the schedule evaluated last as the one to go on from.
void ShortenSolve::Adopt(const Value& value) {
    value_ = value;
    sliceStart_ = run_.SliceStart();
    sliceFinish_ = run_.SliceFinish();
    clocks_ = run_.Clocks();
    slicePlace_.resize(sliceOrder_.size());
    slicesOf_.resize(network_.Resources().size());
    for (auto& slices : slicesOf_) slices.clear();
    for (std::size_t k = 0; k < sliceOrder_.size(); ++k) {
        const std::int32_t s = sliceOrder_[k];
        slicePlace_[Index(s)] = static_cast<std::int32_t>(k);
        const auto& slice = network_.Slices()[Index(s)];
        if (slice.useMinutes <= 0) continue;
        for (const auto& want : network_.WantsOf(network_.Tasks()[Index(slice.task)]))
            slicesOf_[Index(want.resource)].push_back(s);
    }
    place_.resize(current_.size());
    for (std::size_t k = 0; k < current_.size(); ++k)
        place_[Index(current_[k])] = static_cast<std::int32_t>(k);
}

/// Walks back a chain that holds back the end of the project at random, from a slice to what it waits for or
/// to one that was ahead of it at a person. Picks one of the latter.
bool ShortenSolve::PickMove(std::int32_t& moved, std::int32_t& ahead) {
    const auto slices = network_.Slices();
    const auto tasks = network_.Tasks();
    const auto& active = network_.Projects()[Index(project_)];
    std::int32_t at = -1, found = 0;
    double last = -1;
    for (std::int32_t t = active.firstTask; t < active.firstTask + active.taskCount; ++t) {
        std::int32_t s = tasks[Index(t)].firstSlice;
        while (slices[Index(s)].next >= 0) s = slices[Index(s)].next;
        if (sliceFinish_[Index(s)] <= last) continue;
        last = sliceFinish_[Index(s)];
        at = s;
    }
    const auto choose = [this](std::int32_t& count) { return ++count == 1 || rnd_.Below(count) == 0; };
    for (std::size_t steps = slices.size(); at >= 0 && steps > 0; --steps) {
        const auto s = Index(at);
        const auto& task = tasks[Index(slices[s].task)];
        const double start = sliceStart_[s], finish = sliceFinish_[s];
        std::int32_t next = -1, ways = 0, held = -1, holders = 0;
        const bool link = task.subproject >= 0;
        for (std::int32_t k = firstBefore_[s]; k < firstBefore_[s + 1]; ++k) {
            const std::int32_t b = before_[Index(k)];
            const double until = sliceFinish_[Index(b)] + beforeOffset_[Index(k)];
            if (until >= (link || task.effortUnits == 0 ? finish : start) - kSameDay && choose(ways))
                next = b;
        }
        if (task.effortUnits < 0 && slices[s].useMinutes > 0) {
            for (const auto& want : network_.WantsOf(task)) {
                for (const std::int32_t b : slicesOf_[Index(want.resource)]) {
                    if (slicePlace_[Index(b)] >= slicePlace_[s]) break;
                    const bool between =
                        sliceFinish_[Index(b)] > start + kSameDay && sliceStart_[Index(b)] < finish;
                    if (between && slices[Index(b)].task != slices[s].task && choose(holders)) held = b;
                }
            }
        }
        if (held >= 0) {
            if (choose(found)) {
                moved = slices[s].task;
                ahead = slices[Index(held)].task;
            }
            if (choose(ways)) next = held;
        }
        at = next;
    }
    return found > 0;
}

/// The present order with one task ahead of another, and with those that it waits for. False: one of them is
/// the other task.
bool ShortenSolve::MakeCandidate(std::int32_t moved, std::int32_t ahead) {
    const std::int32_t first = place_[Index(ahead)], last = place_[Index(moved)];
    if (last < first) return false;
    stamp_.resize(current_.size());
    if (++stampNow_ == INT32_MAX) {
        std::fill(stamp_.begin(), stamp_.end(), 0);
        stampNow_ = 1;
    }
    stack_.assign(1, moved);
    stamp_[Index(moved)] = stampNow_;
    while (!stack_.empty()) {
        const auto& task = network_.Tasks()[Index(stack_.back())];
        stack_.pop_back();
        for (std::int32_t s = task.firstSlice; s >= 0; s = network_.Slices()[Index(s)].next) {
            for (std::int32_t k = firstBefore_[Index(s)]; k < firstBefore_[Index(s) + 1]; ++k) {
                const std::int32_t b = network_.Slices()[Index(before_[Index(k)])].task;
                if (place_[Index(b)] < first || stamp_[Index(b)] == stampNow_) continue;
                if (b == ahead) return false;
                stamp_[Index(b)] = stampNow_;
                if (place_[Index(b)] <= last) stack_.push_back(b);
            }
        }
    }
    candidate_ = current_;
    auto to = candidate_.begin() + first;
    for (const bool stamped : {true, false}) {
        for (std::int32_t k = first; k <= last; ++k) {
            const std::int32_t t = current_[Index(k)];
            if ((stamp_[Index(t)] == stampNow_) == stamped) *to++ = t;
        }
    }
    return true;
}

void ShortenSolve::SearchPasses(IterationWatch& watch) {
    const auto slices = network_.Slices();
    const auto tasks = network_.Tasks();
    std::vector<double> key(tasks.size());
    for (std::size_t s = slices.size(); s-- > 0;) key[Index(slices[s].task)] = static_cast<double>(s);
    const Order standing = OrderBy(key);
    const double before = Passed();
    const Value asIs = Try(standing);
    for (std::size_t t = 0; t < tasks.size(); ++t) key[t] = standing_.reverse.Tasks()[t].start;
    const Value byLate = Try(OrderBy(key));
    current_ = byLate.valid && (!asIs.valid || Better(byLate, asIs)) ? OrderBy(key) : standing;
    // As many as would fit if each took as long as the first two.
    const double each = std::max((Passed() - before) / 2, 1e-7);
    const bool timed = options_.moves <= 0;
    AnnealPasses(watch, timed
                            ? static_cast<std::int64_t>(std::max(options_.seconds - Passed(), 0.0) / each) + 1
                            : static_cast<std::int64_t>(options_.moves));
    stopped_ = false;
}

void ShortenSolve::AnnealPasses(IterationWatch& watch, std::int64_t total) {
    constexpr int kRounds = 2;
    constexpr double kHot = 0.005, kCold = 0.02;
    const bool timed = options_.moves <= 0;
    const std::int64_t round = std::max<std::int64_t>((total + kRounds - 1) / kRounds, 1);
    double span = (start_.finish - standing_.run.Clocks().front().start) * kMinutesPerDay;
    for (const auto& clock : standing_.run.Clocks()) {
        if (clock.start > 0) span = std::max(span, (start_.finish - clock.start) * kMinutesPerDay);
    }
    const double hottest = kHot * (options_.forCost ? start_.cost.ToDouble() : span);
    for (; moves_ < total; ++moves_) {
        const bool done = !options_.forCost && best_.finish <= bound_ + kSameDay;
        const double part = static_cast<double>(moves_) / static_cast<double>(total);
        if (done || Cancelled(watch, part, best_.finish)) return;
        if (timed && Passed() > options_.seconds) return;
        if (moves_ % round == 0) {
            if (found_) current_ = bestOrder_;
            const Value value = Evaluate(current_);
            if (value.finish == 0) return;
            Adopt(value);
        }
        std::int32_t moved = -1, ahead = -1;
        if (!PickMove(moved, ahead)) return;
        if (!MakeCandidate(moved, ahead)) continue;
        const double heat =
            hottest * std::pow(kCold, static_cast<double>(moves_ % round) / static_cast<double>(round));
        const Value value = Try(candidate_);
        if (value.finish == 0) continue;  // it halts
        if (Energy(value) > Energy(value_) - heat * std::log(Uniform() + 0x1p-25)) continue;
        std::swap(current_, candidate_);
        Adopt(value);
    }
}

}  // namespace vortan
