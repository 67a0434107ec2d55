#include "cli/Cli.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <ostream>
#include <variant>

#include "cli/Command.h"
#include "cli/Session.h"
#include "model/Build.h"
#include "model/ErrTrap.h"
#include "model/ValueText.h"

namespace vortan {

namespace {

/// A command line taken apart: which command, with its options filled in.
class CommandLine {
  public:
    CommandLine() {
        app_.require_subcommand(1);
        app_.allow_windows_style_options(false);  // "/dir/plan.vta" is a file everywhere
        app_.set_version_flag("--version", "vortan-cli " + GetAppVersion() + ", " + GetBuildText());
        for (const Command& command : AllCommands()) Add(app_, command);
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
    void Add(CLI::App& parent, const Command& command) {
        CLI::App* added = parent.add_subcommand(command.name, command.description);
        for (const Option& option : command.options) AddOption(*added, option);
        for (const Command& kind : command.kinds) Add(*added, kind);
        if (command.kinds.empty()) {
            added->callback([this, run = command.run] { run_ = run; });
        } else {
            added->require_subcommand(1);
        }
    }
    static void AddOption(CLI::App& command, const Option& option) {
        if (auto* const* flag = std::get_if<bool*>(&option.target)) {
            command.add_flag(option.names, **flag, option.help);
            return;
        }
        std::visit(
            [&](auto* target) {
                command.add_option(option.names, *target, option.help)
                    ->required(option.required)
                    ->type_name(option.value);
            },
            option.target);
    }

    CLI::App app_{std::string(kCliPurpose) + "\n" + kCliExitCodes, "vortan-cli"};
    std::function<int(CliSession&)> run_;
};

}  // namespace

std::vector<Command> AllCommands() {
    return {SolveCommand(), ConvertCommand(), CheckCommand(),   JournalCommand(),
            WhyCommand(),   RiskCommand(),    CrashCommand(),   ShortenCommand(),
            ChartCommand(), ReportCommand(),  PublishCommand(), HelpCommand()};
}

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
