#include "persist/Vfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "model/Characters.h"
#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "persist/PackedText.h"
#include "persist/TextEncoding.h"

namespace vortan {
namespace {

namespace fs = std::filesystem;

/// A failure on the way, with what the system says about it.
using Failure = std::system_error;

[[noreturn]] void Fail(int error) {
    throw Failure(error, std::generic_category());
}
[[noreturn]] void FailWithErrno() {
    Fail(errno);
}

/// A failure that says more than the system does.
class NotedFailure : public Failure {
  public:
    NotedFailure(const Failure& failure, std::string text) : Failure(failure), note(std::move(text)) {}

    std::string note;
};

std::string Description(const Failure& failure) {
    const auto* noted = dynamic_cast<const NotedFailure*>(&failure);
    return failure.code().message() + (noted ? noted->note : "");
}

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Number() const { return number_; }
    bool IsOpen() const { return number_ >= 0; }
    bool Close() {
        const int number = number_;
        number_ = -1;
        return number < 0 || ::close(number) == 0;
    }

  private:
    int number_;
};

/// Tells what goes on for as long as it lives.
class Status {
  public:
    Status(Platform& platform, const std::string& text) : platform_(platform) {
        platform_.StatusMessage(text);
    }
    ~Status() {
        try {
            platform_.StatusMessage("");
        } catch (...) {  // a text left standing is not worth the program
        }
    }
    Status(const Status&) = delete;
    Status& operator=(const Status&) = delete;

  private:
    Platform& platform_;
};

void CheckName(const std::string& name) {
    if (FileTypeOf(name) == FileType::Unknown) AssertionFailed();
    if (name.find('\0') != std::string::npos) Fail(EINVAL);
}

/// Pipes and devices are no files of ours: reading one may never end, and writing would replace it.
void CheckRegular(const struct stat& status) {
    if (S_ISDIR(status.st_mode)) Fail(EISDIR);
    if (!S_ISREG(status.st_mode)) Fail(EINVAL);
}

std::string ReadBytes(const std::string& name) {
    const Descriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Number(), &status) != 0) FailWithErrno();
    CheckRegular(status);
    std::string bytes;
    std::size_t size = 0;
    const auto expected = static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
    if (expected > kMaxFileText) Fail(EFBIG);
    bytes.resize(expected + 1);  // one more, to meet the end without growing
    for (;;) {
        if (size == bytes.size()) bytes.resize(size + std::max<std::size_t>(size / 2, 65536));
        const ssize_t count = ::read(file.Number(), bytes.data() + size, bytes.size() - size);
        if (count == 0) break;
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) FailWithErrno();
        size += static_cast<std::size_t>(count);
        if (size > kMaxFileText) Fail(EFBIG);
    }
    bytes.resize(size);
    return bytes;
}

FileText ReadText(const std::string& name) {
    CheckName(name);
    FileText file;
    file.text = ReadBytes(name);
    file.packed = FileTypeOf(name) != FileType::Ascii;
    if (file.packed) {
        UnpackResult result = UnpackText(file.text, kMaxFileText);
        file.suffixFound = result.suffixFound;
        file.crcMatches = result.crcMatches;
        if (result.tooLarge) Fail(EFBIG);
        file.text = std::move(result.text);
    }
    file.text = ToUtf8(std::move(file.text));
    return file;
}

/// The file that `name` means when all symbolic links are followed. It need not exist.
fs::path FollowLinks(const std::string& name) {
    fs::path path = name;
    std::error_code error;
    for (int links = 0; fs::is_symlink(fs::symlink_status(path, error)); ++links) {
        if (links == 40) Fail(ELOOP);
        path = path.parent_path() / fs::read_symlink(path);
    }
    return path;
}

void WriteTo(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) FailWithErrno();
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

/// A new file beside the one that it is to replace; gone again unless it did or is kept.
class TemporaryFile {
  public:
    /// `mode`: permissions, of which the umask takes its part.
    TemporaryFile(const fs::path& target, mode_t mode) : file_(Create(target, mode)) {}
    ~TemporaryFile() {
        if (!path_.empty()) ::unlink(path_.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int Number() const { return file_.Number(); }
    void Write(std::string_view bytes) {
        WriteTo(file_.Number(), bytes);
        if (::fsync(file_.Number()) != 0) FailWithErrno();
    }
    /// Leaves the file where it is, and tells where.
    std::string Keep() { return std::exchange(path_, {}); }
    void Replace(const fs::path& target) {
        if (!file_.Close()) FailWithErrno();
        if (::rename(path_.c_str(), target.c_str()) != 0) FailWithErrno();
        path_.clear();
    }

  private:
    int Create(const fs::path& target, mode_t mode) {
        constexpr std::size_t kLongestName = 255;
        for (unsigned attempt = 0;; ++attempt) {
            const std::string suffix =
                "." + std::to_string(::getpid()) + "-" + std::to_string(attempt) + ".tmp";
            path_ = target.parent_path() /
                    (target.filename().string().substr(0, kLongestName - suffix.size()) + suffix);
            const int number = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            if (number >= 0) return number;
            if (errno != EEXIST || attempt > 10000) {
                const int error = errno;
                path_.clear();
                Fail(error);
            }
        }
    }

    std::string path_;  // before file_, which sets it
    Descriptor file_;
};

/// Makes a renaming outlast a power failure, where the file system can.
void SyncDirectory(const fs::path& directory) {
    const Descriptor file(
        ::open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!file.IsOpen()) return;  // one may be allowed to write in a directory, but not to list it
    if (::fsync(file.Number()) != 0 && errno != EINVAL && errno != ENOTSUP) FailWithErrno();
}

void Overwrite(const Descriptor& file, std::string_view bytes) {
    if (::lseek(file.Number(), 0, SEEK_SET) != 0) FailWithErrno();
    WriteTo(file.Number(), bytes);
    if (::ftruncate(file.Number(), static_cast<off_t>(bytes.size())) != 0) FailWithErrno();
    if (::fsync(file.Number()) != 0) FailWithErrno();
}

/// Writes over a file in a folder that takes no new one. Until the new text is on the disk, a copy of the old
/// one stands in `copies`; it stays there if the file could be neither written nor restored.
void WriteInPlace(const fs::path& target, std::string_view bytes, const std::string& copies) {
    const std::string old = ReadBytes(target.string());
    std::error_code ignored;  // making the copy tells soon enough
    fs::create_directories(copies, ignored);
    std::optional<TemporaryFile> copy;
    try {
        copy.emplace(fs::path(copies) / target.filename(), 0600);
        copy->Write(old);
    } catch (const Failure& failure) {
        throw NotedFailure(failure,
                           "\nThe folder of the file does not let itself be written to, and no copy "
                           "of the file, which is needed to write over it, can be made in " +
                               copies + ".\nThe file is as it was.");
    }
    const Descriptor file(::open(target.c_str(), O_WRONLY | O_CLOEXEC));
    if (!file.IsOpen()) FailWithErrno();
    try {
        Overwrite(file, bytes);
    } catch (const Failure& failure) {
        try {
            Overwrite(file, old);
        } catch (const Failure&) {
            throw NotedFailure(failure,
                               "\nThe file is damaged. A copy of it as it was is " + copy->Keep() + ".");
        }
        throw;
    }
}

void WriteBeside(const fs::path& target, const struct stat& old, bool exists, std::string_view bytes) {
    TemporaryFile file(target, exists ? old.st_mode & 0777 : 0666);
    if (exists) {
        // Not all may give a file away; the group alone is worth trying.
        if (::fchown(file.Number(), old.st_uid, old.st_gid) != 0 &&
            ::fchown(file.Number(), static_cast<uid_t>(-1), old.st_gid) != 0) {
            errno = 0;
        }
        if (::fchmod(file.Number(), old.st_mode & 0777) != 0) FailWithErrno();
    }
    file.Write(bytes);
    file.Replace(target);
    SyncDirectory(target.parent_path());
}

void ReplaceFile(const std::string& name, std::string_view bytes, const std::string& copies) {
    const fs::path target = FollowLinks(name);
    struct stat old {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    if (!exists && errno != ENOENT) FailWithErrno();
    if (exists) {
        CheckRegular(old);
        // A new file could take the place of one that is protected against writing.
        if (::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) FailWithErrno();
    }
    try {
        WriteBeside(target, old, exists, bytes);
    } catch (const Failure& failure) {
        const int error = failure.code().value();
        if (!exists || (error != EACCES && error != EPERM)) throw;
        WriteInPlace(target, bytes, copies);
    }
}

}  // namespace

FileType FileTypeOf(std::string_view name) {
    if (EndsWithText(name, ".vtb")) return FileType::Bundle;
    if (EndsWithText(name, ".vta")) return FileType::Ascii;
    if (EndsWithText(name, ".cfg")) return FileType::Configuration;
    return FileType::Unknown;
}

bool IsPlanFile(std::string_view name) {
    const FileType type = FileTypeOf(name);
    return type == FileType::Bundle || type == FileType::Ascii;
}

bool ReadFileText(Platform& platform, const std::string& name, FileText& out) {
    const Section section("Vfile:ReadFileText");
    out = {};
    std::string description;
    try {
        const Status status(platform, "Reading from " + name);
        out = ReadText(name);
        return true;
    } catch (const Failure& failure) {
        out.tooLarge = failure.code() == std::errc::file_too_large;
        description = Description(failure);
    }
    if (FileTypeOf(name) != FileType::Configuration) {
        platform.MessageBox(
            "Attempting the read from the file " + name + " caused the following error: \n" + description,
            "File Open Error", BoxIcon::Stop, BoxButtons::Ok);
    }
    return false;
}

bool WriteFileText(Platform& platform, const std::string& name, std::string_view text) {
    const Section section("Vfile:WriteFileText");
    std::string description;
    try {
        const Status status(platform, "Writing to " + name);
        CheckName(name);
        if (FileTypeOf(name) == FileType::Ascii) {
            ReplaceFile(name, text, platform.BackupDirectory());
        } else {
            ReplaceFile(name, PackText(text), platform.BackupDirectory());
        }
        return true;
    } catch (const Failure& failure) {
        description = Description(failure);
    }
    platform.MessageBox(
        "Attempting the write to the file " + name + " cause the following error:\n" + description,
        "File Open Error", BoxIcon::Stop, BoxButtons::Ok);
    return false;
}

std::string ReadFileBytes(const std::string& name, std::string& bytes) {
    try {
        bytes = ReadBytes(name);
        return {};
    } catch (const Failure& failure) {
        return Description(failure);
    }
}

std::string ReplaceFileBytes(Platform& platform, const std::string& name, std::string_view bytes) {
    try {
        ReplaceFile(name, bytes, platform.BackupDirectory());
        return {};
    } catch (const Failure& failure) {
        return Description(failure);
    }
}

}  // namespace vortan
