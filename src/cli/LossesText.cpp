#include "cli/LossesText.h"

#include <ostream>

#include "cli/JsonWriter.h"

namespace vortan {

void TellLosses(std::ostream& err, const Losses& losses, const std::string& fileName) {
    if (losses.Empty()) return;
    err << "Warning: " << fileName << ": not all could be carried over (" << losses.List().size() << "):\n"
        << losses.Text();
}

void WriteLosses(JsonWriter& json, const std::vector<Loss>& losses) {
    json.ArrayMember("losses", [&] {
        for (const Loss& loss : losses) {
            json.Object([&] {
                json.Member("object", loss.object);
                json.Member("what", loss.what);
                json.Member("why", loss.why);
                json.Member("instead", loss.instead);
            });
        }
    });
}

}  // namespace vortan
