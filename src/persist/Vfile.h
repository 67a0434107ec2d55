#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "model/Platform.h"

/// Whole files in and out of memory. All kinds of the program's own files hold lines of text, which
/// TokenReader takes apart; a bundle and the configuration hold them packed.
namespace vortan {

enum class FileType { Unknown = 0, Bundle = 1, Ascii = 2, Configuration = 3 };

/// By the last four characters of the name, in any case: ".vtb", ".vta", ".cfg".
FileType FileTypeOf(std::string_view name);

/// Whether the name is that of a bundle or ASCII file.
bool IsPlanFile(std::string_view name);

/// No text of a file is longer, in bytes.
inline constexpr std::size_t kMaxFileText = std::size_t{1} << 30;

struct FileText {
    std::string text;         ///< in UTF-8
    std::uint64_t mark = 0;   ///< ContentMark of the file's bytes
    bool packed = false;      ///< the file holds the text packed; the next two tell of a packed file only
    bool suffixFound = true;  ///< the file has its end mark, so it was not cut off
    bool crcMatches = true;   ///< and the check sum behind it is that of the text
    bool tooLarge = false;    ///< the text would be longer than kMaxFileText: not read
};

/// Reads the file `name`, of a known type, into `out`. A file that cannot be read, or whose text would be too
/// large, is told in a box and gives false; so does a configuration, but without a box, as a missing one
/// is normal. An unknown type is a fault.
bool ReadFileText(Platform& platform, const std::string& name, FileText& out);

/// Writes `text`, which is UTF-8, to the file `name`, of a known type, in place of what it held. The new text
/// is on the disk before it takes the place of the old, so whatever happens, the name has either the whole
/// old file or the whole new one. Where the folder takes no new file, an old one is written over, with a copy
/// of it in the platform's BackupDirectory for as long as that takes. A failure is told in a box and gives
/// false. A symbolic link stays one: the file that it leads to is written. An unknown type is a fault.
/// `mark`: set to the ContentMark of what was written.
bool WriteFileText(Platform& platform, const std::string& name, std::string_view text,
                   std::uint64_t* mark = nullptr);

/// Tells contents of files apart; never 0.
std::uint64_t ContentMark(std::string_view bytes);

// Files of other programs, as they are. Each returns what went wrong in the system's words, empty if nothing
// did. Replacing is as safe as WriteFileText.
std::string ReadFileBytes(const std::string& name, std::string& bytes);
std::string ReplaceFileBytes(Platform& platform, const std::string& name, std::string_view bytes);

}  // namespace vortan
