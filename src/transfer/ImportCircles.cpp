// The import of links: what the solve would halt on. Circles are cut, and open ends are tied together.

#include <algorithm>
#include <set>

#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "transfer/ImportPlan.h"

namespace vortan {
namespace {

/// The parts of tasks between the percentages at which dependencies touch them, and what must come before
/// what.
class PartGraph {
  public:
    struct Edge {
        std::int32_t to = 0;
        Vdependency* dependency = nullptr;  ///< none where a task or subproject itself says so
    };

    explicit PartGraph(const std::vector<Vtask*>& tasks) : tasks_(tasks) {
        for (std::size_t i = 0; i < tasks.size(); ++i) index_[tasks[i]] = i;
        cuts_.resize(tasks.size());
        for (const Vtask* task : tasks) {
            for (const Vdependency* each : task->DependencyList()) {
                if (each->ToPercent() > 0) cuts_[index_[task]].insert(each->ToPercent());
                const auto from = index_.find(each->TaskRequired());
                if (from != index_.end() && each->FromPercent() < 100)
                    cuts_[from->second].insert(each->FromPercent());
            }
        }
        for (const auto& cuts : cuts_) {
            first_.push_back(static_cast<std::int32_t>(edges.size()));
            for (std::size_t i = 0; i < cuts.size(); ++i) {
                edges.emplace_back();
                edges.back().push_back({static_cast<std::int32_t>(edges.size()), nullptr});
            }
            edges.emplace_back();
        }
        first_.push_back(static_cast<std::int32_t>(edges.size()));
        for (std::size_t i = 0; i < tasks.size(); ++i) AddEdges(i);
    }

    std::vector<std::vector<Edge>> edges;  ///< by part

    /// The dependencies to be left out so that no circle is left. Follows edges depth first; where one leads
    /// back to a part that is being followed, the last dependency on the way there is cut.
    std::vector<Vdependency*> FindCuts() {
        enum : std::uint8_t { New, Open, Done };
        std::vector<std::uint8_t> state(edges.size(), New);
        std::vector<std::size_t> next(edges.size(), 0);
        std::vector<std::int32_t> way;
        std::set<Vdependency*> cut;
        for (std::size_t start = 0; start < edges.size(); ++start) {
            if (state[start] != New) continue;
            state[start] = Open;
            way.push_back(static_cast<std::int32_t>(start));
            while (!way.empty()) {
                const auto part = static_cast<std::size_t>(way.back());
                if (next[part] == edges[part].size()) {
                    state[part] = Done;
                    way.pop_back();
                    continue;
                }
                const Edge& edge = edges[part][next[part]++];
                const auto to = static_cast<std::size_t>(edge.to);
                if (cut.contains(edge.dependency) || state[to] == Done) continue;
                if (state[to] == New) {
                    state[to] = Open;
                    way.push_back(edge.to);
                } else if (edge.dependency) {
                    cut.insert(edge.dependency);
                } else {
                    TakeBack(way, state, next, cut);
                }
            }
        }
        return {cut.begin(), cut.end()};
    }

  private:
    std::int32_t PartUpTo(std::size_t task, int percent) const {
        const auto& cuts = cuts_[task];
        const auto at = percent == 100 ? cuts.size()
                                       : static_cast<std::size_t>(std::distance(
                                             cuts.begin(), cuts.find(static_cast<std::uint8_t>(percent))));
        return first_[task] + static_cast<std::int32_t>(at);
    }
    std::int32_t PartFrom(std::size_t task, int percent) const {
        if (percent == 0) return first_[task];
        const auto& cuts = cuts_[task];
        return first_[task] +
               static_cast<std::int32_t>(
                   std::distance(cuts.begin(), cuts.find(static_cast<std::uint8_t>(percent)))) +
               1;
    }
    void AddEdges(std::size_t i) {
        const Vtask* task = tasks_[i];
        if (const Vproject* subproject = task->Subproject()) {
            for (const Vtask* inner : subproject->TaskList())
                if (const auto at = index_.find(inner); at != index_.end())
                    Add(PartUpTo(at->second, 100), first_[i], nullptr);
            return;
        }
        for (Vdependency* each : task->DependencyList()) {
            const auto from = index_.find(each->TaskRequired());
            if (from != index_.end())
                Add(PartUpTo(from->second, each->FromPercent()), PartFrom(i, each->ToPercent()), each);
        }
    }
    void Add(std::int32_t from, std::int32_t to, Vdependency* dependency) {
        edges[static_cast<std::size_t>(from)].push_back({to, dependency});
    }
    /// Goes back to before the last dependency on the way, which is cut.
    void TakeBack(std::vector<std::int32_t>& way, std::vector<std::uint8_t>& state,
                  std::vector<std::size_t>& next, std::set<Vdependency*>& cut) const {
        while (way.size() > 1) {
            const auto part = static_cast<std::size_t>(way.back());
            state[part] = 0;
            next[part] = 0;
            way.pop_back();
            const auto before = static_cast<std::size_t>(way.back());
            if (Vdependency* dependency = edges[before][next[before] - 1].dependency) {
                cut.insert(dependency);
                return;
            }
        }
    }

    const std::vector<Vtask*>& tasks_;
    std::unordered_map<const Vtask*, std::size_t> index_;
    std::vector<std::set<std::uint8_t>> cuts_;
    std::vector<std::int32_t> first_;
};

}  // namespace

void PlanImport::DropCircles() {
    std::vector<Vtask*> tasks;
    std::unordered_map<const Vtask*, Row*> rowOf;
    for (Row& row : rows_) {
        tasks.push_back(row.task);
        rowOf[row.task] = &row;
    }
    PartGraph graph(tasks);
    for (Vdependency* cut : graph.FindCuts()) {
        Row& row = *rowOf.at(cut->Task());
        Lose(Name(*row.source), "Link from " + Name(*rowOf.at(cut->TaskRequired())->source),
             "It closes a circle", "Left out");
        for (auto& each : plan_.links[row.source->UID])
            if (each == cut) each = nullptr;
        workspace_.FreeVobject(cut);
        const auto& left = row.task->DependencyList();
        const bool toStart =
            std::any_of(left.begin(), left.end(), [](const Vdependency* d) { return d->ToPercent() == 0; });
        if (!toStart) AddDate(*row.task, StartOf(row), 0);
    }
}

/// A project has one last task; a plan with several open ends gets one that waits for all of them, as the
/// program itself offers to make it.
void PlanImport::AddLastTask() {
    std::unordered_set<const Vtask*> required;
    for (const Row& row : rows_) {
        if (row.subproject) continue;
        for (const Vdependency* each : row.task->DependencyList())
            if (each->FromPercent() == 100 && each->TaskRequired()) required.insert(each->TaskRequired());
    }
    std::vector<Vtask*> open;
    for (const Row& row : rows_) {
        Vtask* task = row.subproject ? row.inner : row.task;
        const Vtask* holder = row.inner        ? row.task
                              : row.parent < 0 ? nullptr
                                               : rows_[static_cast<std::size_t>(row.parent)].task;
        if (task && !required.contains(task) && !required.contains(holder)) open.push_back(task);
    }
    if (open.size() < 2) return;
    Vproject* top = plan_.projects.front().project;
    auto* last = workspace_.NewVObject<Vtask>();
    last->SetProject(top);
    last->SetTaskID(top->HighestTaskID() + 1);
    last->SetDescription("Computer-generated dummy");
    for (Vtask* each : open) {
        auto* dependency = workspace_.NewVObject<Vdependency>();
        dependency->SetTask(last);
        dependency->SetTaskRequired(each);
    }
    Lose("Plan", std::to_string(open.size()) + " tasks that nothing waits for", "A project has one last task",
         "Task " + last->Key() + " Computer-generated dummy waits for them");
}

}  // namespace vortan
