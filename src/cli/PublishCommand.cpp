#include <ostream>

#include "cli/ChartFile.h"
#include "cli/Command.h"
#include "cli/Session.h"
#include "model/Fault.h"
#include "reports/WebPage.h"

namespace vortan {

namespace {

constexpr std::string_view kEndings[] = {".html", ".htm"};

struct PublishOptions {
    std::vector<std::string> files;
    std::string out, project, journal;
    bool noCosts = false;
};

int Run(CliSession& session, const PublishOptions& options) {
    RequireEnding("page", options.out, kEndings);
    for (const std::string& file : options.files) session.Load(file);
    session.SelectProject(options.project);
    session.SelectJournal(options.journal);
    if (!session.workspace.ThisProject())
        throw CliError("There is no project in " + options.files.front() + ".");
    Settings settings(session.platform);
    try {
        settings.ReadConfigFile();
    } catch (const Fault& fault) {
        session.streams.err << "Warning: " << fault.Description() << "\n";
    }
    const int exitCode = session.Solve();
    WriteResultFile(session, options.out,
                    WebPageOf({session.workspace, settings, session.solver, session.iterative.Results(),
                               !options.noCosts}));
    if (exitCode != kExitDone)
        session.streams.err << "Warning: the page shows a plan that is not solved.\n"
                            << session.StatusLine() << "\n";
    return exitCode;
}

}  // namespace

/// A page of a plan that halted is written too, since it says what is wrong.
CliCommand PublishCommand() {
    return MakeCommand<PublishOptions>(
        "publish", "Solve plans and write a web page of a project, for people without this program",
        [](PublishOptions& o) -> std::vector<Option> {
            return {
                {"FILE", &o.files, "Plan files (.vta, .vtb, .xml), read in this order into one memory", "",
                 true},
                {"-o,--output", &o.out, "The page to write, one .html file complete in itself", "OUT", true},
                ProjectOption(o.project, "The project to show; the first one if not given"),
                {"--journal", &o.journal, "Show the journal of this date, in all projects that have it",
                 "DATE"},
                {"--no-costs", &o.noCosts, "Leave out all amounts of money"}};
        },
        Run);
}

}  // namespace vortan
