#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vortan {

/// Guards the plan files of one program against other programs and users: a lock file beside each plan that
/// is open, and what each held when it was last read or written. Where a folder takes no lock file, there is
/// none.
class PlanGuard {
  public:
    PlanGuard() = default;
    ~PlanGuard() { Release(); }
    PlanGuard(const PlanGuard&) = delete;
    PlanGuard& operator=(const PlanGuard&) = delete;

    /// Locks a plan file for this program; `now` is told to others. Returns who has it instead, as "ann on
    /// shed since 9/3/2001"; empty: nobody else. The lock of a process that is gone is taken over.
    std::string Lock(const std::string& fileName, const std::string& now);
    /// The plan file has been read or written; `mark` is its ContentMark.
    void Know(const std::string& fileName, std::uint64_t mark) { marks_[Whole(fileName)] = mark; }
    /// 0: not known.
    std::uint64_t Known(const std::string& fileName) const;
    /// Whether a file that is known holds something else now. One that is gone does not.
    bool ChangedElsewhere(const std::string& fileName) const;
    /// Gives up all locks and forgets all files.
    void Release();

  private:
    /// One name for a file, however it is written.
    static std::string Whole(const std::string& fileName);

    std::map<std::string, std::uint64_t> marks_;
    std::vector<std::string> locks_;  ///< names of the lock files
};

/// What a program notes beside its automatic backups while they hold work that no saved file has: the way
/// back after a crash.
struct BackupNote {
    std::string noteFile, backupFile;
    std::uint64_t backupMark = 0;  ///< of what it held
    std::string planFile;          ///< empty: the plan was never saved
    std::uint64_t planMark = 0;    ///< of that file as the program knew it; 0: it did not
    std::string when;              ///< of the backup
};

/// Writes the note of this program, in place of an older one. False: it cannot.
bool WriteBackupNote(const std::string& directory, const BackupNote& note);
/// Removes the note of this program.
void RemoveBackupNote(const std::string& directory);
/// Removes the note that a program left behind, unless its name is this program's by now.
void DropNote(const BackupNote& note);
/// Notes of programs that ended without removing them. Those whose backup holds something else by now, or is
/// gone, are removed.
std::vector<BackupNote> NotesLeftBehind(const std::string& directory);
/// Whether a note, of this program or another, speaks of that backup.
bool IsNoted(const std::string& directory, const std::string& backupFile);

}  // namespace vortan
