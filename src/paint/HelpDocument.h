#pragma once

#include <QByteArray>
#include <QImage>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPalette>
#include <QTextDocument>
#include <functional>
#include <string>
#include <vector>

#include "help/HelpPage.h"

namespace vortan {

/// A picture of the manual, by the name of its file; a null one if there is none.
using HelpPictures = std::function<QImage(const std::string& file)>;

/// Fills the document with a page in the colours of a palette and the document's own font. Links are
/// `HelpLink`.
void FillHelpDocument(QTextDocument& document, const HelpPage& page, const QPalette& palette);

/// Makes the pictures of the page that the document shows fit into a width, in pixels of the document, at
/// `zoom` times their size. `deviceRatio` is that of the screen.
void FitHelpPictures(QTextDocument& document, const HelpPage& page, const HelpPictures& pictures,
                     double width, double zoom, double deviceRatio);

/// The address of the link to a page, and the key in it.
QString HelpLink(const std::string& key);
std::string KeyOfHelpLink(const QUrl& link);

/// Prints pages, black on white; short ones share a sheet. A printer that fails is a fault.
void PrintHelpPages(QPagedPaintDevice& printer, const std::vector<const HelpPage*>& pages,
                    const HelpPictures& pictures);

/// The same as a PDF.
QByteArray MakeHelpPdf(const std::vector<const HelpPage*>& pages, const QPageLayout& layout,
                       const QString& title, const HelpPictures& pictures);

}  // namespace vortan
