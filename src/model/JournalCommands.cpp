#include "model/JournalCommands.h"

#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/ValueText.h"

namespace vortan {

namespace {

/// All projects of the active project's master, found before any of them moves: parents can differ between
/// journals.
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
        date = ParseDate(text);
        if (!date) platform.Beep();
    }
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
    if (owner->AddJournal(*date)) owner->SetDirty(true);
    AddJournalEverywhere(workspace, *date);
    workspace.BroadcastNewJournal();
    workspace.RestartSolve();
    return !existed;
}

void SelectJournal(Workspace& workspace, const std::string& nodeText) {
    const Section section("Journals:SelectJournal");
    if (nodeText.empty() || nodeText.front() == '<') return;
    const DateTime date = JDate(nodeText);
    if (const Vproject* project = workspace.ThisProject()) {
        if (project->Journal() == date) return;
        ActivateJournal(workspace, date);
    } else if (Vtemplate* active = workspace.ThisTemplate()) {
        active->SetJournal(date);
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
    const auto add = [date](JournalOwner& owner) {
        if (owner.AddJournal(date)) owner.SetDirty(true);
    };
    for (Vproject* project : Relatives(workspace)) add(*project);
    for (Vtemplate* each : workspace.TemplateList()) add(*each);
}

void ActivateJournal(Workspace& workspace, DateTime date) {
    const auto relatives = Relatives(workspace);
    for (const Vproject* project : relatives) {
        if (!project->JournalDefined(date)) Refuse("The specified journal does not exist");
    }
    for (Vproject* project : relatives) project->SetJournal(date);
    for (Vtemplate* each : workspace.TemplateList()) each->AddJournal(date);
}

}  // namespace vortan
