#include "persist/FileCommands.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "model/Characters.h"
#include "model/Conventions.h"
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
    std::uint64_t mark = 0;
    if (!WriteFileText(workspace_.ThePlatform(), fileName, SaveRecords(workspace_), &mark)) return false;
    guard_.Know(fileName, mark);
    RemoveBackupNote(workspace_.ThePlatform().BackupDirectory());
    for (Vproject* project : workspace_.ProjectList()) project->SetDirty(false);
    for (Vtemplate* each : workspace_.TemplateList()) each->SetDirty(false);
    AddRecentFile(fileName);
    return true;
}

bool FileCommands::RequestSave() {
    const Section section("FileCommands:RequestSave");
    const std::string& last = workspace_.LastFileName;
    for (bool askAgain = true; askAgain;) {
        const InputAnswer chosen = workspace_.ThePlatform().SaveFileDialog(
            workspace_.FileDialogPath, last.empty() ? "NoName.vtb" : last);
        if (!chosen.given || chosen.text.empty()) return false;
        const std::string directory = fs::path(chosen.text).remove_filename().string();
        if (!directory.empty()) workspace_.FileDialogPath = directory;
        askAgain = false;
        if (IsPlanFile(chosen.text) && !MayWrite(chosen.text, askAgain)) continue;
        workspace_.LastFileName = chosen.text;
        return SaveChosen(chosen.text);
    }
    return false;
}

bool FileCommands::SaveChosen(const std::string& fileName) {
    if (IsPlanFile(fileName)) return SaveAll(fileName);
    if (!IsExchangeFile(fileName)) {
        TellUnrecognized(fileName);
    } else if (Export) {
        if (!Export(fileName)) return false;
        AddRecentFile(fileName);
        bool projects = false, templates = false;
        return !AnyDirty(projects, templates);
    } else {
        workspace_.NotReadyYet();
    }
    return false;
}

bool FileCommands::MayWrite(const std::string& fileName, bool& askAgain) {
    Platform& platform = workspace_.ThePlatform();
    const std::string other = guard_.Lock(fileName, NowText());
    if (!other.empty()) {
        askAgain =
            platform.MessageBox("The file " + fileName + " is in use by " + other +
                                    ".\nSave under another name, or cancel and save later.",
                                "File In Use", BoxIcon::Warning, BoxButtons::OkCancel) == BoxAnswer::Ok;
        return false;
    }
    if (!guard_.ChangedElsewhere(fileName)) return true;
    const BoxAnswer answer = platform.MessageBox(
        "The file " + fileName +
            " has been changed by another program or user since it was read or saved here.\nWriting over it "
            "loses those changes.\n\nDo you want to write over it? No lets you choose another name.",
        "File Changed Elsewhere", BoxIcon::Warning, BoxButtons::YesNoCancel);
    askAgain = answer == BoxAnswer::No;
    return answer == BoxAnswer::Yes;
}

bool FileCommands::MayOpen(const std::string& fileName) {
    std::error_code ignored;
    if (!IsPlanFile(fileName) || !fs::exists(fileName, ignored)) return true;
    const std::string other = guard_.Lock(fileName, NowText());
    return other.empty() || workspace_.ThePlatform().MessageBox(
                                "The file " + fileName + " is in use by " + other +
                                    ".\nYou can read it now; changes can only be saved under another name "
                                    "until it is free.\n\n"
                                    "Do you want to open it for reading?",
                                "File In Use", BoxIcon::Question, BoxButtons::YesNo) == BoxAnswer::Yes;
}

std::string FileCommands::NowText() const {
    const UseConventions plain;  // it goes into the lock, for whoever asks
    return FormatDate(workspace_.ThePlatform().Now());
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
    guard_.Release();
    RemoveBackupNote(workspace_.ThePlatform().BackupDirectory());
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
    if (!MayOpen(fileName)) return;
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
        Steps steps;
        bool loaded = false;
        steps.Do([&] { loaded = LoadPlan(workspace_, fileName, loaded_); });
        if (loaded_.mark != 0) guard_.Know(fileName, loaded_.mark);
        steps.End();
        return loaded;
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
    const std::string name = BackupName(parts.minute);
    std::uint64_t mark = 0;
    if (!WriteFileText(workspace_.ThePlatform(), name, SaveRecords(workspace_), &mark)) return;
    AddRecentFile(name);
    bool projects = false, templates = false;
    if (!AnyDirty(projects, templates)) return;
    const std::string& plan = workspace_.LastFileName;
    WriteBackupNote(directory, {"", name, mark, plan, guard_.Known(plan), NowText()});
}

std::string FileCommands::BackupName(int minute) const {
    const std::string directory = workspace_.ThePlatform().BackupDirectory();
    std::error_code ignored;
    char name[64];
    std::snprintf(name, sizeof name, "Backup%02d.vtb", minute);
    std::string whole = (fs::path(directory) / name).string();
    // What a crash right now would need, of this program or another, is left alone.
    for (int number = 2; fs::exists(whole, ignored) && IsNoted(directory, whole); ++number) {
        std::snprintf(name, sizeof name, "Backup%02d-%d.vtb", minute, number);
        whole = (fs::path(directory) / name).string();
    }
    return whole;
}

void FileCommands::OfferBackups() {
    const Section section("FileCommands:OfferBackups");
    for (const BackupNote& note : NotesLeftBehind(workspace_.ThePlatform().BackupDirectory())) {
        const BoxAnswer answer = workspace_.ThePlatform().MessageBox(
            "VORTAN ended before changes to " + (note.planFile.empty() ? "a new plan" : note.planFile) +
                " were saved.\nThe automatic backup of " + note.when + " has them: " + note.backupFile +
                ".\n\nDo you want to keep it?\n"
                "Yes makes it the plan, with changes that are not saved yet.\n"
                "No drops it.\n"
                "Cancel only opens it to look at; it is offered again at the next start.",
            "Automatic Backup Found", BoxIcon::Question, BoxButtons::YesNoCancel);
        if (answer == BoxAnswer::Yes) {
            KeepBackup(note);
            return;
        }
        if (answer == BoxAnswer::No) {
            DropNote(note);
            continue;
        }
        workspace_.LastFileName = note.backupFile;
        LoadFile(note.backupFile);
        MakeAllDirty();
        return;
    }
}

/// The note stays until one of this program is there: no moment is without one.
void FileCommands::KeepBackup(const BackupNote& note) {
    if (!note.planFile.empty() && !MayOpen(note.planFile)) return;
    if (!LoadFile(note.backupFile)) return;
    workspace_.LastFileName = note.planFile;
    if (note.planMark != 0) guard_.Know(note.planFile, note.planMark);
    MakeAllDirty();
    if (WriteBackupNote(workspace_.ThePlatform().BackupDirectory(), note)) DropNote(note);
}

void FileCommands::MakeAllDirty() {
    for (Vproject* project : workspace_.ProjectList()) project->SetDirty(true);
    for (Vtemplate* each : workspace_.TemplateList()) each->SetDirty(true);
}

}  // namespace vortan
