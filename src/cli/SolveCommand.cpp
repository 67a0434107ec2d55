#include <cmath>
#include <ostream>

#include "cli/Command.h"
#include "cli/Session.h"
#include "cli/SolveJson.h"
#include "cli/TextTable.h"
#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "solve/ProblemText.h"
#include "solve/WhyText.h"

namespace vortan {

namespace {

struct SolveOptions {
    std::vector<std::string> files;
    bool json = false;
    std::string save, journal, project;
};

/// How much a table tells: where space is short, days without the time of day.
enum class Detail { Full, Brief };

std::string TableDate(DateTime date, Detail detail) {
    return detail == Detail::Brief && date.IsSet() ? FormatShortDate(date) : MomentText(date);
}

std::string SlackText(DateTime early, DateTime late, Detail detail) {
    if (!early.IsSet() || !late.IsSet()) return "-";
    return FormatDuration(DaysBetween(early, late), detail == Detail::Full);
}

/// The task in whose midst the solve halted: its finish is only how far it came.
const Vtask* HaltedTask(const Solver& solver) {
    return solver.Problem() && solver.Problem()->assignment ? solver.Problem()->assignment.Get()->Task()
                                                            : nullptr;
}

/// Of the tasks that were placed, which a halt may leave in the minority.
DateTime FirstStart(const Vproject& project) {
    DateTime first;
    for (const Vtask* task : project.TaskList()) {
        const DateTime start = task->Include() ? task->EarlyStart() : DateTime();
        if (start.IsSet() && (!first.IsSet() || start < first)) first = start;
    }
    return first;
}

TextTable ProjectTable(const Vproject& project, const Vtask* halted, const std::string& currency,
                       Detail detail) {
    using Align = TextTable::Align;
    TextTable table({"Id", "Description", "Start", "Finish", "Slack", "Labor cost"},
                    {Align::Right, Align::Left, Align::Left, Align::Left, Align::Right, Align::Right}, 1);
    for (const Vtask* task : project.TaskList()) {
        if (!task->Include()) continue;
        const Vproject* subproject = task->Subproject();
        table.AddRow({task->Key(), subproject ? subproject->BuildNodeText() : task->Description(),
                      TableDate(task->EarlyStart(), detail),
                      task == halted ? "halted" : TableDate(task->EarlyFinish(), detail),
                      SlackText(task->EarlyFinish(), task->LateFinish(), detail),
                      FormatCurrency(task->LaborCost(), currency)});
    }
    table.AddRule();
    table.AddRow({"", "Total", TableDate(FirstStart(project), detail),
                  TableDate(project.EarlyFinish(), detail), "",
                  FormatCurrency(project.LaborCost(), currency)});
    if (project.MaterialCost() != Money()) {
        table.AddRow({"", "Material", "", "", "", FormatCurrency(project.MaterialCost(), currency)});
    }
    return table;
}

void PrintTables(const CliSession& session, const std::string& currency) {
    std::ostream& out = session.streams.out;
    for (const Vproject* project : session.workspace.ProjectList()) {
        out << FitText(project->BuildNodeText(), session.streams.width > 0 ? session.streams.width : 500)
            << "\n";
        std::string facts = std::string(SolveRuleText(project->SolveRules()));
        if (project->NumJournals() > 0) {
            facts = "Journal " + project->JournalNodeText(project->CurrentIndex()) + "; " + facts;
        }
        if (const Vproject* parent = project->Parent()) facts += "; subproject of " + parent->ProjectName();
        const Vtask* halted = HaltedTask(session.solver);
        TextTable table = ProjectTable(*project, halted, currency, Detail::Full);
        const int width = session.streams.width;
        if (width > 0 && table.ReadableWidth() > width)
            table = ProjectTable(*project, halted, currency, Detail::Brief);
        out << WrapText(facts, width) << "\n\n" << table.Print(width) << "\n";
    }
}

int Run(CliSession& session, const SolveOptions& options) {
    for (const std::string& file : options.files) session.Load(file);
    session.SelectProject(options.project);
    session.SelectJournal(options.journal);
    const int exitCode = session.Solve();
    if (options.json) {
        session.streams.out << session.WithLosses(SolveJson(session.workspace, session.solver));
    } else {
        const std::string symbol = session.platform.CurrencySymbol();
        PrintTables(session, symbol);
        session.streams.out << session.StatusLine() << "\n";
    }
    if (!options.save.empty()) session.Save(options.save);
    return exitCode;
}

}  // namespace

CliCommand SolveCommand() {
    return MakeCommand<SolveOptions>(
        "solve", "Solve plans and print their schedules",
        [](SolveOptions& o) -> std::vector<Option> {
            return {{"FILE", &o.files, "Plan files (.vta, .vtb, .xml), read in this order into one memory",
                     "", true},
                    JsonOption(o.json),
                    {"--save", &o.save, "Write the solved plan to this file", "OUT"},
                    {"--journal", &o.journal, "Solve the journal of this date", "DATE"},
                    ProjectOption(o.project)};
        },
        Run);
}

}  // namespace vortan
