#include "cli/ChartOptions.h"

#include <algorithm>
#include <span>

#include "charts/BudgetForm.h"
#include "charts/GanttForm.h"
#include "charts/HistogramForm.h"
#include "charts/PrecedenceForm.h"
#include "charts/WorkBreakdownForm.h"
#include "cli/ChartData.h"
#include "cli/JsonWriter.h"
#include "cli/Session.h"
#include "model/Vtemplate.h"
#include "reports/ChartTables.h"
#include "reports/CsvFile.h"

namespace vortan {
namespace {

template <class Form>
std::string JsonOf(const ChartForm& form) {
    JsonWriter json;
    WriteChartJson(json, static_cast<const Form&>(form).Data());
    return json.Line();
}

std::string DataOf(const ChartForm& form) {
    return DataCsvOf(*TableOf(form, ""));
}

// ---- gantt chart

std::vector<Option> GanttOptions(ChartOptions& o) {
    return {{"--critical-path", &o.criticalPath, "Draw the critical path in red"}};
}

void SetGantt(ChartForm& form, const ChartOptions& options, CliSession&) {
    if (options.criticalPath) static_cast<GanttForm&>(form).SetCriticalRed();
}

// ---- histogram

std::vector<Option> HistogramOptions(ChartOptions& o) {
    return {{"--by-department", &o.byDepartment, "A bar for each department instead of each resource"},
            {"--no-crosshatching", &o.noCrosshatching, "Tell bars apart by colour alone"},
            {"--only", &o.only,
             "Show these alone: departments, descriptions or numbers of resources, with commas between; "
             "in double quotes where a name has a comma",
             "NAMES"}};
}

/// A resource counts if its department, description or ResourceID is among the names.
HistogramFilter FilterOf(const std::string& list, const CliSession& session) {
    HistogramFilter filter;
    for (const std::string& name : SplitNames(list)) {
        bool known = false;
        for (const Vresource* resource : session.workspace.ThisTemplate()->ResourceList()) {
            if (resource->Department() == name) {
                filter.departments.insert(name);
                known = true;
            }
            if (resource->Description() == name || resource->Key() == name) {
                filter.resources.insert(resource->ResourceID());
                known = true;
            }
        }
        if (!known) {
            session.streams.err << "Warning: template " << session.workspace.ThisTemplate()->TemplateName()
                                << " has no department or resource \"" << name << "\".\n";
        }
    }
    return filter;
}

void SetHistogram(ChartForm& form, const ChartOptions& options, CliSession& session) {
    auto& histogram = static_cast<HistogramForm&>(form);
    histogram.SetByDepartment(options.byDepartment);
    histogram.SetCrosshatching(!options.noCrosshatching);
    if (!options.only.empty()) histogram.SetFilter(FilterOf(options.only, session));
}

// ---- budget

std::vector<Option> BudgetOptions(ChartOptions& o) {
    return {
        {"--plan", &o.plan, "The curves of the plan; with --current those of both, as if neither is given"},
        {"--current", &o.current, "The curves of the journal in force"},
        {"--earned-value", &o.earnedValue, "What was budgeted, earned and spent, instead of both"},
        {"--cost", &o.cost, "Of material, labor, total, with commas between; all if not given", "COSTS"},
        {"--past-today", &o.pastToday, "Draw current curves beyond the date of the journal"}};
}

void SetBudget(ChartForm& form, const ChartOptions& options, CliSession&) {
    BudgetChoice choice;
    if (options.plan || options.current || options.earnedValue) {
        choice.earnedValue = options.earnedValue;
        choice.plan = options.plan && !options.earnedValue;
        choice.current = options.current && !options.earnedValue;
    }
    choice.pastToday = options.pastToday;
    if (!options.cost.empty()) {
        choice.costs = {};
        constexpr const char* names[] = {"material", "labor", "total"};
        for (const std::string& name : SplitNames(options.cost)) {
            const auto* const found = std::find(std::begin(names), std::end(names), name);
            if (found == std::end(names))
                throw CliError("\"" + name + "\" is no cost. There are material, labor and total.");
            choice.costs[static_cast<std::size_t>(found - names)] = true;
        }
    }
    static_cast<BudgetForm&>(form).SetChoice(choice);
}

// ---- precedence diagram

std::vector<Option> PrecedenceOptions(ChartOptions& o) {
    return {{"--style", &o.style, "What a box tells: index, elapsed, date or datetime; index if not given",
             "STYLE"},
            {"--units", &o.units, "Of durations: minutes, hours, days, weeks or months; days if not given",
             "UNITS"}};
}

/// Which of `names`, which stand in the order of `Enum`; nothing for an empty text. CliError if it is none.
template <class Enum>
std::optional<Enum> Named(const std::string& text, const char* what, std::span<const char* const> names) {
    if (text.empty()) return std::nullopt;
    std::string all;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (text == names[i]) return static_cast<Enum>(i);
        all += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + std::string(names[i]);
    }
    throw CliError("\"" + text + "\" is no " + what + ". There are " + all + ".");
}

void SetPrecedence(ChartForm& form, const ChartOptions& options, CliSession&) {
    constexpr const char* styles[] = {"index", "elapsed", "date", "datetime"};
    constexpr const char* units[] = {"minutes", "hours", "days", "weeks", "months"};
    auto& precedence = static_cast<PrecedenceForm&>(form);
    if (const auto style = Named<PrecedenceStyle>(options.style, "style", styles))
        precedence.SetStyle(*style);
    if (const auto unit = Named<PrecedenceUnits>(options.units, "unit", units)) precedence.SetUnits(*unit);
}

std::string PrecedenceJson(const ChartForm& form) {
    JsonWriter json;
    WriteChartJson(json, static_cast<const PrecedenceForm&>(form));
    return json.Line();
}

// ---- work breakdown structure

std::vector<Option> WorkBreakdownOptions(ChartOptions& o) {
    return {{"--levels", &o.levels, "How many levels to expand, 2 at least; 3 if not given", "N"}};
}

void SetWorkBreakdown(ChartForm& form, const ChartOptions& options, CliSession&) {
    if (options.levels < 2) throw CliError("--levels must be 2 or more.");
    static_cast<WorkBreakdownForm&>(form).SetLevels(options.levels);
}

constexpr ChartWords kWords[] = {
    {"gantt", true, false, GanttOptions, SetGantt},
    {"histogram", true, true, HistogramOptions, SetHistogram, JsonOf<HistogramForm>, DataOf},
    {"budget", true, false, BudgetOptions, SetBudget, JsonOf<BudgetForm>, DataOf},
    {"precedence", false, false, PrecedenceOptions, SetPrecedence, PrecedenceJson, DataOf},
    {"wbs", false, false, WorkBreakdownOptions, SetWorkBreakdown, JsonOf<WorkBreakdownForm>, DataOf},
};

}  // namespace

const ChartWords& ChartWordsOf(std::string_view kind) {
    static constexpr ChartWords kOnlyDrawn = {};
    const auto* const words = std::find_if(std::begin(kWords), std::end(kWords),
                                           [&](const ChartWords& each) { return each.kind == kind; });
    return words == std::end(kWords) ? kOnlyDrawn : *words;
}

std::vector<std::string> SplitNames(const std::string& list) {
    std::vector<std::string> names;
    std::string name;
    bool quoted = false, wasQuoted = false;
    const auto end = [&] {
        if (!wasQuoted) {
            name.erase(0, name.find_first_not_of(' '));
            name.erase(name.find_last_not_of(' ') + 1);
        }
        if (!name.empty()) names.push_back(name);
        name.clear();
        wasQuoted = false;
    };
    for (std::size_t i = 0; i < list.size(); ++i) {
        const char c = list[i];
        if (quoted && c == '"' && i + 1 < list.size() && list[i + 1] == '"') {
            name += list[++i];
        } else if (c == '"' && (quoted || name.find_first_not_of(' ') == std::string::npos)) {
            if (!quoted) name.clear();
            quoted = !quoted;
            wasQuoted = true;
        } else if (c == ',' && !quoted) {
            end();
        } else if (!wasQuoted || quoted || c != ' ') {
            name += c;
        }
    }
    end();
    return names;
}

}  // namespace vortan
