// Network, the second step: slices, edges and their order.

#include <algorithm>
#include <numeric>

#include "model/Rounding.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "solve/Network.h"

namespace vortan {

/// Gives every task, project and resource its index, and turns references into indexes.
bool Network::IndexObjects(const Stop& stop) {
    for (std::size_t i = 0; i < projects_.size(); ++i) {
        projects_[i].object->solveIndex_ = static_cast<std::int32_t>(i);
    }
    for (std::size_t i = 0; i < tasks_.size(); ++i) {
        if (GivesUp(i, stop)) return false;
        tasks_[i].object->solveIndex_ = static_cast<std::int32_t>(i);
    }
    for (std::size_t i = 0; i < projects_.size(); ++i) {
        const std::int32_t master = IndexOf(projects_[i].object->Master());
        projects_[i].master = master >= 0 ? master : static_cast<std::int32_t>(i);
    }
    for (Task& task : tasks_) task.subproject = IndexOf(task.object->Subproject());
    for (std::size_t i = 0; i < wants_.size(); ++i) {
        if (GivesUp(i, stop)) return false;
        Vresource* object = wantResources_[i];
        if (IndexOf(object) < 0) {
            object->solveIndex_ = static_cast<std::int32_t>(resources_.size());
            AddResource(object);
        }
        wants_[i].resource = object->solveIndex_;
    }
    return true;
}

void Network::TakeIndexes() {
    const auto take = [](auto& objects) {
        for (std::size_t i = 0; i < objects.size(); ++i) {
            if (auto* object = objects[i].object.Get()) object->solveIndex_ = static_cast<std::int32_t>(i);
        }
    };
    take(projects_);
    take(tasks_);
    take(resources_);
}

bool Network::CutTasks(const Stop& stop, std::optional<SolveProblem>& problem) {
    cuts_.assign(tasks_.size(), CutSet{});
    for (std::size_t t = 0; t < tasks_.size(); ++t) {
        if (GivesUp(t, stop)) return false;
        if (!CutTask(static_cast<std::int32_t>(t), problem)) break;
    }
    return true;
}

/// Cuts a task and its prerequisites where its dependencies touch them. False: there is a problem.
bool Network::CutTask(std::int32_t index, std::optional<SolveProblem>& problem) {
    const auto cut = [this](std::int32_t task, int percent) {
        cuts_[Index(task)][Index(percent / 64)] |= std::uint64_t{1} << (percent % 64);
    };
    const Task& task = tasks_[Index(index)];
    for (std::int32_t i = task.firstSource; i < task.firstSource + task.sourceCount; ++i) {
        const Source& source = sources_[Index(i)];
        if (source.toPercent > 0) cut(index, source.toPercent);
        const Vtask* required = pending_[Index(i)].required;
        if (!required) continue;
        const std::int32_t at = IndexOf(required);
        pending_[Index(i)].index = at;
        // A prerequisite whose project is not in memory's list has no place in the network.
        if (at < 0 && task.subproject < 0) {
            problem =
                SolveProblem{.kind = SolveProblem::Kind::MissingPrerequisite, .dependency = source.object};
            return false;
        }
        if (at >= 0 && source.fromPercent < 100) cut(at, source.fromPercent);
    }
    return true;
}

bool Network::MakeRawSlices(const Stop& stop) {
    raw_.clear();
    rawFirst_.resize(tasks_.size() + 1);
    for (std::size_t t = 0; t < tasks_.size(); ++t) {
        if (GivesUp(t, stop)) return false;
        rawFirst_[t] = static_cast<std::int32_t>(raw_.size());
        Slice slice;
        slice.task = static_cast<std::int32_t>(t);
        const CutSet& cuts = cuts_[t];
        if ((cuts[0] | cuts[1]) != 0) {
            for (int percent = 0; percent <= 100; ++percent) {
                if ((cuts[Index(percent / 64)] >> (percent % 64) & 1) == 0) continue;
                slice.to = static_cast<std::uint8_t>(percent);
                slice.next = static_cast<std::int32_t>(raw_.size()) + 1;
                raw_.push_back(slice);
                slice.from = slice.to;
            }
        }
        slice.to = 100;
        slice.next = -1;
        raw_.push_back(slice);
    }
    rawFirst_.back() = static_cast<std::int32_t>(raw_.size());
    return true;
}

std::int32_t Network::FindFromSlice(std::int32_t task, int percent) const {
    std::int32_t i = rawFirst_[Index(task)];
    if (rawFirst_[Index(task) + 1] == i + 1) return i;
    while (raw_[Index(i)].from != percent && raw_[Index(i)].to <= percent && raw_[Index(i)].next >= 0) ++i;
    return i;
}

std::int32_t Network::FindToSlice(std::int32_t task, int percent) const {
    std::int32_t i = rawFirst_[Index(task)];
    if (rawFirst_[Index(task) + 1] == i + 1) return i;
    for (;; ++i) {
        const Slice& slice = raw_[Index(i)];
        if (slice.next < 0 || slice.to > percent) return i;
        if (slice.to == percent && raw_[Index(slice.next)].to > percent) return i;
    }
}

/// The offset of the first dependency of `task` on `required` between exactly these percentages; 0 if none.
double Network::OffsetBetween(std::int32_t task, const Vtask* required, int from, int to) const {
    const Task& dependent = tasks_[Index(task)];
    for (std::int32_t i = dependent.firstSource; i < dependent.firstSource + dependent.sourceCount; ++i) {
        const Source& source = sources_[Index(i)];
        if (pending_[Index(i)].required == required && source.fromPercent == from && source.toPercent == to) {
            return source.offset;
        }
    }
    return 0;
}

void Network::AddRawEdge(std::int32_t from, std::int32_t to, double offset) {
    rawEdges_.push_back({from, to, offset});
}

bool Network::MakeRawEdges(const Stop& stop) {
    rawEdges_.clear();
    for (std::size_t i = 0; i < raw_.size(); ++i) {
        if (GivesUp(i, stop)) return false;
        const Slice& slice = raw_[i];
        if (slice.next < 0) continue;
        const double offset =
            OffsetBetween(slice.task, tasks_[Index(slice.task)].object.Get(), slice.to, slice.to);
        AddRawEdge(static_cast<std::int32_t>(i), slice.next, offset);
    }
    place_.assign(raw_.size(), -1);
    for (std::size_t t = 0; t < tasks_.size(); ++t) {
        if (GivesUp(t, stop)) return false;
        MakeEdgesOf(static_cast<std::int32_t>(t));
    }
    return true;
}

/// The edges that lead to a task from others. Two dependencies between the same points share the offset of
/// the first. place_[s] remembers the last edge made from slice s, so that only a task that waits for one
/// slice at several points searches its list.
void Network::MakeEdgesOf(std::int32_t index) {
    const Task& task = tasks_[Index(index)];
    if (task.subproject >= 0) {
        const Project& project = projects_[Index(task.subproject)];
        for (std::int32_t inner = project.firstTask; inner < project.firstTask + project.taskCount; ++inner) {
            AddRawEdge(FindToSlice(inner, 100), rawFirst_[Index(index)],
                       OffsetBetween(index, tasks_[Index(inner)].object.Get(), 100, 0));
        }
        return;
    }
    for (std::int32_t i = task.firstSource; i < task.firstSource + task.sourceCount; ++i) {
        Source& source = sources_[Index(i)];
        const PendingSource& pending = pending_[Index(i)];
        if (pending.index < 0) continue;
        const std::int32_t from = FindToSlice(pending.index, source.fromPercent);
        const std::int32_t to = FindFromSlice(index, source.toPercent);
        source.slice = from;
        double offset = source.offset;
        std::int32_t& last = place_[Index(from)];
        if (last >= 0 && raw_[Index(rawEdges_[Index(last)].to)].task == index) {
            const RawEdge& other = rawEdges_[Index(last)];
            offset = other.to == to
                         ? other.offset
                         : OffsetBetween(index, pending.required, source.fromPercent, source.toPercent);
        }
        last = static_cast<std::int32_t>(rawEdges_.size());
        AddRawEdge(from, to, offset);
    }
}

/// Works out for each slice the length of the longest chain of slices before it. Those on or behind a circle
/// keep a count above 0 and are not in queue_.
bool Network::Level(const Stop& stop) {
    const std::size_t n = raw_.size();
    rawFirstEdge_.assign(n + 1, 0);
    count_.assign(n, 0);
    for (const RawEdge& edge : rawEdges_) {
        ++rawFirstEdge_[Index(edge.from) + 1];
        ++count_[Index(edge.to)];
    }
    std::partial_sum(rawFirstEdge_.begin(), rawFirstEdge_.end(), rawFirstEdge_.begin());
    rawSuccessor_.resize(rawEdges_.size());
    place_.assign(rawFirstEdge_.begin(), rawFirstEdge_.end() - 1);
    for (std::size_t e = 0; e < rawEdges_.size(); ++e) {
        rawSuccessor_[Index(place_[Index(rawEdges_[e].from)]++)] = static_cast<std::int32_t>(e);
    }
    level_.assign(n, 0);
    queue_.clear();
    for (std::size_t i = 0; i < n; ++i) {
        if (count_[i] == 0) queue_.push_back(static_cast<std::int32_t>(i));
    }
    for (std::size_t head = 0; head < queue_.size(); ++head) {
        if (GivesUp(head, stop)) return false;
        const std::int32_t slice = queue_[head];
        for (std::int32_t k = rawFirstEdge_[Index(slice)]; k < rawFirstEdge_[Index(slice) + 1]; ++k) {
            const std::int32_t successor = rawEdges_[Index(rawSuccessor_[Index(k)])].to;
            level_[Index(successor)] = std::max(level_[Index(successor)], level_[Index(slice)] + 1);
            if (--count_[Index(successor)] == 0) queue_.push_back(successor);
        }
    }
    return true;
}

void Network::RankProjects() {
    projectRank_.resize(projects_.size());
    std::iota(projectRank_.begin(), projectRank_.end(), 0);
    std::sort(projectRank_.begin(), projectRank_.end(), [this](std::int32_t a, std::int32_t b) {
        const Vproject* left = projects_[Index(a)].object.Get();
        const Vproject* right = projects_[Index(b)].object.Get();
        const int byPriority = left->Priority().compare(right->Priority());
        return byPriority != 0 ? byPriority < 0 : left->ProjectName() < right->ProjectName();
    });
}

/// Puts the slices in order: by level, then by project priority and name, then by TaskID. Slices of one task
/// never share a level, so nothing is left to chance.
bool Network::NumberSlices(const Stop& stop) {
    RankProjects();
    levelStart_.assign(raw_.size() + 1, 0);
    for (const std::int32_t slice : queue_) ++levelStart_[Index(level_[Index(slice)]) + 1];
    std::partial_sum(levelStart_.begin(), levelStart_.end(), levelStart_.begin());
    place_.assign(raw_.size(), -1);
    for (const std::int32_t p : projectRank_) {
        const Project& project = projects_[Index(p)];
        if (project.taskCount == 0) continue;
        std::int32_t slice = rawFirst_[Index(project.firstTask)];
        const std::int32_t end = rawFirst_[Index(project.firstTask + project.taskCount)];
        for (; slice < end; ++slice) {
            if (GivesUp(Index(slice), stop)) return false;
            if (count_[Index(slice)] == 0) place_[Index(slice)] = levelStart_[Index(level_[Index(slice)])]++;
        }
    }
    if (ranked_ && !PlaceByRank(stop)) return false;
    return FillSlices(stop);
}

/// Takes the told places as the tie between equal ranks, and gives places anew: the next is always the slice
/// of the lowest rank whose predecessors have theirs.
bool Network::PlaceByRank(const Stop& stop) {
    count_.assign(raw_.size(), 0);
    for (const RawEdge& edge : rawEdges_) ++count_[Index(edge.to)];
    heap_.clear();
    toldPlace_.resize(queue_.size());
    const auto push = [this](std::int32_t slice) {
        heap_.push_back({tasks_[Index(raw_[Index(slice)].task)].rank, place_[Index(slice)], slice});
        std::push_heap(heap_.begin(), heap_.end());
    };
    for (std::size_t i = 0; i < raw_.size(); ++i) {
        if (count_[i] == 0) push(static_cast<std::int32_t>(i));
    }
    for (std::int32_t next = 0; !heap_.empty(); ++next) {
        if (GivesUp(Index(next), stop)) return false;
        const auto [rank, toldPlace, slice] = heap_.front();
        std::pop_heap(heap_.begin(), heap_.end());
        heap_.pop_back();
        place_[Index(slice)] = next;
        toldPlace_[Index(next)] = toldPlace;
        for (std::int32_t k = rawFirstEdge_[Index(slice)]; k < rawFirstEdge_[Index(slice) + 1]; ++k) {
            const std::int32_t successor = rawEdges_[Index(rawSuccessor_[Index(k)])].to;
            if (--count_[Index(successor)] == 0) push(successor);
        }
    }
    return true;
}

/// Copies slices and edges to their places in the order, and numbers what refers to slices anew.
bool Network::FillSlices(const Stop& stop) {
    slices_.resize(queue_.size());
    for (std::size_t i = 0; i < raw_.size(); ++i) {
        if (GivesUp(i, stop)) return false;
        if (place_[i] < 0) continue;
        Slice& slice = slices_[Index(place_[i])];
        slice = raw_[i];
        if (slice.next >= 0) slice.next = place_[Index(slice.next)];
        const auto share = std::int64_t{tasks_[Index(slice.task)].mostLikely} * (slice.to - slice.from);
        slice.useMinutes = RoundToInt32(static_cast<double>(share) / 100);
        slice.edgeCount = rawFirstEdge_[i + 1] - rawFirstEdge_[i];
    }
    std::int32_t firstEdge = 0;
    for (Slice& slice : slices_) {
        slice.firstEdge = firstEdge;
        firstEdge += slice.edgeCount;
    }
    edges_.resize(Index(firstEdge));
    for (std::size_t i = 0; i < raw_.size(); ++i) {
        if (GivesUp(i, stop)) return false;
        if (place_[i] < 0) continue;
        std::int32_t at = slices_[Index(place_[i])].firstEdge;
        for (std::int32_t k = rawFirstEdge_[i]; k < rawFirstEdge_[i + 1]; ++k) {
            const RawEdge& edge = rawEdges_[Index(rawSuccessor_[Index(k)])];
            edges_[Index(at++)] = {place_[Index(edge.to)], edge.offset};
        }
    }
    for (std::size_t t = 0; t < tasks_.size(); ++t) tasks_[t].firstSlice = place_[Index(rawFirst_[t])];
    for (Source& source : sources_) {
        if (source.slice >= 0) source.slice = place_[Index(source.slice)];
    }
    return true;
}

void Network::FindCircle() {
    // Every slice that was not ordered has a predecessor that was not; going back long enough meets a circle.
    place_.assign(raw_.size(), -1);
    std::int32_t slice = -1;
    for (const RawEdge& edge : rawEdges_) {
        if (count_[Index(edge.from)] > 0 && count_[Index(edge.to)] > 0) {
            place_[Index(edge.to)] = edge.from;
            slice = edge.to;
        }
    }
    for (std::size_t steps = raw_.size(); steps > 0; --steps) slice = place_[Index(slice)];
    const std::int32_t first = slice;
    do {
        const Link<Vtask>& task = tasks_[Index(raw_[Index(slice)].task)].object;
        if (circle_.empty() || !(circle_.back() == task)) circle_.push_back(task);
        slice = place_[Index(slice)];
    } while (slice != first);
    if (circle_.size() > 1 && circle_.front() == circle_.back()) circle_.pop_back();
    std::reverse(circle_.begin(), circle_.end());
}

std::optional<SolveProblem> Network::ComputeOrder(const Stop& stop) {
    std::optional<SolveProblem> problem;
    if (!IndexObjects(stop) || !CutTasks(stop, problem) || problem) return problem;
    if (!MakeRawSlices(stop) || !MakeRawEdges(stop) || !Level(stop) || !NumberSlices(stop)) return problem;
    if (slices_.size() == raw_.size()) return problem;
    FindCircle();
    return SolveProblem{.kind = SolveProblem::Kind::Circle, .task = circle_.front()};
}

void Network::FindDangling(std::vector<std::int32_t>& dangling) {
    dangling.clear();
    const auto isLink = [this](std::int32_t slice) {
        return tasks_[Index(slices_[Index(slice)].task)].subproject >= 0;
    };
    tiedIn_.assign(projects_.size(), 0);
    for (const Slice& slice : slices_) {
        const Task& task = tasks_[Index(slice.task)];
        if (task.subproject >= 0 && slice.to == 100 && slice.edgeCount > 0)
            tiedIn_[Index(task.subproject)] = 1;
    }
    openEnds_.assign(projects_.size(), 0);
    for (std::size_t i = 0; i < slices_.size(); ++i) {
        const Slice& slice = slices_[i];
        const Task& task = tasks_[Index(slice.task)];
        if (task.subproject >= 0 || tiedIn_[Index(task.project)] != 0) continue;
        const auto edges = EdgesOf(slice);
        if (!std::all_of(edges.begin(), edges.end(), [&](const Edge& edge) { return isLink(edge.slice); }))
            continue;
        dangling.push_back(static_cast<std::int32_t>(i));
        ++openEnds_[Index(projects_[Index(task.project)].master)];
    }
    std::erase_if(dangling, [&](std::int32_t slice) {
        const Task& task = tasks_[Index(slices_[Index(slice)].task)];
        return openEnds_[Index(projects_[Index(task.project)].master)] <= 1;
    });
}

}  // namespace vortan
