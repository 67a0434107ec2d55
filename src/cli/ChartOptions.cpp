#include "cli/ChartOptions.h"

#include <algorithm>

#include "charts/BudgetForm.h"
#include "charts/HistogramForm.h"
#include "cli/ChartData.h"
#include "cli/JsonWriter.h"
#include "cli/Session.h"
#include "model/Fault.h"
#include "model/Vtemplate.h"

namespace vortan {
namespace {

template <class Form>
std::string JsonOf(const ChartForm& form) {
    JsonWriter json;
    WriteChartJson(json, static_cast<const Form&>(form).Data());
    return json.Line();
}

template <class Form>
std::string CsvOf(const ChartForm& form) {
    return ChartCsv(static_cast<const Form&>(form).Data());
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

constexpr ChartWords kWords[] = {
    {.kind = "gantt", .hasTimeScale = true},
    {"histogram", true, true, HistogramOptions, SetHistogram, JsonOf<HistogramForm>, CsvOf<HistogramForm>},
    {"budget", true, false, BudgetOptions, SetBudget, JsonOf<BudgetForm>, CsvOf<BudgetForm>},
};

}  // namespace

const ChartWords& ChartWordsOf(std::string_view kind) {
    const auto* const words = std::find_if(std::begin(kWords), std::end(kWords),
                                           [&](const ChartWords& each) { return each.kind == kind; });
    if (words == std::end(kWords)) AssertionFailed();
    return *words;
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
