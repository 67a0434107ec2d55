#include "cli/ChartFile.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <system_error>

#include "model/Characters.h"
#include "model/Fault.h"
#include "persist/Vfile.h"

namespace vortan {

void RequireEnding(const std::string& what, const std::string& fileName,
                   std::span<const std::string_view> endings) {
    std::string all;
    for (std::size_t i = 0; i < endings.size(); ++i) {
        if (EndsWithText(fileName, endings[i])) return;
        all += (i == 0 ? "" : i + 1 == endings.size() ? " or " : ", ") + std::string(endings[i]);
    }
    throw CliError("The " + what + " cannot be written to \"" + fileName + "\". Its name must end in " + all +
                   ".");
}

void RequireChartFile(const std::string& fileName, bool data) {
    constexpr std::string_view endings[] = {".svg", ".png", ".pdf", ".json", ".csv"};
    RequireEnding("chart", fileName, std::span(endings).first(data ? 5 : 3));
}

void WriteResultFile(CliSession& session, const std::string& fileName, const std::string& bytes) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    const fs::file_status status = fs::status(fileName, ignored);
    std::string problem;
    if (!fs::exists(status) || fs::is_regular_file(status) || fs::is_directory(status)) {
        problem = ReplaceFileBytes(session.platform, fileName, bytes);
    } else {  // devices and pipes cannot be replaced as a whole
        std::ofstream file(fileName, std::ios::binary);
        if (!(file << bytes << std::flush)) problem = std::generic_category().message(errno);
    }
    if (!problem.empty())
        throw CliError("The file \"" + fileName + "\" could not be written: " + problem + ".");
}

DrawingTools::DrawingTools(CliSession& session, const char* form)
    : session_(session), settings_(session.platform) {
    try {
        settings_.ReadConfigFile();
    } catch (const Fault& fault) {
        session.streams.err << "Warning: " << fault.Description() << "\n";
    }
    drawing_ = LoadOutput(session.platform.ProgramFile()).StartDrawing(settings_.FontOf(form));
}

void DrawingTools::Write(const Vwindow& surface, const std::string& title, const std::string& fileName,
                         bool fit) const {
    std::string bytes;
    try {
        bytes = drawing_->MakeFile(surface, title, fileName, fit);
    } catch (const Fault& fault) {
        throw CliError(fault.Description());
    }
    WriteResultFile(session_, fileName, bytes);
}

ChartFile::ChartFile(CliSession& session, const ChartKind& kind)
    : tools_(session, kind.form),
      form_(kind.make({session.workspace, tools_.TheSettings(), session.iterative.Results(),
                       tools_.TheDrawing().Metrics(), session.solver})) {
    form_->TheVwindow().SetPage(tools_.TheDrawing().Page());
}

void ChartFile::Write(const std::string& fileName, bool fit) const {
    tools_.Write(form_->TheVwindow(), form_->Caption(), fileName, fit);
}

std::string ChartFile::PictureText() const {
    return tools_.TheDrawing().PictureText(form_->TheVwindow(), form_->Caption());
}

void WriteChart(CliSession& session, const std::string& fileName, const ChartKind& kind, bool fit,
                const std::function<void(ChartForm&)>& set) {
    ChartFile chart(session, kind);
    if (set) set(chart.Form());
    chart.Form().Start();
    chart.Write(fileName, fit);
}

}  // namespace vortan
