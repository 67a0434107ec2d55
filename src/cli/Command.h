#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace vortan {

struct CliSession;

/// An option of a command, and where its value goes.
struct Option {
    using Target =
        std::variant<bool*, int*, double*, std::uint64_t*, std::string*, std::vector<std::string>*>;

    const char* names;  ///< as "--json" or "-o,--output"; "FILE" is told by its place
    Target target;      ///< a bool is a flag, which has no value
    const char* help;
    const char* value = "";  ///< what the help text calls the value
    bool required = false;
};

/// One command of the batch tool, good for one run.
struct CliCommand {
    std::string name, description;
    std::vector<Option> options;
    std::function<int(CliSession&)> run;  ///< returns the exit code
    std::vector<CliCommand> kinds{};      ///< if there are some, one of them is to follow and is what is run
};

/// A command whose options are the members of `Options`, with the values that they have at first.
template <class Options>
CliCommand MakeCommand(std::string name, std::string description, std::vector<Option> (*list)(Options&),
                       std::function<int(CliSession&, const Options&)> run) {
    const auto values = std::make_shared<Options>();
    return {std::move(name), std::move(description), list(*values),
            [values, run = std::move(run)](CliSession& session) { return run(session, *values); }};
}

// Options that several commands have.
inline Option PlanFileOption(std::string& file) {
    return {"FILE", &file, "Plan file", "", true};
}
inline Option ProjectOption(std::string& project,
                            const char* help = "The active project; the first one if not given") {
    return {"--project", &project, help, "NAME"};
}
inline Option JsonOption(bool& json) {
    return {"--json", &json, "Print the result as one JSON object"};
}
inline Option PlotOption(std::string& plot) {
    return {"-o,--output", &plot, "Draw the curve into this .svg, .png or .pdf", "PLOT"};
}

/// Of the program as a whole; it may stand in front of a command or among its options.
inline Option LocaleOption(std::string& locale) {
    return {
        "--locale", &locale,
        "Show and read dates and numbers as in this country, such as de_DE; user: as the environment says. "
        "JSON and CSV are not changed",
        "NAME"};
}

/// All of them, in the order of the help text.
std::vector<CliCommand> AllCommands();

// What the help text and the manual page say of the whole.
inline constexpr const char* kCliPurpose =
    "VORTAN, the batch tool: solves, converts, checks and explains project plans.";
inline constexpr const char* kCliExitCodes =
    "Exit code: 0 done, 1 the solve halted on a problem, 2 bad usage or a file that cannot be read\n"
    "or written, 3 internal fault.";

CliCommand SolveCommand();
CliCommand ConvertCommand();
CliCommand CheckCommand();
CliCommand JournalCommand();
CliCommand WhyCommand();
CliCommand RiskCommand();
CliCommand CrashCommand();
CliCommand ShortenCommand();
CliCommand ChartCommand();
CliCommand ReportCommand();
CliCommand StatusReportCommand();  ///< a kind of report
CliCommand PublishCommand();
CliCommand HelpCommand();

}  // namespace vortan
