#include "paint/HelpDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <QTextFrame>
#include <QUrl>
#include <algorithm>
#include <cmath>

#include "help/HelpViews.h"
#include "model/Fault.h"
#include "paint/Text.h"

namespace vortan {
namespace {

constexpr double kPicturePixelsPerInch = 144, kDocumentPixelsPerInch = 96;
constexpr double kPdfPoints = 11, kPointsPerInch = 72;
const char kLinkScheme[] = "page:";

QString StyleSheet(const QPalette& palette) {
    const QString shade = palette.color(QPalette::AlternateBase).name();
    return QString(
               "h1 { font-size: x-large; margin-top: 0; margin-bottom: 10px; }"
               "h2 { font-size: large; margin-top: 14px; margin-bottom: 6px; }"
               "p { margin-top: 0; margin-bottom: 8px; } li { margin-bottom: 4px; } .caption { margin-top: "
               "0; }"
               "a { color: %1; text-decoration: underline; }"
               "th, kbd, code, pre { background-color: %2; } table { border-collapse: collapse; "
               "border-color: %3; margin-bottom: 8px; }"
               "pre { white-space: pre-wrap; margin: 4px 16px 8px 16px; }")
        .arg(palette.color(QPalette::Link).name(), shade, palette.color(QPalette::Mid).name());
}

void PaintPages(QPagedPaintDevice& pdf, QPainter& painter, const HelpPage& page, const HelpPictures& pictures,
                bool& first) {
    const double scale = pdf.logicalDpiX() / kDocumentPixelsPerInch;
    const QSizeF sheet = QSizeF(pdf.width(), pdf.height()) / scale;
    QTextDocument document;
    QFont font("Sans Serif");
    font.setPixelSize(static_cast<int>(std::round(kPdfPoints * kDocumentPixelsPerInch / kPointsPerInch)));
    document.setDefaultFont(font);
    QPalette white;
    white.setColor(QPalette::AlternateBase, QColor(0xF0, 0xF0, 0xF0));
    white.setColor(QPalette::Link, QColor(0, 0, 0xC0));
    white.setColor(QPalette::Mid, Qt::gray);
    FillHelpDocument(document, page, white);
    document.setDocumentMargin(0);
    document.setPageSize(sheet);
    FitHelpPictures(document, page, pictures, sheet.width(), 1, scale);
    QAbstractTextDocumentLayout::PaintContext context;
    for (int i = 0; i < document.pageCount(); ++i) {
        if (!first) pdf.newPage();
        first = false;
        painter.save();
        painter.scale(scale, scale);
        painter.translate(0, -i * sheet.height());
        context.clip = QRectF(QPointF(0, i * sheet.height()), sheet);
        context.palette.setColor(QPalette::Text, Qt::black);
        painter.setClipRect(context.clip);
        document.documentLayout()->draw(&painter, context);
        painter.restore();
    }
}

}  // namespace

void FillHelpDocument(QTextDocument& document, const HelpPage& page, const QPalette& palette) {
    const HelpAddresses addresses{[](const std::string& key) { return S(HelpLink(key)); },
                                  [](const std::string& file) { return file; }};
    document.setDefaultStyleSheet(StyleSheet(palette));
    document.setHtml(Q(HelpHtml(page, addresses)));
}

void FitHelpPictures(QTextDocument& document, const HelpPage& page, const HelpPictures& pictures,
                     double width, double zoom, double deviceRatio) {
    bool any = false;
    for (const HelpBlock& block : page.blocks) {
        if (block.kind != HelpBlock::Kind::Picture) continue;
        QImage image = pictures(block.picture);
        if (image.isNull()) continue;
        const double natural = image.width() * kDocumentPixelsPerInch / kPicturePixelsPerInch * zoom;
        const double pixels = std::max(1.0, std::min(natural, width) * deviceRatio);
        if (pixels < image.width())
            image = image.scaledToWidth(static_cast<int>(pixels), Qt::SmoothTransformation);
        image.setDevicePixelRatio(image.width() / std::min(natural, std::max(width, 1.0)));
        document.addResource(QTextDocument::ImageResource, QUrl(Q(block.picture)), image);
        any = true;
    }
    if (any) document.markContentsDirty(0, document.characterCount());
}

QString HelpLink(const std::string& key) {
    return kLinkScheme + QString::fromLatin1(QUrl::toPercentEncoding(Q(key)));
}

std::string KeyOfHelpLink(const QUrl& link) {
    return S(link.path(QUrl::FullyDecoded));
}

void PrintHelpPages(QPagedPaintDevice& printer, const std::vector<const HelpPage*>& pages,
                    const HelpPictures& pictures) {
    QPainter painter;
    if (!painter.begin(&printer)) Refuse("The printer could not be started.");
    bool first = true;
    for (const HelpPage* page : pages) PaintPages(printer, painter, *page, pictures, first);
}

QByteArray MakeHelpPdf(const std::vector<const HelpPage*>& pages, const QPageLayout& layout,
                       const QString& title, const HelpPictures& pictures) {
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter pdf(&buffer);
    pdf.setResolution(static_cast<int>(4 * kPicturePixelsPerInch));
    pdf.setPageLayout(layout);
    pdf.setTitle(title);
    PrintHelpPages(pdf, pages, pictures);
    return data;
}

}  // namespace vortan
