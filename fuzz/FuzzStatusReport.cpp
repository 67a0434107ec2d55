#include <string>
#include <string_view>
#include <vector>

#include "FuzzTargets.h"
#include "QuietPlatform.h"
#include "model/Workspace.h"
#include "reports/StatusReport.h"

namespace {

/// What a reader of the document sees: its tokens, with pieces of text put together.
std::vector<std::string> PiecesOf(const vortan::RtfText& text) {
    std::vector<std::string> pieces;
    bool wasText = false;
    for (const vortan::RtfToken& token : text.Tokens()) {
        if (wasText && token.IsText()) {
            pieces.back() += token.Text();
        } else {
            pieces.emplace_back(token.Text());
        }
        wasText = token.IsText();
    }
    return pieces;
}

/// The bytes as a document: other lines leave it as it is, and a report of it can be reported on again.
void FuzzStatusReport(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const vortan::RtfText text(bytes);
    if (!text.Problem().empty()) return;
    const vortan::RtfText other(text.Write({{0, "{"}}));
    FuzzCheck(PiecesOf(other) == PiecesOf(text), "other lines change the document");

    QuietPlatform platform;
    vortan::Workspace workspace(platform);
    const vortan::ReportTexts texts(*workspace.FindOrCreateProject("P"));
    vortan::StatusReport report(bytes);
    FuzzCheck(report.Write(texts).empty() == bytes.empty(), "a document is lost");
    for (vortan::StatusRow& row : report.Rows) row.previous = 'Y';
    report.CopyToPrevious();
    const vortan::StatusReport again(report.Write(texts, {"12", "34"}));
    FuzzCheck(again.Problem().empty(), "a report damages its document");
    FuzzCheck(again.Rows.size() == report.Rows.size(), "a report changes the rows of its table");
}

const FuzzTarget kTarget("status_report", FuzzStatusReport);

}  // namespace
