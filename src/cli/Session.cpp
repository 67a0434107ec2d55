#include "cli/Session.h"

#include <algorithm>

#include "cli/JsonWriter.h"
#include "cli/LossesText.h"
#include "cli/TextTable.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtemplate.h"
#include "persist/PlanFile.h"
#include "persist/Vfile.h"
#include "solve/ProblemText.h"

namespace vortan {

namespace {

/// CliError, with the names that there are, if there is none of that name.
template <class T>
T* FindNamed(const std::string& what, const KeyedList<T>& list, const std::string& name) {
    if (T* found = list.Find(name)) return found;
    std::string known;
    for (const T* each : list) known += (known.empty() ? "" : ", ") + each->Key();
    throw CliError("There is no " + what + " \"" + name + "\" in memory. " +
                   (known.empty() ? "There are none." : "There are: " + known + "."));
}

}  // namespace

void RequirePlanFile(const std::string& name) {
    if (!IsPlanFile(name)) {
        throw CliError("The file \"" + name +
                       "\" does not have a recognized type. Plan files end in .vta or .vtb.");
    }
}

void RequirePlanOrXml(const std::string& name) {
    if (!IsPlanFile(name) && !IsXmlName(name)) {
        throw CliError(
            "The file \"" + name +
            "\" does not have a recognized type. Plan files end in .vta or .vtb, those of Microsoft "
            "Project in .xml.");
    }
}

const char* DamageText(bool cutOff) {
    return cutOff ? "it was cut off before its end" : "its check sum does not match";
}

void CliSession::Import(const std::string& fileName) {
    try {
        if (!transfer.ImportMSProject(fileName)) throw CliError("");
    } catch (const Fault& fault) {
        throw CliError(fault.Description());
    }
}

std::string CliSession::WithLosses(const std::string& json) const {
    const auto end = json.rfind('}');
    if (losses.empty() || end == std::string::npos) return json;
    JsonWriter list;
    list.Object([&] { WriteLosses(list, losses); });
    const bool empty = json[end - 1] == '{';
    return json.substr(0, end) + (empty ? "" : ",") + list.Line().substr(1);
}

void CliSession::Load(const std::string& fileName) {
    RequirePlanOrXml(fileName);
    if (IsXmlName(fileName)) return Import(fileName);
    PlanLoad load;
    const auto cutOff = [&] { return load.damage == PlanLoad::Damage::CutOff; };
    try {
        if (!LoadPlan(workspace, fileName, load)) throw CliError("");
    } catch (const Fault& fault) {
        throw CliError(fault.Description() +
                       (cutOff() ? "\nThe packed file was cut off before its end." : ""));
    }
    if (load.damage != PlanLoad::Damage::None) {
        streams.err << "Warning: " << fileName << " is damaged: " << DamageText(cutOff()) << ".\n";
    }
    if (load.report.lineBehindBlank > 0) {
        streams.err << "Warning: " << fileName << " was read up to the blank line before line "
                    << load.report.lineBehindBlank << "; what stands behind it was left out.\n";
    }
    if (!workspace.ThisProject() && !workspace.ProjectList().empty()) {
        workspace.SetThisProject(workspace.ProjectList()[0]);
    }
    if (!workspace.ThisTemplate() && !workspace.TemplateList().empty()) {
        workspace.SetThisTemplate(workspace.TemplateList()[0]);
    }
}

void CliSession::Save(const std::string& fileName) {
    RequirePlanOrXml(fileName);
    if (IsXmlName(fileName)) {
        if (!workspace.ThisProject()) throw CliError("There is no project in memory.");
        if (Solve() != kExitDone) streams.err << StatusLine() << "\n";
        try {
            if (!transfer.ExportToMSProject(fileName)) throw CliError("");
        } catch (const Fault& fault) {
            throw CliError(fault.Description());
        }
        return;
    }
    if (!WriteFileText(platform, fileName, SaveRecords(workspace))) throw CliError("");
}

void CliSession::SelectProject(const std::string& name) {
    if (!name.empty()) workspace.SetThisProject(FindNamed("project", workspace.ProjectList(), name));
}

void CliSession::SelectTemplate(const std::string& name) {
    if (!name.empty()) workspace.SetThisTemplate(FindNamed("template", workspace.TemplateList(), name));
}

std::int32_t CliSession::FindJournal(const std::string& text) const {
    const DateTime date = ParseDateArgument(text);
    const Vproject* active = workspace.ThisProject();
    if (!active) throw CliError("There is no project in memory whose journal could be chosen.");
    const std::vector<DateTime>& dates = active->JournalDates();
    const auto found = std::find(dates.begin(), dates.end(), date);
    if (active->JournalDefined(date)) return static_cast<std::int32_t>(found - dates.begin());
    std::string known;
    for (const DateTime each : dates) {
        if (!known.empty()) known += ", ";
        known += FormatDate(each);
    }
    throw CliError("Project " + active->ProjectName() + " has no journal of " + FormatDate(date) +
                   ". It has: " + known + ".");
}

void CliSession::SelectJournal(const std::string& text) {
    if (text.empty()) return;
    const auto place = static_cast<std::size_t>(FindJournal(text));
    SelectJournal(workspace.ThisProject()->JournalDates()[place]);
}

void CliSession::SelectJournal(DateTime date) {
    for (Vproject* project : workspace.ProjectList()) {
        if (project->JournalDefined(date)) project->SetJournal(date);
    }
}

int CliSession::Solve() {
    solver.RestartSolve();
    solver.SolveTimerTick();
    return solver.Mode() == SolveMode::Idle ? kExitDone : kExitHalted;
}

int CliSession::SolveToIterate() {
    if (!workspace.ThisProject()) throw CliError("There is no project in memory.");
    const int exitCode = Solve();
    if (exitCode != kExitDone) streams.err << StatusLine() << "\n";
    return exitCode;
}

std::string CliSession::StatusLine() const {
    const std::string advice = ExplainProblem(workspace, solver);
    return WrapText(solver.SolveMessage() + (advice.empty() ? "" : ": " + advice), streams.width);
}

DateTime ParseDateArgument(const std::string& text) {
    const auto date = ParseDate(text);
    if (!date) throw CliError("\"" + text + "\" is not a date. Write month/day/year or year-month-day.");
    return *date;
}

}  // namespace vortan
