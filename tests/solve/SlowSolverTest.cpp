
#include "support/LoadedPlan.h"
#include "support/Paths.h"
#include "support/PlanGenerator.h"
#include "support/SlowSolver.h"

namespace vortan {
namespace {

std::string ProblemLine(const Vtask* task, const Vdependency* dependency, const Vassignment* assignment,
                        std::initializer_list<double> values) {
    return FactLine("problem " + NameOf(task) + " " + (dependency ? dependency->Key() : "") + " " +
                        (assignment ? assignment->Key() : ""),
                    values);
}

/// The slices that wait for a slice, and those that it waits for, by their places in the order.
template <class List, class PlaceOf>
std::string ArrowText(const List& forward, const List& backward, PlaceOf&& placeOf) {
    std::string text = "arrows";
    for (const auto& each : forward) text += " >" + std::to_string(placeOf(each));
    for (const auto& each : backward) text += " <" + std::to_string(placeOf(each));
    return text + "\n";
}

std::string ArrowText(const Solver& solver) {
    const SliceArrows arrows = solver.Arrows();
    std::string text;
    for (std::int32_t i = 0; i < solver.SliceCount(); ++i)
        text += ArrowText(arrows.ForwardList(i), arrows.BackwardList(i),
                          [](const SliceArrow& arrow) { return arrow.slice; });
    return text;
}

std::string ArrowText(const SlowSolver& slow) {
    std::map<const SlowSolver::Slice*, std::int32_t> places;
    for (const auto* slice : slow.OrderList()) places.try_emplace(slice, places.size());
    std::string text;
    for (const auto* slice : slow.OrderList())
        text += ArrowText(slice->forward, slice->backward, [&](const auto* each) { return places[each]; });
    return text;
}

std::string RealText(const LoadedPlan& plan) {
    const SolveProblem problem = plan.solver.Problem().value_or(SolveProblem());
    return ProblemLine(problem.task.Get(), problem.dependency.Get(), problem.assignment.Get(),
                       {problem.problemDate.Days(), problem.requestedHours, problem.assignedHours}) +
           ArrowText(plan.solver) + ResultText(plan);
}

/// What the slow solver found of a task. What a solve leaves alone is as in `old`, the same task unsolved.
std::string SlowTaskText(SlowSolver& slow, const Vtask* task, const Vtask* old) {
    SlowSolver::TaskResult result{old->EarlyStart().Days(), old->EarlyFinish().Days(),
                                  old->LateStart().Days(),  old->LateFinish().Days(),
                                  old->LaborCost(),         old->MaterialCost()};
    const bool ran = slow.TheProblem().message.empty() || slow.TheProblem().assignment;
    if (ran && task->Include()) {
        const auto before = result;
        result = slow.ResultOf(task);
        if (!slow.Reversed()) {
            result.lateStart = before.lateStart;
            result.lateFinish = before.lateFinish;
        }
    }
    std::string text = FactLine("task " + NameOf(task),
                                {result.earlyStart, result.earlyFinish, result.lateStart, result.lateFinish,
                                 result.laborCost.ToDouble(), result.materialCost.ToDouble()});
    for (std::size_t i = 0; i < task->DependencyList().size(); ++i) {
        const double kept = old->DependencyList()[i]->DepDate().Days();
        text += FactLine("dependency of " + NameOf(task),
                         {slow.DepDateOf(task->DependencyList()[i]).value_or(kept)});
    }
    return text;
}

/// RealText by the slow solver, from a plan that the real one has solved and the same plan unsolved.
std::string SlowText(const LoadedPlan& plan, const LoadedPlan& before) {
    SlowSolver slow(plan.workspace);
    slow.Solve();
    const auto& problem = slow.TheProblem();
    std::string text = ProblemLine(problem.task, problem.dependency, problem.assignment,
                                   {problem.date, problem.requestedHours, problem.assignedHours});
    text += ArrowText(slow) + (problem.message.empty() ? "Solve complete" : problem.message) + "\n";
    for (const auto* slice : slow.OrderList()) {
        const double late = slow.Reversed() ? 1 : 0;
        text += FactLine(
            "slice " + NameOf(slice->task),
            {double(slice->fromPercent), double(slice->toPercent), slice->earlyStart, slice->earlyFinish,
             late * slice->lateStart, late * slice->lateFinish, slice->laborCost.ToDouble()});
    }
    for (const Vproject* project : SortedByKey(plan.workspace.ProjectList())) {
        for (const Vtask* task : project->TaskList())
            text += SlowTaskText(slow, task, before.Task(project->ProjectName(), task->TaskID()));
    }
    for (const Vtemplate* pool : SortedByKey(plan.workspace.TemplateList())) {
        for (const Vresource* resource : pool->ResourceList()) {
            text += "resource " + pool->TemplateName() + "/" + resource->Key() + "\n";
            for (const auto& slot : slow.HeldSlots(resource)) {
                text += FactLine("slot of " + NameOf(slot.task),
                                 {double(slot.type), slot.start, slot.end, slot.laborCost.ToDouble()});
            }
        }
    }
    return text;
}

/// Solves, and tells the first difference to the slow solver's answer.
std::string Difference(const std::string& text) {
    LoadedPlan before;
    before.Load(text);
    const LoadedPlan plan(text);
    return FirstDifference(RealText(plan), SlowText(plan, before));
}

/// Problems that the slow solver does not look for.
bool KnownToBothSolvers(const std::string& message) {
    return message == "Solve complete" || message == "Overtime needed" || message.starts_with("Overload");
}

TEST(SlowSolverTest, AgreesOnPlansWithKnownAnswers) {
    int compared = 0;
    for (const std::string& path : FilesIn(TestFile("golden/solve"), ".vta")) {
        const std::string text = FileBytes(path);
        if (!KnownToBothSolvers(LoadedPlan(text).solver.SolveMessage())) continue;
        EXPECT_EQ(Difference(text), "") << path;
        ++compared;
    }
    EXPECT_GE(compared, 30);
}

TEST(SlowSolverTest, AgreesOnPlansOfAllKinds) {
    for (std::uint64_t seed = 0; seed < 300; ++seed)
        EXPECT_EQ(Difference(GeneratePlan(seed, MixedKnobs(seed))), "") << "seed " << seed;
}

TEST(SlowSolverTest, AgreesOnHaltsAndOnTasksWithoutADate) {
    for (std::uint64_t seed = 500; seed < 650; ++seed) {
        PlanKnobs knobs = MixedKnobs(seed);
        knobs.rule = static_cast<int>(seed % 7);
        knobs.unset = 15;
        EXPECT_EQ(Difference(GeneratePlan(seed, knobs)), "") << "seed " << seed;
    }
}

/// Where many tasks wait for one resource the real solver passes over days on which nothing can happen.
TEST(SlowSolverTest, AgreesWhereTasksWait) {
    for (int rule = 0; rule < kSolveRules; ++rule) {
        int complete = 0;
        for (std::uint64_t seed = 1000; seed < 1063; ++seed) {
            PlanKnobs knobs = CrowdedKnobs(seed, rule);
            if (seed >= 1060) knobs.longest = 100'000;
            const std::string text = GeneratePlan(seed, knobs);
            complete += LoadedPlan(text).Complete() ? 1 : 0;
            EXPECT_EQ(Difference(text), "") << "rule " << rule << ", seed " << seed;
        }
        // Rules that extend never halt, the others do so in such a crowd.
        const bool halting = Halts(SolveRule{rule});
        EXPECT_TRUE(halting ? complete < 60 : complete == 63) << "rule " << rule << ": " << complete;
    }
}

/// An assignment that is not included still settles which resource of a task is looked at first.
TEST(SlowSolverTest, AgreesOnTheResourceAtFaultBehindAnExcludedAssignment) {
    const std::string text = FileBytes(TestFile("plans/ExcludedAssignmentFirst.vta"));
    EXPECT_EQ(LoadedPlan(text).solver.SolveMessage(), "Overtime needed");
    EXPECT_EQ(Difference(text), "");
}

}  // namespace
}  // namespace vortan
