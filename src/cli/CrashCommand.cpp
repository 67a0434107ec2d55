#include <ostream>

#include "cli/ChartFile.h"
#include "cli/Command.h"
#include "cli/JsonWriter.h"
#include "cli/Session.h"
#include "cli/TextTable.h"
#include "model/NumberText.h"
#include "model/Rounding.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "solve/WhyText.h"

namespace vortan {

namespace {

struct CrashOptions {
    std::string file, project, plot;
    bool detailed = false, json = false;
    double increment = IterativeSolve::kUsualIncrement;
};

void WriteStep(JsonWriter& json, const Vcrash& step) {
    const Vtask* task = step.task.Get();
    json.Object([&] {
        json.MemberIf(task, "project", task ? task->Project()->ProjectName() : "");
        json.MemberIf(task, "task", task ? task->TaskID() : 0);
        json.MemberIf(task, "from", step.fromPercent);
        json.MemberIf(task, "to", step.toPercent);
        // The digits of the multiplier as it was typed, not those of its float.
        json.MemberIf(task, "multiplier", ScanNumber(FormatNumber(step.multiplier)));
        json.Member("endDate", step.endDate);
        json.Member("totalCost", step.totalCost);
    });
}

std::string CrashJson(const std::vector<Vcrash>& steps) {
    JsonWriter json;
    json.Object([&] {
        json.ArrayMember("steps", [&] {
            for (const Vcrash& step : steps) WriteStep(json, step);
        });
    });
    return json.Line();
}

/// To three places: steps of 0.1 add up to 1.3000001.
std::string TeamText(float multiplier) {
    return JsonNumber(static_cast<double>(RoundToInt64(static_cast<double>(multiplier) * 1000)) / 1000);
}

std::string CrashTable(CliSession& session, bool quick) {
    using Align = TextTable::Align;
    const std::vector<Vcrash>& steps = session.iterative.Results().crashList;
    const Vproject* active = session.workspace.ThisProject();
    const std::string currency = session.platform.CurrencySymbol();
    TextTable table({"Step", "Task", "Part", "Team", "Finish", "Total cost"},
                    {Align::Right, Align::Left, Align::Right, Align::Right, Align::Left, Align::Right}, 1);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const Vcrash& step = steps[i];
        std::vector<std::string> cells{std::to_string(i),
                                       "As planned",
                                       "",
                                       "",
                                       MomentText(AddMinutes(step.endDate, 0)),
                                       FormatCurrency(step.totalCost, currency)};
        if (const Vtask* task = step.task.Get()) {
            cells[1] = (task->Project() == active ? "" : task->Project()->ProjectName() + " ") +
                       task->BuildNodeText();
            cells[2] = std::to_string(step.fromPercent) + "-" + std::to_string(step.toPercent) + " %";
            cells[3] = "x" + TeamText(step.multiplier);
        }
        table.AddRow(cells);
    }
    const int width = session.streams.width;
    std::string text = FitText(active->BuildNodeText(), width > 0 ? width : 500) + "\n" +
                       (quick ? "Quick" : "Detailed") + " crash in steps of " +
                       TeamText(session.iterative.Results().teamIncrement) + " of a team\n\n" +
                       table.Print(width);
    if (steps.size() == 1) text += "\nThere is nothing to crash: no larger team would end the plan sooner.\n";
    return text;
}

int Run(CliSession& session, const CrashOptions& options) {
    if (!options.plot.empty()) RequireChartFile(options.plot);
    session.Load(options.file);
    session.SelectProject(options.project);
    if (const auto complaint = IterativeSolve::CheckIncrement(options.increment)) throw CliError(*complaint);
    if (const int exitCode = session.SolveToIterate(); exitCode != kExitDone) return exitCode;
    const auto outcome = session.iterative.CrashSolve(!options.detailed, options.increment, nullptr);
    if (!outcome.done) throw CliError(WrapText(outcome.message, session.streams.width), kExitHalted);
    session.streams.out << (options.json
                                ? session.WithLosses(CrashJson(session.iterative.Results().crashList))
                                : CrashTable(session, !options.detailed));
    if (!options.plot.empty()) WriteChart(session, options.plot, ChartKindOf("crash"), true);
    return kExitDone;
}

}  // namespace

CliCommand CrashCommand() {
    return MakeCommand<CrashOptions>(
        "crash", "Buy time with larger teams, step by step: the curve of finish and cost",
        [](CrashOptions& o) -> std::vector<Option> {
            return {PlanFileOption(o.file),
                    ProjectOption(o.project),
                    JsonOption(o.json),
                    PlotOption(o.plot),
                    {"--detailed", &o.detailed,
                     "Solve each step with resources and calendars, instead of scaling one solution"},
                    {"--increment", &o.increment,
                     "What a team grows by in a step, 0.1 to 1.0; 0.25 if not given", "X"}};
        },
        Run);
}

}  // namespace vortan
