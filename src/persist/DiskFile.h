#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

/// Whole files by the calls of the operating system, each of which has a source of its own for these. Names
/// are UTF-8 everywhere.
namespace vortan {

/// What went wrong, in the system's words.
using DiskFailure = std::system_error;

/// One that says more than the system does.
class NotedDiskFailure : public DiskFailure {
  public:
    NotedDiskFailure(const DiskFailure& failure, std::string text)
        : DiskFailure(failure), note(std::move(text)) {}

    std::string note;
};

/// The bytes of a file; one longer than `limit` is a DiskFailure. So are folders, pipes and devices, which
/// are no files of ours.
std::string ReadDiskFile(const std::string& name, std::size_t limit);

/// Writes `bytes` in place of what the file held, or makes it. The bytes are on the disk before they take the
/// place of the old ones. Where the folder takes no new file, the old one is written over, with a copy in the
/// folder `copies` for as long as that takes. DiskFailure if it cannot be done; the file is as it was then,
/// or the failure says where the copy is.
void ReplaceDiskFile(const std::string& name, std::string_view bytes, const std::string& copies);

/// Makes a file that is not there yet. False: it is there, or the folder takes none.
bool MakeDiskFile(const std::string& name, std::string_view bytes);

/// A running process of this machine.
struct Process {
    std::string machine, user;
    long number = 0;
    std::string
        start;  ///< tells it from a later one of the same number, also after the machine was started anew
};
Process ThisProcess();
/// The `start` of the process of that number; empty: it is gone.
std::string StartOfProcess(long number);

}  // namespace vortan
