#include <ostream>

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

struct Options {
    std::vector<std::string> files;
    std::string project, journal, goal = "finish", save;
    bool json = false, told = false;
    ShortenOptions search;
};

std::string ResultJson(const CliSession& session) {
    const ShortenResult& result = session.iterative.Results().shorten;
    JsonWriter json;
    json.Object([&] {
        json.Member("better", result.better);
        json.Member("optimal", result.optimal);
        json.Member("moves", result.moves);
        json.Member("finishBefore", result.finishBefore);
        json.Member("finish", result.finish);
        json.Member("bound", result.bound);
        json.Member("costBefore", result.costBefore);
        json.Member("cost", result.cost);
        json.ArrayMember("ranks", [&] {
            for (const Vproject* project : session.workspace.ProjectList()) {
                for (const Vtask* task : project->TaskList()) {
                    if (task->SolveRank() == 0) continue;
                    json.Object([&] {
                        json.Member("project", project->ProjectName());
                        json.Member("task", task->TaskID());
                        json.Member("rank", task->SolveRank());
                    });
                }
            }
        });
    });
    return json.Line();
}

std::string ResultText(CliSession& session) {
    using Align = TextTable::Align;
    const ShortenResult& result = session.iterative.Results().shorten;
    const std::string currency = session.platform.CurrencySymbol();
    TextTable table({"", "Finish", "Total cost"}, {Align::Left, Align::Left, Align::Right}, 0);
    table.AddRow({"Before", MomentText(AddMinutes(result.finishBefore, 0)),
                  FormatCurrency(result.costBefore, currency)});
    table.AddRow(
        {"Shortened", MomentText(AddMinutes(result.finish, 0)), FormatCurrency(result.cost, currency)});
    table.AddRow({"No order before", MomentText(AddMinutes(result.bound, 0)), ""});
    const int width = session.streams.width;
    std::string text = FitText(session.workspace.ThisProject()->BuildNodeText(), width > 0 ? width : 500) +
                       "\n\n" + table.Print(width) + "\n";
    std::string told = GroupDigits(result.moves) + " orders were tried. ";
    told += result.better ? "The tasks have their places in the best one as ranks."
                          : "None was better than the one that stood.";
    if (result.optimal) told += " No order ends the project earlier.";
    return text + WrapText(told, width) + "\n";
}

int Run(CliSession& session, const Options& options) {
    ShortenOptions search = options.search;
    if (options.goal != "finish" && options.goal != "cost")
        throw CliError("\"" + options.goal + "\" is nothing to search for. Write finish or cost.");
    search.forCost = options.goal == "cost";
    if (const auto complaint = IterativeSolve::CheckShorten(search)) throw CliError(*complaint);
    if (!options.save.empty()) RequirePlanFile(options.save);
    for (const std::string& file : options.files) session.Load(file);
    session.SelectProject(options.project);
    session.SelectJournal(options.journal);
    if (options.told) session.iterative.SolveInToldOrder();
    if (const int exitCode = session.SolveToIterate(); exitCode != kExitDone) return exitCode;
    const auto outcome = session.iterative.ShortenSolve(search, nullptr);
    if (!outcome.done) throw CliError(WrapText(outcome.message, session.streams.width), kExitHalted);
    if (const int exitCode = session.Solve(); exitCode != kExitDone) return exitCode;
    session.streams.out << (options.json ? ResultJson(session) : ResultText(session));
    if (!options.save.empty()) session.Save(options.save);
    return kExitDone;
}

}  // namespace

CliCommand ShortenCommand() {
    return MakeCommand<Options>(
        "shorten", "Search for an order of the tasks that ends a plan earlier",
        [](Options& o) -> std::vector<Option> {
            return {
                {"FILE", &o.files, "Plan files (.vta, .vtb), read in this order into one memory", "", true},
                ProjectOption(o.project),
                {"--journal", &o.journal, "Shorten the journal of this date", "DATE"},
                JsonOption(o.json),
                {"--save", &o.save, "Write the plan with its ranks to this file", "OUT"},
                {"--seconds", &o.search.seconds, "How long to search; 10 if not given", "S"},
                {"--moves", &o.search.moves,
                 "How many orders to try, however long that takes: the same number finds the same plan", "N"},
                {"--seed", &o.search.seed, "Start of the random numbers; 0 if not given", "S"},
                {"--for", &o.goal, "What to make small: finish, or cost; finish if not given", "GOAL"},
                {"--told", &o.told,
                 "Take the ranks off the tasks first, so that the told order is the start"}};
        },
        Run);
}

}  // namespace vortan
