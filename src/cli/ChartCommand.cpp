#include "cli/ChartFile.h"
#include "cli/Command.h"
#include "cli/Session.h"
#include "model/Vproject.h"

namespace vortan {

namespace {

struct ChartOptions {
    std::string file, project, journal, out;
    bool fit = false;  ///< onto one page
};

std::vector<Option> ListOptions(ChartOptions& o) {
    return {PlanFileOption(o.file),
            {"-o,--output", &o.out,
             "File to write: .svg and .png are one picture, a .pdf has pages with headings", "OUT", true},
            {"--fit", &o.fit, "Reduce a .pdf to one page"},
            {"--journal", &o.journal, "Show the journal of this date", "DATE"},
            ProjectOption(o.project, "The project to show; the first one if not given")};
}

int Run(CliSession& session, const ChartOptions& options, const ChartKind& kind) {
    RequireChartFile(options.out);
    session.Load(options.file);
    session.SelectProject(options.project);
    session.SelectJournal(options.journal);
    if (!session.workspace.ThisProject()) throw CliError("There is no project in " + options.file + ".");
    if (session.Solve() != kExitDone) throw CliError(session.StatusLine(), kExitHalted);
    WriteChart(session, options.out, kind, options.fit);
    return kExitDone;
}

}  // namespace

/// Of the charts that show a solution; commands with results of their own draw theirs.
Command ChartCommand() {
    Command chart{"chart", "Solve a plan and draw a chart of it", {}, {}};
    for (const ChartKind& kind : ChartKinds()) {
        if (kind.needs != ChartNeeds::Solution) continue;
        chart.kinds.push_back(MakeCommand<ChartOptions>(
            kind.name, std::string("The ") + kind.title + ", with the user's preferences", ListOptions,
            [&kind](CliSession& session, const ChartOptions& options) {
                return Run(session, options, kind);
            }));
    }
    return chart;
}

}  // namespace vortan
