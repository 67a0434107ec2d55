#include <algorithm>
#include <ostream>
#include <set>

#include "cli/ChartFile.h"
#include "cli/Command.h"
#include "cli/ReportData.h"
#include "model/Characters.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "reports/CsvFile.h"
#include "reports/HtmlFile.h"

namespace vortan {

namespace {

constexpr std::string_view kEndings[] = {".csv", ".xlsx", ".html", ".pdf", ".svg", ".png", ".json"};

struct ReportOptions {
    std::vector<std::string> files;
    std::string out, project, templateName, journal, month, from, to;
    bool fit = false;
    bool json = false;
};

/// The first day of "YYYY-MM"; not set for an empty text.
DateTime MonthOption(const std::string& text) {
    if (text.empty()) return {};
    std::string_view rest = text;
    const int year = TakeDigits(rest, 4);
    const bool hyphen = rest.starts_with('-');
    if (hyphen) rest.remove_prefix(1);
    const int month = hyphen ? TakeDigits(rest, 2) : 0;
    if (!rest.empty() || !ValidDate(year, month, 1))
        throw CliError("\"" + text + "\" is not a month. Write year-month, as 2026-03.");
    return FromParts({year, month, 1});
}

void LoadAll(CliSession& session, const ReportOptions& options, const ReportKind& kind) {
    for (const std::string& file : options.files) session.Load(file);
    session.SelectProject(options.project);
    session.SelectTemplate(options.templateName);
    session.SelectJournal(options.journal);
    const bool ofTemplate = kind.needs == ReportNeeds::Template;
    if (ofTemplate ? !session.workspace.ThisTemplate() : !session.workspace.ThisProject())
        throw CliError(std::string("There is no ") + (ofTemplate ? "template" : "project") + " in " +
                       options.files.front() + ".");
}

/// A report of a solution is refused without one; one of bookings shows those that there are.
void SolveFor(CliSession& session, const ReportKind& kind) {
    const bool solved = session.Solve() == kExitDone;
    const bool needsSolution =
        kind.needs == ReportNeeds::Solution || kind.needs == ReportNeeds::SolutionBesidePlan;
    if (!solved && needsSolution) throw CliError(session.StatusLine(), kExitHalted);
    if (!MayBuild(session.workspace, kind)) throw CliError("", kExitHalted);
    if (!solved && kind.showsBookings)
        session.streams.err << "Warning: the report shows what was booked before the solve halted.\n"
                            << session.StatusLine() << "\n";
}

/// Solves the later journal. The earlier one, and the plan that slack is measured against, keep what their
/// last solve found. Results run forward into later journals, so one that has none is solved before those.
void SolveJournals(CliSession& session, const ReportSource& source) {
    const Vproject& project = *session.workspace.ThisProject();
    const std::int32_t later = std::max(source.from, source.to);
    bool overwritten = false;
    for (const std::int32_t index : std::set{source.from, source.to, project.PlanIndex()}) {
        if (index > later || (index < later && !overwritten && HasResults(project, index))) continue;
        overwritten = true;
        const DateTime date = project.JournalDates()[static_cast<std::size_t>(index)];
        session.SelectJournal(date);
        if (session.Solve() != kExitDone && (index == source.from || index == source.to))
            throw CliError("Journal of " + FormatDate(date) + ": " + session.StatusLine(), kExitHalted);
    }
}

/// What the report is built from, solved.
ReportSource SolvedSource(CliSession& session, const ReportOptions& options, const ReportKind& kind,
                          DateTime month) {
    ReportSource source{session.workspace, session.solver, month};
    if (kind.twoJournals) {
        const Vproject& project = *session.workspace.ThisProject();
        source.from = options.from.empty() ? project.PlanIndex() : session.FindJournal(options.from);
        source.to = options.to.empty() ? project.CurrentIndex() : session.FindJournal(options.to);
        const bool chosen = !options.from.empty() || !options.to.empty();
        if (chosen && source.from == source.to)
            throw CliError("The report compares two journals, and both are that of " +
                           FormatDate(project.JournalDates()[static_cast<std::size_t>(source.to)]) + ".");
        if (source.from != source.to) {
            SolveJournals(session, source);
            return source;
        }
    }
    SolveFor(session, kind);
    return source;
}

void WriteReport(CliSession& session, const ReportOptions& options, const ReportKind& kind,
                 const Table& table) {
    if (EndsWithText(options.out, ".json")) {
        WriteResultFile(session, options.out, ReportJson(kind, table));
    } else if (EndsWithText(options.out, ".csv")) {
        WriteResultFile(session, options.out, CsvOf(table));
    } else if (EndsWithText(options.out, ".html")) {
        WriteResultFile(session, options.out, HtmlOf(table));
    } else if (EndsWithText(options.out, ".xlsx")) {
        WriteResultFile(session, options.out,
                        LoadOutput(session.platform.ProgramFile())
                            .MakeWorkbook(table, kind.caption, session.platform.CurrencySymbol()));
    } else {
        const DrawingTools tools(session, kReportForm);
        Vwindow surface(Vwindow::Style::Table, tools.TheDrawing().Metrics());
        surface.SetPage(tools.TheDrawing().Page());
        FillSurface(surface, table);
        tools.Write(surface, table.caption, options.out, options.fit);
    }
}

int Run(CliSession& session, const ReportOptions& options, const ReportKind& kind) {
    if (!options.out.empty()) RequireEnding("report", options.out, kEndings);
    const DateTime month = MonthOption(options.month);
    LoadAll(session, options, kind);
    const Table table = kind.build(SolvedSource(session, options, kind, month));
    if (table.Rows() == 0) session.streams.err << "The requested spreadsheet contained no data.\n";
    if (options.json) session.streams.out << session.WithLosses(ReportJson(kind, table));
    if (!options.out.empty()) {
        try {
            WriteReport(session, options, kind, table);
        } catch (const Fault& fault) {
            throw CliError(fault.Description());
        }
    } else if (!options.json && table.Rows() > 0) {
        session.streams.out << ReportText(table, session.streams.width);
    }
    return kExitDone;
}

CliCommand KindCommand(const ReportKind& kind) {
    const auto values = std::make_shared<ReportOptions>();
    ReportOptions& o = *values;
    std::vector<Option> list{
        {"FILE", &o.files, "Plan files (.vta, .vtb, .xml), read in this order into one memory", "", true},
        {"-o,--output", &o.out,
         "File to write: .csv, .xlsx and .html are tables, .pdf has pages with headings, .svg and .png are "
         "one picture, .json is the data; without it the report is printed",
         "OUT"},
        JsonOption(o.json),
        {"--fit", &o.fit, "Reduce a .pdf to one page"},
        ProjectOption(o.project),
        {"--template", &o.templateName, "The active template; the first one if not given", "NAME"}};
    if (kind.twoJournals) {
        list.push_back(
            {"--from", &o.from, "Compare the journal of this date; the plan if not given", "DATE"});
        list.push_back({"--to", &o.to, "With the journal of this date; the active one if not given", "DATE"});
    } else {
        list.push_back(
            {"--journal", &o.journal, "Show the journal of this date, in all projects that have it", "DATE"});
    }
    if (kind.byMonth)
        list.push_back({"--month", &o.month,
                        "The month to show, as 2026-03; the one in which the project starts if not given",
                        "YYYY-MM"});
    return {kind.name, std::string(kind.caption) + " spreadsheet", std::move(list),
            [values, &kind](CliSession& session) { return Run(session, *values, kind); }};
}

}  // namespace

CliCommand ReportCommand() {
    CliCommand report{
        "report", "Solve plans and print a spreadsheet of them, or write the status report", {}, {}};
    for (const ReportKind& kind : ReportKinds()) report.kinds.push_back(KindCommand(kind));
    report.kinds.push_back(StatusReportCommand());
    return report;
}

}  // namespace vortan
