#include <ostream>

#include "cli/Command.h"
#include "cli/JsonWriter.h"
#include "cli/LossesText.h"
#include "cli/Session.h"
#include "persist/Vfile.h"
#include "transfer/Transfer.h"

namespace vortan {

namespace {

struct ConvertOptions {
    std::string from, to, project;
    bool json = false;
};

/// Between the two forms of plan files: the text stays as it is.
void ConvertText(CliSession& session, const std::string& from, const std::string& to) {
    for (const std::string& name : {from, to}) RequirePlanFile(name);
    FileText file;
    if (!ReadFileText(session.platform, from, file)) throw CliError("");
    if (file.packed && (!file.suffixFound || !file.crcMatches)) {
        throw CliError(from + " is damaged: " + DamageText(!file.suffixFound) + ". Nothing was converted.");
    }
    if (!WriteFileText(session.platform, to, file.text)) throw CliError("");
}

/// The dates in the file are those of a solve.
void Export(CliSession& session, const ConvertOptions& options) {
    session.SelectProject(options.project);
    if (!session.workspace.ThisProject()) throw CliError("There is no project in memory to export.");
    if (session.Solve() != kExitDone) session.streams.err << session.StatusLine() << "\n";
    Transfer transfer(session.workspace);
    if (!transfer.ExportToMSProject(options.to)) throw CliError("");
    TellLosses(session.streams.err, transfer.LastLosses(), options.to);
    if (!options.json) return;
    JsonWriter json;
    json.Object([&] { WriteLosses(json, transfer.LastLosses()); });
    session.streams.out << json.Line();
}

int Run(CliSession& session, const ConvertOptions& options) {
    const bool out = IsXmlName(options.to);
    if (!out && !IsXmlName(options.from)) {
        ConvertText(session, options.from, options.to);
        return kExitDone;
    }
    if (!out) RequirePlanFile(options.to);
    session.Load(options.from);
    if (out) {
        Export(session, options);
    } else {
        session.Save(options.to);
    }
    return kExitDone;
}

}  // namespace

Command ConvertCommand() {
    return MakeCommand<ConvertOptions>(
        "convert",
        "Convert between plain (.vta) and packed (.vtb) files, content unchanged, and from and to "
        "Microsoft Project XML (.xml)",
        [](ConvertOptions& o) -> std::vector<Option> {
            return {{"IN", &o.from, "File to read", "", true},
                    {"OUT", &o.to, "File to write", "", true},
                    ProjectOption(o.project, "The project to write as .xml; the first one if not given"),
                    {"--json", &o.json, "Print what could not be written as .xml as one JSON object"}};
        },
        Run);
}

}  // namespace vortan
