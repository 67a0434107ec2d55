#include "reports/StatusReportFile.h"

#include <filesystem>

#include "persist/Vfile.h"

namespace vortan {

std::string ReportFileName(std::string_view projectName) {
    return std::string(projectName) + ".rtf";
}

bool IsReportFileName(std::string_view name) {
    return name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

std::string FindReportLayout(Platform& platform) {
    namespace fs = std::filesystem;
    const fs::path program = fs::path(platform.ProgramFile()).parent_path();
    const fs::path places[] = {kReportLayout, program / kReportLayout,
                               program / ".." / "share" / "vortan" / kReportLayout};
    std::error_code ignored;
    for (const fs::path& place : places)
        if (fs::is_regular_file(place, ignored)) return place.string();
    return kReportLayout;
}

std::string ReportCopyError(std::string_view name) {
    return std::string("An error occurred while trying to copy from ") + kReportLayout + " to " +
           std::string(name) +
           ".  Please make sure that the project name does not contain any special characters.";
}

std::string ReadReport(const std::string& name, std::string& bytes) {
    const std::string problem = ReadFileBytes(name, bytes);
    return problem.empty() ? "" : "The document " + name + " could not be read: " + problem + ".";
}

std::string SaveReport(Platform& platform, const std::string& name, std::string_view bytes) {
    std::error_code ignored;
    std::string problem, before;
    if (std::filesystem::exists(name, ignored)) {
        problem = ReadFileBytes(name, before);
        if (problem.empty() && before != bytes) problem = ReplaceFileBytes(platform, name + ".bak", before);
    }
    if (problem.empty()) problem = ReplaceFileBytes(platform, name, bytes);
    return problem.empty() ? "" : "The document " + name + " could not be written: " + problem + ".";
}

}  // namespace vortan
