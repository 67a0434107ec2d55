#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "charts/ChartKinds.h"
#include "cli/Output.h"
#include "cli/Session.h"

/// Charts and reports as the desktop would show or print them, in files.
namespace vortan {

/// CliError unless the name ends in one of `endings`. To be asked before any work is done.
void RequireEnding(const std::string& what, const std::string& fileName,
                   std::span<const std::string_view> endings);
/// The same for a chart: .svg, .png or .pdf, or with `data` also .json or .csv.
void RequireChartFile(const std::string& fileName, bool data = false);
/// In place of what the file held; what is no file, as a pipe, is written to. CliError if that fails.
void WriteResultFile(CliSession& session, const std::string& fileName, const std::string& bytes);

/// What drawing needs: the user's settings, and what draws in the user's font.
class DrawingTools {
  public:
    /// `form` is the name under which the settings keep the font. `session` must outlive this.
    DrawingTools(CliSession& session, const char* form);

    Settings& TheSettings() { return settings_; }
    const Drawing& TheDrawing() const { return *drawing_; }
    /// Writes a complete surface: one picture, or a PDF cut into pages with headings, with `fit` reduced to
    /// one page. CliError if that fails.
    void Write(const Vwindow& surface, const std::string& title, const std::string& fileName, bool fit) const;

  private:
    CliSession& session_;
    Settings settings_;
    std::unique_ptr<Drawing> drawing_;
};

/// A chart with the user's preferences and font, for the caller to start.
class ChartFile {
  public:
    /// `session` must outlive this.
    ChartFile(CliSession& session, const ChartKind& kind);

    ChartForm& Form() { return *form_; }
    /// Writes the started chart, as DrawingTools do.
    void Write(const std::string& fileName, bool fit) const;
    /// The started chart as GetPictureText.
    std::string PictureText() const;

  private:
    DrawingTools tools_;
    std::unique_ptr<ChartForm> form_;
};

/// Makes, starts and writes a chart.
void WriteChart(CliSession& session, const std::string& fileName, const ChartKind& kind, bool fit,
                const std::function<void(ChartForm&)>& set = {});

}  // namespace vortan
