#include <ostream>

#include "cli/ChartFile.h"
#include "cli/ChartOptions.h"
#include "cli/Session.h"
#include "model/Characters.h"
#include "model/Vproject.h"

namespace vortan {

namespace {

std::optional<TimeScale::Period> PeriodOf(const std::string& scale) {
    using Period = TimeScale::Period;
    const std::pair<const char*, Period> names[] = {
        {"day", Period::Day}, {"week", Period::Week}, {"month", Period::Month}, {"quarter", Period::Quarter}};
    if (scale.empty()) return std::nullopt;
    for (const auto& [name, period] : names)
        if (scale == name) return period;
    throw CliError("\"" + scale + "\" is no time scale. There are day, week, month and quarter.");
}

/// What can be said before a plan is read.
void CheckOptions(const ChartOptions& options, const ChartWords& words) {
    if (options.out.empty() && !options.json)
        throw CliError(
            std::string("-o,--output is required, or --json.\nRun with --help for more information."));
    if (!options.out.empty()) RequireChartFile(options.out, words.json);
    PeriodOf(options.scale);
}

void LoadAll(CliSession& session, const ChartOptions& options, const ChartWords& words) {
    for (const std::string& file : options.files) session.Load(file);
    session.SelectProject(options.project);
    session.SelectTemplate(options.templateName);
    session.SelectJournal(options.journal);
    if (!session.workspace.ThisProject())
        throw CliError("There is no project in " + options.files.front() + ".");
    if (words.showsTemplate && !session.workspace.ThisTemplate())
        throw CliError("There is no template in " + options.files.front() + ".");
}

int Run(CliSession& session, const ChartOptions& options, const ChartKind& kind) {
    const ChartWords& words = ChartWordsOf(kind.name);
    CheckOptions(options, words);
    LoadAll(session, options, words);
    ChartFile chart(session, kind);
    ChartForm& form = chart.Form();
    form.TheVwindow().FixedPeriod = PeriodOf(options.scale);
    if (words.set) words.set(form, options, session);
    if (session.Solve() != kExitDone) throw CliError(session.StatusLine(), kExitHalted);
    form.Start();
    if (options.json) session.streams.out << session.WithLosses(words.json(form));
    if (options.out.empty()) return kExitDone;
    if (words.json && EndsWithText(options.out, ".json")) {
        WriteResultFile(session, options.out, words.json(form));
    } else if (words.csv && EndsWithText(options.out, ".csv")) {
        WriteResultFile(session, options.out, words.csv(form));
    } else if (form.IsEmpty()) {
        return kExitHalted;  // as the chart has told
    } else {
        chart.Write(options.out, options.fit);
    }
    return kExitDone;
}

std::vector<Option> CommonOptions(ChartOptions& o, const ChartWords& words) {
    std::vector<Option> list{
        {"FILE", &o.files, "Plan files (.vta, .vtb, .xml), read in this order into one memory", "", true},
        {"-o,--output", &o.out,
         words.json
             ? "File to write: .svg and .png are one picture, a .pdf has pages with headings, .json and "
               ".csv are the data"
             : "File to write: .svg and .png are one picture, a .pdf has pages with headings",
         "OUT", !words.json},
        {"--fit", &o.fit, "Reduce a .pdf to one page"},
        {"--journal", &o.journal, "Show the journal of this date, in all projects that have it", "DATE"},
        ProjectOption(o.project, "The project to show; the first one if not given"),
        {"--template", &o.templateName, "The active template; the first one if not given", "NAME"}};
    if (words.json) list.push_back(JsonOption(o.json));
    if (words.hasTimeScale) {
        list.push_back({"--scale", &o.scale,
                        "day, week, month or quarter; the finest that fits a page if not given", "PERIOD"});
    }
    return list;
}

CliCommand KindCommand(const ChartKind& kind) {
    const ChartWords& words = ChartWordsOf(kind.name);
    const auto values = std::make_shared<ChartOptions>();
    std::vector<Option> list = CommonOptions(*values, words);
    if (words.options) {
        for (const Option& option : words.options(*values)) list.push_back(option);
    }
    return {kind.name, std::string("The ") + kind.title + ", with the user's preferences", std::move(list),
            [values, &kind](CliSession& session) { return Run(session, *values, kind); }};
}

}  // namespace

/// Of the charts that show a solution; commands with results of their own draw theirs.
CliCommand ChartCommand() {
    CliCommand chart{"chart", "Solve plans and draw a chart of them", {}, {}};
    for (const ChartKind& kind : ChartKinds())
        if (kind.needs == ChartNeeds::Solution) chart.kinds.push_back(KindCommand(kind));
    return chart;
}

}  // namespace vortan
