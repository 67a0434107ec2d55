#include "cli/Cli.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <optional>
#include <ostream>
#include <variant>

#include "cli/Command.h"
#include "cli/Session.h"
#include "cli/Terminal.h"
#include "model/Build.h"
#include "model/Characters.h"
#include "model/Conventions.h"
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
        AddOption(app_, LocaleOption(locale_));
        app_.fallthrough();
        for (const CliCommand& command : AllCommands()) Add(app_, command);
    }

    CLI::App& App() { return app_; }
    int Run(CliSession& session) const { return run_(session); }
    const std::string& Locale() const { return locale_; }
    /// Whether a program is to read the result.
    bool ForPrograms() const { return ForPrograms(app_); }

    /// Whether the first argument is meant as a command, but is none.
    bool NamesNoCommand(const std::vector<std::string>& arguments) const {
        if (arguments.empty() || arguments.front().starts_with('-')) return false;
        const auto named = [&](const CLI::App* command) { return command->check_name(arguments.front()); };
        return app_.get_subcommands(named).empty();
    }

  private:
    void Add(CLI::App& parent, const CliCommand& command) {
        CLI::App* added = parent.add_subcommand(command.name, command.description);
        added->fallthrough();
        for (const Option& option : command.options) AddOption(*added, option);
        for (const CliCommand& kind : command.kinds) Add(*added, kind);
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

    static bool ForPrograms(const CLI::App& command) {
        const CLI::Option* const json = command.get_option_no_throw("--json");
        if (json && json->count() > 0) return true;
        if (const CLI::Option* const output = command.get_option_no_throw("--output")) {
            for (const std::string& name : output->results())
                if (EndsWithText(name, ".json") || EndsWithText(name, ".csv")) return true;
        }
        const auto all = command.get_subcommands();
        return std::any_of(all.begin(), all.end(), [](const CLI::App* each) { return ForPrograms(*each); });
    }

    std::string locale_;
    CLI::App app_{std::string(kCliPurpose) + "\n" + kCliExitCodes, "vortan-cli"};
    std::function<int(CliSession&)> run_;
};

}  // namespace

std::vector<CliCommand> AllCommands() {
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
    std::optional<CountryHabits> habits;
    if (!line.Locale().empty() && !(habits = HabitsOf(line.Locale()))) {
        streams.err << "This system does not know a locale \"" << line.Locale() << "\".\n";
        return kExitUsage;
    }
    const bool local = habits && !line.ForPrograms();
    const UseConventions conventions(local ? habits->conventions : Conventions());
    CliSession session(streams);
    if (local) session.platform.UseCurrencySymbol(habits->currencySymbol);
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
