#include <ostream>

#include "charts/CrashForm.h"
#include "cli/ChartFile.h"
#include "cli/Commands.h"
#include "cli/SolveJson.h"
#include "cli/TextTable.h"
#include "model/NumberText.h"
#include "model/Rounding.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtask.h"

namespace vortan {

namespace {

std::string CrashJson(const std::vector<Vcrash>& steps) {
    std::string out = R"({"steps":[)";
    for (const Vcrash& step : steps) {
        if (&step != &steps.front()) out += ',';
        if (const Vtask* task = step.task.Get()) {
            out += R"({"project":)" + JsonText(task->Project()->ProjectName()) + R"(,"task":)" +
                   std::to_string(task->TaskID()) + R"(,"from":)" + std::to_string(step.fromPercent) +
                   R"(,"to":)" + std::to_string(step.toPercent) + R"(,"multiplier":)" +
                   JsonNumber(ScanNumber(FormatNumber(step.multiplier)));
        } else {
            out += R"({"project":null,"task":null,"from":null,"to":null,"multiplier":null)";
        }
        out += R"(,"endDate":)" + JsonNumber(step.endDate.Days()) + R"(,"totalCost":)" +
               JsonMoney(step.totalCost) + "}";
    }
    return out + "]}\n";
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

}  // namespace

int CrashCommand(CliSession& session, const CrashOptions& options) {
    if (!options.plot.empty()) RequireChartFile(options.plot);
    session.Load(options.file);
    session.SelectProject(options.project);
    if (const auto complaint = IterativeSolve::CheckIncrement(options.increment)) throw CliError(*complaint);
    if (const int exitCode = session.SolveToIterate(); exitCode != kExitDone) return exitCode;
    const auto outcome = session.iterative.CrashSolve(!options.detailed, options.increment, nullptr);
    if (!outcome.done) throw CliError(WrapText(outcome.message, session.streams.width), kExitHalted);
    session.streams.out << (options.json ? CrashJson(session.iterative.Results().crashList)
                                         : CrashTable(session, !options.detailed));
    if (options.plot.empty()) return kExitDone;
    WriteChart(session, options.plot, "CrashForm", true, [&](Settings&, const TextMetrics& metrics) {
        return std::make_unique<CrashForm>(session.workspace, session.iterative.Results().crashList, metrics);
    });
    return kExitDone;
}

}  // namespace vortan
