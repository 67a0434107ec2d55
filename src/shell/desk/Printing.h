#pragma once

#include <QByteArray>
#include <QPageLayout>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "charts/PageCuts.h"
#include "model/Platform.h"
#include "paint/ShownSurface.h"

namespace vortan {

struct HelpPage;

/// The printer and page that the user has chosen, for the run of the program. A PDF file is the printer that
/// is always there, and the one until the user chooses another.
class Printing {
  public:
    Printing();

    /// What charts may fill of a page.
    Vwindow::Page Page() const;
    const QPageLayout& Layout() const { return layout_; }
    /// Lets the user choose the printer and its page. False on Cancel: all is as it was.
    bool ShowPrinter(QWidget* parent);
    /// Prints, asking for the name of a PDF file first if that is the printer, and returns what there is to
    /// tell of it, nothing if the user gave up. A printer that fails is a fault; a file that cannot be
    /// written is told in a box.
    std::string Print(QWidget* parent, Platform& platform, const ShownSurface& shown,
                      const std::vector<Piece>& pieces) const;
    /// The same for a page of the manual.
    std::string PrintHelpPage(QWidget* parent, Platform& platform, const HelpPage& page) const;

  private:
    std::string WritePdf(QWidget* parent, Platform& platform, const std::string& title,
                         const std::function<QByteArray()>& make) const;

    QPageLayout layout_;
    QString printer_;  // name, empty for a PDF file
};

}  // namespace vortan
