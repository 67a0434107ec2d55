#pragma once

#include <string>

#include "charts/ChartKinds.h"
#include "cli/Session.h"

/// Charts as the desktop would show or print them, in files.
namespace vortan {

/// CliError unless the name ends in .svg, .png or .pdf. To be asked before any work is done.
void RequireChartFile(const std::string& fileName);

/// Makes a chart with the user's preferences and font, and writes it: one picture, or a PDF cut into pages
/// with headings, with `fit` reduced to one page. CliError if that fails.
void WriteChart(CliSession& session, const std::string& fileName, const ChartKind& kind, bool fit);

}  // namespace vortan
