#include "solve/ShortenFlat.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <queue>

#include "solve/Network.h"

namespace vortan {

void FlatPlan::SetArrows(std::span<const std::pair<std::int32_t, std::int32_t>> arrows) {
    for (const auto& [from, to] : arrows) {
        ++operations[Index(from)].afterCount;
        ++operations[Index(to)].beforeCount;
    }
    std::int32_t firstBefore = 0, firstAfter = 0;
    for (Operation& o : operations) {
        o.firstBefore = firstBefore;
        o.firstAfter = firstAfter;
        firstBefore += std::exchange(o.beforeCount, 0);
        firstAfter += std::exchange(o.afterCount, 0);
    }
    before.resize(arrows.size());
    after.resize(arrows.size());
    for (const auto& [from, to] : arrows) {
        Operation &a = operations[Index(from)], &b = operations[Index(to)];
        after[Index(a.firstAfter + a.afterCount++)] = to;
        before[Index(b.firstBefore + b.beforeCount++)] = from;
    }
}

FlatSearch::FlatSearch(const FlatPlan& plan, std::uint64_t seed) : plan_(plan), rnd_(seed) {
    const std::size_t n = plan.operations.size();
    std::vector<std::int32_t> load(Index(plan.machines));
    for (const auto& o : plan.operations) {
        if (o.machine >= 0) ++load[Index(o.machine)];
    }
    firstStretch_.resize(load.size() + 1);
    for (std::size_t m = 0; m < load.size(); ++m) firstStretch_[m + 1] = firstStretch_[m] + load[m] + 1;
    stretches_.resize(Index(firstStretch_.back()));
    stretchCount_.resize(load.size());
    groupFinish_.resize(plan.limits.size());
    finish_.resize(n);
    currentFinish_.resize(n);
    place_.resize(n);
    machineBefore_.resize(n);
    stamp_.resize(n);
    lastOf_.resize(load.size());
    ComputeTails();
    for (std::size_t i = 0; i < n; ++i) {
        if (tail_[i] >= 0) bound_ = std::max(bound_, head_[i] + plan.operations[i].minutes + tail_[i]);
    }
    for (std::int32_t m = 0; m < plan.machines; ++m) bound_ = std::max(bound_, MachineBound(m));
}

/// Heads and tails of the network without machines; a tail of -1 leads to no end of group 0.
void FlatSearch::ComputeTails() {
    const auto& operations = plan_.operations;
    head_.assign(operations.size(), 0);
    tail_.assign(operations.size(), -1);
    const Order order = ByKey(std::vector<std::int64_t>(operations.size()), false);
    for (const std::int32_t i : order) {
        const auto& o = operations[Index(i)];
        std::int32_t head = o.release;
        for (const std::int32_t b : plan_.BeforeOf(o))
            head = std::max(head, head_[Index(b)] + operations[Index(b)].minutes);
        head_[Index(i)] = head;
    }
    for (auto i = order.rbegin(); i != order.rend(); ++i) {
        const auto& o = operations[Index(*i)];
        std::int32_t tail = o.group == 0 ? 0 : -1;
        for (const std::int32_t a : plan_.AfterOf(o)) {
            if (tail_[Index(a)] >= 0) tail = std::max(tail, tail_[Index(a)] + operations[Index(a)].minutes);
        }
        tail_[Index(*i)] = tail;
    }
}

/// The machine alone, each operation ready at its head, that with the longest tail always first: no schedule
/// ends earlier.
std::int32_t FlatSearch::MachineBound(std::int32_t machine) const {
    struct Job {
        std::int32_t head, minutes, tail;
    };
    std::vector<Job> jobs;
    for (std::size_t i = 0; i < plan_.operations.size(); ++i) {
        const auto& o = plan_.operations[i];
        if (o.machine == machine && tail_[i] >= 0) jobs.push_back({head_[i], o.minutes, tail_[i]});
    }
    std::sort(jobs.begin(), jobs.end(), [](const Job& a, const Job& b) { return a.head < b.head; });
    std::priority_queue<std::pair<std::int32_t, std::int32_t>> ready;  // tail, minutes left
    std::int32_t now = 0, bound = 0;
    for (std::size_t next = 0; next < jobs.size() || !ready.empty();) {
        if (ready.empty()) now = std::max(now, jobs[next].head);
        for (; next < jobs.size() && jobs[next].head <= now; ++next)
            ready.push({jobs[next].tail, jobs[next].minutes});
        auto [tail, left] = ready.top();
        ready.pop();
        const std::int32_t step = next < jobs.size() ? std::min(left, jobs[next].head - now) : left;
        now += step;
        if (step < left) {
            ready.push({tail, left - step});
        } else {
            bound = std::max(bound, now + tail);
        }
    }
    return bound;
}

/// Takes the first free minutes of the machine from `ready` on. Returns when they are through. The stretches
/// of a machine are disjoint and ascending, and never touch.
inline std::int32_t FlatSearch::Place(std::int32_t machine, std::int32_t ready, std::int32_t minutes) {
    Stretch* const stretches = &stretches_[Index(firstStretch_[Index(machine)])];
    std::int32_t& count = stretchCount_[Index(machine)];
    std::int32_t k = count;
    while (k > 0 && stretches[k - 1].end >= ready) --k;
    if (k == count) {
        stretches[count++] = {ready, ready + minutes};
        return ready + minutes;
    }
    const std::int32_t first = k;
    std::int32_t start = ready, now = ready, left = minutes;
    if (stretches[k].start <= now) {
        start = stretches[k].start;
        now = stretches[k++].end;
    }
    while (left > 0 && k < count && stretches[k].start - now <= left) {
        left -= stretches[k].start - now;
        now = stretches[k++].end;
    }
    const std::int32_t finish = left > 0 ? now + left : stretches[k - 1].start;
    const std::int32_t stop = left > 0 ? finish : now;
    if (k == first) {
        std::copy_backward(stretches + first, stretches + count, stretches + count + 1);
        ++count;
    } else if (k > first + 1) {
        std::copy(stretches + k, stretches + count, stretches + first + 1);
        count -= k - first - 1;
    }
    stretches[first] = {start, stop};
    return finish;
}

/// Schedules an order that puts each operation behind those it waits for. Gives up as soon as the energy is
/// sure to pass `limit`.
FlatSearch::Value FlatSearch::Evaluate(const Order& order, std::int64_t limit) {
    std::fill(stretchCount_.begin(), stretchCount_.end(), 0);
    std::fill(groupFinish_.begin(), groupFinish_.end(), 0);
    const auto* const operations = plan_.operations.data();
    const std::int32_t* const before = plan_.before.data();
    std::int32_t* const finish = finish_.data();
    for (const std::int32_t i : order) {
        const auto& o = operations[i];
        std::int32_t ready = o.release;
        for (std::int32_t k = 0; k < o.beforeCount; ++k)
            ready = std::max(ready, finish[before[o.firstBefore + k]]);
        const std::int32_t end =
            o.machine >= 0 && o.minutes > 0 ? Place(o.machine, ready, o.minutes) : ready + o.minutes;
        finish[i] = end;
        if (std::int64_t{end} + tail_[Index(i)] > limit && tail_[Index(i)] >= 0) return {};
        if (o.group >= 0) groupFinish_[Index(o.group)] = std::max(groupFinish_[Index(o.group)], end);
    }
    Value value{groupFinish_.empty() ? 0 : groupFinish_[0], 0};
    for (std::size_t g = 1; g < groupFinish_.size(); ++g)
        value.late += std::max(groupFinish_[g] - plan_.limits[g], 0);
    return value;
}

void FlatSearch::Take(const Order& order, const Value& value) {
    if (value.Energy() >= best_.Energy()) return;
    best_ = value;
    bestOrder_ = order;
}

void FlatSearch::Try(const Order& order) {
    const Value value = Evaluate(order, kNoLimit);
    Take(order, value);
}

/// Stable, and quick for what is nearly sorted.
void FlatSearch::SortByFinish(Order& order, const std::vector<std::int32_t>& finish) {
    std::size_t shifts = 0;
    for (std::size_t k = 1; k < order.size(); ++k) {
        const std::int32_t i = order[k];
        std::size_t at = k;
        for (; at > 0 && finish[Index(order[at - 1])] > finish[Index(i)]; --at) order[at] = order[at - 1];
        order[at] = i;
        shifts += k - at;
        if (shifts > 20 * order.size()) {
            std::stable_sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
                return finish[Index(a)] < finish[Index(b)];
            });
            return;
        }
    }
}

/// An order that obeys the arrows, or with `backwards` their reverse, and else puts larger keys first.
FlatSearch::Order FlatSearch::ByKey(const std::vector<std::int64_t>& key, bool backwards) const {
    const auto& operations = plan_.operations;
    std::vector<std::int32_t> waits(operations.size());
    std::priority_queue<std::pair<std::int64_t, std::int32_t>> ready;
    Order order;
    order.reserve(operations.size());
    for (std::size_t i = 0; i < operations.size(); ++i) {
        waits[i] = backwards ? operations[i].afterCount : operations[i].beforeCount;
        if (waits[i] == 0) ready.push({key[i], -static_cast<std::int32_t>(i)});
    }
    while (!ready.empty()) {
        const std::int32_t i = -ready.top().second;
        ready.pop();
        order.push_back(i);
        const auto& o = operations[Index(i)];
        for (const std::int32_t next : backwards ? plan_.BeforeOf(o) : plan_.AfterOf(o)) {
            if (--waits[Index(next)] == 0) ready.push({key[Index(next)], -next});
        }
    }
    return order;
}

/// The schedule of the reversed plan.
void FlatSearch::ScheduleBackwards(const Order& order, std::vector<std::int32_t>& finish) {
    std::fill(stretchCount_.begin(), stretchCount_.end(), 0);
    for (const std::int32_t i : order) {
        const auto& o = plan_.operations[Index(i)];
        std::int32_t ready = 0;
        for (const std::int32_t a : plan_.AfterOf(o)) ready = std::max(ready, finish[Index(a)]);
        finish[Index(i)] =
            o.machine >= 0 && o.minutes > 0 ? Place(o.machine, ready, o.minutes) : ready + o.minutes;
    }
}

/// From the schedule evaluated last: latest finish first backwards, then latest backwards first forwards, for
/// as long as that helps.
void FlatSearch::ImproveByTurns() {
    const std::size_t n = plan_.operations.size();
    std::vector<std::int64_t> key(n);
    std::vector<std::int32_t> back(n);
    for (std::int64_t last = INT64_MAX;;) {
        std::copy(finish_.begin(), finish_.end(), key.begin());
        ScheduleBackwards(ByKey(key, true), back);
        std::copy(back.begin(), back.end(), key.begin());
        const Order order = ByKey(key, false);
        const Value value = Evaluate(order, kNoLimit);
        Take(order, value);
        if (value.Energy() >= last || Optimal()) return;
        last = value.Energy();
    }
}

void FlatSearch::TryRules() {
    const std::size_t n = plan_.operations.size();
    std::vector<std::int64_t> key(n);
    for (std::size_t i = 0; i < n; ++i) key[i] = tail_[i] + plan_.operations[i].minutes;
    Try(ByKey(key, false));
    if (!Optimal()) ImproveByTurns();
    if (!Optimal() && !bestOrder_.empty()) {
        Evaluate(bestOrder_, kNoLimit);
        ImproveByTurns();
    }
}

/// What a move needs to know of the present order: places, who came before on each machine, and where
/// critical chains end.
void FlatSearch::Renew() {
    std::fill(lastOf_.begin(), lastOf_.end(), -1);
    std::fill(groupFinish_.begin(), groupFinish_.end(), 0);
    ends_.clear();
    for (std::size_t k = 0; k < current_.size(); ++k) {
        const std::int32_t i = current_[k];
        place_[Index(i)] = static_cast<std::int32_t>(k);
        const auto& o = plan_.operations[Index(i)];
        if (o.group >= 0)
            groupFinish_[Index(o.group)] = std::max(groupFinish_[Index(o.group)], currentFinish_[Index(i)]);
        if (o.machine >= 0 && o.minutes > 0)
            machineBefore_[Index(i)] = std::exchange(lastOf_[Index(o.machine)], i);
    }
    for (auto k = current_.rbegin(); k != current_.rend(); ++k) {
        const std::int32_t group = plan_.operations[Index(*k)].group;
        if (group < 0 || currentFinish_[Index(*k)] != groupFinish_[Index(group)]) continue;
        if (group == 0 || groupFinish_[Index(group)] > plan_.limits[Index(group)]) ends_.push_back(*k);
    }
}

/// Walks back a critical chain at random, and picks one of those on it that waited for their machine.
bool FlatSearch::PickMove(std::int32_t& moved, std::int32_t& ahead) {
    std::int32_t i = ends_[Index(rnd_.Below(static_cast<std::int32_t>(ends_.size())))];
    std::int32_t found = 0;
    while (i >= 0) {
        const auto& o = plan_.operations[Index(i)];
        const std::int32_t start = currentFinish_[Index(i)] - o.minutes;
        std::int32_t next = -1, ways = 0;
        bool waitsFor = false;
        const std::int32_t held = o.machine >= 0 && o.minutes > 0 ? machineBefore_[Index(i)] : -1;
        for (const std::int32_t b : plan_.BeforeOf(o)) {
            if (b == held) waitsFor = true;
            if (currentFinish_[Index(b)] < start) continue;
            if (++ways == 1 || rnd_.Below(ways) == 0) next = b;
        }
        if (held >= 0 && currentFinish_[Index(held)] >= start) {
            if (!waitsFor && (++found == 1 || rnd_.Below(found) == 0)) {
                moved = i;
                ahead = held;
            }
            if (++ways == 1 || rnd_.Below(ways) == 0) next = held;
        }
        i = next;
    }
    return found > 0;
}

/// The present order with `moved` ahead of `ahead`. False: a chain leads from `ahead` to it.
bool FlatSearch::MakeCandidate(std::int32_t moved, std::int32_t ahead) {
    const std::int32_t first = place_[Index(ahead)], last = place_[Index(moved)];
    if (last < first) return false;
    if (++stampNow_ == INT32_MAX) {
        std::fill(stamp_.begin(), stamp_.end(), 0);
        stampNow_ = 1;
    }
    stack_.assign(1, moved);
    stamp_[Index(moved)] = stampNow_;
    while (!stack_.empty()) {
        const std::int32_t i = stack_.back();
        stack_.pop_back();
        for (const std::int32_t b : plan_.BeforeOf(plan_.operations[Index(i)])) {
            if (place_[Index(b)] < first || stamp_[Index(b)] == stampNow_) continue;
            if (b == ahead) return false;
            stamp_[Index(b)] = stampNow_;
            stack_.push_back(b);
        }
    }
    candidate_ = current_;
    auto to = candidate_.begin() + first;
    for (std::int32_t k = first; k <= last; ++k) {
        if (stamp_[Index(current_[Index(k)])] == stampNow_) *to++ = current_[Index(k)];
    }
    for (std::int32_t k = first; k <= last; ++k) {
        if (stamp_[Index(current_[Index(k)])] != stampNow_) *to++ = current_[Index(k)];
    }
    return true;
}

std::int64_t FlatSearch::Anneal(std::int64_t moves, std::int64_t total) {
    // Rounds near the best schedule are worth most in large plans, hot ones in small plans.
    constexpr double kHot[] = {0.002, 0.004, 0.01, 0.004};  // of the bound
    constexpr double kCold = 0.02;                          // of the hottest
    constexpr std::int64_t kRounds = std::size(kHot);
    const std::int64_t round = std::max<std::int64_t>((total + kRounds - 1) / kRounds, 1);
    double heat = 0;
    const std::int64_t end = made_ + moves, begin = made_;
    for (; made_ < end && !Optimal(); ++made_) {
        const std::int64_t step = made_ % round;
        if (step == 0) {
            const Value value = Evaluate(bestOrder_, kNoLimit);
            current_ = bestOrder_;
            currentFinish_ = finish_;
            value_ = value;
            SortByFinish(current_, currentFinish_);
            Renew();
        }
        if (step % 64 == 0 || made_ == begin)
            heat = kHot[made_ / round % kRounds] * bound_ *
                   std::pow(kCold, static_cast<double>(step) / static_cast<double>(round));
        std::int32_t moved = -1, ahead = -1;
        if (!PickMove(moved, ahead)) break;
        if (!MakeCandidate(moved, ahead)) continue;
        const double room = -heat * std::log(Uniform() + 0x1p-25);
        const std::int64_t limit = value_.Energy() + static_cast<std::int64_t>(room);
        const Value value = Evaluate(candidate_, limit);
        if (value.finish == INT32_MAX || value.Energy() > limit) continue;
        value_ = value;
        std::swap(current_, candidate_);
        std::swap(currentFinish_, finish_);
        SortByFinish(current_, currentFinish_);
        Take(current_, value_);
        Renew();
    }
    return made_ - begin;
}

}  // namespace vortan
