#include "persist/Vfile.h"

#include <utility>

#include "model/Characters.h"
#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "persist/DiskFile.h"
#include "persist/PackedText.h"
#include "persist/TextEncoding.h"

namespace vortan {
namespace {

[[noreturn]] void Fail(std::errc error) {
    throw DiskFailure(static_cast<int>(error), std::generic_category());
}

std::string Description(const DiskFailure& failure) {
    const auto* noted = dynamic_cast<const NotedDiskFailure*>(&failure);
    return failure.code().message() + (noted ? noted->note : "");
}

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
    if (name.find('\0') != std::string::npos) Fail(std::errc::invalid_argument);
}

FileText ReadText(const std::string& name) {
    CheckName(name);
    FileText file;
    file.text = ReadDiskFile(name, kMaxFileText);
    file.mark = ContentMark(file.text);
    file.packed = FileTypeOf(name) != FileType::Ascii;
    if (file.packed) {
        UnpackResult result = UnpackText(file.text, kMaxFileText);
        file.suffixFound = result.suffixFound;
        file.crcMatches = result.crcMatches;
        if (result.tooLarge) Fail(std::errc::file_too_large);
        file.text = std::move(result.text);
    }
    file.text = ToUtf8(std::move(file.text));
    return file;
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
    } catch (const DiskFailure& failure) {
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

std::uint64_t ContentMark(std::string_view bytes) {
    std::uint64_t mark = 14695981039346656037U ^ bytes.size();
    for (const char each : bytes) mark = (mark ^ static_cast<unsigned char>(each)) * 1099511628211U;
    return mark == 0 ? 1 : mark;
}

bool WriteFileText(Platform& platform, const std::string& name, std::string_view text, std::uint64_t* mark) {
    const Section section("Vfile:WriteFileText");
    std::string description;
    try {
        const Status status(platform, "Writing to " + name);
        CheckName(name);
        const std::string packed = FileTypeOf(name) == FileType::Ascii ? std::string() : PackText(text);
        const std::string_view bytes = FileTypeOf(name) == FileType::Ascii ? text : packed;
        ReplaceDiskFile(name, bytes, platform.BackupDirectory());
        if (mark) *mark = ContentMark(bytes);
        return true;
    } catch (const DiskFailure& failure) {
        description = Description(failure);
    }
    platform.MessageBox(
        "Attempting the write to the file " + name + " cause the following error:\n" + description,
        "File Open Error", BoxIcon::Stop, BoxButtons::Ok);
    return false;
}

std::string ReadFileBytes(const std::string& name, std::string& bytes) {
    try {
        bytes = ReadDiskFile(name, kMaxFileText);
        return {};
    } catch (const DiskFailure& failure) {
        return Description(failure);
    }
}

std::string ReplaceFileBytes(Platform& platform, const std::string& name, std::string_view bytes) {
    try {
        ReplaceDiskFile(name, bytes, platform.BackupDirectory());
        return {};
    } catch (const DiskFailure& failure) {
        return Description(failure);
    }
}

}  // namespace vortan
