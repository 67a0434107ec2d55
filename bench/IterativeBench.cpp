#include <benchmark/benchmark.h>

#include "BenchPlans.h"
#include "Loaded.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "solve/IterativeSolve.h"

namespace vortan {
namespace {

using PlanMaker = std::string (*)(int, int, unsigned);

/// A solved plan whose estimates spread from 30 % below to 60 % above the most likely one.
struct Spread : Loaded {
    explicit Spread(const std::string& text) : Loaded(text) {
        for (Vproject* project : workspace.ProjectList()) {
            for (Vtask* task : project->TaskList()) {
                task->SetOptimistic(task->MostLikely() * 7 / 10);
                task->SetPessimistic(task->MostLikely() * 16 / 10);
            }
        }
        Solve();
    }
    IterativeSolve iterative{workspace, solver};
};

void Require(benchmark::State& state, const IterativeSolve::Outcome& outcome) {
    if (!outcome.done) state.SkipWithError(outcome.message.c_str());
}

/// Arguments: tasks, resources, iterations, workers, and whether to find what drives the spread. The ordinary
/// solve behind each risk solve is not counted.
void Risk(benchmark::State& state, PlanMaker plan, bool quick) {
    Spread spread(plan(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), 1));
    const auto iterations = static_cast<std::int32_t>(state.range(2));
    spread.iterative.SetWorkers(static_cast<int>(state.range(3)));
    for (auto _ : state) {
        Require(state, spread.iterative.RiskSolve(quick, iterations, nullptr, state.range(4) != 0));
        state.PauseTiming();
        spread.Solve();
        state.ResumeTiming();
    }
    const double steps = static_cast<double>(iterations) * spread.solver.SliceCount();
    state.counters["perSliceAndIteration"] = benchmark::Counter(
        steps, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK_CAPTURE(Risk, DetailedSimple, SimplePlan, false)
    ->Args({1000, 100, 1000, 1, 0})
    ->Args({1000, 100, 1000, 1, 1})
    ->Args({1000, 100, 1000, 2, 0})
    ->Args({1000, 2, 1000, 1, 0})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Risk, DetailedRich, RichPlan, false)
    ->Args({1000, 100, 1000, 1, 0})
    ->Args({1000, 100, 1000, 1, 1})
    ->Args({1000, 100, 1000, 2, 0})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Risk, QuickSimple, SimplePlan, true)
    ->Args({1000, 100, 1000, 1, 0})
    ->Args({1000, 100, 1000, 1, 1})
    ->Args({1000, 100, 1000, 2, 0})
    ->Args({100000, 10000, 100, 1, 0})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Risk, QuickRich, RichPlan, true)
    ->Args({1000, 100, 1000, 1, 0})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

/// Arguments: tasks, resources. `inSolves` is the time of the crash solve in plain solves of the same plan,
/// and `allowance` (steps + 2) x 3.
void Crash(benchmark::State& state, PlanMaker plan, bool quick) {
    Spread spread(plan(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), 1));
    const auto now = [] { return std::chrono::steady_clock::now(); };
    double crashing = 0, solving = 0;
    for (auto _ : state) {
        const auto begin = now();
        Require(state, spread.iterative.CrashSolve(quick, 0.25, nullptr));
        const auto crashed = now();
        state.PauseTiming();
        spread.Solve();
        const auto solve = now();
        spread.Solve();
        crashing += std::chrono::duration<double>(crashed - begin).count();
        solving += std::chrono::duration<double>(now() - solve).count();
        state.ResumeTiming();
    }
    const auto steps = static_cast<double>(spread.iterative.Results().crashList.size()) - 1;
    state.counters["steps"] = steps;
    state.counters["inSolves"] = crashing / solving;
    state.counters["allowance"] = (steps + 2) * 3;
}
BENCHMARK_CAPTURE(Crash, DetailedSimple, SimplePlan, false)
    ->Args({1000, 100})
    ->Args({1000, 2})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Crash, DetailedRich, RichPlan, false)->Args({1000, 100})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Crash, QuickSimple, SimplePlan, true)->Args({1000, 100})->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vortan
