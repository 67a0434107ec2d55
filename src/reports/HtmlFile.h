#pragma once

#include <string>

#include "reports/Table.h"

namespace vortan {

/// A page with the table, complete in itself, that prints well. Values stand behind the texts for spreadsheet
/// programs that know where to look. A text that such a program could take for a formula has a character in
/// front that is not seen (U+200B).
std::string HtmlOf(const Table& table);

}  // namespace vortan
