#include "solve/TabuSearch.h"

#include <algorithm>

#include "solve/Network.h"

namespace vortan {

namespace {

constexpr std::int32_t kNowhere = -1'000'000'000;  ///< the tail of what leads to no end of group 0

}  // namespace

TabuSearch::TabuSearch(const FlatPlan& plan, std::uint64_t seed) : plan_(plan), rnd_(seed) {
    const std::size_t n = plan.operations.size();
    jobs_.reserve(n);
    std::vector<std::int32_t> load(Index(plan.machines));
    for (const auto& o : plan.operations) {
        const std::int32_t machine = o.minutes > 0 ? o.machine : -1;
        jobs_.push_back({o.minutes, o.release, machine, o.group == 0 ? 0 : kNowhere, o.firstBefore,
                         o.firstBefore + o.beforeCount, o.firstAfter, o.firstAfter + o.afterCount});
        local_.push_back(machine < 0 ? 0 : load[Index(machine)]++);
    }
    std::int64_t pairs = 0, used = 0;
    for (const std::int32_t l : load) {
        firstTabu_.push_back(pairs);
        pairs += std::int64_t{l} * l;
        used += l > 0 ? 1 : 0;
    }
    tabu_.resize(static_cast<std::size_t>(pairs));
    sequences_.resize(load.size());
    used = std::max<std::int64_t>(used, 1);
    leastTenure_ = 10 + static_cast<std::int32_t>(static_cast<std::int64_t>(n) / used / used);
    for (auto* values : {&machineBefore_, &machineAfter_, &placeIn_, &head_, &tail_, &waits_, &newHead_})
        values->resize(n);
}

bool TabuSearch::Fits(const FlatPlan& plan) {
    constexpr std::int64_t kMostPairs = 1 << 26;
    std::vector<std::int64_t> load(Index(plan.machines));
    for (const auto& o : plan.operations) {
        if (o.machine >= 0) ++load[Index(o.machine)];
    }
    std::int64_t pairs = 0;
    for (const std::int64_t l : load) pairs += l * l;
    return pairs <= kMostPairs;
}

void TabuSearch::Begin(const FlatSearch::Order& order) {
    for (auto& sequence : sequences_) sequence.clear();
    for (const std::int32_t i : order) {
        const std::int32_t machine = jobs_[Index(i)].machine;
        if (machine < 0) continue;
        placeIn_[Index(i)] = static_cast<std::int32_t>(sequences_[Index(machine)].size());
        sequences_[Index(machine)].push_back(i);
    }
    std::fill(machineBefore_.begin(), machineBefore_.end(), -1);
    std::fill(machineAfter_.begin(), machineAfter_.end(), -1);
    for (const auto& sequence : sequences_) {
        for (std::size_t k = 1; k < sequence.size(); ++k) {
            machineBefore_[Index(sequence[k])] = sequence[k - 1];
            machineAfter_[Index(sequence[k - 1])] = sequence[k];
        }
    }
    std::fill(tabu_.begin(), tabu_.end(), 0);
    step_ = bestStep_ = 0;
    Schedule();
    if (finish_ < bestFinish_) {
        bestFinish_ = finish_;
        bestSequences_ = sequences_;
    }
}

/// Heads and tails of all operations. False: the sequences and the network have a circle.
bool TabuSearch::Schedule() {
    const std::size_t n = jobs_.size();
    order_.clear();
    for (std::size_t i = 0; i < n; ++i) {
        const Job& job = jobs_[i];
        head_[i] = job.release;
        waits_[i] = job.endBefore - job.firstBefore + (machineBefore_[i] >= 0 ? 1 : 0);
        if (waits_[i] == 0) order_.push_back(static_cast<std::int32_t>(i));
    }
    const std::int32_t* const after = plan_.after.data();
    for (std::size_t at = 0; at < order_.size(); ++at) {
        const auto i = Index(order_[at]);
        const Job& job = jobs_[i];
        const std::int32_t end = head_[i] + job.minutes;
        const auto pass = [&](std::int32_t next) {
            head_[Index(next)] = std::max(head_[Index(next)], end);
            if (--waits_[Index(next)] == 0) order_.push_back(next);
        };
        for (std::int32_t k = job.firstAfter; k < job.endAfter; ++k) pass(after[k]);
        if (machineAfter_[i] >= 0) pass(machineAfter_[i]);
    }
    if (order_.size() < n) return false;
    finish_ = 0;
    criticalEnds_.clear();
    for (std::size_t at = n; at-- > 0;) {
        const auto i = Index(order_[at]);
        const Job& job = jobs_[i];
        std::int32_t tail = job.tailStart;
        for (std::int32_t k = job.firstAfter; k < job.endAfter; ++k)
            tail = std::max(tail, tail_[Index(after[k])] + jobs_[Index(after[k])].minutes);
        if (machineAfter_[i] >= 0) {
            const auto next = Index(machineAfter_[i]);
            tail = std::max(tail, tail_[next] + jobs_[next].minutes);
        }
        tail_[i] = tail;
        if (job.tailStart == 0) {
            const std::int32_t end = head_[i] + job.minutes;
            if (end > finish_) {
                finish_ = end;
                criticalEnds_.clear();
            }
            if (end == finish_) criticalEnds_.push_back(static_cast<std::int32_t>(i));
        }
    }
    return true;
}

/// Whether an operation may come right behind a later one of its machine: no chain leads from it there.
bool TabuSearch::MayFollow(std::int32_t moved, std::int32_t last) const {
    const Job& job = jobs_[Index(moved)];
    const std::int32_t reach = head_[Index(last)];
    for (std::int32_t k = job.firstAfter; k < job.endAfter; ++k) {
        const auto a = Index(plan_.after[Index(k)]);
        if (a == Index(last) || head_[a] + jobs_[a].minutes <= reach) return false;
    }
    return true;
}

bool TabuSearch::MayPrecede(std::int32_t moved, std::int32_t first) const {
    const Job& job = jobs_[Index(moved)];
    const std::int32_t reach = head_[Index(first)] + jobs_[Index(first)].minutes;
    for (std::int32_t k = job.firstBefore; k < job.endBefore; ++k) {
        const std::int32_t b = plan_.before[Index(k)];
        if (b == first || head_[Index(b)] >= reach) return false;
    }
    return true;
}

/// The moves of a critical block: to its end and to its front, and of its ends into its midst.
void TabuSearch::AddMoves(std::int32_t machine, std::int32_t first, std::int32_t last) {
    const auto& sequence = sequences_[Index(machine)];
    const auto add = [&](std::int32_t from, std::int32_t to) {
        const std::int32_t moved = sequence[Index(from)], other = sequence[Index(to)];
        if (from < to ? MayFollow(moved, other) : MayPrecede(moved, other))
            moves_.push_back({machine, from, to});
    };
    for (std::int32_t k = first; k < last; ++k) add(k, last);
    for (std::int32_t k = last; k > first + 1; --k) add(k, first);
    for (std::int32_t k = first + 1; k < last; ++k) add(first, k);
    for (std::int32_t k = last - 1; k > first; --k) add(last, k);
}

/// Collects the moves along one critical chain, taken at random.
void TabuSearch::WalkBlocks() {
    moves_.clear();
    path_.clear();
    std::int32_t i = criticalEnds_[Index(rnd_.Below(static_cast<std::int32_t>(criticalEnds_.size())))];
    while (i >= 0) {
        path_.push_back(i);
        const Job& job = jobs_[Index(i)];
        const std::int32_t head = head_[Index(i)];
        std::int32_t next = -1, ways = 0;
        const auto look = [&](std::int32_t b) {
            if (head_[Index(b)] + jobs_[Index(b)].minutes != head) return;
            if (++ways == 1 || rnd_.Below(ways) == 0) next = b;
        };
        for (std::int32_t k = job.firstBefore; k < job.endBefore; ++k) look(plan_.before[Index(k)]);
        const std::int32_t held = machineBefore_[Index(i)];
        if (held >= 0) look(held);
        i = next;
    }
    // Backwards: the last operation stands in front.
    for (std::size_t k = 0; k < path_.size();) {
        const std::int32_t machine = jobs_[Index(path_[k])].machine;
        std::size_t end = k + 1;
        while (machine >= 0 && end < path_.size() && machineBefore_[Index(path_[end - 1])] == path_[end])
            ++end;
        if (end - k > 1) AddMoves(machine, placeIn_[Index(path_[end - 1])], placeIn_[Index(path_[k])]);
        k = end;
    }
}

/// The longest chain through what a move shifts, by heads and tails of the present schedule.
std::int32_t TabuSearch::Estimate(const Move& move) {
    const auto& sequence = sequences_[Index(move.machine)];
    const std::int32_t low = std::min(move.from, move.to), high = std::max(move.from, move.to);
    row_.clear();
    if (move.from < move.to) {
        row_.insert(row_.end(), sequence.begin() + low + 1, sequence.begin() + high + 1);
        row_.push_back(sequence[Index(low)]);
    } else {
        row_.push_back(sequence[Index(high)]);
        row_.insert(row_.end(), sequence.begin() + low, sequence.begin() + high);
    }
    const std::int32_t before = low > 0 ? sequence[Index(low - 1)] : -1;
    std::int32_t ready = before >= 0 ? head_[Index(before)] + jobs_[Index(before)].minutes : 0;
    for (const std::int32_t i : row_) {
        const Job& job = jobs_[Index(i)];
        std::int32_t head = std::max(ready, job.release);
        for (std::int32_t k = job.firstBefore; k < job.endBefore; ++k) {
            const auto b = Index(plan_.before[Index(k)]);
            head = std::max(head, head_[b] + jobs_[b].minutes);
        }
        newHead_[Index(i)] = head;
        ready = head + job.minutes;
    }
    const std::int32_t behind = Index(high + 1) < sequence.size() ? sequence[Index(high + 1)] : -1;
    std::int32_t rest = behind >= 0 ? tail_[Index(behind)] + jobs_[Index(behind)].minutes : kNowhere;
    std::int32_t longest = 0;
    for (auto i = row_.rbegin(); i != row_.rend(); ++i) {
        const Job& job = jobs_[Index(*i)];
        std::int32_t tail = std::max(rest, job.tailStart);
        for (std::int32_t k = job.firstAfter; k < job.endAfter; ++k) {
            const auto a = Index(plan_.after[Index(k)]);
            tail = std::max(tail, tail_[a] + jobs_[a].minutes);
        }
        longest = std::max(longest, newHead_[Index(*i)] + job.minutes + tail);
        rest = tail + job.minutes;
    }
    return longest;
}

bool TabuSearch::IsTabu(const Move& move) const {
    auto& self = const_cast<TabuSearch&>(*this);
    const auto& sequence = sequences_[Index(move.machine)];
    const std::int32_t moved = sequence[Index(move.from)];
    if (move.from < move.to) {
        for (std::int32_t k = move.from + 1; k <= move.to; ++k) {
            if (self.TabuOf(move.machine, sequence[Index(k)], moved) > step_) return true;
        }
    } else {
        for (std::int32_t k = move.to; k < move.from; ++k) {
            if (self.TabuOf(move.machine, moved, sequence[Index(k)]) > step_) return true;
        }
    }
    return false;
}

void TabuSearch::Make(const Move& move) {
    auto& sequence = sequences_[Index(move.machine)];
    const std::int32_t moved = sequence[Index(move.from)];
    const std::int32_t until = step_ + leastTenure_ + rnd_.Below(leastTenure_ * 2 / 5 + 1);
    const auto begin = sequence.begin();
    if (move.from < move.to) {
        for (std::int32_t k = move.from + 1; k <= move.to; ++k)
            TabuOf(move.machine, moved, sequence[Index(k)]) = until;
        std::rotate(begin + move.from, begin + move.from + 1, begin + move.to + 1);
    } else {
        for (std::int32_t k = move.to; k < move.from; ++k)
            TabuOf(move.machine, sequence[Index(k)], moved) = until;
        std::rotate(begin + move.to, begin + move.from, begin + move.from + 1);
    }
    const std::int32_t low = std::min(move.from, move.to), high = std::max(move.from, move.to);
    const auto size = static_cast<std::int32_t>(sequence.size());
    for (std::int32_t k = low; k <= high; ++k) {
        const auto i = Index(sequence[Index(k)]);
        placeIn_[i] = k;
        machineBefore_[i] = k > 0 ? sequence[Index(k - 1)] : -1;
        machineAfter_[i] = k + 1 < size ? sequence[Index(k + 1)] : -1;
    }
    if (low > 0) machineAfter_[Index(sequence[Index(low - 1)])] = sequence[Index(low)];
    if (high + 1 < size) machineBefore_[Index(sequence[Index(high + 1)])] = sequence[Index(high)];
}

/// Back to the best sequences, and a few moves at random.
void TabuSearch::Perturb() {
    FlatSearch::Order order;
    for (const auto& sequence : bestSequences_) order.insert(order.end(), sequence.begin(), sequence.end());
    Begin(order);
    for (std::int32_t k = 10 + rnd_.Below(20); k > 0; --k) {
        WalkBlocks();
        if (moves_.empty()) return;
        Make(moves_[Index(rnd_.Below(static_cast<std::int32_t>(moves_.size())))]);
        Schedule();
    }
}

std::int64_t TabuSearch::Run(std::int64_t steps, std::int32_t bound) {
    constexpr std::int32_t kPatience = 2000;
    constexpr int kWalks = 8;
    for (std::int64_t made = 0; made < steps; ++made) {
        if (bestFinish_ <= bound) return made;
        if (step_ - bestStep_ > kPatience) Perturb();
        for (int walks = 0; walks < kWalks && (walks == 0 || moves_.empty()); ++walks) WalkBlocks();
        if (moves_.empty()) {
            if (bestStep_ == step_) return made;  // not even from the best
            Perturb();
            step_ += 1;
            continue;
        }
        const Move* chosen = nullptr;
        std::int32_t least = INT32_MAX, equal = 0;
        for (const Move& move : moves_) {
            const std::int32_t length = Estimate(move);
            if (length > least || (IsTabu(move) && length >= bestFinish_)) continue;
            if (length < least) equal = 0;
            least = length;
            if (++equal == 1 || rnd_.Below(equal) == 0) chosen = &move;
        }
        if (!chosen) chosen = &moves_[Index(rnd_.Below(static_cast<std::int32_t>(moves_.size())))];
        ++step_;
        Make(*chosen);
        if (!Schedule()) {
            step_ = bestStep_ + kPatience + 1;  // cannot be, but if it were, back to the best
            continue;
        }
        if (finish_ < bestFinish_) {
            bestFinish_ = finish_;
            bestSequences_ = sequences_;
            bestStep_ = step_;
        }
    }
    return steps;
}

FlatSearch::Order TabuSearch::BestOrder() {
    FlatSearch::Order order;
    for (const auto& sequence : bestSequences_) order.insert(order.end(), sequence.begin(), sequence.end());
    const std::int32_t step = step_, since = bestStep_;
    Begin(order);
    step_ = step;
    bestStep_ = since;
    order = order_;  // by waves, so that what takes no time keeps its place
    std::stable_sort(order.begin(), order.end(),
                     [this](std::int32_t a, std::int32_t b) { return head_[Index(a)] < head_[Index(b)]; });
    return order;
}

}  // namespace vortan
