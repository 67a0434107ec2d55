#include <benchmark/benchmark.h>
#include <malloc.h>

#include "BenchPlans.h"
#include "Loaded.h"
#include "persist/PackedText.h"

namespace vortan {
namespace {

using PlanMaker = std::string (*)(int, int, unsigned);

/// Everything from the check to the late dates, model in memory. Arguments: tasks, resources.
void Solve(benchmark::State& state, PlanMaker plan) {
    Loaded loaded(plan(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), 1));
    loaded.Solve();
    if (loaded.solver.Mode() != SolveMode::Idle) {
        state.SkipWithError(loaded.solver.SolveMessage().c_str());
        return;
    }
    for (auto _ : state) loaded.Solve();
    state.counters["perTask"] =
        benchmark::Counter(static_cast<double>(loaded.report.tasks),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK_CAPTURE(Solve, Simple, SimplePlan)
    ->Args({1000, 100})
    ->Args({10000, 1000})
    ->Args({100000, 10000})  // a resource for every ten tasks
    ->Args({1000, 2})
    ->Args({10000, 20})
    ->Args({100000, 200})  // heavy waiting
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Solve, Rich, RichPlan)
    ->Args({1000, 100})
    ->Args({10000, 1000})
    ->Args({100000, 10000})
    ->Unit(benchmark::kMillisecond);

void Load(benchmark::State& state) {
    const std::string text =
        SimplePlan(static_cast<int>(state.range(0)), static_cast<int>(state.range(0)) / 10, 1);
    for (auto _ : state) {
        Loaded loaded(text);
        benchmark::DoNotOptimize(loaded.report.tasks);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK(Load)->Arg(10000)->Unit(benchmark::kMillisecond);

void Save(benchmark::State& state) {
    Loaded loaded(SimplePlan(10000, 1000, 1));
    std::size_t size = 0;
    for (auto _ : state) size = SaveRecords(loaded.workspace).size();
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}
BENCHMARK(Save)->Unit(benchmark::kMillisecond);

/// Bytes on the heap for each task with its dependencies and assignments: the model alone, and with a
/// solution.
void Memory(benchmark::State& state) {
    const auto used = [] { return static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd); };
    const std::string text =
        SimplePlan(static_cast<int>(state.range(0)), static_cast<int>(state.range(0)) / 10, 1);
    for (auto _ : state) {
        const double before = used();
        Loaded loaded(text);
        const double model = used();
        loaded.Solve();
        state.counters["modelBytesPerTask"] = (model - before) / loaded.report.tasks;
        state.counters["solvedBytesPerTask"] = (used() - before) / loaded.report.tasks;
    }
}
BENCHMARK(Memory)->Arg(10000)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vortan
