#pragma once

#include <iosfwd>
#include <string>

#include "transfer/Losses.h"

namespace vortan {

class JsonWriter;

/// What a transfer of `fileName` lost, a line each; nothing for none.
void TellLosses(std::ostream& err, const Losses& losses, const std::string& fileName);
/// Of any number of transfers, as a member "losses", which is there even if it is empty.
void WriteLosses(JsonWriter& json, const std::vector<Loss>& losses);

}  // namespace vortan
