#include <ostream>
#include <sstream>

#include "cli/ChartFile.h"
#include "cli/Command.h"
#include "cli/Session.h"
#include "model/Vproject.h"
#include "persist/Vfile.h"
#include "reports/StatusReport.h"
#include "reports/StatusReportFile.h"

namespace vortan {

namespace {

struct StatusReportOptions {
    std::string file, out, document, marks, project, journal;
    bool copyPrevious = false, earnedValue = false;
};

/// A mark as typed; 0 leaves the one that there is.
char ParseMark(char letter) {
    if (letter == '-') return 0;
    if (letter == 'G' || letter == 'Y' || letter == 'R') return letter;
    throw CliError(std::string("\"") + letter + "\" is no mark. There are G, Y, R, and - for as it is.");
}

/// For the rows of the table from the first on: the mark of the previous and that of the present month each.
void SetMarks(StatusReport& report, const std::string& marks) {
    std::istringstream list(marks);
    std::string pair;
    auto row = report.Rows.begin();
    while (std::getline(list, pair, ',')) {
        if (pair.size() != 2)
            throw CliError("\"" + pair +
                           "\" is not a pair of marks, as G- or YR, for previous and present month.");
        while (row != report.Rows.end() && !row->inTable) ++row;
        if (row == report.Rows.end())
            throw CliError("There are more marks than rows in the table of the document.");
        if (const char mark = ParseMark(pair[0])) row->previous = mark;
        if (const char mark = ParseMark(pair[1])) row->present = mark;
        ++row;
    }
}

/// The document to go on with: the one told, else the one to be written if it is there, else the layout.
std::string ReadSource(CliSession& session, const StatusReportOptions& options, const std::string& out,
                       std::string& name) {
    std::string bytes, ignored;
    name = options.document;
    if (name.empty()) name = ReadFileBytes(out, ignored).empty() ? out : FindReportLayout(session.platform);
    const std::string problem = ReadReport(name, bytes);
    if (!problem.empty()) throw CliError(problem);
    return bytes;
}

std::string PictureOf(CliSession& session, const char* kind, bool earnedValue) {
    ChartFile chart(session, ChartKindOf(kind));
    StartReportChart(chart.Form(), earnedValue);
    return chart.PictureText();
}

int Run(CliSession& session, const StatusReportOptions& options) {
    session.Load(options.file);
    session.SelectProject(options.project);
    session.SelectJournal(options.journal);
    const Vproject* project = session.workspace.ThisProject();
    if (!project) throw CliError("There is no project in " + options.file + ".");
    std::string out = options.out;
    constexpr std::string_view kEndings[] = {".rtf"};
    if (!out.empty()) RequireEnding("report", out, kEndings);
    if (out.empty()) {
        out = ReportFileName(project->ProjectName());
        if (!IsReportFileName(out)) throw CliError(ReportCopyError(out));
    }
    std::string source;
    StatusReport report(ReadSource(session, options, out, source));
    if (!report.Problem().empty()) throw CliError("The document " + source + " " + report.Problem());
    if (!report.HasTable())
        session.streams.err << "Warning: the document " << source
                            << " has no table with four columns, so it gets no marks.\n";
    if (options.copyPrevious) report.CopyToPrevious();
    SetMarks(report, options.marks);
    if (session.Solve() != kExitDone) throw CliError(session.StatusLine(), kExitHalted);
    const ReportPictures pictures{PictureOf(session, "budget", options.earnedValue),
                                  PictureOf(session, "gantt", false)};
    const std::string problem =
        SaveReport(session.platform, out, report.Write(ReportTexts(*project), pictures));
    if (!problem.empty()) throw CliError(problem);
    return kExitDone;
}

}  // namespace

CliCommand StatusReportCommand() {
    return MakeCommand<StatusReportOptions>(
        "status", "The status report of a project: a document with marks, Gantt chart and budget plot",
        [](StatusReportOptions& o) -> std::vector<Option> {
            return {
                PlanFileOption(o.file),
                {"-o,--output", &o.out,
                 "Document to write; if not given, the project's report in the working directory. "
                 "What it held before is kept as .bak",
                 "OUT.rtf"},
                {"--document", &o.document,
                 "Document to start from; if not given, the one to be written, or the layout "
                 "StatusReportLayout.rtf if there is none yet",
                 "OLD.rtf"},
                {"--marks", &o.marks,
                 "For each row of the table, with commas between: mark of the previous and of the present "
                 "month, G, Y or R, or - to leave it",
                 "MARKS"},
                {"--copy-previous", &o.copyPrevious,
                 "First make the present month's marks those of the previous month"},
                {"--earned-value", &o.earnedValue, "Plot earned value instead of plan and current cost"},
                {"--journal", &o.journal, "Report on the journal of this date", "DATE"},
                ProjectOption(o.project, "The project to report on; the first one if not given")};
        },
        Run);
}

}  // namespace vortan
