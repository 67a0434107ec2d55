#include <ostream>

#include "cli/Commands.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "persist/Vfile.h"
#include "solve/ProblemText.h"

namespace vortan {

namespace {

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
            if (resource->Description() == "<stub>") {
                out << "Never completed: resource " << resource->Key() << " of template "
                    << each->TemplateName() << "\n";
            }
        }
    }
    for (const Vproject* each : session.workspace.ProjectList()) {
        if (each->Description() == "<stub>")
            out << "Never completed: project " << each->ProjectName() << "\n";
        for (const Vtask* task : each->TaskList()) {
            if (task->Description() == "<stub>") {
                out << "Never completed: task " << task->Key() << " of project " << each->ProjectName()
                    << "\n";
            }
        }
    }
}

}  // namespace

int CheckCommand(CliSession& session, const std::string& file) {
    const FileType type = FileTypeOf(file);
    if (type != FileType::Bundle && type != FileType::Ascii) {
        throw CliError("The file \"" + file +
                       "\" does not have a recognized type. Plan files end in .vta or .vtb.");
    }
    FileText content;
    if (!ReadFileText(session.platform, file, content)) throw CliError("");
    LoadReport report;
    std::string damage;
    try {
        TokenReader reader(content.text, file, content.packed);
        LoadRecords(session.workspace, reader, report);
    } catch (const Fault& fault) {
        damage = fault.Description();
    }
    std::ostream& out = session.streams.out;
    PrintContent(session, report);
    PrintStubs(session);
    for (const std::string& missing : report.missingShifts) out << missing << "\n";
    if (report.lineBehindBlank > 0) {
        out << "Text behind a blank line is not read: line " << report.lineBehindBlank << "\n";
    }
    bool damaged = !damage.empty();
    if (content.packed) {
        damaged = damaged || !content.suffixFound || !content.crcMatches;
        out << (!content.suffixFound ? "The packed file was cut off before its end.\n"
                : content.crcMatches ? "The check sum matches.\n"
                                     : "The check sum does not match.\n");
    }
    if (!damage.empty()) out << damage << "\n";
    out << (damaged ? "Damaged\n" : "No damage found\n");
    return damaged ? kExitUsage : kExitDone;
}

}  // namespace vortan
