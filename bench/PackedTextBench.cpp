#include "persist/PackedText.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <string>

namespace vortan {
namespace {

void AddLine(std::string& text, const std::string& field, const std::string& value) {
    text += "  " + field + "," + value + "\r\n";
}

/// The records of a plan with `tasks` tasks of one project, each task with a dependency and an assignment.
std::string MakePlanText(int tasks) {
    std::mt19937 random(1);
    const std::string noDate = "12/30/1899 12:00am";
    std::string text = "PROJECT\r\n  ProjectName,Plan\r\n";
    for (int task = 1; task <= tasks; ++task) {
        text += "TASK\r\n";
        AddLine(text, "TaskID", std::to_string(task));
        AddLine(text, "Subproject", "\"\"");
        AddLine(text, "Description", "Task " + std::to_string(task));
        AddLine(text, "Include", "True");
        AddLine(text, "EffortUnits", "-60");
        const std::string estimate = std::to_string(60 * (1 + random() % 80));
        for (const char* const field : {"Optimistic", "MostLikely", "Pessimistic"})
            AddLine(text, field, estimate);
        AddLine(text, "Efficiency", ".85");
        AddLine(text, "MaterialCost", std::to_string(random() % 3 * 250));
        for (const char* const field : {"EarlyStart", "EarlyFinish", "LateStart", "LateFinish"}) {
            AddLine(text, field, noDate);
        }
        text += "DEPENDENCY\r\n";
        AddLine(text, "Include", "True");
        AddLine(text, "DepDate", noDate);
        AddLine(text, "TaskRequired", "Plan," + std::to_string(1 + random() % static_cast<unsigned>(task)));
        AddLine(text, "FromPercent", "100");
        AddLine(text, "ToPercent", "0");
        text += "ASSIGNMENT\r\n";
        AddLine(text, "ResourceRequired", "Pool," + std::to_string(1 + random() % 1000));
        AddLine(text, "Hours", std::to_string(4 + random() % 5));
        for (const char* const day : {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday"}) {
            AddLine(text, std::string("WorkOn") + day, "True");
        }
    }
    return text;
}

void BM_PackText(benchmark::State& state) {
    const std::string text = MakePlanText(5000);
    for (auto _ : state) benchmark::DoNotOptimize(PackText(text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_PackText)->Unit(benchmark::kMillisecond);

/// The rate is that of the unpacked text.
void BM_UnpackText(benchmark::State& state) {
    const std::string text = MakePlanText(5000);
    const std::string packed = PackText(text);
    for (auto _ : state) benchmark::DoNotOptimize(UnpackText(packed));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_UnpackText)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vortan
