#pragma once

#include <QByteArray>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <vector>

#include "charts/PageCuts.h"
#include "paint/ShownSurface.h"

/// Surfaces on the pages of a printer or a PDF.
namespace vortan {

/// Landscape, half an inch of margin, in the paper of the user's country.
QPageLayout DefaultPageLayout();
/// What charts may fill of such a page: the printable part below the line at the head.
Vwindow::Page PageOf(const QPageLayout& layout);

/// A print job of one surface. Each page has a line at its head: the surface's title at the left, the
/// program and the number of the page, if there are more, at the right.
class Printout {
  public:
    /// Begins the job; `device` and what `shown` refers to must outlive it. A device that cannot be painted
    /// on is a fault.
    Printout(QPagedPaintDevice& device, const ShownSurface& shown, int pages);
    /// Prints a part of the surface, and nothing outside it, on a new or on the present page.
    void PrintPiece(const Piece& piece);
    void EndDoc();

  private:
    void PrintHead();

    QPagedPaintDevice& device_;
    const ShownSurface& shown_;
    int pages_, page_ = 0;
    double dotsPerTwip_;
    QPainter painter_;
};

/// The whole of a job.
void PrintPieces(QPagedPaintDevice& device, const ShownSurface& shown, const std::vector<Piece>& pieces);
/// The job as a PDF file.
QByteArray MakePdf(const QPageLayout& layout, const ShownSurface& shown, const std::vector<Piece>& pieces);

}  // namespace vortan
