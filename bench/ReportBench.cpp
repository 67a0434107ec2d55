#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <chrono>

#include "BenchPlans.h"
#include "Loaded.h"
#include "charts/Twips.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "paint/ChartPainter.h"
#include "reports/CsvFile.h"
#include "reports/HtmlFile.h"
#include "reports/ReportKinds.h"
#include "reports/xlsx/XlsxFile.h"

namespace vortan {
namespace {

/// A solved plan of so many tasks, ten for each resource, with a plan journal beside the present one.
struct Solved : Loaded {
    explicit Solved(std::int64_t tasks)
        : Loaded(SimplePlan(static_cast<int>(tasks), static_cast<int>(tasks / 10), 1)) {
        workspace.ThisProject()->AddJournal(AddDays(workspace.ThisProject()->Journal(), 1));
        Solve();
    }
    Table Build(const char* kind) const { return ReportKindOf(kind).build({workspace, solver}); }
};

/// A report from the solution. Argument: tasks.
void ReportBuild(benchmark::State& state, const char* kind) {
    const Solved plan(state.range(0));
    std::int32_t rows = 0;
    for (auto _ : state) rows = plan.Build(kind).Rows();
    state.counters["rows"] = rows;
}
#define REPORT(name, kind) \
    BENCHMARK_CAPTURE(ReportBuild, name, kind)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)
REPORT(resources, "resources");
REPORT(tasks, "tasks");
REPORT(summary, "summary");
REPORT(update, "update");
REPORT(loading_by_resource, "loading-by-resource");
REPORT(loading_by_project, "loading-by-project");
REPORT(loading_by_day, "loading-by-day");
REPORT(overtime, "overtime");
REPORT(overload, "overload");
REPORT(date_dependencies, "date-dependencies");
#undef REPORT

/// What differs from the plan, where every tenth task has become longer, so that nearly all have moved.
void ReportChanges(benchmark::State& state) {
    Solved plan(state.range(0));
    for (Vtask* task : plan.workspace.ThisProject()->TaskList())
        if (task->TaskID() % 10 == 0) task->SetMostLikely(task->MostLikely() * 2);
    plan.Solve();
    std::int32_t rows = 0;
    for (auto _ : state) rows = plan.Build("changes").Rows();
    state.counters["rows"] = rows;
}
BENCHMARK(ReportChanges)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// Files of the project summary, 13 columns. Argument: tasks.
void ReportFile(benchmark::State& state, std::string (*make)(const Table&)) {
    const Table table = Solved(state.range(0)).Build("summary");
    std::size_t bytes = 0;
    for (auto _ : state) bytes = make(table).size();
    state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK_CAPTURE(ReportFile, csv, CsvOf)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReportFile, html, HtmlOf)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReportFile, xlsx,
                  [](const Table& table) {
                      return XlsxOf(table, {"Summary", "$"});
                  })
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);

/// A million cells, a screenful at a time from the top to the end, in ms; "layout" is what it takes to lay
/// them out, "worst" the slowest screen but for the first, which has the letters still to be made.
void ReportScroll(benchmark::State& state) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char name[] = "vortan_bench";
    static char* words[] = {name, nullptr};
    if (!QCoreApplication::instance()) new QGuiApplication(count, words);
    using Milliseconds = std::chrono::duration<double, std::milli>;
    const Table table = Solved(77000).Build("summary");
    const QtTextMetrics metrics{ToFont(FormFont())};
    Vwindow surface(Vwindow::Style::Table, metrics);
    const auto start = std::chrono::steady_clock::now();
    FillSurface(surface, table);
    state.counters["layout"] = Milliseconds(std::chrono::steady_clock::now() - start).count();
    const int width = 1920, height = 1080;
    QImage image(width, height, QImage::Format_RGB32);
    const int screen = static_cast<int>(height * kTwipsPerPixel);
    const int step = (surface.ContentHeight() - screen) / 100;
    double worst = 0;
    int top = 0;
    bool first = true;
    for (auto _ : state) {
        const auto before = std::chrono::steady_clock::now();
        QPainter painter(&image);
        painter.scale(1 / kTwipsPerPixel, 1 / kTwipsPerPixel);
        painter.translate(0, -top);
        const QRect part(0, top, static_cast<int>(width * kTwipsPerPixel), screen);
        ChartPainter(surface, metrics).Paint(painter, part, kTwipsPerPixel);
        painter.end();
        if (!first) worst = std::max(worst, Milliseconds(std::chrono::steady_clock::now() - before).count());
        first = false;
        top = top + step > surface.ContentHeight() - screen ? 0 : top + step;
    }
    state.counters["worst"] = worst;
    state.counters["cells"] = static_cast<double>(table.Rows()) * table.Cols();
}
BENCHMARK(ReportScroll)->Iterations(300)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vortan
