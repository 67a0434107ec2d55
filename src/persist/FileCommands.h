#pragma once

#include <functional>
#include <string>

#include "model/Workspace.h"
#include "persist/PlanFile.h"
#include "persist/PlanGuard.h"
#include "persist/Settings.h"

namespace vortan {

/// The file commands of the program and the rules around them. Memory holds any number of projects and
/// templates, a file holds them all at once, and reading a file adds to memory unless the user says
/// otherwise. Each public procedure is meant to run as one command in the error trap.
class FileCommands {
  public:
    /// Both must outlive the object.
    FileCommands(Workspace& workspace, Settings& settings) : workspace_(workspace), settings_(settings) {}
    FileCommands(const FileCommands&) = delete;
    FileCommands& operator=(const FileCommands&) = delete;

    /// Exchange with files of Microsoft Project (".mpp", ".xml"): read into memory, or write the active
    /// project. False: it was not done, which the user has been told. Without one, the command answers that
    /// it is not ready yet.
    std::function<bool(const std::string&fileName)> Import, Export;
    /// Shows what an import could not carry over. Called when all screens have been told of a file that was
    /// read.
    std::function<void()> TellLosses;
    /// Closes every screen that shows what is about to be cleared.
    std::function<void()> UnloadScreens;

    /// Before the first command: the directory of the file dialogs and the period of the backup. Reads the
    /// settings, whose fault it passes on with everything done.
    void StartUp();
    /// The close of the program. False: the user wants to stay, and nothing has changed. True: the settings
    /// are written, memory is empty, and no solve will run any more.
    bool ShutDown();

    /// Writes everything in memory to a bundle or ASCII file. Nothing is dirty once the file is safely
    /// written. False: it was not, which the user has been told. Another type is a fault.
    bool SaveAll(const std::string& fileName);
    /// Asks for a name and saves under it. A file that somebody else has open, or that is no more what was
    /// read from it, is not written over without a question. True only if nothing in memory is dirty now.
    bool RequestSave();
    /// Whether memory may be thrown away: nothing is dirty, or the user saved it or gave it up.
    bool OkToDeleteAll();
    /// Empties memory without a question.
    void DeleteAll();

    void FileNew();
    /// Reads a file, after asking what is to become of what is in memory.
    void OpenFile(const std::string& fileName);
    /// Adds what a file holds to memory without a question. Makes its first project and template the active
    /// ones if there are none, tells everyone, and has everything solved. False: nothing was read, which the
    /// user has been told. A fault about a damaged file goes on to the caller when all that is done; what was
    /// read up to the damage stays.
    bool LoadFile(const std::string& fileName);
    /// What the file last read held.
    const LoadReport& LastReport() const { return loaded_.report; }

    /// The event of a timer of 10 seconds: saves a backup when it is time for one. What only a backup has is
    /// not saved: it stays dirty.
    void AutoBackupTick();
    /// At the start of the program: asks what is to become of backups that programs left behind when they
    /// crashed with unsaved changes. Kept, one becomes the plan, dirty; looked at, it is opened under its own
    /// name; dropped, it is not offered again.
    void OfferBackups();

  private:
    bool AnyDirty(bool& projects, bool& templates) const;
    /// Whether a plan may be saved there now; asks and tells the user. `askAgain`: under another name.
    bool MayWrite(const std::string& fileName, bool& askAgain);
    bool SaveChosen(const std::string& fileName);
    /// Locks a plan that is opened. False: another has it, and the user does not want to read it.
    bool MayOpen(const std::string& fileName);
    void KeepBackup(const BackupNote& note);
    void MakeAllDirty();
    std::string BackupName(int minute) const;
    std::string NowText() const;
    void AddRecentFile(const std::string& fileName);
    bool LoadByType(const std::string& fileName);
    void TellUnrecognized(const std::string& fileName);
    void TellWhatIsOdd(const std::string& fileName);

    Workspace& workspace_;
    Settings& settings_;
    PlanGuard guard_;
    PlanLoad loaded_;         // the file last read
    double lastBackup_ = -1;  // the minute of the last backup, counted from date 0
};

}  // namespace vortan
