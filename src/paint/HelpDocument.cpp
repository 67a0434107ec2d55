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

/// Puts pages on sheets. One that fits below the page before goes there; others begin on a new sheet.
class HelpPrinter {
  public:
    explicit HelpPrinter(QPagedPaintDevice& device)
        : device_(device),
          scale_(device.logicalDpiX() / kDocumentPixelsPerInch),
          sheet_(QSizeF(device.width(), device.height()) / scale_) {
        if (!painter_.begin(&device)) Refuse("The printer could not be started.");
    }

    void Print(const HelpPage& page, const HelpPictures& pictures) {
        constexpr double kGap = 24;
        QTextDocument document;
        Fill(document, page, pictures);
        const double height = document.size().height();
        if (used_ > 0 && used_ + kGap + height <= sheet_.height()) {
            Draw(document, used_ + kGap, height, 0);
            used_ += kGap + height;
            return;
        }
        document.setPageSize(sheet_);
        for (int i = 0; i < document.pageCount(); ++i) {
            if (used_ > 0 && !device_.newPage()) Refuse("The printer could not begin a new page.");
            used_ = document.pageCount() > 1 ? sheet_.height() : height;
            Draw(document, 0, sheet_.height(), i * sheet_.height());
        }
    }

  private:
    void Fill(QTextDocument& document, const HelpPage& page, const HelpPictures& pictures) const {
        QFont font("Sans Serif");
        font.setPixelSize(static_cast<int>(std::round(kPdfPoints * kDocumentPixelsPerInch / kPointsPerInch)));
        document.setDefaultFont(font);
        QPalette white;
        white.setColor(QPalette::AlternateBase, QColor(0xF0, 0xF0, 0xF0));
        white.setColor(QPalette::Link, QColor(0, 0, 0xC0));
        white.setColor(QPalette::Mid, Qt::gray);
        FillHelpDocument(document, page, white);
        document.setDocumentMargin(0);
        document.setTextWidth(sheet_.width());
        FitHelpPictures(document, page, pictures, sheet_.width(), 1, scale_);
    }
    /// The part of the document from `from` on, as high as `height`, at `top` of the sheet.
    void Draw(QTextDocument& document, double top, double height, double from) {
        painter_.save();
        painter_.scale(scale_, scale_);
        painter_.translate(0, top - from);
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = QRectF(0, from, sheet_.width(), height);
        context.palette.setColor(QPalette::Text, Qt::black);
        painter_.setClipRect(context.clip);
        document.documentLayout()->draw(&painter_, context);
        painter_.restore();
    }

    QPagedPaintDevice& device_;
    double scale_;  // dots to a pixel of the document
    QSizeF sheet_;  // in pixels of the document
    QPainter painter_;
    double used_ = 0;  // of the sheet
};

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
    HelpPrinter sheets(printer);
    for (const HelpPage* page : pages) sheets.Print(*page, pictures);
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
