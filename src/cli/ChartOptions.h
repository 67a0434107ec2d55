#pragma once

#include <string>
#include <vector>

#include "charts/ChartForm.h"
#include "cli/Command.h"

/// What can be asked of charts on the command line. What a kind has of its own is a row of a table.
namespace vortan {

struct CliSession;

struct ChartOptions {
    std::vector<std::string> files;
    std::string out, project, templateName, journal, scale;
    bool fit = false;  ///< onto one page
    bool json = false;
    // Gantt chart.
    bool criticalPath = false;
    // Histogram.
    bool byDepartment = false, noCrosshatching = false;
    std::string only;
    // Budget.
    bool plan = false, current = false, earnedValue = false, pastToday = false;
    std::string cost;
    // Precedence diagram.
    std::string style, units;
    // Work breakdown structure.
    int levels = 3;
};

/// What a kind of chart has of its own. The form given is always of that kind.
struct ChartWords {
    const char* kind = "";  ///< of ChartKinds
    bool hasTimeScale = false;
    bool showsTemplate = false;  ///< and so needs one
    std::vector<Option> (*options)(ChartOptions&) = nullptr;
    /// Before the form is started, with the plan loaded. CliError for a value that is none.
    void (*set)(ChartForm&, const ChartOptions&, CliSession&) = nullptr;
    /// What it shows, as data, once started: one JSON object in a line, or a CSV text. None: only the
    /// drawing.
    std::string (*json)(const ChartForm&) = nullptr;
    std::string (*csv)(const ChartForm&) = nullptr;
};

/// One that is not listed is only drawn.
const ChartWords& ChartWordsOf(std::string_view kind);

/// The names in a list with commas; one with commas or blanks of its own stands in double quotes.
std::vector<std::string> SplitNames(const std::string& list);

}  // namespace vortan
