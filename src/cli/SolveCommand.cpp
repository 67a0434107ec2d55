#include <cmath>
#include <ostream>

#include "cli/Commands.h"
#include "cli/SolveJson.h"
#include "cli/TextTable.h"
#include "model/ValueText.h"
#include "solve/ProblemText.h"

namespace vortan {

namespace {

std::string DateOrNone(DateTime date) {
    return date.IsSet() ? FormatDate(date) : "-";
}

std::string SlackText(DateTime early, DateTime late) {
    return early.IsSet() && late.IsSet() ? FormatDuration(DaysBetween(early, late), true) : "-";
}

std::string ProjectTable(const Vproject& project, const std::string& currency, int width) {
    using Align = TextTable::Align;
    TextTable table({"Id", "Description", "Start", "Finish", "Slack", "Labor cost"},
                    {Align::Right, Align::Left, Align::Left, Align::Left, Align::Right, Align::Right}, 1);
    for (const Vtask* task : project.TaskList()) {
        if (!task->Include()) continue;
        const Vproject* subproject = task->Subproject();
        table.AddRow({task->Key(), subproject ? subproject->BuildNodeText() : task->Description(),
                      DateOrNone(task->EarlyStart()), DateOrNone(task->EarlyFinish()),
                      SlackText(task->EarlyFinish(), task->LateFinish()),
                      FormatCurrency(task->LaborCost(), currency)});
    }
    table.AddRule();
    table.AddRow({"", "Total", DateOrNone(project.EarlyStart()), DateOrNone(project.EarlyFinish()), "",
                  FormatCurrency(project.LaborCost(), currency)});
    if (project.MaterialCost() != Money()) {
        table.AddRow({"", "Material", "", "", "", FormatCurrency(project.MaterialCost(), currency)});
    }
    return table.Print(width);
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
        out << facts << "\n\n" << ProjectTable(*project, currency, session.streams.width) << "\n";
    }
}

}  // namespace

int SolveCommand(CliSession& session, const SolveOptions& options) {
    for (const std::string& file : options.files) session.Load(file);
    session.SelectProject(options.project);
    session.SelectJournal(options.journal);
    const int exitCode = session.Solve();
    if (options.json) {
        session.streams.out << SolveJson(session.workspace, session.solver);
    } else {
        const std::string symbol = session.platform.CurrencySymbol();
        PrintTables(session, symbol);
        session.streams.out << session.solver.SolveMessage() << "\n";
        const std::string advice = ExplainProblem(session.workspace, session.solver);
        if (!advice.empty()) session.streams.out << advice << "\n";
    }
    if (!options.save.empty()) session.Save(options.save);
    return exitCode;
}

}  // namespace vortan
