#include <ostream>

#include "cli/Command.h"
#include "cli/Session.h"
#include "persist/Vfile.h"

namespace vortan {

namespace {

struct ConvertOptions {
    std::string from, to, project;
    bool json = false;
};

/// Between the two forms of plan files: the text stays as it is.
void ConvertText(CliSession& session, const std::string& from, const std::string& to) {
    FileText file;
    if (!ReadFileText(session.platform, from, file)) throw CliError("");
    if (file.packed && (!file.suffixFound || !file.crcMatches)) {
        throw CliError(from + " is damaged: " + DamageText(!file.suffixFound) + ". Nothing was converted.");
    }
    if (!WriteFileText(session.platform, to, file.text)) throw CliError("");
}

int Run(CliSession& session, const ConvertOptions& options) {
    for (const std::string& name : {options.from, options.to}) RequirePlanOrXml(name);
    if (IsXmlName(options.to) || IsXmlName(options.from)) {
        session.Load(options.from);
        session.SelectProject(options.project);
        session.Save(options.to);
    } else {
        ConvertText(session, options.from, options.to);
    }
    if (options.json) session.streams.out << session.WithLosses("{}\n");
    return kExitDone;
}

}  // namespace

CliCommand ConvertCommand() {
    return MakeCommand<ConvertOptions>(
        "convert",
        "Convert between plain (.vta) and packed (.vtb) files, content unchanged, and from and to "
        "Microsoft Project XML (.xml)",
        [](ConvertOptions& o) -> std::vector<Option> {
            return {{"IN", &o.from, "File to read", "", true},
                    {"OUT", &o.to, "File to write", "", true},
                    ProjectOption(o.project, "The project to write as .xml; the first one if not given"),
                    {"--json", &o.json, "Print what could not be carried over as one JSON object"}};
        },
        Run);
}

}  // namespace vortan
