#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <variant>

#include "cli/Command.h"
#include "model/ValueText.h"
#include "shell/main/CommandLine.h"

/// Writes the manual pages of both programs and what completes their command lines in three shells, from the
/// descriptions that their help texts are made of. One argument: the folder for the files.
namespace vortan {
namespace {

std::vector<std::string> NamesOf(const Option& option) {
    std::vector<std::string> names;
    std::istringstream list(option.names);
    for (std::string name; std::getline(list, name, ',');) names.push_back(name);
    return names;
}
bool IsPlaced(const Option& option) {
    return option.names[0] != '-';
}
bool IsFlag(const Option& option) {
    return std::holds_alternative<bool*>(option.target);
}
bool IsMany(const Option& option) {
    return std::holds_alternative<std::vector<std::string>*>(option.target);
}

/// A command that is run, with the words that it is called by: "report status".
struct Called {
    std::string words;
    const CliCommand& command;
};

void AddCalled(const std::vector<CliCommand>& commands, const std::string& before, std::vector<Called>& out) {
    for (const CliCommand& command : commands) {
        const std::string words = before.empty() ? command.name : before + " " + command.name;
        if (command.kinds.empty()) out.push_back({words, command});
        AddCalled(command.kinds, words, out);
    }
}

/// Both programs know what every program does.
const char* const kHelpNames[] = {"-h", "--help"};

// ---- manual pages

std::string Roff(std::string_view text) {
    std::string out;
    for (const char c : text) {
        if (c == '\\') {
            out += "\\e";
        } else if (c == '-') {
            out += "\\-";
        } else if (c == '\n') {
            out += ' ';
        } else {
            out += c;
        }
    }
    return out.starts_with('.') || out.starts_with('\'') ? "\\&" + out : out;
}

std::string Head(const char* title, const char* name, std::string_view what) {
    return std::string(".TH ") + title + " 1 \"\" \"VORTAN " + GetAppVersion() +
           "\" \"User Commands\"\n.SH NAME\n" + name + " \\- " + Roff(what) + "\n";
}

std::string Synopsis(const Called& called) {
    std::string out = ".B vortan\\-cli " + Roff(called.words) + "\n";
    bool more = false;
    for (const Option& option : called.command.options) {
        if (!IsPlaced(option)) {
            more = more || !option.required;
            if (option.required)
                out += "\\fB" + Roff(NamesOf(option).front()) + "\\fR \\fI" + option.value + "\\fR\n";
        } else {
            out += std::string(option.required ? "\\fI" : "[\\fI") + Roff(option.names) + "\\fR" +
                   (option.required ? "" : "]") + (IsMany(option) ? "...\n" : "\n");
        }
    }
    return out + (more ? "[\\fIoptions\\fR]\n" : "");
}

std::string ManualOption(const Option& option) {
    std::string out = ".TP\n";
    if (IsPlaced(option)) {
        out += std::string("\\fI") + Roff(option.names) + "\\fR";
    } else {
        std::string between;
        for (const std::string& name : NamesOf(option)) {
            out += between + "\\fB" + Roff(name) + "\\fR";
            between = ", ";
        }
        if (!IsFlag(option)) out += std::string(" \\fI") + Roff(option.value) + "\\fR";
    }
    return out + "\n" + Roff(option.help) + (option.required ? " (required).\n" : ".\n");
}

const char* const kFiles =
    ".SH FILES\n.TP\n.I Vortan.cfg\nThe user's preferences, in $XDG_CONFIG_HOME/vortan (~/.config/vortan), "
    "or "
    "beside the program if it stands there.\n";

std::string CliManual(const std::vector<Called>& all) {
    std::string out =
        Head("VORTAN\\-CLI", "vortan\\-cli", "solve, explain, draw and convert project plans") +
        ".SH SYNOPSIS\n.B vortan\\-cli\n\\fIcommand\\fR [\\fIarguments\\fR]\n.br\n.B vortan\\-cli\n"
        "[\\fIcommand\\fR] \\fB\\-\\-help\\fR\n.SH DESCRIPTION\n" +
        Roff(kCliPurpose) + "\n.SH OPTIONS\n";
    std::string locale;
    out += ManualOption(LocaleOption(locale)) + ".SH COMMANDS\n";
    for (const Called& called : all) {
        out += ".SS " + Roff(called.words) + "\n" + Synopsis(called) + ".PP\n" +
               Roff(called.command.description) + ".\n";
        for (const Option& option : called.command.options) out += ManualOption(option);
    }
    return out + ".SH EXIT STATUS\n" + Roff(std::string_view(kCliExitCodes).substr(11)) + "\n" + kFiles +
           ".SH SEE ALSO\n.BR vortan (1)\n";
}

std::string DesktopManual() {
    std::string out = Head("VORTAN", "vortan", "plan projects on the desktop") +
                      ".SH SYNOPSIS\n.B vortan\n[\\fIFILE\\fR]\n.SH DESCRIPTION\n" + Roff(kProgramPurpose) +
                      "\n.SH OPTIONS\n";
    for (const auto& [name, help] : kProgramOptions)
        out += std::string(".TP\n\\fB") + Roff(name) + "\\fR\n" + Roff(help) + ".\n";
    return out + kFiles + ".SH SEE ALSO\n.BR vortan\\-cli (1)\n";
}

// ---- completion

/// Words that may follow: commands at their places, options behind a whole command. A blank in front of each.
std::string OptionWords(const CliCommand& command) {
    std::string words;
    for (const Option& option : command.options) {
        if (IsPlaced(option)) continue;
        for (const std::string& name : NamesOf(option)) words += " " + name;
    }
    words += " --locale";
    for (const char* name : kHelpNames) words += std::string(" ") + name;
    return words;
}
std::string KindWords(const std::vector<CliCommand>& commands) {
    std::string words;
    for (const CliCommand& command : commands) words += " " + command.name;
    return words;
}

std::string Bash(const std::vector<CliCommand>& commands, const std::vector<Called>& all) {
    std::string out =
        "# bash completion for vortan-cli and vortan\n_vortan_cli() {\n"
        "    local cur=${COMP_WORDS[COMP_CWORD]} words=''\n"
        "    COMPREPLY=()\n"
        "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n        words='" +
        KindWords(commands).substr(1) +
        " --help --version --locale'\n    else\n        case \"${COMP_WORDS[1]} ${COMP_WORDS[2]}\" in\n";
    for (const Called& called : all)
        out += "            '" + called.words + (called.words.find(' ') == std::string::npos ? " '*" : "'") +
               ") words='" + OptionWords(called.command).substr(1) + "' ;;\n";
    for (const CliCommand& command : commands)
        if (!command.kinds.empty())
            out += "            '" + command.name + " '*) words='" + KindWords(command.kinds).substr(1) +
                   " --help' ;;\n";
    return out +
           "        esac\n    fi\n"
           "    if [[ $cur == -* || $COMP_CWORD -eq 1 || $words != -* ]]; then\n"
           "        mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$cur\")\n    fi\n"
           "    [ ${#COMPREPLY[@]} -gt 0 ] || mapfile -t COMPREPLY < <(compgen -f -- \"$cur\")\n}\n"
           "complete -o filenames -F _vortan_cli vortan-cli\n"
           "complete -o filenames -f -X '!*.vt[ab]' -o plusdirs vortan\n";
}

std::string Quoted(std::string_view text) {
    std::string out = "'";
    for (const char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

std::string Fish(const std::vector<CliCommand>& commands, const std::vector<Called>& all) {
    std::string out =
        "# fish completion for vortan-cli\n"
        "function __vortan_at\n    test (string join ' ' -- (commandline -opc)[2..-1]) = \"$argv\"\nend\n"
        "function __vortan_in\n"
        "    string match -q -- \"$argv *\" (string join ' ' -- (commandline -opc)[2..-1])' '\nend\n";
    const auto words = [&](const std::vector<CliCommand>& list, const std::string& before) {
        for (const CliCommand& command : list)
            out += "complete -c vortan-cli -f -n '__vortan_at " + before + "' -a " + command.name + " -d " +
                   Quoted(command.description) + "\n";
    };
    words(commands, "");
    std::string locale;
    out += "complete -c vortan-cli -l locale -r -d " + Quoted(LocaleOption(locale).help) + "\n";
    for (const CliCommand& command : commands) words(command.kinds, command.name);
    for (const Called& called : all) {
        for (const Option& option : called.command.options) {
            if (IsPlaced(option)) continue;
            out += "complete -c vortan-cli -n '__vortan_in " + called.words + "'";
            for (const std::string& name : NamesOf(option))
                out += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
            out += std::string(IsFlag(option) ? "" : " -r") + " -d " + Quoted(option.help) + "\n";
        }
    }
    return out;
}

/// In the brackets of an argument of _arguments, some letters have a meaning.
std::string ZshText(std::string_view text) {
    std::string out;
    for (const char c : text)
        out += (c == '[' || c == ']' || c == ':' || c == '\\') ? std::string("\\") + c : std::string(1, c);
    return out;
}

std::string ZshDescribe(const std::vector<CliCommand>& list, const std::string& depth) {
    std::string out = depth + "local -a names=(";
    for (const CliCommand& command : list)
        out += "\n" + depth + "    " + Quoted(command.name + ":" + ZshText(command.description));
    return out + ")\n" + depth + "_describe command names\n";
}

std::string Zsh(const std::vector<CliCommand>& commands, const std::vector<Called>& all) {
    std::string out = "#compdef vortan-cli\n\nif (( CURRENT == 2 )); then\n" + ZshDescribe(commands, "    ") +
                      "    return\nfi\ncase \"$words[2] $words[3]\" in\n";
    for (const Called& called : all) {
        const bool kind = called.words.find(' ') != std::string::npos;
        // Options are counted from the last word of the command.
        out += "    (" + (kind ? Quoted(called.words) : Quoted(called.words + " ") + "*") + ")\n        " +
               (kind ? "(( CURRENT > 3 )) && { shift 2 words; (( CURRENT -= 2 )) }"
                     : "shift words; (( CURRENT -= 1 ))") +
               "\n        _arguments";
        for (const Option& option : called.command.options) {
            if (IsPlaced(option)) continue;
            for (const std::string& name : NamesOf(option))
                out += " \\\n            " +
                       Quoted(name + "[" + ZshText(option.help) + "]" +
                              (IsFlag(option) ? "" : std::string(":") + option.value + ":_files"));
        }
        out += " \\\n            '--locale:NAME:' '*:file:_files' ;;\n";
    }
    for (const CliCommand& command : commands)
        if (!command.kinds.empty())
            out += "    (" + Quoted(command.name + " ") + "*)\n" + ZshDescribe(command.kinds, "        ") +
                   "        ;;\n";
    return out + "esac\n";
}

}  // namespace

/// Whether all files were written to `folder`.
bool MakeManual(const std::filesystem::path& folder) {
    const std::vector<CliCommand> commands = AllCommands();
    std::vector<Called> all;
    AddCalled(commands, "", all);
    const std::pair<const char*, std::string> files[] = {{"vortan-cli.1", CliManual(all)},
                                                         {"vortan.1", DesktopManual()},
                                                         {"vortan-cli.bash", Bash(commands, all)},
                                                         {"vortan-cli.fish", Fish(commands, all)},
                                                         {"_vortan-cli", Zsh(commands, all)}};
    for (const auto& [name, text] : files) {
        std::ofstream file(folder / name, std::ios::binary);
        if (!(file << text << std::flush)) return false;
    }
    return true;
}

}  // namespace vortan

int main(int argc, char** argv) {
    if (argc == 2 && vortan::MakeManual(argv[1])) return 0;
    std::cerr << "The manual pages could not be written. Use: vortan_describe FOLDER\n";
    return 1;
}
