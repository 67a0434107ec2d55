#include <ostream>

#include "cli/Command.h"
#include "cli/Session.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "persist/PlanFile.h"
#include "solve/ProblemText.h"

namespace vortan {

namespace {

struct CheckOptions {
    std::string file;
};

std::string Count(int count, const std::string& what) {
    const bool plural = count != 1;
    if (plural && what.ends_with('y'))
        return std::to_string(count) + " " + what.substr(0, what.size() - 1) + "ies";
    return std::to_string(count) + " " + what + (plural ? "s" : "");
}

std::string Journals(const JournalOwner& owner) {
    if (owner.NumJournals() == 0) return "no journals";
    std::string dates;
    for (const DateTime date : owner.JournalDates()) dates += (dates.empty() ? "" : ", ") + FormatDate(date);
    return Count(owner.NumJournals(), "journal") + " (" + dates + ")";
}

void PrintContent(const CliSession& session, const LoadReport& report) {
    std::ostream& out = session.streams.out;
    out << Count(report.templates, "template") << ", " << Count(report.shifts, "shift") << ", "
        << Count(report.resources, "resource") << "\n"
        << Count(report.projects, "project") << ", " << Count(report.tasks, "task") << ", "
        << Count(report.dependencies, "dependency") << ", " << Count(report.assignments, "assignment")
        << "\n";
    for (const Vtemplate* each : session.workspace.TemplateList()) {
        out << "Template " << each->TemplateName() << ": " << Journals(*each) << "\n";
    }
    for (const Vproject* each : session.workspace.ProjectList()) {
        out << "Project " << each->ProjectName() << ": " << Journals(*each);
        if (each->NumJournals() > 0) out << ", active " << each->JournalNodeText(each->CurrentIndex());
        out << "\n";
    }
}

/// What links named and no record completed.
void PrintStubs(const CliSession& session) {
    std::ostream& out = session.streams.out;
    for (const Vtemplate* each : session.workspace.TemplateList()) {
        if (each->NumJournals() == 0) out << "Never completed: template " << each->TemplateName() << "\n";
        for (const Vresource* resource : each->ResourceList()) {
            if (resource->IsStub()) {
                out << "Never completed: resource " << resource->Key() << " of template "
                    << each->TemplateName() << "\n";
            }
        }
    }
    for (const Vproject* each : session.workspace.ProjectList()) {
        if (each->IsStub()) out << "Never completed: project " << each->ProjectName() << "\n";
        for (const Vtask* task : each->TaskList()) {
            if (task->IsStub()) {
                out << "Never completed: task " << task->Key() << " of project " << each->ProjectName()
                    << "\n";
            }
        }
    }
}

/// What an import has made.
int CheckImport(CliSession& session, const std::string& file) {
    session.Load(file);
    LoadReport report;
    for (const Vtemplate* each : session.workspace.TemplateList()) {
        ++report.templates;
        report.shifts += static_cast<int>(each->ShiftList().size());
        report.resources += static_cast<int>(each->ResourceList().size());
    }
    for (const Vproject* project : session.workspace.ProjectList()) {
        ++report.projects;
        for (const Vtask* task : project->TaskList()) {
            ++report.tasks;
            report.dependencies += static_cast<int>(task->DependencyList().size());
            report.assignments += static_cast<int>(task->AssignmentList().size());
        }
    }
    PrintContent(session, report);
    session.streams.out << "No damage found\n";
    return kExitDone;
}

int Run(CliSession& session, const CheckOptions& options) {
    const std::string& file = options.file;
    using Damage = PlanLoad::Damage;
    RequirePlanOrXml(file);
    if (IsXmlName(file)) return CheckImport(session, file);
    PlanLoad load;
    std::string fault;
    try {
        if (!LoadPlan(session.workspace, file, load)) throw CliError("");
    } catch (const Fault& found) {
        fault = found.Description();
    }
    const LoadReport& report = load.report;
    std::ostream& out = session.streams.out;
    PrintContent(session, report);
    PrintStubs(session);
    for (const std::string& missing : report.missingShifts) out << missing << "\n";
    if (report.lineBehindBlank > 0) {
        out << "Text behind a blank line is not read: line " << report.lineBehindBlank << "\n";
    }
    if (load.packed) {
        out << (load.damage == Damage::CutOff     ? "The packed file was cut off before its end.\n"
                : load.damage == Damage::CheckSum ? "The check sum does not match.\n"
                                                  : "The check sum matches.\n");
    }
    if (!fault.empty()) out << fault << "\n";
    if (fault.empty() && load.damage == Damage::None) {
        out << "No damage found\n";
        return kExitDone;
    }
    out << (report.newer && load.damage == Damage::None ? "Written by a newer version\n" : "Damaged\n");
    return kExitUsage;
}

}  // namespace

CliCommand CheckCommand() {
    return MakeCommand<CheckOptions>(
        "check", "Read a file and tell what is in it and whether it is damaged",
        [](CheckOptions& o) -> std::vector<Option> { return {PlanFileOption(o.file)}; }, Run);
}

}  // namespace vortan
