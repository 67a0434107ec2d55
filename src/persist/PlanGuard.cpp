#include "persist/PlanGuard.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "persist/DiskFile.h"
#include "persist/Vfile.h"

namespace vortan {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestNote = 1 << 16;
constexpr const char* kNotePrefix = "Unsaved-";

/// A path of the program, which is UTF-8.
fs::path PathOf(const std::string& name) {
    return {std::u8string(name.begin(), name.end())};
}
std::string NameOf(const fs::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

/// The lines of a file; none if it cannot be read.
std::vector<std::string> LinesOf(const std::string& name) {
    std::vector<std::string> lines;
    try {
        const std::string text = ReadDiskFile(name, kLongestNote);
        for (std::size_t from = 0, end; (end = text.find('\n', from)) != std::string::npos; from = end + 1)
            lines.push_back(text.substr(from, end - from));
    } catch (const DiskFailure&) {
        lines.clear();
    }
    return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

/// The first lines of locks and notes say whose they are.
constexpr std::size_t kOwnerLines = 4;
std::vector<std::string> OwnerLines() {
    const Process me = ThisProcess();
    return {me.user, me.machine, std::to_string(me.number), me.start};
}

bool IsMine(const std::vector<std::string>& lines) {
    const std::vector<std::string> mine = OwnerLines();
    return lines.size() >= kOwnerLines && std::equal(mine.begin(), mine.end(), lines.begin());
}

/// Whether nobody can come back to it: it was never finished, or its process is gone from this machine.
bool IsDead(const std::vector<std::string>& lines) {
    if (lines.size() <= kOwnerLines) return true;
    if (lines[1] != ThisProcess().machine) return false;
    return StartOfProcess(std::atol(lines[2].c_str())) != lines[3];
}

/// 0: it cannot be read.
std::uint64_t MarkOfFile(const std::string& name) {
    try {
        return ContentMark(ReadDiskFile(name, kMaxFileText));
    } catch (const DiskFailure&) {
        return 0;
    }
}

void Remove(const std::string& name) {
    std::error_code ignored;
    fs::remove(PathOf(name), ignored);
}

std::string OwnNote(const std::string& directory) {
    return NameOf(PathOf(directory) / (kNotePrefix + std::to_string(ThisProcess().number) + ".txt"));
}

std::vector<std::string> NotesIn(const std::string& directory) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator each(PathOf(directory), error), end; !error && each != end;
         each.increment(error)) {
        const std::string name = NameOf(each->path().filename());
        if (name.starts_with(kNotePrefix) && name.ends_with(".txt")) names.push_back(NameOf(each->path()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Fewer lines than a note has: none.
std::optional<BackupNote> NoteOf(const std::string& name, const std::vector<std::string>& lines) {
    if (lines.size() < kOwnerLines + 5) return std::nullopt;
    const auto number = [](const std::string& text) { return std::strtoull(text.c_str(), nullptr, 10); };
    return BackupNote{name, lines[4], number(lines[5]), lines[6], number(lines[7]), lines[8]};
}

}  // namespace

std::string PlanGuard::Whole(const std::string& fileName) {
    std::error_code error;
    const fs::path whole = fs::weakly_canonical(PathOf(fileName), error);
    return error ? fileName : NameOf(whole);
}

std::string PlanGuard::Lock(const std::string& fileName, const std::string& now) {
    const std::string lock = Whole(fileName) + ".lock";
    if (std::find(locks_.begin(), locks_.end(), lock) != locks_.end()) return {};
    std::vector<std::string> lines = OwnerLines();
    lines.push_back(now);
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (MakeDiskFile(lock, Joined(lines))) {
            locks_.push_back(lock);
            return {};
        }
        std::error_code error;
        if (!fs::exists(PathOf(lock), error)) return {};
        const std::vector<std::string> held = LinesOf(lock);
        if (!IsDead(held)) return held[0] + " on " + held[1] + " since " + held[4];
        Remove(lock);
    }
    return {};
}

std::uint64_t PlanGuard::Known(const std::string& fileName) const {
    const auto place = marks_.find(Whole(fileName));
    return place == marks_.end() ? 0 : place->second;
}

bool PlanGuard::ChangedElsewhere(const std::string& fileName) const {
    const std::uint64_t known = Known(fileName), now = known == 0 ? 0 : MarkOfFile(fileName);
    return now != 0 && now != known;
}

void PlanGuard::Release() {
    for (const std::string& lock : locks_) {
        if (IsMine(LinesOf(lock))) Remove(lock);
    }
    locks_.clear();
    marks_.clear();
}

bool WriteBackupNote(const std::string& directory, const BackupNote& note) {
    std::vector<std::string> lines = OwnerLines();
    for (const std::string& each : {note.backupFile, std::to_string(note.backupMark), note.planFile,
                                    std::to_string(note.planMark), note.when})
        lines.push_back(each);
    try {
        ReplaceDiskFile(OwnNote(directory), Joined(lines), directory);
        return true;
    } catch (const DiskFailure&) {
        return false;
    }
}

void RemoveBackupNote(const std::string& directory) {
    if (const std::string note = OwnNote(directory); IsMine(LinesOf(note))) Remove(note);
}

void DropNote(const BackupNote& note) {
    if (!IsMine(LinesOf(note.noteFile))) Remove(note.noteFile);
}

std::vector<BackupNote> NotesLeftBehind(const std::string& directory) {
    std::vector<BackupNote> left;
    for (const std::string& name : NotesIn(directory)) {
        const std::vector<std::string> lines = LinesOf(name);
        if (!IsDead(lines)) continue;
        const auto note = NoteOf(name, lines);
        if (note && MarkOfFile(note->backupFile) == note->backupMark) {
            left.push_back(*note);
        } else {
            Remove(name);
        }
    }
    return left;
}

bool IsNoted(const std::string& directory, const std::string& backupFile) {
    for (const std::string& name : NotesIn(directory)) {
        const std::vector<std::string> lines = LinesOf(name);
        const auto note = NoteOf(name, lines);
        if (note && note->backupFile == backupFile) return true;
    }
    return false;
}

}  // namespace vortan
