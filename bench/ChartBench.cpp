#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <chrono>

#include "../fuzz/QuietPlatform.h"
#include "BenchPlans.h"
#include "charts/ChartKinds.h"
#include "charts/PrecedenceForm.h"
#include "charts/Twips.h"
#include "model/Vproject.h"
#include "paint/ChartPainter.h"
#include "paint/Pictures.h"
#include "persist/Records.h"
#include "solve/IterativeResults.h"
#include "solve/Solver.h"

namespace vortan {
namespace {

constexpr QSize kScreen(1920, 1080);

void NeedToolkit() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char name[] = "vortan_bench";
    static char* words[] = {name, nullptr};
    static const QGuiApplication toolkit(count, words);
}

/// A chart of a solved plan, with the user's usual settings.
struct Charted {
    Charted(const char* kind, int tasks, int resources = 0) : metrics((NeedToolkit(), ToFont(FormFont()))) {
        const std::string text = SimplePlan(tasks, resources > 0 ? resources : tasks / 10, 1);
        TokenReader reader(text, "bench.vta");
        LoadReport report;
        LoadRecords(workspace, reader, report);
        workspace.SetThisProject(workspace.ProjectList()[0]);
        workspace.SetThisTemplate(workspace.TemplateList()[0]);
        solver.RestartSolve();
        solver.SolveTimerTick();
        chart = ChartKindOf(kind).make({workspace, settings, results, metrics, solver});
        chart->Start();
    }

    QuietPlatform platform;
    Workspace workspace{platform};
    Solver solver{workspace};
    Settings settings{platform};
    IterativeResults results;
    QtTextMetrics metrics;
    std::unique_ptr<ChartForm> chart;
};

/// Computation, layout and drawing list, from the solution. Argument: tasks, ten for each resource.
void ChartStart(benchmark::State& state, const char* kind) {
    Charted charted(kind, static_cast<int>(state.range(0)));
    for (auto _ : state) charted.chart->Start();
    state.counters["items"] = static_cast<double>(charted.chart->TheVwindow().Items().size());
}
BENCHMARK_CAPTURE(ChartStart, gantt, "gantt")->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ChartStart, histogram, "histogram")->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ChartStart, budget, "budget")->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ChartStart, precedence, "precedence")
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ChartStart, wbs, "wbs")->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// The same with all texts in the boxes, and a step of a box.
void PrecedenceDates(benchmark::State& state, bool step) {
    Charted charted("precedence", static_cast<int>(state.range(0)));
    auto& form = static_cast<PrecedenceForm&>(*charted.chart);
    form.SetStyle(PrecedenceStyle::DateTime);
    form.Start();
    form.Press(ChartForm::Key::Down);
    for (auto _ : state) step ? void(form.Press(ChartForm::Key::MoveDown)) : form.Start();
}
BENCHMARK_CAPTURE(PrecedenceDates, start, false)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PrecedenceDates, step, true)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// A screenful at a time, from the top of the chart to its end, in ms. "first" has the letters still to be
/// made, "worst" is the slowest of the others.
void ChartScroll(benchmark::State& state, const char* kind, int resources = 0) {
    Charted charted(kind, static_cast<int>(state.range(0)), resources);
    if (resources > 0) {  // few rows of large boxes
        static_cast<PrecedenceForm&>(*charted.chart).SetStyle(PrecedenceStyle::DateTime);
        charted.chart->Start();
    }
    const Vwindow& surface = charted.chart->TheVwindow();
    QImage image(kScreen, QImage::Format_RGB32);
    const int screen = static_cast<int>(kScreen.height() * kTwipsPerPixel);
    const int step = std::max(1, (surface.ContentHeight() - screen) / 100);
    double first = 0, worst = 0;
    int top = 0;
    for (auto _ : state) {
        const auto before = std::chrono::steady_clock::now();
        QPainter painter(&image);
        painter.scale(1 / kTwipsPerPixel, 1 / kTwipsPerPixel);
        painter.translate(0, -top);
        const QRect part(0, top, static_cast<int>(kScreen.width() * kTwipsPerPixel), screen);
        ChartPainter(surface, charted.metrics).Paint(painter, part, kTwipsPerPixel);
        painter.end();
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - before;
        if (first == 0) {
            first = taken.count();
        } else {
            worst = std::max(worst, taken.count());
        }
        top = top + step > surface.ContentHeight() - screen ? 0 : top + step;
    }
    state.counters["first"] = first;
    state.counters["worst"] = worst;
}
BENCHMARK_CAPTURE(ChartScroll, gantt, "gantt")->Arg(10000)->Iterations(300)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ChartScroll, histogram, "histogram")
    ->Arg(10000)
    ->Arg(100000)
    ->Iterations(300)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ChartScroll, budget, "budget")->Arg(10000)->Iterations(300)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ChartScroll, precedence, "precedence")
    ->Arg(10000)
    ->Iterations(300)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ChartScroll, precedenceWide, "precedence", 5)
    ->Arg(10000)
    ->Iterations(300)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ChartScroll, wbs, "wbs")->Arg(10000)->Iterations(300)->Unit(benchmark::kMillisecond);

void GanttSvg(benchmark::State& state) {
    Charted charted("gantt", static_cast<int>(state.range(0)));
    const ShownSurface shown{charted.chart->TheVwindow(), charted.metrics, "Chart"};
    for (auto _ : state) benchmark::DoNotOptimize(MakePicture(shown, PictureType::Svg).size());
}
BENCHMARK(GanttSvg)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vortan
