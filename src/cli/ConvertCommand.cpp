#include "cli/Commands.h"
#include "persist/Vfile.h"

namespace vortan {

int ConvertCommand(CliSession& session, const std::string& from, const std::string& to) {
    for (const std::string& name : {from, to}) {
        const FileType type = FileTypeOf(name);
        if (type != FileType::Bundle && type != FileType::Ascii) {
            throw CliError("The file \"" + name +
                           "\" does not have a recognized type. Plan files end in .vta or .vtb.");
        }
    }
    FileText file;
    if (!ReadFileText(session.platform, from, file)) throw CliError("");
    if (file.packed && (!file.suffixFound || !file.crcMatches)) {
        throw CliError(from + " is damaged: " +
                       (file.suffixFound ? "its check sum does not match" : "it was cut off before its end") +
                       ". Nothing was converted.");
    }
    if (!WriteFileText(session.platform, to, file.text)) throw CliError("");
    return kExitDone;
}

}  // namespace vortan
