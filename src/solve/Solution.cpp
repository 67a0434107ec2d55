#include "solve/Solution.h"

#include <algorithm>

#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtask.h"

namespace vortan {

void Solution::WriteResults() const {
    const auto tasks = network.Tasks();
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        Vtask& task = *tasks[i].object.Get();
        const auto& clock = run.Clocks()[i];
        task.SetEarlyStart(DateTime(clock.start));
        task.SetEarlyFinish(DateTime(clock.finish));
        task.SetLaborCost(clock.laborCost);
        if (tasks[i].subproject >= 0 && tasks[i].firstSlice < run.SlicesBegun()) {
            task.SetSubprojectCost(clock.materialCost);
        }
        if (reversed) {
            task.SetLateStart(DateTime(reverse.Tasks()[i].start));
            task.SetLateFinish(DateTime(reverse.Tasks()[i].finish));
        }
        WriteDependencyDates(tasks[i]);
    }
}

/// The date of every dependency that the pass has looked at, as it was at the last look: a slice looks at
/// those up to where it begins, and at all of them if its task has no estimate.
void Solution::WriteDependencyDates(const Network::Task& task) const {
    if (task.subproject >= 0) return;
    const auto slices = network.Slices();
    const bool complete = Index(run.SlicesBegun()) == slices.size();
    for (const auto& source : network.SourcesOf(task)) {
        if (source.slice < 0) continue;
        // The last look of a complete pass is behind everything.
        std::int32_t looked = complete ? run.SlicesBegun() : -1;
        for (std::int32_t i = task.firstSlice; !complete && i >= 0 && i < run.SlicesBegun();
             i = slices[Index(i)].next) {
            if (task.effortUnits == 0 || slices[Index(i)].from >= source.toPercent) looked = i;
        }
        if (looked < 0) continue;
        const double date = source.slice < looked ? run.SliceFinish()[Index(source.slice)] : 0;
        source.object->SetFoundDate(DateTime(date));
    }
}

/// The finish of a project in its plan journal, in days.
double Solution::PlanFinish(const Network::Project& project,
                            const std::vector<ForwardRun::Clock>& clocks) const {
    const Vproject& object = *project.object.Get();
    const std::int32_t plan = object.PlanIndex();
    if (plan != object.CurrentIndex()) {
        // What this solve finds runs forward into later journals.
        bool any = false;
        double finish = 0;
        for (const Vtask* task : object.TaskList()) {
            if (!task->IncludeAt(plan)) continue;
            const std::int32_t index = plan > object.CurrentIndex() ? network.IndexOf(task) : -1;
            const double at = index >= 0 ? clocks[Index(index)].finish : task->EarlyFinishAt(plan).Days();
            finish = any ? std::max(finish, at) : at;
            any = true;
        }
        return finish;
    }
    return ForwardRun::Totals(project, clocks).finish;
}

void Solution::PlanFinishes(const std::vector<ForwardRun::Clock>& clocks,
                            std::vector<double>& finishes) const {
    const auto projects = network.Projects();
    finishes.resize(projects.size());
    for (std::size_t i = 0; i < projects.size(); ++i) {
        const auto master = Index(projects[i].master);
        // A master ahead in the list is known already: a plan of many subprojects looks it up once.
        finishes[i] = master < i && Index(projects[master].master) == master
                          ? finishes[master]
                          : PlanFinish(projects[master], clocks);
    }
}

}  // namespace vortan
