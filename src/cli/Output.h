#pragma once

#include <memory>
#include <string>

#include "charts/Vwindow.h"
#include "persist/Settings.h"
#include "reports/Table.h"

/// What makes files with the help of large libraries. It stands in a module of its own (src/cli/output),
/// which is loaded by the commands that want it: linking the toolkit takes longer than solving a plan of
/// usual size.
namespace vortan {

/// Draws surfaces, without a display.
class Drawing {
  public:
    virtual ~Drawing() = default;
    /// Of the font that everything is drawn with; good as long as this is.
    virtual const TextMetrics& Metrics() const = 0;
    /// The room on a page of a PDF.
    virtual Vwindow::Page Page() const = 0;
    /// The bytes of a file of that name: .svg and .png hold one picture, .pdf is cut into pages with
    /// headings, with `fit` reduced to one page. A picture too large for memory is a fault.
    virtual std::string MakeFile(const Vwindow& surface, const std::string& title,
                                 const std::string& fileName, bool fit) const = 0;
    /// The surface as a picture in a status report.
    virtual std::string PictureText(const Vwindow& surface, const std::string& title) const = 0;
};

/// The module. One object, which lives as long as the program.
class Output {
  public:
    virtual std::unique_ptr<Drawing> StartDrawing(const FormFont& font) = 0;
    /// The bytes of an .xlsx.
    virtual std::string MakeWorkbook(const Table& table, const std::string& sheet,
                                     const std::string& currencySymbol) = 0;

  protected:
    ~Output() = default;
};

/// The module, loaded when first asked for. `programFile` tells where to look for it. CliError if there is
/// none.
Output& LoadOutput(const std::string& programFile);

}  // namespace vortan
