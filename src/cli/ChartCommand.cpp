#include "charts/GanttForm.h"
#include "cli/ChartFile.h"
#include "cli/Commands.h"
#include "model/Vproject.h"

namespace vortan {

int ChartCommand(CliSession& session, const ChartOptions& options) {
    RequireChartFile(options.out);
    session.Load(options.file);
    session.SelectProject(options.project);
    session.SelectJournal(options.journal);
    if (!session.workspace.ThisProject()) throw CliError("There is no project in " + options.file + ".");
    if (session.Solve() != kExitDone) throw CliError(session.StatusLine(), kExitHalted);
    WriteChart(session, options.out, "GanttForm", options.fit,
               [&](Settings& settings, const TextMetrics& metrics) {
                   return std::make_unique<GanttForm>(session.workspace, settings, metrics);
               });
    return kExitDone;
}

}  // namespace vortan
