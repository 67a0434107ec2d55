#pragma once

#include <string>

#include "reports/Table.h"

namespace vortan {

struct XlsxOptions {
    std::string sheetName;       ///< at most 31 characters, without []:*?/ and backslashes
    std::string currencySymbol;  ///< of amounts
};

/// The bytes of a workbook with the table on its one sheet: the caption, the titles, then the rows. Dates,
/// amounts and numbers are such, truths are 1 and 0 that show as Y and n; a date that is not set, or that
/// such sheets do not have, is its text. What is text stays text, whatever it begins with. Fault if the table
/// does not fit a sheet, or memory or the folder for temporary files has no room.
std::string XlsxOf(const Table& table, const XlsxOptions& options);

}  // namespace vortan
