#pragma once

#include <functional>
#include <memory>
#include <string>

#include "charts/ChartForm.h"
#include "cli/Commands.h"
#include "persist/Settings.h"

/// Charts as the desktop would show or print them, in files.
namespace vortan {

using ChartMaker = std::function<std::unique_ptr<ChartForm>(Settings& settings, const TextMetrics& metrics)>;

/// CliError unless the name ends in .svg, .png or .pdf. To be asked before any work is done.
void RequireChartFile(const std::string& fileName);

/// Makes a chart in the font that the user has chosen for the form of that name, and writes it: one picture,
/// or a PDF cut into pages with headings, with `fit` reduced to one page. CliError if that fails.
void WriteChart(CliSession& session, const std::string& fileName, const std::string& formName, bool fit,
                const ChartMaker& make);

}  // namespace vortan
