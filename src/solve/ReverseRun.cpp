#include "solve/ReverseRun.h"

#include <algorithm>

namespace vortan {

namespace {

std::size_t Index(std::int32_t i) {
    return static_cast<std::size_t>(i);
}

}  // namespace

bool ReverseRun::Run(const Network& network, const ForwardRun& forward, const std::vector<double>& planFinish,
                     const Network::Stop& stop) {
    const auto slices = network.Slices();
    const auto tasks = network.Tasks();
    slices_.resize(slices.size());
    tasks_.assign(tasks.size(), Late());
    // Successors lie behind a slice in the order, so going backwards each of them is done.
    for (std::size_t i = slices.size(); i-- > 0;) {
        if (Network::GivesUp(i, stop)) return false;
        const auto& slice = slices[i];
        const auto& task = tasks[Index(slice.task)];
        double finish = planFinish[Index(task.project)];
        for (const auto& edge : network.EdgesOf(slice)) {
            finish = std::min(finish, slices_[Index(edge.slice)].start - edge.offset);
        }
        const bool link = task.subproject >= 0;
        const double elapsed = link ? 0 : forward.SliceFinish()[i] - forward.SliceStart()[i];
        slices_[i] = {finish - elapsed, finish};
    }
    for (std::size_t i = 0; i < slices.size(); ++i) {
        if (tasks[Index(slices[i].task)].subproject >= 0) continue;
        if (slices[i].from == 0) tasks_[Index(slices[i].task)].start = slices_[i].start;
        if (slices[i].to == 100) tasks_[Index(slices[i].task)].finish = slices_[i].finish;
    }
    LinkDates(network, forward);
    return true;
}

/// A link's late dates are those of its subproject. Links lie behind the links inside of their subproject.
void ReverseRun::LinkDates(const Network& network, const ForwardRun& forward) {
    const auto tasks = network.Tasks();
    for (const auto& slice : network.Slices()) {
        const auto& task = tasks[Index(slice.task)];
        if (task.subproject < 0 || slice.to != 100) continue;
        const auto& project = network.Projects()[Index(task.subproject)];
        Late& late = tasks_[Index(slice.task)];
        if (project.taskCount == 0) {
            late = {};
            continue;
        }
        const auto first = Index(project.firstTask);
        double start = forward.Clocks()[first].start, finish = forward.Clocks()[first].finish;
        double slack = tasks_[first].finish - finish;
        for (std::size_t t = first + 1; t < first + Index(project.taskCount); ++t) {
            const auto& clock = forward.Clocks()[t];
            start = std::min(start, clock.start);
            finish = std::max(finish, clock.finish);
            slack = std::min(slack, tasks_[t].finish - clock.finish);
        }
        late = {start + slack, finish + slack};
    }
}

}  // namespace vortan
