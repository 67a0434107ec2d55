#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <utility>

#include "persist/DiskFile.h"

namespace vortan {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void FailWith(DWORD error) {
    throw DiskFailure(static_cast<int>(error), std::system_category());
}
[[noreturn]] void Fail() {
    FailWith(::GetLastError());
}

/// A name of the program, which is UTF-8.
fs::path PathOf(const std::string& name) {
    return {std::u8string(name.begin(), name.end())};
}
std::string NameOf(const fs::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

class Handle {
  public:
    Handle(const fs::path& path, DWORD access, DWORD creation)
        : handle_(::CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, creation,
                                FILE_ATTRIBUTE_NORMAL, nullptr)) {}
    ~Handle() { Close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return handle_; }
    bool Close() {
        const HANDLE handle = std::exchange(handle_, INVALID_HANDLE_VALUE);
        return handle == INVALID_HANDLE_VALUE || ::CloseHandle(handle) != 0;
    }

  private:
    HANDLE handle_;
};

constexpr std::size_t kLargestCall = std::size_t{1} << 24;  // bytes

void WriteAll(const Handle& file, std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD count = 0;
        if (::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kLargestCall)),
                        &count, nullptr) == 0) {
            Fail();
        }
        bytes.remove_prefix(count);
    }
    if (::FlushFileBuffers(file.Get()) == 0) Fail();
}

/// A new file beside the one that it is to replace; gone again unless it did or is kept.
class TemporaryFile {
  public:
    explicit TemporaryFile(const fs::path& target) {
        for (unsigned attempt = 0; attempt < 10000; ++attempt) {
            path_ = target;
            path_ +=
                L"." + std::to_wstring(::GetCurrentProcessId()) + L"-" + std::to_wstring(attempt) + L".tmp";
            file_.emplace(path_, GENERIC_WRITE, CREATE_NEW);
            if (file_->IsOpen()) return;
            if (::GetLastError() != ERROR_FILE_EXISTS) break;
        }
        const DWORD error = ::GetLastError();
        path_.clear();
        FailWith(error);
    }
    ~TemporaryFile() {
        file_.reset();
        if (!path_.empty()) ::DeleteFileW(path_.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void Write(std::string_view bytes) { WriteAll(*file_, bytes); }
    std::string Keep() { return NameOf(std::exchange(path_, {})); }
    void Replace(const fs::path& target) {
        if (!file_->Close()) Fail();
        if (::MoveFileExW(path_.c_str(), target.c_str(),
                          MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0)
            Fail();
        path_.clear();
    }

  private:
    fs::path path_;
    std::optional<Handle> file_;
};

void Overwrite(const Handle& file, std::string_view bytes) {
    const LARGE_INTEGER front{};
    if (::SetFilePointerEx(file.Get(), front, nullptr, FILE_BEGIN) == 0 || ::SetEndOfFile(file.Get()) == 0)
        Fail();
    WriteAll(file, bytes);
}

/// As ReplaceDiskFile tells, in a folder that takes no new file.
void WriteInPlace(const fs::path& target, std::string_view bytes, const std::string& copies) {
    const std::string old = ReadDiskFile(NameOf(target), SIZE_MAX);
    std::error_code ignored;  // making the copy tells soon enough
    fs::create_directories(PathOf(copies), ignored);
    std::optional<TemporaryFile> copy;
    try {
        copy.emplace(PathOf(copies) / target.filename());
        copy->Write(old);
    } catch (const DiskFailure& failure) {
        throw NotedDiskFailure(failure,
                               "\nThe folder of the file does not let itself be written to, and no copy "
                               "of the file, which is needed to write over it, can be made in " +
                                   copies + ".\nThe file is as it was.");
    }
    const Handle file(target, GENERIC_WRITE, OPEN_EXISTING);
    if (!file.IsOpen()) Fail();
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

}  // namespace

std::string ReadDiskFile(const std::string& name, std::size_t limit) {
    const Handle file(PathOf(name), GENERIC_READ, OPEN_EXISTING);
    if (!file.IsOpen()) Fail();
    LARGE_INTEGER size{};
    if (::GetFileType(file.Get()) != FILE_TYPE_DISK) FailWith(ERROR_NOT_SUPPORTED);
    if (::GetFileSizeEx(file.Get(), &size) == 0) Fail();
    std::string bytes;
    if (static_cast<std::uint64_t>(size.QuadPart) > limit)
        throw DiskFailure(std::make_error_code(std::errc::file_too_large));
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    std::size_t done = 0;
    while (done < bytes.size()) {
        DWORD count = 0;
        if (::ReadFile(file.Get(), bytes.data() + done,
                       static_cast<DWORD>(std::min(bytes.size() - done, kLargestCall)), &count,
                       nullptr) == 0) {
            Fail();
        }
        if (count == 0) break;
        done += count;
    }
    bytes.resize(done);
    return bytes;
}

bool MakeDiskFile(const std::string& name, std::string_view bytes) {
    try {
        const Handle file(PathOf(name), GENERIC_WRITE, CREATE_NEW);
        if (!file.IsOpen()) return false;
        WriteAll(file, bytes);
        return true;
    } catch (const DiskFailure&) {
        ::DeleteFileW(PathOf(name).c_str());
        return false;
    }
}

Process ThisProcess() {
    const auto variable = [](const wchar_t* name) {
        const wchar_t* value = _wgetenv(name);
        return value ? NameOf(fs::path(value)) : std::string();
    };
    const auto number = static_cast<long>(::GetCurrentProcessId());
    return {variable(L"COMPUTERNAME"), variable(L"USERNAME"), number, StartOfProcess(number)};
}

std::string StartOfProcess(long number) {
    const HANDLE process =
        ::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(number));
    if (!process) return ::GetLastError() == ERROR_ACCESS_DENIED ? "running" : "";
    FILETIME start{}, end{}, ignored{};
    DWORD code = 0;
    const bool told = ::GetProcessTimes(process, &start, &end, &ignored, &ignored) != 0;
    const bool ended = ::GetExitCodeProcess(process, &code) != 0 && code != STILL_ACTIVE;
    ::CloseHandle(process);
    if (ended) return {};
    if (!told) return "running";
    return std::to_string(std::uint64_t{start.dwHighDateTime} << 32 | start.dwLowDateTime);
}

void ReplaceDiskFile(const std::string& name, std::string_view bytes, const std::string& copies) {
    std::error_code ignored;
    fs::path target = PathOf(name);
    if (fs::is_symlink(target, ignored)) target = fs::weakly_canonical(target);
    const DWORD attributes = ::GetFileAttributesW(target.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (exists && (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0)
        FailWith(ERROR_ACCESS_DENIED);
    try {
        TemporaryFile file(target);
        file.Write(bytes);
        file.Replace(target);
    } catch (const DiskFailure& failure) {
        if (!exists || failure.code().value() != ERROR_ACCESS_DENIED) throw;
        WriteInPlace(target, bytes, copies);
    }
}

}  // namespace vortan
