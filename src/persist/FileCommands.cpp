#include "persist/FileCommands.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "model/Characters.h"
#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/History.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtemplate.h"
#include "persist/Vfile.h"

namespace vortan {
namespace {

namespace fs = std::filesystem;

bool IsExchangeFile(const std::string& fileName) {
    return EndsWithText(fileName, ".mpp") || EndsWithText(fileName, ".xml");
}

}  // namespace

void FileCommands::StartUp() {
    const Section section("FileCommands:StartUp");
    std::error_code ignored;
    workspace_.FileDialogPath = fs::current_path(ignored).string();
    Steps steps;
    steps.Do([&] { settings_.ReadConfigFile(); });
    workspace_.BackupMinutes = settings_.ThePreferences().backupMinutes;
    steps.End();
}

bool FileCommands::ShutDown() {
    const Section section("FileCommands:ShutDown");
    if (!OkToDeleteAll()) return false;
    if (SolveService* solver = workspace_.Solver()) solver->SuspendSolve();
    workspace_.ThePlatform().ArmSolveTimer(false);
    settings_.WriteConfigFile();
    DeleteAll();
    return true;
}

void FileCommands::AddRecentFile(const std::string& fileName) {
    // A name that depends on the directory of this run means nothing in the next.
    std::error_code error;
    const fs::path whole = fs::absolute(fileName, error);
    settings_.AddRecentFile(error ? fileName : whole.string());
}

bool FileCommands::SaveAll(const std::string& fileName) {
    const Section section("FileCommands:SaveAll");
    if (!IsPlanFile(fileName)) AssertionFailed();
    if (!WriteFileText(workspace_.ThePlatform(), fileName, SaveRecords(workspace_))) return false;
    for (Vproject* project : workspace_.ProjectList()) project->SetDirty(false);
    for (Vtemplate* each : workspace_.TemplateList()) each->SetDirty(false);
    AddRecentFile(fileName);
    return true;
}

bool FileCommands::RequestSave() {
    const Section section("FileCommands:RequestSave");
    const std::string& last = workspace_.LastFileName;
    const InputAnswer chosen = workspace_.ThePlatform().SaveFileDialog(workspace_.FileDialogPath,
                                                                       last.empty() ? "NoName.vtb" : last);
    if (!chosen.given || chosen.text.empty()) return false;
    const std::string directory = fs::path(chosen.text).remove_filename().string();
    if (!directory.empty()) workspace_.FileDialogPath = directory;
    workspace_.LastFileName = chosen.text;
    if (IsPlanFile(chosen.text)) return SaveAll(chosen.text);
    if (!IsExchangeFile(chosen.text)) {
        TellUnrecognized(chosen.text);
    } else if (Export) {
        if (!Export(chosen.text)) return false;
        AddRecentFile(chosen.text);
        bool projects = false, templates = false;
        return !AnyDirty(projects, templates);
    } else {
        workspace_.NotReadyYet();
    }
    return false;
}

bool FileCommands::AnyDirty(bool& projects, bool& templates) const {
    const auto dirty = [](const JournalOwner* owner) { return owner->Dirty(); };
    projects = std::any_of(workspace_.ProjectList().begin(), workspace_.ProjectList().end(), dirty);
    templates = std::any_of(workspace_.TemplateList().begin(), workspace_.TemplateList().end(), dirty);
    return projects || templates;
}

bool FileCommands::OkToDeleteAll() {
    const Section section("FileCommands:OkToDeleteAll");
    bool projects = false, templates = false;
    if (!AnyDirty(projects, templates)) return true;
    const std::string what = projects && templates ? "projects and templates"
                             : projects            ? "projects"
                                                   : "templates";
    switch (workspace_.ThePlatform().MessageBox(
        "Changes have been made to one or more " + what +
            ".\nThese changes exist only in memory and will be lost unless they are saved to disk.\n\n" +
            "Do you want to save all changes to disk?",
        "Save All Changes To Disk", BoxIcon::Question, BoxButtons::YesNoCancel)) {
        case BoxAnswer::Yes:
            return RequestSave();
        case BoxAnswer::No:
            return true;
        default:
            return false;
    }
}

void FileCommands::DeleteAll() {
    const Section section("FileCommands:DeleteAll");
    if (UnloadScreens) UnloadScreens();
    workspace_.ThePlatform().StatusMessage("Clearing memory");
    workspace_.FreeAllMemory();
    workspace_.ThePlatform().StatusMessage("");
    workspace_.RestartSolve();
    workspace_.BroadcastNewThisProject();
    workspace_.BroadcastNewThisTemplate();
}

void FileCommands::FileNew() {
    const Section section("FileCommands:FileNew");
    if (workspace_.ProjectList().empty() && workspace_.TemplateList().empty()) {
        workspace_.ThePlatform().MessageBox(
            "Memory is already empty.  There are no projects or templates loaded.", "Memory Already Empty",
            BoxIcon::Warning, BoxButtons::Ok);
    } else if (OkToDeleteAll()) {
        DeleteAll();
    }
}

void FileCommands::OpenFile(const std::string& fileName) {
    const Section section("FileCommands:OpenFile");
    if (workspace_.ThisProject() || workspace_.ThisTemplate()) {
        const BoxAnswer answer = workspace_.ThePlatform().MessageBox(
            "There are already projects and/or templates loaded into memory.\n"
            "If you do not delete them, then VORTAN will combine the data in " +
                fileName +
                " with the data in memory.\n\nDo you want to delete all templates and projects first?",
            "Delete All Projects and Templates", BoxIcon::Question, BoxButtons::YesNoCancel);
        if (answer == BoxAnswer::Yes) {
            if (!OkToDeleteAll()) return;
            DeleteAll();
        } else if (answer != BoxAnswer::No) {
            return;
        }
    }
    workspace_.LastFileName = fileName;
    AddRecentFile(fileName);
    LoadFile(fileName);
}

bool FileCommands::LoadFile(const std::string& fileName) {
    const Section section("FileCommands:LoadFile");
    bool loaded = false;
    const bool intoNothing = workspace_.ProjectList().empty() && workspace_.TemplateList().empty();
    Steps steps;
    SolveService* solver = workspace_.Solver();
    if (solver) solver->SuspendSolve();
    steps.Do([&] { loaded = LoadByType(fileName); });
    if (!workspace_.ThisProject() && !workspace_.ProjectList().empty()) {
        workspace_.SetThisProject(workspace_.ProjectList()[0]);
    }
    if (!workspace_.ThisTemplate() && !workspace_.TemplateList().empty()) {
        workspace_.SetThisTemplate(workspace_.TemplateList()[0]);
    }
    steps.Do([&] { workspace_.BroadcastNewThisTemplate(); });
    steps.Do([&] { workspace_.BroadcastNewThisProject(); });
    if (solver) steps.Do([&] { solver->ResumeSolve(); });
    if (intoNothing) workspace_.TheHistory().Clear();
    steps.Do([&] { TellWhatIsOdd(fileName); });
    if (TellLosses) steps.Do(TellLosses);
    steps.End();
    return loaded;
}

bool FileCommands::LoadByType(const std::string& fileName) {
    loaded_ = {};
    if (IsPlanFile(fileName)) {
        const Section section("FileCommands:OpenBundle");
        return LoadPlan(workspace_, fileName, loaded_);
    }
    if (!IsExchangeFile(fileName)) {
        TellUnrecognized(fileName);
    } else if (Import) {
        return Import(fileName);
    } else {
        workspace_.NotReadyYet();
    }
    return false;
}

void FileCommands::TellUnrecognized(const std::string& fileName) {
    workspace_.ThePlatform().MessageBox("The file \"" + fileName + "\" does not have a recognized type.",
                                        "File Type Not Recognized", BoxIcon::Stop, BoxButtons::Ok);
}

void FileCommands::TellWhatIsOdd(const std::string& fileName) {
    if (loaded_.damage != PlanLoad::Damage::None) {
        const std::string damage =
            loaded_.damage == PlanLoad::Damage::CutOff
                ? "The end of " + fileName + " is missing: the file may have been cut off."
                : "The check sum of " + fileName + " does not match: the file may be damaged.";
        workspace_.ThePlatform().MessageBox(damage, "File May Be Damaged", BoxIcon::Warning, BoxButtons::Ok);
    }
    const int behindBlank = loaded_.report.lineBehindBlank;
    if (behindBlank == 0) return;
    workspace_.ThePlatform().MessageBox(
        "A blank line ends a file, and in the file \"" + fileName +
            "\" there is text behind one.\nIt begins in line " + std::to_string(behindBlank) +
            " and was not read. If it belongs to the plan, remove the blank line and open the file again.",
        "File Not Read To Its End", BoxIcon::Warning, BoxButtons::Ok);
}

void FileCommands::AutoBackupTick() {
    const Section section("FileCommands:AutoBackupTick");
    if (workspace_.ProjectList().empty() || workspace_.BackupMinutes <= 0) return;
    const DateTime now = workspace_.ThePlatform().Now();
    const DateParts parts = ToParts(now);
    if (parts.minute % workspace_.BackupMinutes != 0) return;
    const double minute = now.WholeDay() * kMinutesPerDay + parts.hour * 60 + parts.minute;
    if (minute == lastBackup_) return;
    lastBackup_ = minute;  // first, as a box about a failure lets the timer go on
    const std::string directory = workspace_.ThePlatform().BackupDirectory();
    std::error_code ignored;  // writing tells soon enough
    fs::create_directories(directory, ignored);
    char name[32];
    std::snprintf(name, sizeof name, "Backup%02d.vtb", parts.minute);
    SaveAll((fs::path(directory) / name).string());
}

}  // namespace vortan
