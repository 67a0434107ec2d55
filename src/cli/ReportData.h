#pragma once

#include <string>

#include "reports/ReportKinds.h"

namespace vortan {

/// A report as one JSON object in a line.
std::string ReportJson(const ReportKind& kind, const Table& table);
/// A report for a terminal of `width` columns; 0 is no limit.
std::string ReportText(const Table& table, int width);

}  // namespace vortan
