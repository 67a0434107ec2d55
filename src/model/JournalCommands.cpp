#include "model/JournalCommands.h"

#include <algorithm>

#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtemplate.h"

namespace vortan {

namespace {

/// All projects that have the active project's master in the journal in force.
std::vector<Vproject*> Relatives(const Workspace& workspace) {
    std::vector<Vproject*> relatives;
    const Vproject* active = workspace.ThisProject();
    if (!active) return relatives;
    const Vproject* master = active->Master();
    for (Vproject* project : workspace.ProjectList()) {
        if (project->Master() == master) relatives.push_back(project);
    }
    return relatives;
}

bool HasParent(const Vproject& project, const Vproject& parent) {
    for (std::int32_t i = 0; i < project.NumJournals(); ++i) {
        if (project.ParentAt(i) == &parent) return true;
    }
    return false;
}

/// All projects that are tied to the active one by parents in whatever journal. They move together: a
/// project that is linked in a later journal alone would stay behind in an earlier one, and no solve can
/// have projects in different journals.
std::vector<Vproject*> TiedProjects(const Workspace& workspace) {
    std::vector<Vproject*> tied = Relatives(workspace);
    const auto isTied = [&](const Vproject* project) {
        return std::find(tied.begin(), tied.end(), project) != tied.end();
    };
    for (std::size_t next = 0; next < tied.size(); ++next) {
        for (Vproject* other : workspace.ProjectList()) {
            const bool near = HasParent(*other, *tied[next]) || HasParent(*tied[next], *other);
            if (near && !isTied(other)) tied.push_back(other);
        }
    }
    return tied;
}

/// Journals are days; but a journal that came from a file may have a time, and stands for itself.
DateTime JournalDate(const JournalOwner& owner, DateTime date) {
    return owner.JournalDefined(date) ? date : DateTime(date.WholeDay());
}

/// The date of the journal that an entry of a list names.
DateTime JournalOfEntry(const JournalOwner& owner, const std::string& nodeText) {
    const auto whole = ParseDate(nodeText.substr(0, nodeText.find(" [")));
    return whole && owner.JournalDefined(*whole) ? *whole : JDate(nodeText);
}

}  // namespace

bool NewJournal(Workspace& workspace) {
    const Section section("Journals:NewJournal");
    JournalOwner* owner = workspace.ThisProject();
    if (!owner) owner = workspace.ThisTemplate();
    if (!owner) {
        workspace.ThisProjectSet();
        return false;
    }
    Platform& platform = workspace.ThePlatform();
    std::string text;
    std::optional<DateTime> date;
    while (!date) {
        const InputAnswer answer =
            platform.InputBox("Please enter a new journal date:", "Enter New Journal Date", text);
        if (!answer.given || answer.text.empty()) return false;
        text = answer.text;
        date = ParseDate(text, platform.Now());
        if (!date) platform.Beep();
    }
    date = JournalDate(*owner, *date);
    const DateTime before = owner->Journal();
    const bool existed = owner->JournalDefined(*date);
    if (existed && *date == before) {
        platform.MessageBox("The active journal has a date of " + FormatDate(*date) + ".",
                            "Journal Already Active", BoxIcon::Information, BoxButtons::Ok);
    } else if (existed) {
        platform.MessageBox("A journal with the date of " + FormatDate(*date) +
                                " already exists.  VORTAN will now make that journal active.",
                            "Journal Already Exists", BoxIcon::Information, BoxButtons::Ok);
    }
    AddJournalEverywhere(workspace, *date);
    workspace.BroadcastNewJournal();
    workspace.RestartSolve();
    return !existed;
}

void SelectJournal(Workspace& workspace, const std::string& nodeText) {
    const Section section("Journals:SelectJournal");
    if (nodeText.empty() || nodeText.front() == '<') return;
    if (const Vproject* project = workspace.ThisProject()) {
        const DateTime date = JournalOfEntry(*project, nodeText);
        if (project->Journal() == date) return;
        ActivateJournal(workspace, date);
    } else if (Vtemplate* active = workspace.ThisTemplate()) {
        active->SetJournal(JournalOfEntry(*active, nodeText));
    }
    workspace.BroadcastNewJournal();
    workspace.RestartSolve();
}

void SetAsPlan(Workspace& workspace) {
    const Section section("Journals:SetAsPlan");
    const Vproject* active = workspace.ThisProject();
    const auto relatives = Relatives(workspace);
    for (const Vproject* project : relatives) {
        if (project->Journal() == active->Journal()) continue;
        Refuse("Project.Journal (" + FormatDate(project->Journal()) + ") <> ThisProject.Journal (" +
               FormatDate(active->Journal()) + ")");
    }
    for (Vproject* project : relatives) {
        project->SetPlanIndex(project->CurrentIndex());
        project->SetDirty(true);
    }
    workspace.BroadcastNewJournal();
}

void AddJournalEverywhere(Workspace& workspace, DateTime date) {
    if (const Vproject* active = workspace.ThisProject()) date = JournalDate(*active, date);
    for (Vproject* project : TiedProjects(workspace)) project->AddJournal(date);
    for (Vtemplate* each : workspace.TemplateList()) each->AddJournal(date);
}

void ActivateJournal(Workspace& workspace, DateTime date) {
    const Section section("Journals:ActivateJournal");
    for (const Vproject* project : Relatives(workspace)) {
        if (!project->JournalDefined(date)) Refuse("The specified journal does not exist");
    }
    for (Vproject* project : TiedProjects(workspace)) project->AddJournal(date);
    for (Vtemplate* each : workspace.TemplateList()) each->AddJournal(date);
}

}  // namespace vortan
