#include "cli/Command.h"
#include "cli/Session.h"
#include "persist/Vfile.h"

namespace vortan {

namespace {

struct ConvertOptions {
    std::string from, to;
};

int Run(CliSession& session, const ConvertOptions& options) {
    const auto& [from, to] = options;
    for (const std::string& name : {from, to}) RequirePlanFile(name);
    FileText file;
    if (!ReadFileText(session.platform, from, file)) throw CliError("");
    if (file.packed && (!file.suffixFound || !file.crcMatches)) {
        throw CliError(from + " is damaged: " + DamageText(!file.suffixFound) + ". Nothing was converted.");
    }
    if (!WriteFileText(session.platform, to, file.text)) throw CliError("");
    return kExitDone;
}

}  // namespace

Command ConvertCommand() {
    return MakeCommand<ConvertOptions>(
        "convert", "Convert between plain (.vta) and packed (.vtb) files, content unchanged",
        [](ConvertOptions& o) -> std::vector<Option> {
            return {{"IN", &o.from, "File to read", "", true}, {"OUT", &o.to, "File to write", "", true}};
        },
        Run);
}

}  // namespace vortan
