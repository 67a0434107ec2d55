// What the commands of the main window do that no other part of the program does for it.

#include <QApplication>
#include <QClipboard>
#include <algorithm>

#include "charts/GanttForm.h"
#include "model/JournalCommands.h"
#include "model/ValueText.h"
#include "paint/Pictures.h"
#include "paint/Text.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/desk/Printing.h"
#include "shell/entry/TemplateEntryForm.h"
#include "shell/main/MainForm.h"
#include "shell/main/PreferencesForm.h"
#include "shell/pages/CalendarForm.h"
#include "shell/pages/ChartPage.h"
#include "shell/pages/PageSizeForm.h"
#include "shell/problems/ProblemDialogs.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/TemplateTreeForm.h"
#include "shell/trees/Trees.h"

namespace vortan {

void MainForm::FileOpen() {
    const std::string name = ShowOpen(desktop_);
    if (!name.empty()) desktop_.files.OpenFile(name);
}

bool MainForm::MayLose(const Vproject& project) {
    return MayLose(project, "project " + project.ProjectName());
}
bool MainForm::MayLose(const Vtemplate& condemned) {
    return MayLose(condemned, "template " + condemned.TemplateName());
}

bool MainForm::MayLose(const JournalOwner& owner, const std::string& what) {
    if (!owner.Dirty()) return true;
    const BoxAnswer answer = desktop_.platform.MessageBox(
        "Changes have been made to " + what +
            ".  These changes exist only in memory and will be lost unless they are saved to disk.\n\nDo you "
            "want to save all changes in memory to disk?",
        "Save All Changes To Disk", BoxIcon::Question, BoxButtons::YesNoCancel);
    if (answer == BoxAnswer::Cancel) return false;
    return answer != BoxAnswer::Yes || desktop_.files.RequestSave();
}

void MainForm::ProjectDelete() {
    Workspace& workspace = desktop_.workspace;
    if (!workspace.ThisProjectSet()) return;
    const Vproject& active = *workspace.ThisProject();
    if (!MayLose(active)) return;
    const Vproject* master = active.Master();
    std::vector<Vproject*> relatives;
    for (Vproject* relative : workspace.ProjectList()) {
        if (relative->Master() == master) relatives.push_back(relative);
    }
    RemoveProjects(relatives);
}

void MainForm::RemoveProjects(const std::vector<Vproject*>& removed) {
    Workspace& workspace = desktop_.workspace;
    const auto goes = [&](const Vproject* project) {
        return std::find(removed.begin(), removed.end(), project) != removed.end();
    };
    for (Vproject* child : workspace.ProjectList()) {
        if (goes(child->Parent())) child->SetDirty(true);
    }
    for (Vproject* project : removed) {
        project->Delete();
        workspace.FreeVobject(project);
    }
    if (!workspace.ThisProject())
        workspace.SetThisProject(workspace.ProjectList().empty() ? nullptr : workspace.ProjectList()[0]);
    workspace.BroadcastNewThisProject();
    workspace.RestartSolve();
}

void MainForm::TemplateDelete() {
    Workspace& workspace = desktop_.workspace;
    if (!workspace.ThisTemplateSet()) return;
    Vtemplate& active = *workspace.ThisTemplate();
    if (MayLose(active)) RemoveTemplate(active);
}

void MainForm::RemoveTemplate(Vtemplate& removed) {
    Workspace& workspace = desktop_.workspace;
    removed.Delete();
    workspace.FreeVobject(&removed);
    workspace.SetThisTemplate(workspace.TemplateList().empty() ? nullptr : workspace.TemplateList()[0]);
    workspace.BroadcastNewThisTemplate();
    trees_->ProjectTree().RefreshReferences();
}

/// Opens the active template as a double click on its node does.
void MainForm::TemplateModify() {
    if (!desktop_.workspace.ThisTemplateSet()) return;
    trees_->SetDragNode(&trees_->FindNodeFromObject(desktop_.workspace.ThisTemplate()));
    TemplateEntryForm::StartModify(desktop_);
}

void MainForm::JournalSelect() {
    QComboBox& box = boxes_->JournalCombo();
    if (!box.isEnabled()) {
        desktop_.workspace.WarnNotInMemory(false);
        return;
    }
    box.setFocus();
    box.showPopup();
}

void MainForm::JournalSetAsPlan() {
    if (!desktop_.workspace.ThisProjectSet()) return;
    SetAsPlan(desktop_.workspace);
    boxes_->UpdateJournalCombo();
}

void MainForm::CantCreateDepartment() {
    desktop_.platform.MessageBox(
        "Departments do not need to be explicitly created.  If you use a department name for a resource that "
        "hasn't been used before, the department will be created automatically.",
        "Can't Create Department", BoxIcon::Information, BoxButtons::Ok);
}

// ---- charts

void MainForm::TogglePage(const char* name, bool allowed, const std::function<void()>& start) {
    UpdateChecks();  // the click has turned the mark over
    if (!allowed) return;
    if (fullPage_ && fullPage_->FormName() == name) {
        fullPage_->Unload();
    } else {
        start();
    }
}

void MainForm::GraphicsGantt() {
    TogglePage("GanttForm", desktop_.workspace.ThisProjectSolved(), [this] {
        ChartPage::Start(desktop_, "GanttForm", [this](const TextMetrics& metrics) {
            auto chart = std::make_unique<GanttForm>(desktop_.workspace, desktop_.settings, metrics);
            chart->PreferencesCommandClick = [this] { PreferencesForm::Start(desktop_); };
            return chart;
        });
    });
}

void MainForm::GraphicsRiskAnalysis() {
    TogglePage("RiskForm", desktop_.workspace.ThisProjectSet(), [this] { StartRiskForm(); });
}

void MainForm::GraphicsCrashAnalysis() {
    TogglePage("CrashForm", true, [this] {
        if (!desktop_.iterative.Results().crashList.empty()) {
            StartCrashForm();
            return;
        }
        desktop_.platform.MessageBox(
            "Crash data is unavailable.  To create crash data, please perform an iterative crash solve.",
            "Crash Data Unavailable", BoxIcon::Information, BoxButtons::Ok);
    });
}

/// The page in front in the title, and a check mark at its command.
void MainForm::UpdateChecks() {
    static constexpr std::pair<const char*, const char*> kPages[] = {
        {"GraphicsGanttMenu", "GanttForm"},
        {"GraphicsRiskAnalysisMenu", "RiskForm"},
        {"GraphicsCrashAnalysisMenu", "CrashForm"}};
    for (const auto& [menu, form] : kPages) {
        Action(menu).setCheckable(true);
        Action(menu).setChecked(fullPage_ && fullPage_->FormName() == form);
    }
    const QString title = Q("VORTAN " + GetAppVersion());
    setWindowTitle(fullPage_ ? title + " - " + fullPage_->Window().windowTitle() : title);
}

// ---- commands whose screens are yet to come

void MainForm::Chart() {
    if (desktop_.workspace.ThisProjectSolved()) desktop_.workspace.NotReadyYet();
}

void MainForm::SpreadsheetType(int index) {
    enum class Guard { Template, Project, Solved };
    static constexpr Guard kGuards[] = {Guard::Template, Guard::Project,  Guard::Solved,   Guard::Solved,
                                        Guard::Template, Guard::Template, Guard::Template, Guard::Solved,
                                        Guard::Solved,   Guard::Project};
    Workspace& workspace = desktop_.workspace;
    const Guard guard = kGuards[index - 1];
    if (guard == Guard::Template && !workspace.ThisTemplateSet()) return;
    if (guard == Guard::Project && !workspace.ThisProjectSet()) return;
    if (guard == Guard::Solved && !workspace.ThisProjectSolved()) return;
    constexpr int kProjectUpdate = 4;
    const Vproject* project = workspace.ThisProject();
    if (index == kProjectUpdate && project->PlanIndex() == project->CurrentIndex()) {
        desktop_.platform.MessageBox(
            "This spreadsheet requires the current journal to be different from the plan journal.",
            "Plan Equals Current", BoxIcon::Warning, BoxButtons::Ok);
        return;
    }
    workspace.NotReadyYet();
}

void MainForm::Calendar() {
    TogglePage("CalendarForm", desktop_.workspace.ThisTemplateSet(),
               [this] { CalendarForm::Start(desktop_); });
}

void MainForm::DisplayHelpPage(const std::string&) {
    desktop_.workspace.NotReadyYet();
}

void MainForm::ContextHelp() {
    desktop_.workspace.NotReadyYet();
}

/// What halted the solve, and the way out. Not while an entry form is open: its dialogs would close it.
void MainForm::SolvePanelClick() {
    if (!EntryFormOpen()) vortan::SolvePanelClick(desktop_);
}

// ---- the form in front

/// The dialog on top, else the page in front, else the tree that was used last.
ChildForm* MainForm::ActiveForm() const {
    for (auto form = forms_.rbegin(); form != forms_.rend(); ++form) {
        if ((*form)->Class() == FormClass::EntryForm) return *form;
    }
    return fullPage_ ? fullPage_ : lastPane_;
}

void MainForm::NotSupported(ChildForm& form, const std::string& word) {
    std::string title = word;
    title.front() = static_cast<char>(title.front() - 'a' + 'A');
    const std::string name = S(form.FormName());
    desktop_.platform.MessageBox(
        "The " + word + " function is not supported for " + name.substr(0, name.size() - 4) + ".",
        title + " Not Supported", BoxIcon::Information, BoxButtons::Ok);
}

ChildForm* MainForm::SurfaceToOutput(const std::string& word) {
    ChildForm* form = ActiveForm();
    const auto shown = form ? form->Surface() : std::nullopt;
    if (shown && shown->surface.IsComplete()) return form;
    if (form && !shown) {
        NotSupported(*form, word);
    } else {
        desktop_.platform.MessageBox("There is nothing to " + word + ".", "Not Applicable",
                                     BoxIcon::Information, BoxButtons::Ok);
    }
    return nullptr;
}

void MainForm::OutputPrint() {
    if (ChildForm* form = SurfaceToOutput("print")) PageSizeForm::Wakeup(desktop_, *form);
}

void MainForm::OutputCopy() {
    ChildForm* form = SurfaceToOutput("copy");
    if (!form) return;
    QApplication::clipboard()->setMimeData(ClipboardData(*form->Surface()).release());
    Note("Copied to the clipboard");
}

void MainForm::SetupFont() {
    ChildForm* form = ActiveForm();
    if (!form) {
        desktop_.platform.MessageBox("There is no active window.", "Not Applicable", BoxIcon::Information,
                                     BoxButtons::Ok);
    } else if (!form->ChangeFont()) {
        NotSupported(*form, "font");
    }
}

/// Everything that fits itself to the page is drawn anew.
void MainForm::SetupPrinter() {
    if (printing_->ShowPrinter(this)) desktop_.workspace.BroadcastNewSolution();
}

}  // namespace vortan
