#include "solve/CriticalCount.h"

#include <algorithm>
#include <numeric>

namespace vortan {

namespace {

constexpr double kHalfMinute = 0.5 / kMinutesPerDay;

}  // namespace

CriticalCount::CriticalCount(const Network& network)
    : network_(network),
      firstIncoming_(network.Slices().size() + 1, 0),
      counts_(network.Tasks().size(), 0),
      reachedIn_(network.Slices().size(), 0),
      countedIn_(network.Tasks().size(), 0),
      slack_(network.Slices().size()) {
    const auto slices = network.Slices();
    for (const auto& slice : slices) {
        projectOf_.push_back(network.Tasks()[Index(slice.task)].project);
        if (network.Tasks()[Index(slice.task)].subproject >= 0 && slice.to == 100)
            links_.push_back(slice.task);
        for (const auto& edge : network.EdgesOf(slice)) ++firstIncoming_[Index(edge.slice) + 1];
    }
    std::partial_sum(firstIncoming_.begin(), firstIncoming_.end(), firstIncoming_.begin());
    incoming_.resize(Index(firstIncoming_.back()));
    std::vector<std::int32_t> place(firstIncoming_.begin(), firstIncoming_.end() - 1);
    for (std::size_t i = 0; i < slices.size(); ++i) {
        for (const auto& edge : network.EdgesOf(slices[i]))
            incoming_[Index(place[Index(edge.slice)]++)] = {static_cast<std::int32_t>(i), edge.offset};
    }
}

void CriticalCount::Add(const ForwardRun& run) {
    ++pass_;
    const auto projects = network_.Projects();
    latest_.assign(projects.size(), 0);
    for (std::size_t p = 0; p < projects.size(); ++p) {
        if (projects[p].master == static_cast<std::int32_t>(p))
            latest_[p] = ForwardRun::Totals(projects[p], run.Clocks()).finish - kHalfMinute;
    }
    for (std::size_t p = 0; p < projects.size(); ++p) latest_[p] = latest_[Index(projects[p].master)];
    const std::vector<double>& finish = run.SliceFinish();
    for (std::size_t i = 0; i < finish.size(); ++i) {
        const double latest = latest_[Index(projectOf_[i])];
        if (finish[i] > latest) Reach(static_cast<std::int32_t>(i), latest + kHalfMinute - finish[i]);
    }
    // Successors lie behind a slice in the order, so the last one has its least slack.
    while (!open_.empty()) {
        std::pop_heap(open_.begin(), open_.end());
        const std::int32_t slice = open_.back();
        open_.pop_back();
        GoBackFrom(slice, run);
    }
    // A link has the least slack of its subproject's tasks.
    for (const std::int32_t link : links_) {
        const auto& inner = projects[Index(network_.Tasks()[Index(link)].subproject)];
        const auto first = countedIn_.begin() + inner.firstTask, end = first + inner.taskCount;
        if (std::find(first, end, pass_) != end) CountTask(link);
    }
}

void CriticalCount::Reach(std::int32_t slice, double slack) {
    const auto at = Index(slice);
    if (reachedIn_[at] == pass_) {
        slack_[at] = std::min(slack_[at], slack);
        return;
    }
    reachedIn_[at] = pass_;
    slack_[at] = slack;
    open_.push_back(slice);
    std::push_heap(open_.begin(), open_.end());
}

void CriticalCount::GoBackFrom(std::int32_t slice, const ForwardRun& run) {
    const auto at = Index(slice);
    const auto& piece = network_.Slices()[at];
    const bool link = network_.Tasks()[Index(piece.task)].subproject >= 0;
    if (piece.to == 100 && !link) CountTask(piece.task);
    // A link has no length of its own: what stands before it may take as long as it.
    const double start = link ? run.SliceFinish()[at] : run.SliceStart()[at];
    for (std::int32_t i = firstIncoming_[at]; i < firstIncoming_[at + 1]; ++i) {
        const Incoming& before = incoming_[Index(i)];
        const double slack = slack_[at] + start - before.offset - run.SliceFinish()[Index(before.slice)];
        if (slack < kHalfMinute) Reach(before.slice, slack);
    }
}

void CriticalCount::CountTask(std::int32_t task) {
    if (countedIn_[Index(task)] == pass_) return;
    countedIn_[Index(task)] = pass_;
    ++counts_[Index(task)];
}

}  // namespace vortan
