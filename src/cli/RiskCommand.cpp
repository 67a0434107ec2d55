#include <algorithm>
#include <ostream>

#include "cli/ChartFile.h"
#include "cli/Command.h"
#include "cli/JsonWriter.h"
#include "cli/Session.h"
#include "cli/TextTable.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "solve/WhyText.h"

namespace vortan {

namespace {

struct RiskOptions {
    std::string file, project, plot;
    bool detailed = false, json = false;
    double iterations = IterativeSolve::kUsualIterations;
    std::uint64_t seed = 0;
};

void WriteResult(JsonWriter& json, DateTime date, Money cost) {
    json.Object([&] {
        json.Member("date", date);
        json.Member("cost", cost);
    });
}

std::string RiskJson(const IterativeResults& results) {
    JsonWriter json;
    json.Object([&] {
        json.Member("iterations", results.riskIterations);
        json.Name("mostLikely");
        WriteResult(json, results.riskDates[0], results.riskCosts[0]);
        json.ArrayMember("results", [&] {
            for (std::size_t i = 1; i < results.riskDates.size(); ++i)
                WriteResult(json, results.riskDates[i], results.riskCosts[i]);
        });
    });
    return json.Line();
}

/// What so many percent of the runs did not exceed; element 0 of the rows is not one of them.
template <class T>
T Quantile(const std::vector<T>& sorted, int percent) {
    const std::size_t n = sorted.size() - 1;
    return sorted[std::max<std::size_t>((static_cast<std::size_t>(percent) * n + 99) / 100, 1)];
}

/// Quick runs end between the minutes.
std::string MinuteText(DateTime moment) {
    return MomentText(AddMinutes(moment, 0));
}

std::string RiskTable(CliSession& session, bool quick) {
    using Align = TextTable::Align;
    const IterativeResults& results = session.iterative.Results();
    const std::string currency = session.platform.CurrencySymbol();
    std::vector<Money> costs = results.riskCosts;
    std::sort(costs.begin() + 1, costs.end());
    TextTable table({"Chance", "Finish by", "Cost up to"}, {Align::Right, Align::Left, Align::Right}, 1);
    for (const int percent : {5, 10, 20, 50, 80, 90, 95}) {
        table.AddRow({std::to_string(percent) + " %", MinuteText(Quantile(results.riskDates, percent)),
                      FormatCurrency(Quantile(costs, percent), currency)});
    }
    table.AddRule();
    table.AddRow({"Most likely", MinuteText(results.riskDates[0]), FormatCurrency(costs[0], currency)});
    const int width = session.streams.width;
    return FitText(session.workspace.ThisProject()->BuildNodeText(), width > 0 ? width : 500) + "\n" +
           WrapText(std::to_string(results.riskIterations) + (quick ? " quick" : " detailed") +
                        " iterations. The chance of a finish and that of a cost are counted apart.",
                    width) +
           "\n\n" + table.Print(width);
}

int Run(CliSession& session, const RiskOptions& options) {
    if (!options.plot.empty()) RequireChartFile(options.plot);
    session.Load(options.file);
    session.SelectProject(options.project);
    if (const int exitCode = session.SolveToIterate(); exitCode != kExitDone) return exitCode;
    if (const auto complaint = session.iterative.CheckRisk(options.iterations)) throw CliError(*complaint);
    session.iterative.SetSeed(options.seed);
    const auto outcome = session.iterative.RiskSolve(!options.detailed,
                                                     static_cast<std::int32_t>(options.iterations), nullptr);
    if (!outcome.done) throw CliError(WrapText(outcome.message, session.streams.width), kExitHalted);
    session.streams.out << (options.json ? session.WithLosses(RiskJson(session.iterative.Results()))
                                         : RiskTable(session, !options.detailed));
    if (!options.plot.empty()) WriteChart(session, options.plot, ChartKindOf("risk"), true);
    return kExitDone;
}

}  // namespace

Command RiskCommand() {
    return MakeCommand<RiskOptions>(
        "risk", "Repeat a plan with other estimates: how finish and cost spread",
        [](RiskOptions& o) -> std::vector<Option> {
            return {PlanFileOption(o.file),
                    ProjectOption(o.project),
                    JsonOption(o.json),
                    PlotOption(o.plot),
                    {"--detailed", &o.detailed,
                     "Solve each iteration with resources and calendars, instead of scaling one solution"},
                    {"-n,--iterations", &o.iterations, "Number of iterations; 100 if not given", "N"},
                    {"--seed", &o.seed, "Start of the random numbers; 0 if not given", "S"}};
        },
        Run);
}

}  // namespace vortan
