#include <algorithm>
#include <cmath>
#include <optional>
#include <ostream>

#include "charts/RiskForm.h"
#include "cli/ChartFile.h"
#include "cli/Command.h"
#include "cli/JsonWriter.h"
#include "cli/Session.h"
#include "cli/TextTable.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "solve/WhyText.h"

namespace vortan {

namespace {

struct RiskOptions {
    std::string file, project, plot;
    bool detailed = false, json = false, drivers = false;
    std::string by, within, picture;
    double iterations = IterativeSolve::kUsualIterations;
    std::uint64_t seed = 0;
};

void WriteResult(JsonWriter& json, DateTime date, Money cost) {
    json.Object([&] {
        json.Member("date", date);
        json.Member("cost", cost);
    });
}

/// A date and a budget to meet, and the share of the runs that met both.
struct Target {
    std::optional<DateTime> by;
    std::optional<Money> within;
    double chance = 0;

    bool IsSet() const { return by || within; }
};

Target ReadTarget(CliSession& session, const RiskOptions& options) {
    Target target;
    if (!options.by.empty()) {
        target.by = ParseDate(options.by);
        if (!target.by) throw CliError("\"" + options.by + "\" is not a date.");
        // A date alone means the whole day.
        if (target.by->Days() == target.by->WholeDay()) target.by = AddDays(*target.by, 1);
    }
    if (options.within.empty()) return target;
    target.within = ParseCurrency(options.within, session.platform.CurrencySymbol());
    if (!target.within) throw CliError("\"" + options.within + "\" is not an amount of money.");
    return target;
}

RiskForm::View ViewNamed(const std::string& name) {
    using View = RiskForm::View;
    const std::pair<const char*, View> views[] = {{"", View::Probability},
                                                  {"curve", View::Probability},
                                                  {"cost", View::TotalCost},
                                                  {"joint", View::Joint},
                                                  {"tornado", View::Tornado}};
    for (const auto& [known, view] : views)
        if (name == known) return view;
    throw CliError("\"" + name + "\" is no picture. There are curve, cost, joint and tornado.");
}

std::string TaskText(const RiskDriver& driver) {
    const Vtask* task = driver.task.Get();
    return task ? task->BuildNodeText() : "";
}

std::string SignedText(double number) {
    const float hundredths = static_cast<float>(std::round(number * 100) / 100);
    return FormatTwoDecimals(hundredths);
}

/// The leading ones.
std::string DriverTable(const IterativeResults& results, int width) {
    using Align = TextTable::Align;
    constexpr std::size_t kShown = 12;
    TextTable table({"Task", "Critical", "With finish", "With cost", "Gain"},
                    {Align::Left, Align::Right, Align::Right, Align::Right, Align::Right}, 1);
    for (std::size_t i = 0; i < std::min(kShown, results.drivers.size()); ++i) {
        const RiskDriver& driver = results.drivers[i];
        table.AddRow({TaskText(driver), std::to_string(std::lround(driver.criticality * 100)) + " %",
                      SignedText(driver.finishCorrelation), SignedText(driver.costCorrelation),
                      driver.gainKnown ? FormatDuration(driver.gainDays, true) : ""});
    }
    return "\n" +
           WrapText(
               "What drives it: how often a task had no slack, how its duration goes with finish and cost "
               "(rank correlation), and how much earlier the median finish would be if it always took "
               "its optimistic estimate (" +
                   std::to_string(results.gainTrials) + " trials each).",
               width) +
           "\n\n" + table.Print(width);
}

void WriteDriver(JsonWriter& json, const RiskDriver& driver) {
    const Vtask* task = driver.task.Get();
    if (!task) return;
    json.Object([&] {
        json.Member("project", task->Project()->ProjectName());
        json.Member("task", task->TaskID());
        json.Member("description", task->Description());
        json.Member("criticality", driver.criticality);
        json.Member("finishCorrelation", driver.finishCorrelation);
        json.Member("costCorrelation", driver.costCorrelation);
        if (!driver.gainKnown) return;
        json.Member("gainDays", driver.gainDays);
        json.Member("lossDays", driver.lossDays);
    });
}

std::string RiskJson(const IterativeResults& results, const Target& target) {
    JsonWriter json;
    json.Object([&] {
        json.Member("iterations", results.riskIterations);
        json.Name("mostLikely");
        WriteResult(json, results.riskDates[0], results.riskCosts[0]);
        json.ArrayMember("results", [&] {
            for (std::size_t i = 1; i < results.riskDates.size(); ++i)
                WriteResult(json, results.riskDates[i], results.riskCosts[i]);
        });
        if (target.IsSet()) json.Member("chance", target.chance);
        if (results.gainTrials > 0) {
            json.Member("gainTrials", results.gainTrials);
            json.ArrayMember("drivers", [&] {
                for (const RiskDriver& driver : results.drivers) WriteDriver(json, driver);
            });
        }
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
    Target target = ReadTarget(session, options);
    const RiskForm::View view = ViewNamed(options.picture);
    session.iterative.SetSeed(options.seed);
    const auto outcome =
        session.iterative.RiskSolve(!options.detailed, static_cast<std::int32_t>(options.iterations), nullptr,
                                    options.drivers || view == RiskForm::View::Tornado);
    if (!outcome.done) throw CliError(WrapText(outcome.message, session.streams.width), kExitHalted);
    const IterativeResults& results = session.iterative.Results();
    target.chance = results.ChanceOfBoth(target.by, target.within);
    if (options.json) {
        session.streams.out << session.WithLosses(RiskJson(results, target));
    } else {
        session.streams.out << RiskTable(session, !options.detailed);
        if (target.IsSet())
            session.streams.out << "\nThe chance to meet that is "
                                << std::to_string(std::lround(target.chance * 100)) << " %.\n";
        if (options.drivers) session.streams.out << DriverTable(results, session.streams.width);
    }
    if (!options.plot.empty())
        WriteChart(session, options.plot, ChartKindOf("risk"), true,
                   [view](ChartForm& form) { static_cast<RiskForm&>(form).SetView(view); });
    return kExitDone;
}

}  // namespace

CliCommand RiskCommand() {
    return MakeCommand<RiskOptions>(
        "risk", "Repeat a plan with other estimates: how finish and cost spread",
        [](RiskOptions& o) -> std::vector<Option> {
            return {
                PlanFileOption(o.file),
                ProjectOption(o.project),
                JsonOption(o.json),
                PlotOption(o.plot),
                {"--detailed", &o.detailed,
                 "Solve each iteration with resources and calendars, instead of scaling one solution"},
                {"-n,--iterations", &o.iterations, "Number of iterations; 100 if not given", "N"},
                {"--picture", &o.picture,
                 "What to draw: curve, cost, joint (finish and cost) or tornado; the curve if not given",
                 "NAME"},
                {"--drivers", &o.drivers, "Also tell which tasks drive the spread, and what each could gain"},
                {"--by", &o.by, "Also tell the chance to end by this date", "DATE"},
                {"--within", &o.within, "and to cost no more than this", "MONEY"},
                {"--seed", &o.seed, "Start of the random numbers; 0 if not given", "S"}};
        },
        Run);
}

}  // namespace vortan
