#include "solve/ShortenSolve.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vortan {

namespace {

/// Moments that differ by less than a tenth of a second are one.
constexpr double kSame = 1e-6;

}  // namespace

ShortenSolve::ShortenSolve(const Solver& solver, std::int32_t project, const ShortenOptions& options)
    : standing_(solver.Standing()),
      network_(standing_.network),
      project_(project),
      options_(options),
      rnd_(options.seed) {
    FindFamily();
    CollectArrows();
    const auto projects = network_.Projects();
    limits_.resize(projects.size());
    for (std::size_t p = 0; p < projects.size(); ++p)
        limits_[p] = ForwardRun::Totals(projects[p], standing_.run.Clocks()).finish;
    start_ = best_ = ValueOf(standing_.run);
}

/// The projects that hang together with the active one by people, dependencies or links, through others too.
void ShortenSolve::FindFamily() {
    const auto tasks = network_.Tasks();
    const auto slices = network_.Slices();
    std::vector<std::int32_t> leader(network_.Projects().size());
    std::iota(leader.begin(), leader.end(), 0);
    const auto find = [&](std::int32_t p) {
        while (leader[Index(p)] != p) p = leader[Index(p)] = leader[Index(leader[Index(p)])];
        return p;
    };
    std::vector<std::int32_t> firstUser(network_.Resources().size(), -1);
    for (const auto& task : tasks) {
        for (const auto& want : network_.WantsOf(task)) {
            std::int32_t& user = firstUser[Index(want.resource)];
            if (user < 0) user = task.project;
            leader[Index(find(task.project))] = find(user);
        }
    }
    for (const auto& slice : slices) {
        for (const auto& edge : network_.EdgesOf(slice)) {
            const auto other = tasks[Index(slices[Index(edge.slice)].task)].project;
            leader[Index(find(tasks[Index(slice.task)].project))] = find(other);
        }
    }
    inFamily_.resize(leader.size());
    for (std::size_t p = 0; p < leader.size(); ++p)
        inFamily_[p] = find(static_cast<std::int32_t>(p)) == find(project_) ? 1 : 0;
}

void ShortenSolve::CollectArrows() {
    const auto slices = network_.Slices();
    firstBefore_.assign(slices.size() + 1, 0);
    for (const auto& slice : slices) {
        for (const auto& edge : network_.EdgesOf(slice)) ++firstBefore_[Index(edge.slice) + 1];
    }
    std::partial_sum(firstBefore_.begin(), firstBefore_.end(), firstBefore_.begin());
    before_.resize(Index(firstBefore_.back()));
    beforeOffset_.resize(before_.size());
    std::vector<std::int32_t> at(firstBefore_.begin(), firstBefore_.end() - 1);
    for (std::size_t s = 0; s < slices.size(); ++s) {
        for (const auto& edge : network_.EdgesOf(slices[s])) {
            const auto k = Index(at[Index(edge.slice)]++);
            before_[k] = static_cast<std::int32_t>(s);
            beforeOffset_[k] = edge.offset;
        }
    }
}

ShortenSolve::Value ShortenSolve::ValueOf(const ForwardRun& run) const {
    Value value;
    value.valid = true;
    const auto projects = network_.Projects();
    for (std::size_t p = 0; p < projects.size(); ++p) {
        const ForwardRun::Clock totals = ForwardRun::Totals(projects[p], run.Clocks());
        if (static_cast<std::int32_t>(p) == project_) {
            value.finish = totals.finish;
            value.cost = totals.laborCost + totals.materialCost;
            continue;
        }
        value.others += totals.finish;
        if (totals.finish > limits_[p] + kSame) {
            value.valid = false;
            value.late += totals.finish - limits_[p];
        }
    }
    return value;
}

bool ShortenSolve::Better(const Value& a, const Value& b) const {
    if (a.valid != b.valid) return a.valid;
    if (!a.valid) return a.late < b.late;
    const bool sameFinish = std::abs(a.finish - b.finish) < kSame;
    if (options_.forCost && a.cost != b.cost) return a.cost < b.cost;
    if (!sameFinish) return a.finish < b.finish;
    if (a.cost != b.cost) return a.cost < b.cost;
    return a.others < b.others - kSame;
}

/// The slices by the ranks of their tasks, as a network puts them in order.
void ShortenSolve::Decode(const Order& order) {
    const auto slices = network_.Slices();
    rank_.resize(network_.Tasks().size());
    for (std::size_t k = 0; k < order.size(); ++k) rank_[Index(order[k])] = static_cast<std::int32_t>(k);
    waits_.resize(slices.size());
    heap_.clear();
    sliceOrder_.clear();
    const auto push = [&](std::int32_t s) {
        heap_.emplace_back(-rank_[Index(slices[Index(s)].task)], -s);
        std::push_heap(heap_.begin(), heap_.end());
    };
    for (std::size_t s = 0; s < slices.size(); ++s) {
        waits_[s] = firstBefore_[s + 1] - firstBefore_[s];
        if (waits_[s] == 0) push(static_cast<std::int32_t>(s));
    }
    while (!heap_.empty()) {
        const std::int32_t s = -heap_.front().second;
        std::pop_heap(heap_.begin(), heap_.end());
        heap_.pop_back();
        sliceOrder_.push_back(s);
        for (const auto& edge : network_.EdgesOf(slices[Index(s)])) {
            if (--waits_[Index(edge.slice)] == 0) push(edge.slice);
        }
    }
}

ShortenSolve::Value ShortenSolve::Evaluate(const Order& order) {
    Decode(order);
    bookings_.Reset(network_);
    run_.Prepare(network_, bookings_);
    run_.Begin(this);
    for (const std::int32_t slice : sliceOrder_) {
        if (run_.SolveOneSlice(slice) != ForwardRun::Outcome::Done) return {};
    }
    return ValueOf(run_);
}

/// Takes the order if it is the best.
ShortenSolve::Value ShortenSolve::Try(const Order& order) {
    const Value value = Evaluate(order);
    if (value.valid && Better(value, best_)) {
        best_ = value;
        bestOrder_ = order;
        found_ = true;
    }
    return value;
}

bool ShortenSolve::Cancelled(IterationWatch& watch, double done, double finish) {
    watch.Tell(DateTime(finish), DateTime(bound_));
    return stopped_ = stopped_ || watch.Cancelled(std::min(static_cast<int>(100 * done), 99), done);
}

bool ShortenSolve::Stop(std::int32_t) {
    return stopped_;
}

/// Tasks by a number of each, the least first.
ShortenSolve::Order ShortenSolve::OrderBy(const std::vector<double>& key) const {
    Order order(network_.Tasks().size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::int32_t a, std::int32_t b) { return key[Index(a)] < key[Index(b)]; });
    return order;
}

void ShortenSolve::Run(IterationWatch& watch) {
    begin_ = Clock::now();
    if (start_.finish == 0) return;  // nothing to place
    bound_ = LowerBound();
    watch.Tell(DateTime(best_.finish), DateTime(bound_));
    // Where ranks stand, the told order may still be the better one.
    const auto slices = network_.Slices();
    std::vector<double> told(network_.Tasks().size());
    for (std::size_t s = slices.size(); s-- > 0;)
        told[Index(slices[s].task)] = network_.ToldPlaceOf(static_cast<std::int32_t>(s));
    if (network_.Ranked()) Try(OrderBy(told));
    if (options_.forCost) {
        SearchPasses(watch);
    } else {
        SearchFlat(watch);
    }
}

ShortenResult ShortenSolve::Result() const {
    ShortenResult result;
    result.searched = true;
    result.better = found_;
    result.optimal = best_.finish <= bound_ + kSame || proven_;
    result.finishBefore = DateTime(start_.finish);
    result.finish = DateTime(best_.finish);
    result.bound = DateTime(result.optimal ? best_.finish : bound_);
    result.costBefore = start_.cost;
    result.cost = best_.cost;
    result.moves = moves_;
    return result;
}

std::vector<std::pair<Link<Vtask>, std::int32_t>> ShortenSolve::Ranks() const {
    std::vector<std::pair<Link<Vtask>, std::int32_t>> ranks;
    if (!found_) return ranks;
    for (const std::int32_t t : bestOrder_) {
        const auto& task = network_.Tasks()[Index(t)];
        if (inFamily_[Index(task.project)] != 0)
            ranks.emplace_back(task.object, static_cast<std::int32_t>(ranks.size()) + 1);
    }
    return ranks;
}

}  // namespace vortan
