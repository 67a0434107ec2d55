#include <fcntl.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <utility>

#include "persist/DiskFile.h"

namespace vortan {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(int error) {
    throw DiskFailure(error, std::generic_category());
}
[[noreturn]] void FailWithErrno() {
    Fail(errno);
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

/// Pipes and devices are no files of ours: reading one may never end, and writing would replace it.
void CheckRegular(const struct stat& status) {
    if (S_ISDIR(status.st_mode)) Fail(EISDIR);
    if (!S_ISREG(status.st_mode)) Fail(EINVAL);
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

}  // namespace

std::string ReadDiskFile(const std::string& name, std::size_t limit) {
    const Descriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Number(), &status) != 0) FailWithErrno();
    CheckRegular(status);
    std::string bytes;
    std::size_t size = 0;
    const auto expected = static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
    if (expected > limit) Fail(EFBIG);
    bytes.resize(expected + 1);  // one more, to meet the end without growing
    for (;;) {
        if (size == bytes.size()) bytes.resize(size + std::max<std::size_t>(size / 2, 65536));
        const ssize_t count = ::read(file.Number(), bytes.data() + size, bytes.size() - size);
        if (count == 0) break;
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) FailWithErrno();
        size += static_cast<std::size_t>(count);
        if (size > limit) Fail(EFBIG);
    }
    bytes.resize(size);
    return bytes;
}

namespace {

/// Writes over a file in a folder that takes no new one. Until the new text is on the disk, a copy of the old
/// one stands in `copies`; it stays there if the file could be neither written nor restored.
void WriteInPlace(const fs::path& target, std::string_view bytes, const std::string& copies) {
    const std::string old = ReadDiskFile(target.string(), SIZE_MAX);
    std::error_code ignored;  // making the copy tells soon enough
    fs::create_directories(copies, ignored);
    std::optional<TemporaryFile> copy;
    try {
        copy.emplace(fs::path(copies) / target.filename(), 0600);
        copy->Write(old);
    } catch (const DiskFailure& failure) {
        throw NotedDiskFailure(failure,
                               "\nThe folder of the file does not let itself be written to, and no copy "
                               "of the file, which is needed to write over it, can be made in " +
                                   copies + ".\nThe file is as it was.");
    }
    const Descriptor file(::open(target.c_str(), O_WRONLY | O_CLOEXEC));
    if (!file.IsOpen()) FailWithErrno();
    try {
        Overwrite(file, bytes);
    } catch (const DiskFailure& failure) {
        try {
            Overwrite(file, old);
        } catch (const DiskFailure&) {
            throw NotedDiskFailure(failure,
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

}  // namespace

bool MakeDiskFile(const std::string& name, std::string_view bytes) {
    Descriptor file(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file.IsOpen()) return false;
    try {
        WriteTo(file.Number(), bytes);
        return file.Close();
    } catch (const DiskFailure&) {
        ::unlink(name.c_str());
        return false;
    }
}

Process ThisProcess() {
    char machine[256] = "";
    if (::gethostname(machine, sizeof machine - 1) != 0) machine[0] = 0;
    const struct passwd* entry = ::getpwuid(::geteuid());
    return {machine, entry && entry->pw_name ? entry->pw_name : std::to_string(::geteuid()), ::getpid(),
            StartOfProcess(::getpid())};
}

std::string StartOfProcess(long number) {
    if (number <= 0 || (::kill(static_cast<pid_t>(number), 0) != 0 && errno == ESRCH)) return {};
    // Behind the name of the program, which may have blanks and brackets, the start is field 20.
    std::ifstream status("/proc/" + std::to_string(number) + "/stat"),
        boot("/proc/sys/kernel/random/boot_id");
    std::string text, machineStart;
    if (!std::getline(status, text) || !std::getline(boot, machineStart)) return "running";
    std::istringstream fields(text.substr(std::min(text.rfind(')'), text.size() - 1) + 1));
    std::string state, field;
    fields >> state;
    for (int i = 0; i < 19; ++i) fields >> field;
    return state == "Z" || state == "X" ? std::string() : field + "@" + machineStart;
}

void ReplaceDiskFile(const std::string& name, std::string_view bytes, const std::string& copies) {
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
    } catch (const DiskFailure& failure) {
        const int error = failure.code().value();
        if (!exists || (error != EACCES && error != EPERM)) throw;
        WriteInPlace(target, bytes, copies);
    }
}

}  // namespace vortan
