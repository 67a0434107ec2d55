#include "paint/Pictures.h"

#include <QBuffer>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <algorithm>
#include <cmath>

#include "model/Fault.h"
#include "paint/ChartPainter.h"

namespace vortan {
namespace {

constexpr double kTwipsPerInch = 1440, kTwipsPerPoint = 20;
constexpr int kScreenPixels = 96;            // to the inch; what a line of one pixel means on paper
constexpr int kPageMargin = 720;             // twips around the one page of a PDF
constexpr double kMostPixels = 400'000'000;  // of a PNG, that is 1.6 GB while it is drawn

/// Paints everything with the painter's units set to `perTwip`, from `origin` on.
void PaintAll(QPainter& painter, const Vwindow& surface, const QtTextMetrics& metrics, double perTwip,
              const QPointF& origin) {
    painter.translate(origin);
    painter.scale(perTwip, perTwip);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const ChartPainter chart(surface, metrics);
    // The last lines lie on the edge.
    const QRect all(0, 0, surface.ContentWidth() + 15, surface.ContentHeight() + 15);
    chart.Paint(painter, all, kTwipsPerInch / kScreenPixels);
}

QByteArray MakeSvg(const Vwindow& surface, const QtTextMetrics& metrics, const QString& title) {
    QByteArray data;
    QBuffer buffer(&data);
    QSvgGenerator svg;
    svg.setOutputDevice(&buffer);
    svg.setTitle(title);
    svg.setResolution(kScreenPixels);
    const double pixel = kTwipsPerInch / kScreenPixels;
    const QSize size(static_cast<int>(std::ceil(surface.ContentWidth() / pixel)) + 1,
                     static_cast<int>(std::ceil(surface.ContentHeight() / pixel)) + 1);
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(0, 0), size));
    QPainter painter(&svg);
    PaintAll(painter, surface, metrics, 1 / pixel, {});
    painter.end();
    return data;
}

QByteArray MakePng(const Vwindow& surface, const QtTextMetrics& metrics, double pixelsPerInch) {
    const double perTwip = pixelsPerInch / kTwipsPerInch;
    const double width = std::ceil(surface.ContentWidth() * perTwip) + 1,
                 height = std::ceil(surface.ContentHeight() * perTwip) + 1;
    const bool tooLarge = width * height > kMostPixels;
    QImage image;
    if (!tooLarge) image = QImage(static_cast<int>(width), static_cast<int>(height), QImage::Format_RGB32);
    if (image.isNull()) {
        Refuse("The chart is too large for a PNG picture: " + std::to_string(static_cast<long>(width)) +
               " by " + std::to_string(static_cast<long>(height)) +
               " pixels. Please make an SVG or a PDF of it.");
    }
    image.fill(Qt::white);
    image.setDotsPerMeterX(static_cast<int>(std::lround(pixelsPerInch / 0.0254)));
    image.setDotsPerMeterY(image.dotsPerMeterX());
    QPainter painter(&image);
    PaintAll(painter, surface, metrics, perTwip, {});
    painter.end();
    QByteArray data;
    QBuffer buffer(&data);
    image.save(&buffer, "PNG");
    return data;
}

QByteArray MakePdf(const Vwindow& surface, const QtTextMetrics& metrics, const QString& title) {
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter pdf(&buffer);
    pdf.setTitle(title);
    pdf.setCreator("VORTAN");
    pdf.setResolution(static_cast<int>(kTwipsPerInch));
    const QSizeF points((surface.ContentWidth() + 2 * kPageMargin) / kTwipsPerPoint,
                        (surface.ContentHeight() + 2 * kPageMargin) / kTwipsPerPoint);
    pdf.setPageSize(QPageSize(points, QPageSize::Point, {}, QPageSize::ExactMatch));
    pdf.setPageMargins(QMarginsF());
    QPainter painter(&pdf);
    PaintAll(painter, surface, metrics, 1, {kPageMargin, kPageMargin});
    painter.end();
    return data;
}

}  // namespace

std::optional<PictureType> PictureTypeOf(const std::string& fileName) {
    const auto ends = [&](const char* extension) {
        return QString::fromStdString(fileName).endsWith(extension, Qt::CaseInsensitive);
    };
    if (ends(".svg")) return PictureType::Svg;
    if (ends(".png")) return PictureType::Png;
    if (ends(".pdf")) return PictureType::Pdf;
    return std::nullopt;
}

QByteArray MakePicture(const Vwindow& surface, const QtTextMetrics& metrics, PictureType type,
                       const QString& title, double pixelsPerInch) {
    switch (type) {
        case PictureType::Svg:
            return MakeSvg(surface, metrics, title);
        case PictureType::Png:
            return MakePng(surface, metrics, pixelsPerInch);
        case PictureType::Pdf:
            break;
    }
    return MakePdf(surface, metrics, title);
}

}  // namespace vortan
