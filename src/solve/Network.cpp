#include "solve/Network.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "model/Rounding.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"

namespace vortan {

namespace {

std::size_t Index(std::int32_t i) {
    return static_cast<std::size_t>(i);
}

SlotClass ClassOf(char letter, bool workDay) {
    switch (letter) {
        case 'N':
            return workDay ? SlotClass::Normal : SlotClass::OffDay;
        case 'O':
            return SlotClass::Overtime;
        default:
            return SlotClass::Overload;
    }
}

std::int32_t AddSaturating(std::int32_t a, std::int32_t b) {
    const auto sum = std::int64_t{a} + b;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(sum, std::numeric_limits<std::int32_t>::min(),
                                                              std::numeric_limits<std::int32_t>::max()));
}

bool HasNormalPeriod(const Vshift& shift) {
    for (int hour = 0; hour < Vshift::kHours; ++hour) {
        const std::string& row = shift.Matrix(hour);
        if (row.substr(0, Vshift::kPeriodsPerHour).find('N') != std::string::npos) return true;
    }
    return false;
}

/// Whether a number of days is a whole number of minutes, but for the noise of the last bits.
bool IsOnMinuteGrid(double days) {
    if (days == 0) return true;
    if (!(days > -kLastDay && days < kLastDay)) return false;
    const double minutes = days * kMinutesPerDay;
    return std::abs(minutes - static_cast<double>(std::llrint(minutes))) < 1e-3;
}

SolveProblem TaskProblem(const std::string& message, Vtask* task) {
    SolveProblem problem;
    problem.message = message;
    problem.task = task;
    return problem;
}

SolveProblem DependencyProblem(const std::string& message, Vdependency* dependency) {
    SolveProblem problem;
    problem.message = message;
    problem.dependency = dependency;
    return problem;
}

}  // namespace

int SlotTypeOf(SlotClass kind) {
    static constexpr int kTypes[] = {3, 4, 5, 9};
    return kTypes[static_cast<int>(kind)];
}

void Network::BeginCheck() {
    projects_.clear();
    tasks_.clear();
    sources_.clear();
    pending_.clear();
    wants_.clear();
    wantResources_.clear();
    resources_.clear();
    resourceDays_.clear();
    patterns_.clear();
    periods_.clear();
    normalPeriods_.clear();
    onMinuteGrid_ = true;
    slices_.clear();
    edges_.clear();
    circle_.clear();
    lastShift_ = nullptr;
    lastHasNormalTime_ = false;
}

void Network::AddProject(Vproject* project) {
    Project& added = projects_.emplace_back();
    added.object = project;
    added.rule = project->SolveRules();
    added.firstTask = static_cast<std::int32_t>(tasks_.size());
}

std::optional<SolveProblem> Network::AddTask(Vtask* object) {
    Task& task = tasks_.emplace_back();
    task.object = object;
    task.project = static_cast<std::int32_t>(projects_.size()) - 1;
    task.effortUnits = object->EffortUnits();
    task.optimistic = object->Optimistic();
    task.mostLikely = object->MostLikely();
    task.pessimistic = object->Pessimistic();
    task.materialCost = object->MaterialCost();
    task.firstSource = static_cast<std::int32_t>(sources_.size());
    task.firstWant = static_cast<std::int32_t>(wants_.size());
    const Vproject* subproject = object->Subproject();
    if (subproject && subproject->Parent() != object->Project()) {
        const Vproject* parent = subproject->Parent();
        return TaskProblem("Subproject is claimed by project " + (parent ? parent->ProjectName() : ""),
                           object);
    }
    if (auto problem = CheckDependencies(object, task)) return problem;
    if (subproject) return std::nullopt;

    const bool canWork = AddAssignments(object, task);
    if (task.effortUnits < 0 && task.mostLikely > 0) {
        const auto& assignments = object->AssignmentList();
        if (std::none_of(assignments.begin(), assignments.end(),
                         [](const Vassignment* a) { return a->Include() && a->Hours() > 0; })) {
            return TaskProblem("Effort without resources", object);
        }
        if (!canWork) return TaskProblem("No working time", object);
    }
    return std::nullopt;
}

std::optional<SolveProblem> Network::CheckDependencies(Vtask* object, Task& task) {
    const bool isLink = object->Subproject() != nullptr;
    bool toStart = false;
    Vdependency* missing = nullptr;
    for (Vdependency* dependency : object->DependencyList()) {
        if (!dependency->Include()) continue;
        const Vdependency::Terms terms = dependency->TermsNow();
        Vtask* required = terms.taskRequired.Get();
        Source& source = sources_.emplace_back();
        source.object = dependency;
        source.fromPercent = terms.fromPercent;
        source.toPercent = terms.toPercent;
        source.offset = terms.offset;
        source.date = required ? 0 : dependency->DepDate().Days();
        pending_.push_back({required, -1});
        onMinuteGrid_ = onMinuteGrid_ && IsOnMinuteGrid(source.date) && IsOnMinuteGrid(source.offset);
        if (source.toPercent == 0) toStart = true;
        if (isLink) continue;
        if (required && required->Subproject() && source.fromPercent != 0 && source.fromPercent != 100) {
            return DependencyProblem("must be either 0% or 100%", dependency);
        }
        const bool gone =
            required ? !required->Project() || !required->Include() : terms.taskRequired.IsDeleted();
        if (gone && !missing) missing = dependency;
    }
    task.sourceCount = static_cast<std::int32_t>(sources_.size()) - task.firstSource;
    if (missing) return DependencyProblem("Missing prerequisite", missing);
    if (!toStart && !isLink) return TaskProblem("Missing to-start dependency", object);
    return std::nullopt;
}

/// Neighbouring tasks mostly share a shift, so the last answer is kept.
bool Network::HasNormalTime(const Vshift* shift) {
    if (shift != lastShift_) {
        lastShift_ = shift;
        lastHasNormalTime_ = shift && HasNormalPeriod(*shift);
    }
    return lastHasNormalTime_;
}

/// Collects what the assignments want of each resource by weekday. Returns whether at least one of them can
/// ever give a minute of normal time.
bool Network::AddAssignments(Vtask* object, Task& task) {
    bool canWork = false;
    for (const Vassignment* assignment : object->AssignmentList()) {
        Vresource* resource = assignment->ResourceRequired();
        if (!resource) continue;
        const auto begin = wantResources_.begin() + task.firstWant;
        const auto known = std::find(begin, wantResources_.end(), resource);
        const auto wantIndex = static_cast<std::size_t>(known - wantResources_.begin());
        if (known == wantResources_.end()) {
            wantResources_.push_back(resource);
            wants_.emplace_back();
        }
        if (!assignment->Include()) continue;  // but it has given its resource a place in the order
        const std::int32_t minutes = RoundToInt32(assignment->Hours() * 60);
        Want& want = wants_[wantIndex];
        const unsigned workDays = assignment->WeekdaysNow();
        for (std::size_t w = 0; w < kWeekdays; ++w) {
            if ((workDays >> w & 1) == 0) continue;
            want.minutes[w] = AddSaturating(want.minutes[w], minutes);
            task.today[w] = AddSaturating(task.today[w], minutes);
        }
        if (!canWork && workDays != 0 && minutes > 0) canWork = HasNormalTime(resource->Shift());
    }
    std::size_t kept = Index(task.firstWant);
    for (std::size_t i = kept; i < wants_.size(); ++i) {
        unsigned any = 0, wanted = 0;
        for (std::size_t w = 0; w < kWeekdays; ++w) {
            any |= static_cast<unsigned>(wants_[i].minutes[w]);
            wanted |= static_cast<unsigned>(wants_[i].minutes[w] > 0) << w;
        }
        task.wantedDays |= static_cast<std::uint8_t>(wanted);
        if (any == 0) continue;
        if (kept != i) {
            wants_[kept] = wants_[i];
            wantResources_[kept] = wantResources_[i];
        }
        ++kept;
    }
    if (kept != wants_.size()) {
        wants_.resize(kept);
        wantResources_.resize(kept);
    }
    task.wantCount = static_cast<std::int32_t>(wants_.size()) - task.firstWant;
    return canWork;
}

std::int32_t Network::IndexOf(const Vtask* task) const {
    if (!task || task->solveIndex < 0 || Index(task->solveIndex) >= tasks_.size()) return -1;
    return tasks_[Index(task->solveIndex)].object.Get() == task ? task->solveIndex : -1;
}

std::int32_t Network::IndexOf(const Vresource* resource) const {
    if (!resource || resource->solveIndex < 0 || Index(resource->solveIndex) >= resources_.size()) return -1;
    return resources_[Index(resource->solveIndex)].object.Get() == resource ? resource->solveIndex : -1;
}

std::int32_t Network::FindOrAddPattern(const Vshift* shift, bool workDay) {
    for (std::size_t i = 0; i < patterns_.size(); ++i) {
        if (patterns_[i].shift == shift && patterns_[i].workDay == workDay)
            return static_cast<std::int32_t>(i);
    }
    DayPattern pattern;
    pattern.shift = shift;
    pattern.workDay = workDay;
    pattern.firstPeriod = static_cast<std::int32_t>(periods_.size());
    constexpr int cells = Vshift::kHours * Vshift::kPeriodsPerHour;
    const auto letter = [shift](int cell) { return shift ? shift->Period(cell) : 'X'; };
    pattern.firstNormal = static_cast<std::int32_t>(normalPeriods_.size());
    int begin = 0;
    double start = 0;
    for (int cell = 1; cell <= cells; ++cell) {
        if (cell < cells && letter(cell) == letter(begin)) continue;
        const SlotClass kind = ClassOf(letter(begin), workDay);
        const double end = static_cast<double>(cell) / Vshift::kPeriodsPerHour / Vshift::kHours;
        periods_.push_back({end, kind});
        if (kind <= SlotClass::OffDay) {
            pattern.normalMinutes += (cell - begin) * (60 / Vshift::kPeriodsPerHour);
            normalPeriods_.push_back({start, end});
        }
        begin = cell;
        start = end;
    }
    pattern.normalCount = static_cast<std::int32_t>(normalPeriods_.size()) - pattern.firstNormal;
    pattern.periodCount = static_cast<std::int32_t>(periods_.size()) - pattern.firstPeriod;
    patterns_.push_back(pattern);
    return static_cast<std::int32_t>(patterns_.size()) - 1;
}

void Network::AddResource(Vresource* object) {
    Resource& resource = resources_.emplace_back();
    resource.object = object;
    resource.rate = {object->BurdenedRate().ToDouble(), object->OffDayRate().ToDouble(),
                     object->OvertimeRate().ToDouble(), object->HolidayRate().ToDouble()};
    for (int w = 0; w < kWeekdays; ++w) {
        const DayPattern& pattern =
            patterns_[Index(FindOrAddPattern(object->Shift(), object->WorkDay(w + 1)))];
        ResourceDay& day = resourceDays_.emplace_back();
        day.firstPeriod = pattern.firstPeriod;
        day.periodCount = pattern.periodCount;
        day.normalMinutes = pattern.normalMinutes;
        const double rate = resource.rate[static_cast<std::size_t>(pattern.NormalKind())];
        for (std::int32_t i = 0; i < pattern.normalCount; ++i) {
            const NormalPeriod& period = normalPeriods_[Index(pattern.firstNormal + i)];
            const double days = (kSteadyDays + period.end) - (kSteadyDays + period.start);
            day.wholeDayCost += Money::FromDouble(rate * days * 24);
            day.normalEnd = period.end;
        }
    }
}

/// Gives every task, project and resource its index, and turns references into indexes.
void Network::IndexObjects() {
    for (std::size_t i = 0; i < projects_.size(); ++i) {
        projects_[i].object->solveIndex = static_cast<std::int32_t>(i);
    }
    for (std::size_t i = 0; i < tasks_.size(); ++i)
        tasks_[i].object->solveIndex = static_cast<std::int32_t>(i);
    for (Project& project : projects_) {
        const Vproject* master = project.object->Master();
        const bool known = Index(master->solveIndex) < projects_.size() &&
                           projects_[Index(master->solveIndex)].object.Get() == master;
        project.master = known ? master->solveIndex : project.object->solveIndex;
    }
    for (Task& task : tasks_) {
        const Vproject* subproject = task.object->Subproject();
        if (!subproject) continue;
        const std::int32_t index = subproject->solveIndex;
        const bool known = index >= 0 && Index(index) < projects_.size() &&
                           projects_[Index(index)].object.Get() == subproject;
        task.subproject = known ? index : -1;
    }
    for (std::size_t i = 0; i < wants_.size(); ++i) {
        Vresource* object = wantResources_[i];
        if (IndexOf(object) < 0) {
            object->solveIndex = static_cast<std::int32_t>(resources_.size());
            AddResource(object);
        }
        wants_[i].resource = object->solveIndex;
    }
}

std::optional<SolveProblem> Network::CutTasks() {
    cuts_.assign(tasks_.size(), CutSet{});
    const auto cut = [this](std::int32_t task, int percent) {
        cuts_[Index(task)][Index(percent / 64)] |= std::uint64_t{1} << (percent % 64);
    };
    for (std::size_t t = 0; t < tasks_.size(); ++t) {
        const Task& task = tasks_[t];
        for (std::int32_t i = task.firstSource; i < task.firstSource + task.sourceCount; ++i) {
            const Source& source = sources_[Index(i)];
            if (source.toPercent > 0) cut(static_cast<std::int32_t>(t), source.toPercent);
            if (const Vtask* required = pending_[Index(i)].required) {
                const Vproject* home = required->Project();
                const bool known =
                    home && home->solveIndex >= 0 && Index(home->solveIndex) < projects_.size() &&
                    projects_[Index(home->solveIndex)].object.Get() == home && required->Include();
                const std::int32_t index = known ? required->solveIndex : -1;
                pending_[Index(i)].index = index;
                // A prerequisite whose project is not in memory's list has no place in the network.
                if (index < 0 && task.subproject < 0) {
                    return DependencyProblem("Missing prerequisite", source.object);
                }
                if (index >= 0 && source.fromPercent < 100) cut(index, source.fromPercent);
            }
        }
    }
    return std::nullopt;
}

void Network::MakeRawSlices() {
    raw_.clear();
    rawFirst_.resize(tasks_.size() + 1);
    for (std::size_t t = 0; t < tasks_.size(); ++t) {
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

void Network::MakeRawEdges() {
    rawEdges_.clear();
    for (std::size_t i = 0; i < raw_.size(); ++i) {
        const Slice& slice = raw_[i];
        if (slice.next < 0) continue;
        const double offset =
            OffsetBetween(slice.task, tasks_[Index(slice.task)].object.Get(), slice.to, slice.to);
        AddRawEdge(static_cast<std::int32_t>(i), slice.next, offset);
    }
    // Two dependencies between the same points share the offset of the first. place_[s] remembers the last
    // edge made from slice s, so that only a task that waits for one slice at several points searches its
    // list.
    place_.assign(raw_.size(), -1);
    for (std::size_t t = 0; t < tasks_.size(); ++t) {
        const auto index = static_cast<std::int32_t>(t);
        const Task& task = tasks_[t];
        if (task.subproject >= 0) {
            const Project& project = projects_[Index(task.subproject)];
            for (std::int32_t inner = project.firstTask; inner < project.firstTask + project.taskCount;
                 ++inner) {
                AddRawEdge(FindToSlice(inner, 100), rawFirst_[t],
                           OffsetBetween(index, tasks_[Index(inner)].object.Get(), 100, 0));
            }
            continue;
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
}

/// Works out for each slice the length of the longest chain of slices before it. False if some are on or
/// behind a circle; those keep a count above 0.
bool Network::Level() {
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
        const std::int32_t slice = queue_[head];
        for (std::int32_t k = rawFirstEdge_[Index(slice)]; k < rawFirstEdge_[Index(slice) + 1]; ++k) {
            const std::int32_t successor = rawEdges_[Index(rawSuccessor_[Index(k)])].to;
            level_[Index(successor)] = std::max(level_[Index(successor)], level_[Index(slice)] + 1);
            if (--count_[Index(successor)] == 0) queue_.push_back(successor);
        }
    }
    return queue_.size() == n;
}

/// Puts the slices in order: by level, then by project priority and name, then by TaskID. Slices of one task
/// never share a level, so nothing is left to chance.
void Network::NumberSlices() {
    projectRank_.resize(projects_.size());
    std::iota(projectRank_.begin(), projectRank_.end(), 0);
    std::sort(projectRank_.begin(), projectRank_.end(), [this](std::int32_t a, std::int32_t b) {
        const Vproject* left = projects_[Index(a)].object.Get();
        const Vproject* right = projects_[Index(b)].object.Get();
        const int byPriority = left->Priority().compare(right->Priority());
        return byPriority != 0 ? byPriority < 0 : left->ProjectName() < right->ProjectName();
    });

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
            if (count_[Index(slice)] == 0) place_[Index(slice)] = levelStart_[Index(level_[Index(slice)])]++;
        }
    }

    slices_.resize(queue_.size());
    for (std::size_t i = 0; i < raw_.size(); ++i) {
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

std::optional<SolveProblem> Network::ComputeOrder() {
    IndexObjects();
    if (auto problem = CutTasks()) return problem;
    MakeRawSlices();
    MakeRawEdges();
    const bool complete = Level();
    NumberSlices();
    if (complete) return std::nullopt;
    FindCircle();
    return TaskProblem("Circular dependency", circle_.front().Get());
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
