#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "model/Link.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Workspace.h"
#include "solve/Problem.h"

namespace vortan {

/// Of tasks, slices, resources and projects, which networks number from 0.
constexpr std::size_t Index(std::int32_t i) {
    return static_cast<std::size_t>(i);
}

constexpr int kWeekdays = 7;  ///< index 0 Sunday to 6 Saturday, throughout the solver

/// Index of the weekday of a whole day number.
constexpr int WeekdayIndex(std::int32_t day) {
    const std::int32_t rest = day % kWeekdays;
    return rest > 0 ? rest - 1 : rest + kWeekdays - 1;
}

/// From kSteadyDays to twice that (1989 to 2079), moments have the same resolution, so a period of the day
/// has the same length, to the last bit, on each of these days.
constexpr std::int32_t kSteadyDays = 32768;

/// Kinds of time, in the order of the passes that may use them.
enum class SlotClass : std::uint8_t { Normal = 0, OffDay = 1, Overtime = 2, Overload = 3 };
/// The slot type that screens and files know: 3, 4, 5 or 9.
int SlotTypeOf(SlotClass kind);

/// All tasks of all projects as one network of slices, with everything that a run needs to know of them, in
/// flat arrays. A slice is a piece of a task between two percentages; tasks are cut wherever a dependency
/// touches them. Slices are numbered in solve order, so slice 0 is the first of `OrderList`: by the length of
/// the longest chain of slices before it, then by project priority and name, then by TaskID. Where tasks have
/// ranks, the next is always the one of the lowest rank among those whose predecessors are placed, and only
/// equal ranks follow that rule.
///
/// Built in two steps, Check and ComputeOrder; read-only from then on, so any number of runs can share it.
/// Rebuilding an unchanged model allocates nothing.
class Network {
  public:
    struct Project {
        Link<Vproject> object;
        SolveRule rule = SolveRule::NormalHalt;
        std::int32_t firstTask = 0, taskCount = 0;
        std::int32_t master = -1;  ///< index of the outermost project
    };
    struct Task {
        Link<Vtask> object;
        std::int32_t project = 0;
        std::int32_t subproject = -1;  ///< index of the project that the task stands for
        std::int32_t effortUnits = 0;
        std::int32_t optimistic = 0, mostLikely = 0, pessimistic = 0;  ///< minutes
        std::int32_t firstSource = 0, sourceCount = 0;
        std::int32_t firstWant = 0, wantCount = 0;
        std::int32_t firstSlice = -1;                 ///< the chain goes on through `Slice::next`
        std::uint8_t wantedDays = 0;                  ///< bit w: some resource is wanted on weekday w
        std::array<std::int32_t, kWeekdays> today{};  ///< minutes wanted of all resources, by weekday
        Money materialCost;
        std::int32_t rank = 0;
    };
    /// A moment that a task waits for: a dependency on another slice, or on a date.
    struct Source {
        Vdependency* object = nullptr;
        double date = 0;          ///< of a date dependency, days
        double offset = 0;        ///< days
        std::int32_t slice = -1;  ///< whose finish counts; -1 for a date dependency
        std::uint8_t fromPercent = 0, toPercent = 0;
    };
    /// What a task wants of one resource a day. Only resources with minutes on some day are listed, in the
    /// order of the first assignment of each.
    struct Want {
        std::int32_t resource = 0;
        std::array<std::int32_t, kWeekdays> minutes{};
    };
    /// A stretch of one kind of time within a day.
    struct Period {
        double end;  ///< fraction of the day
        SlotClass kind;
    };
    /// A period of normal time within a day.
    struct NormalPeriod {
        double start, end;  ///< fractions of the day
    };
    /// The periods of a shift's day, on a work day or an off day.
    struct DayPattern {
        const Vshift* shift = nullptr;
        bool workDay = false;
        std::int32_t firstPeriod = 0, periodCount = 0;
        std::int32_t firstNormal = 0, normalCount = 0;
        std::int32_t normalMinutes = 0;
        double normalEnd = 0;  ///< of the last normal time, fraction of the day
    };
    struct Resource {
        Link<Vresource> object;
    };
    /// All that a booking asks of a resource itself, within one cache line; what its days hold, those of many
    /// others share.
    struct alignas(64) ResourceWeek {
        std::array<double, 4> rate{};           ///< money per hour, by SlotClass
        std::array<Money, 2> wholeDayCost{};    ///< of all normal time for a team of 1, on the days of
                                                ///< kSteadyDays; of an off day, of a work day
        std::array<std::int32_t, 2> pattern{};  ///< of an off day, of a work day
        std::uint8_t workDays = 0;              ///< bit w: weekday w is a work day

        const Money& WholeDayCost(const DayPattern& day) const { return wholeDayCost[day.workDay ? 1 : 0]; }
    };
    struct Slice {
        std::int32_t task = -1;
        std::uint8_t from = 0, to = 100;  ///< percent
        std::int32_t next = -1;           ///< the task's next slice
        std::int32_t useMinutes = 0;      ///< share of MostLikely
        std::int32_t firstEdge = 0, edgeCount = 0;
    };
    /// Leads to a slice that waits for this one.
    struct Edge {
        std::int32_t slice = 0;
        double offset = 0;  ///< days, of the first dependency between the two points
    };

    /// Reads the model in the journal in force and checks it task by task. Returns the first problem. `stop`
    /// is asked at each task; when it says so, nothing is returned and the network is not usable.
    template <class Ask>
    std::optional<SolveProblem> Check(const Workspace& workspace, Ask&& stop) {
        BeginCheck();
        for (Vproject* project : workspace.ProjectList()) {
            AddProject(project);
            for (Vtask* task : project->TaskList()) {
                if (!task->Include()) continue;
                if (stop()) return std::nullopt;
                if (auto problem = AddTask(task)) return problem;
            }
            projects_.back().taskCount =
                static_cast<std::int32_t>(tasks_.size()) - projects_.back().firstTask;
        }
        return std::nullopt;
    }
    /// Asked now and then in the longer walks whether to give up. If it says so, memory may have been
    /// cleared, this network included: whoever asked returns without another look at anything.
    using Stop = std::function<bool()>;
    /// Whether to give up at step `i` of a walk.
    static bool GivesUp(std::size_t i, const Stop& stop) {
        constexpr std::size_t kStepsPerAsk = 512;
        return i % kStepsPerAsk == 0 && stop();
    }

    /// Cuts the tasks into slices and puts them in order. Returns a problem for a circle of dependencies; the
    /// slices outside of it and ahead of it are in order then, the others missing. When `stop` says so,
    /// nothing is returned and the network is not usable.
    std::optional<SolveProblem> ComputeOrder(const Stop& stop);
    /// Takes the indexes of its objects back from a network that was ordered later, for IndexOf.
    void TakeIndexes();
    /// The tasks of one circle of dependencies, each required by the next and the last by the first. Valid
    /// after ComputeOrder found one.
    const std::vector<Link<Vtask>>& Circle() const { return circle_; }
    /// Slices whose end nothing waits for, of master projects that have more than one.
    void FindDangling(std::vector<std::int32_t>& dangling);

    std::span<const Project> Projects() const { return projects_; }
    std::span<const Task> Tasks() const { return tasks_; }
    std::span<const Slice> Slices() const { return slices_; }
    std::span<const Resource> Resources() const { return resources_; }
    std::span<const Source> SourcesOf(const Task& task) const {
        return {sources_.data() + task.firstSource, static_cast<std::size_t>(task.sourceCount)};
    }
    std::span<const Want> WantsOf(const Task& task) const {
        return {wants_.data() + task.firstWant, static_cast<std::size_t>(task.wantCount)};
    }
    std::span<const Edge> EdgesOf(const Slice& slice) const {
        return {edges_.data() + slice.firstEdge, static_cast<std::size_t>(slice.edgeCount)};
    }
    const ResourceWeek& WeekOf(std::int32_t resource) const { return resourceWeeks_[Index(resource)]; }
    const DayPattern& DayOf(const ResourceWeek& week, std::size_t weekday) const {
        return patterns_[Index(week.pattern[week.workDays >> weekday & 1])];
    }
    std::span<const Period> PeriodsOf(const DayPattern& day) const {
        return {periods_.data() + day.firstPeriod, static_cast<std::size_t>(day.periodCount)};
    }
    /// Where a slice would stand if no task had a rank.
    std::int32_t ToldPlaceOf(std::int32_t slice) const { return ranked_ ? toldPlace_[Index(slice)] : slice; }
    bool Ranked() const { return ranked_; }
    /// Whether all dates and offsets lie on whole minutes, so that every booking begins and ends on one.
    bool OnMinuteGrid() const { return onMinuteGrid_; }

    /// Index of a model object in this network, -1 if it is not part of it.
    std::int32_t IndexOf(const Vproject* project) const { return IndexIn(projects_, project); }
    std::int32_t IndexOf(const Vtask* task) const { return IndexIn(tasks_, task); }
    std::int32_t IndexOf(const Vresource* resource) const { return IndexIn(resources_, resource); }

  private:
    struct PendingSource {
        Vtask* required = nullptr;
        std::int32_t index = -1;  ///< of `required` in this network
    };
    using CutSet = std::array<std::uint64_t, 2>;  ///< bit p: the task is cut at p percent

    template <class Entry, class Object>
    static std::int32_t IndexIn(const std::vector<Entry>& entries, const Object* object) {
        if (!object || object->solveIndex_ < 0 || Index(object->solveIndex_) >= entries.size()) return -1;
        return entries[Index(object->solveIndex_)].object.Get() == object ? object->solveIndex_ : -1;
    }

    void BeginCheck();
    void AddProject(Vproject* project);
    std::optional<SolveProblem> AddTask(Vtask* object);
    std::optional<SolveProblem> CheckDependencies(Vtask* object, Task& task);
    bool AddAssignments(Vtask* object, Task& task);
    bool HasNormalTime(const Vshift* shift);
    std::int32_t FindOrAddPattern(const Vshift* shift, bool workDay);
    void AddResource(Vresource* object);

    // The steps of ComputeOrder. Those that ask whether to stop return false then.
    bool IndexObjects(const Stop& stop);
    bool CutTasks(const Stop& stop, std::optional<SolveProblem>& problem);
    bool CutTask(std::int32_t index, std::optional<SolveProblem>& problem);
    bool MakeRawSlices(const Stop& stop);
    std::int32_t FindFromSlice(std::int32_t task, int percent) const;
    std::int32_t FindToSlice(std::int32_t task, int percent) const;
    bool MakeRawEdges(const Stop& stop);
    void MakeEdgesOf(std::int32_t index);
    void AddRawEdge(std::int32_t from, std::int32_t to, double offset);
    double OffsetBetween(std::int32_t task, const Vtask* required, int from, int to) const;
    bool Level(const Stop& stop);
    void RankProjects();
    bool NumberSlices(const Stop& stop);
    bool PlaceByRank(const Stop& stop);
    bool FillSlices(const Stop& stop);
    void FindCircle();

    std::vector<Project> projects_;
    std::vector<Task> tasks_;
    std::vector<Source> sources_;
    std::vector<PendingSource> pending_;  ///< parallel to sources_
    std::vector<Want> wants_;
    std::vector<Vresource*> wantResources_;  ///< parallel to wants_
    std::vector<Resource> resources_;
    std::vector<ResourceWeek> resourceWeeks_;  ///< parallel to resources_
    std::vector<DayPattern> patterns_;
    std::vector<Period> periods_;
    std::vector<NormalPeriod> normalPeriods_;
    bool onMinuteGrid_ = true;
    bool ranked_ = false;  ///< some task has a rank
    std::vector<Slice> slices_;
    std::vector<Edge> edges_;
    std::vector<Link<Vtask>> circle_;
    const Vshift* lastShift_ = nullptr;
    bool lastHasNormalTime_ = false;

    // Scratch of ComputeOrder: slices and edges before they are put in order.
    struct RawEdge {
        std::int32_t from, to;
        double offset;
    };
    struct RankedSlice {
        std::int32_t rank, toldPlace, slice;
        /// Heaps have the largest in front.
        bool operator<(const RankedSlice& other) const {
            return rank != other.rank ? rank > other.rank : toldPlace > other.toldPlace;
        }
    };
    std::vector<CutSet> cuts_;
    std::vector<Slice> raw_;
    std::vector<RawEdge> rawEdges_;
    std::vector<std::int32_t> rawFirstEdge_, rawSuccessor_, count_, level_, queue_, place_, levelStart_;
    std::vector<std::int32_t> rawFirst_;  ///< by task: its first raw slice; one more at the end
    std::vector<std::int32_t> projectRank_;
    std::vector<std::int32_t> toldPlace_;  ///< by slice, if there are ranks
    std::vector<RankedSlice> heap_;        ///< slices that may come next, the first of them in front
    std::vector<std::uint8_t> tiedIn_;     ///< by project: its link has a successor
    std::vector<std::int32_t> openEnds_;   ///< by master project
};

}  // namespace vortan
