#include <ostream>

#include "cli/Command.h"
#include "cli/Session.h"
#include "model/JournalCommands.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtemplate.h"

namespace vortan {

namespace {

struct JournalOptions {
    std::string file, project, add, activate, plan, save;
};

void PrintJournals(const CliSession& session) {
    for (const Vproject* project : session.workspace.ProjectList()) {
        session.streams.out << "Project " << project->ProjectName() << "\n";
        for (int i = 0; i < project->NumJournals(); ++i) {
            session.streams.out << "  " << project->JournalNodeText(i) << "\n";
        }
    }
    for (const Vtemplate* each : session.workspace.TemplateList()) {
        session.streams.out << "Template " << each->TemplateName() << "\n";
        for (int i = 0; i < each->NumJournals(); ++i) {
            session.streams.out << "  " << each->JournalNodeText(i)
                                << (i == each->CurrentIndex() ? " [Current]" : "") << "\n";
        }
    }
}

int Run(CliSession& session, const JournalOptions& options) {
    session.Load(options.file);
    session.SelectProject(options.project);
    Workspace& workspace = session.workspace;
    const bool changes = !options.add.empty() || !options.activate.empty() || !options.plan.empty();
    if (changes && !workspace.ThisProject()) throw CliError("There is no project in " + options.file + ".");
    if (!options.add.empty()) {
        const DateTime date = ParseDateArgument(options.add);
        if (workspace.ThisProject()->JournalDefined(date)) {
            throw CliError("A journal with the date of " + FormatDate(date) + " already exists.");
        }
        AddJournalEverywhere(workspace, date);
    }
    const auto activate = [&](const std::string& text) {
        const DateTime date = ParseDateArgument(text);
        if (!workspace.ThisProject()->JournalDefined(date)) {
            throw CliError("Project " + workspace.ThisProject()->ProjectName() + " has no journal of " +
                           FormatDate(date) + ".");
        }
        ActivateJournal(workspace, date);
    };
    if (!options.plan.empty()) {
        const DateTime before = workspace.ThisProject()->Journal();
        activate(options.plan);
        SetAsPlan(workspace);
        ActivateJournal(workspace, before);
    }
    if (!options.activate.empty()) activate(options.activate);
    PrintJournals(session);
    if (!options.save.empty()) session.Save(options.save);
    return kExitDone;
}

}  // namespace

CliCommand JournalCommand() {
    return MakeCommand<JournalOptions>(
        "journal", "List the journals of a plan, add one, set the plan, activate one",
        [](JournalOptions& o) -> std::vector<Option> {
            return {PlanFileOption(o.file),
                    {"--add", &o.add, "Add a journal of this date and activate it", "DATE"},
                    {"--plan", &o.plan, "Make the journal of this date the plan", "DATE"},
                    {"--activate", &o.activate, "Activate the journal of this date", "DATE"},
                    ProjectOption(o.project),
                    {"--save", &o.save, "Write the changed plan to this file", "OUT"}};
        },
        Run);
}

}  // namespace vortan
