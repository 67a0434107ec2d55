#pragma once

#include <string>
#include <string_view>

#include "model/Platform.h"

/// Where the document of a project's status report lies, and the layout that it is made from. A function that
/// returns a sentence has failed with it; an empty one means success.
namespace vortan {

inline constexpr const char* kReportLayout = "StatusReportLayout.rtf";

/// In the working directory.
std::string ReportFileName(std::string_view projectName);
/// False for a name that no file can have, or that would lead out of the working directory.
bool IsReportFileName(std::string_view name);
/// The layout in the working directory, else the one beside the program's data files.
std::string FindReportLayout(Platform& platform);
/// What is said when the layout could not be copied to the document `name`.
std::string ReportCopyError(std::string_view name);

std::string ReadReport(const std::string& name, std::string& bytes);
/// What the document held before stays beside it, as `name` and ".bak".
std::string SaveReport(Platform& platform, const std::string& name, std::string_view bytes);

}  // namespace vortan
