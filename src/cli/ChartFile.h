#pragma once

#include <memory>
#include <string>

#include "charts/ChartKinds.h"
#include "cli/Session.h"
#include "paint/QtTextMetrics.h"

class QGuiApplication;

/// Charts as the desktop would show or print them, in files.
namespace vortan {

/// CliError unless the name ends in .svg, .png or .pdf, or with `data` in .json or .csv. To be asked before
/// any work is done.
void RequireChartFile(const std::string& fileName, bool data = false);
/// CliError if the file cannot be written.
void WriteResultFile(const std::string& fileName, const std::string& bytes);

/// A chart with the user's preferences and font, for the caller to start.
class ChartFile {
  public:
    /// `session` must outlive this.
    ChartFile(CliSession& session, const ChartKind& kind);
    ~ChartFile();
    ChartFile(const ChartFile&) = delete;
    ChartFile& operator=(const ChartFile&) = delete;

    ChartForm& Form() { return *form_; }
    /// Writes the started chart: one picture, or a PDF cut into pages with headings, with `fit` reduced to
    /// one page. CliError if that fails.
    void Write(const std::string& fileName, bool fit) const;
    /// The started chart as GetPictureText.
    std::string PictureText() const;

  private:
    std::unique_ptr<QGuiApplication> toolkit_;
    Settings settings_;
    std::unique_ptr<QtTextMetrics> metrics_;
    std::unique_ptr<ChartForm> form_;
};

/// Makes, starts and writes a chart.
void WriteChart(CliSession& session, const std::string& fileName, const ChartKind& kind, bool fit);

}  // namespace vortan
