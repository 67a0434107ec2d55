#include <ostream>

#include "cli/Command.h"
#include "cli/Session.h"
#include "persist/Vfile.h"

namespace vortan {

namespace {

struct ConvertOptions {
    std::string from, to;
    bool json = false;
};

int Run(CliSession& session, const ConvertOptions& options) {
    const auto& [from, to, json] = options;
    for (const std::string& name : {from, to}) RequirePlanOrXml(name);
    if (IsXmlName(from) || IsXmlName(to)) {
        session.Load(from);
        session.Save(to);
        if (json) session.streams.out << session.WithLosses("{}\n");
        return kExitDone;
    }
    FileText file;
    if (!ReadFileText(session.platform, from, file)) throw CliError("");
    if (file.packed && (!file.suffixFound || !file.crcMatches)) {
        throw CliError(from + " is damaged: " + DamageText(!file.suffixFound) + ". Nothing was converted.");
    }
    if (!WriteFileText(session.platform, to, file.text)) throw CliError("");
    if (json) session.streams.out << "{}\n";
    return kExitDone;
}

}  // namespace

Command ConvertCommand() {
    return MakeCommand<ConvertOptions>(
        "convert",
        "Convert between plain (.vta) and packed (.vtb) files, content unchanged, and from and to Microsoft "
        "Project XML (.xml)",
        [](ConvertOptions& o) -> std::vector<Option> {
            return {{"IN", &o.from, "File to read", "", true},
                    {"OUT", &o.to, "File to write", "", true},
                    {"--json", &o.json, "Print what could not be carried over as one JSON object"}};
        },
        Run);
}

}  // namespace vortan
