#include "cli/Cli.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <ostream>

#include "cli/Commands.h"
#include "model/ErrTrap.h"
#include "model/ValueText.h"

namespace vortan {

namespace {

/// A command line taken apart: which command, with its options filled in.
class CommandLine {
  public:
    CommandLine() {
        app_.require_subcommand(1);
        app_.set_version_flag("--version", GetAppVersion());
        AddSolve();
        AddConvert();
        AddCheck();
        AddJournal();
        AddWhy();
        AddRisk();
        AddCrash();
        AddChart();
    }

    CLI::App& App() { return app_; }
    int Run(CliSession& session) const { return run_(session); }

    /// Whether the first argument is meant as a command, but is none.
    bool NamesNoCommand(const std::vector<std::string>& arguments) const {
        if (arguments.empty() || arguments.front().starts_with('-')) return false;
        const auto named = [&](const CLI::App* command) { return command->check_name(arguments.front()); };
        return app_.get_subcommands(named).empty();
    }

  private:
    CLI::App* Command(const char* name, const char* description, std::function<int(CliSession&)> run) {
        CLI::App* command = app_.add_subcommand(name, description);
        command->callback([this, run = std::move(run)] { run_ = run; });
        return command;
    }

    void AddSolve() {
        auto* command = Command("solve", "Solve plans and print their schedules",
                                [this](CliSession& session) { return SolveCommand(session, solve_); });
        command
            ->add_option("FILE", solve_.files, "Plan files (.vta, .vtb), read in this order into one memory")
            ->required()
            ->type_name("");
        command->add_flag("--json", solve_.json, "Print the result as one JSON object");
        command->add_option("--save", solve_.save, "Write the solved plan to this file")->type_name("OUT");
        command->add_option("--journal", solve_.journal, "Solve the journal of this date")->type_name("DATE");
        command->add_option("--project", solve_.project, "The active project; the first one if not given")
            ->type_name("NAME");
    }
    void AddConvert() {
        auto* command =
            Command("convert", "Convert between plain (.vta) and packed (.vtb) files, content unchanged",
                    [this](CliSession& session) { return ConvertCommand(session, from_, to_); });
        command->add_option("IN", from_, "File to read")->required()->type_name("");
        command->add_option("OUT", to_, "File to write")->required()->type_name("");
    }
    void AddCheck() {
        auto* command = Command("check", "Read a file and tell what is in it and whether it is damaged",
                                [this](CliSession& session) { return CheckCommand(session, check_); });
        command->add_option("FILE", check_, "Plan file")->required()->type_name("");
    }
    void AddJournal() {
        auto* command = Command("journal", "List the journals of a plan, add one, set the plan, activate one",
                                [this](CliSession& session) { return JournalCommand(session, journal_); });
        command->add_option("FILE", journal_.file, "Plan file")->required()->type_name("");
        command->add_option("--add", journal_.add, "Add a journal of this date and activate it")
            ->type_name("DATE");
        command->add_option("--plan", journal_.plan, "Make the journal of this date the plan")
            ->type_name("DATE");
        command->add_option("--activate", journal_.activate, "Activate the journal of this date")
            ->type_name("DATE");
        command->add_option("--project", journal_.project, "The active project; the first one if not given")
            ->type_name("NAME");
        command->add_option("--save", journal_.save, "Write the changed plan to this file")->type_name("OUT");
    }
    void AddWhy() {
        auto* command = Command("why", "Explain in plain words why a task lies where it does",
                                [this](CliSession& session) { return WhyCommand(session, why_); });
        command->add_option("FILE", why_.file, "Plan file")->required()->type_name("");
        command->add_option("--task", why_.task, "Number of the task")->required()->type_name("N");
        command->add_option("--project", why_.project, "Its project; the first one if not given")
            ->type_name("NAME");
        command->add_flag("--json", why_.json, "Print the result as one JSON object");
    }
    void AddChart() {
        auto* chart = app_.add_subcommand("chart", "Solve a plan and draw a chart of it");
        chart->require_subcommand(1);
        auto* gantt =
            chart->add_subcommand("gantt", "The Mechanized Gantt chart, with the user's preferences");
        gantt->callback(
            [this] { run_ = [this](CliSession& session) { return ChartCommand(session, chart_); }; });
        gantt->add_option("FILE", chart_.file, "Plan file")->required()->type_name("");
        gantt
            ->add_option("-o,--output", chart_.out,
                         "File to write: .svg and .png are one picture, a .pdf has pages with headings")
            ->required()
            ->type_name("OUT");
        gantt->add_flag("--fit", chart_.fit, "Reduce a .pdf to one page");
        gantt->add_option("--journal", chart_.journal, "Show the journal of this date")->type_name("DATE");
        gantt->add_option("--project", chart_.project, "The project to show; the first one if not given")
            ->type_name("NAME");
    }

    void AddRisk() {
        auto* command = Command("risk", "Repeat a plan with other estimates: how finish and cost spread",
                                [this](CliSession& session) { return RiskCommand(session, risk_); });
        AddIterative(command, risk_);
        command->add_flag(
            "--detailed", risk_.detailed,
            "Solve each iteration with resources and calendars, instead of scaling one solution");
        command->add_option("-n,--iterations", risk_.iterations, "Number of iterations; 100 if not given")
            ->type_name("N");
        command->add_option("--seed", risk_.seed, "Start of the random numbers; 0 if not given")
            ->type_name("S");
    }
    void AddCrash() {
        auto* command =
            Command("crash", "Buy time with larger teams, step by step: the curve of finish and cost",
                    [this](CliSession& session) { return CrashCommand(session, crash_); });
        AddIterative(command, crash_);
        command->add_flag("--detailed", crash_.detailed,
                          "Solve each step with resources and calendars, instead of scaling one solution");
        command
            ->add_option("--increment", crash_.increment,
                         "What a team grows by in a step, 0.1 to 1.0; 0.25 if not given")
            ->type_name("X");
    }
    template <class Options>
    static void AddIterative(CLI::App* command, Options& options) {
        command->add_option("FILE", options.file, "Plan file")->required()->type_name("");
        command->add_option("--project", options.project, "The active project; the first one if not given")
            ->type_name("NAME");
        command->add_flag("--json", options.json, "Print the result as one JSON object");
        command->add_option("-o,--output", options.plot, "Draw the curve into this .svg, .png or .pdf")
            ->type_name("PLOT");
    }

    CLI::App app_{
        "VORTAN, the batch tool: solves, converts, checks and explains project plans.\n"
        "Exit code: 0 done, 1 the solve halted on a problem, 2 bad usage or a file that cannot be read\n"
        "or written, 3 internal fault.",
        "vortan-cli"};
    std::function<int(CliSession&)> run_;
    SolveOptions solve_;
    std::string from_, to_, check_;
    JournalOptions journal_;
    WhyOptions why_;
    RiskOptions risk_;
    CrashOptions crash_;
    ChartOptions chart_;
};

}  // namespace

int RunCli(const std::vector<std::string>& arguments, const CliStreams& streams) {
    CommandLine line;
    if (line.NamesNoCommand(arguments)) {
        streams.err << "There is no command \"" << arguments.front()
                    << "\".\nRun with --help for more information.\n";
        return kExitUsage;
    }
    try {
        line.App().parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        return line.App().exit(error, streams.out, streams.err) == 0 ? kExitDone : kExitUsage;
    }
    CliSession session(streams);
    ErrTrap trap(session.platform);
    int exitCode = kExitInternal;
    trap.RunCommand("Cli:Command_Run", [&] {
        try {
            exitCode = line.Run(session);
        } catch (const CliError& error) {
            if (*error.what()) streams.err << error.what() << "\n";
            exitCode = error.ExitCode();
        }
    });
    streams.out.flush();
    if (exitCode == kExitDone && !streams.out) {
        streams.err << "The result could not be written.\n";
        return kExitUsage;
    }
    return exitCode;
}

}  // namespace vortan
