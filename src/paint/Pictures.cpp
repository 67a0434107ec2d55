#include "paint/Pictures.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>
#include <algorithm>
#include <cmath>

#include "charts/TableText.h"
#include "charts/Twips.h"
#include "model/Fault.h"
#include "paint/ChartPainter.h"
#include "paint/Text.h"
#include "reports/StatusReport.h"

namespace vortan {
namespace {

constexpr double kMostPixels = 400'000'000;  // of a PNG, that is 1.6 GB while it is drawn
constexpr double kMostClipboardPixels = 50'000'000;
constexpr double kLongestSide = 32767;  // that the toolkit paints on
constexpr double kPicturePixels = 144;  // to the inch, for other programs

/// Paints everything with the painter's units set to `perTwip`.
void PaintAll(QPainter& painter, const ShownSurface& shown, double perTwip) {
    const Vwindow& surface = shown.surface;
    painter.scale(perTwip, perTwip);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const ChartPainter chart(surface, shown.metrics, surface.AdjustColors);
    // The last lines lie on the edge.
    const int line = static_cast<int>(kTwipsPerPixel);
    chart.Paint(painter, QRect(0, 0, surface.ContentWidth() + line, surface.ContentHeight() + line),
                kTwipsPerPixel);
}

QByteArray MakeSvg(const ShownSurface& shown) {
    const Vwindow& surface = shown.surface;
    QByteArray data;
    QBuffer buffer(&data);
    QSvgGenerator svg;
    svg.setOutputDevice(&buffer);
    svg.setTitle(Q(shown.title));
    svg.setResolution(kScreenPixels);
    const QSize size(static_cast<int>(std::ceil(surface.ContentWidth() / kTwipsPerPixel)) + 1,
                     static_cast<int>(std::ceil(surface.ContentHeight() / kTwipsPerPixel)) + 1);
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(0, 0), size));
    QPainter painter(&svg);
    PaintAll(painter, shown, 1 / kTwipsPerPixel);
    painter.end();
    return data;
}

/// A null image if it would have more than `mostPixels`.
QImage MakeImage(const ShownSurface& shown, double pixelsPerInch, double mostPixels) {
    const double perTwip = pixelsPerInch / kTwipsPerInch;
    const double width = std::ceil(shown.surface.ContentWidth() * perTwip) + 1,
                 height = std::ceil(shown.surface.ContentHeight() * perTwip) + 1;
    if (width * height > mostPixels || std::max(width, height) > kLongestSide) return {};
    QImage image(static_cast<int>(width), static_cast<int>(height), QImage::Format_RGB32);
    if (image.isNull()) return image;
    image.fill(Qt::white);
    image.setDotsPerMeterX(static_cast<int>(std::lround(pixelsPerInch / 0.0254)));
    image.setDotsPerMeterY(image.dotsPerMeterX());
    QPainter painter(&image);
    PaintAll(painter, shown, perTwip);
    painter.end();
    return image;
}

QByteArray ToPng(const QImage& image) {
    QByteArray data;
    QBuffer buffer(&data);
    if (!image.save(&buffer, "PNG")) Refuse("The PNG picture could not be made.");
    return data;
}

QByteArray MakePng(const ShownSurface& shown, double pixelsPerInch) {
    const QImage image = MakeImage(shown, pixelsPerInch, kMostPixels);
    if (image.isNull()) {
        const double perTwip = pixelsPerInch / kTwipsPerInch;
        Refuse("The chart is too large for a PNG picture: " +
               std::to_string(std::lround(shown.surface.ContentWidth() * perTwip)) + " by " +
               std::to_string(std::lround(shown.surface.ContentHeight() * perTwip)) +
               " pixels. Please make an SVG or a PDF of it.");
    }
    return ToPng(image);
}

}  // namespace

QByteArray MakePicture(const ShownSurface& shown, PictureType type, double pixelsPerInch) {
    return type == PictureType::Svg ? MakeSvg(shown) : MakePng(shown, pixelsPerInch);
}

std::unique_ptr<QMimeData> ClipboardData(const ShownSurface& shown) {
    auto data = std::make_unique<QMimeData>();
    if (shown.surface.TheStyle() == Vwindow::Style::Table) {
        const TablePart all = WholeTable(shown.surface);
        data->setText(Q(TableAsTabs(shown.surface, all)));
        data->setHtml(Q(TableAsHtml(shown.surface, all)));
    }
    data->setData("image/svg+xml", MakeSvg(shown));
    const QImage image = MakeImage(shown, kPicturePixels, kMostClipboardPixels);
    if (!image.isNull()) data->setImageData(image);
    return data;
}

std::string GetPictureText(const ShownSurface& shown) {
    constexpr double kNatural = static_cast<double>(kReportPixelsWide) / kReportTwipsWide;
    const Vwindow& surface = shown.surface;
    const int line = static_cast<int>(kTwipsPerPixel);
    const QRect all(0, 0, surface.ContentWidth() + line, surface.ContentHeight() + line);
    const double perTwip = std::min({kNatural, static_cast<double>(kReportPixelsWide) / all.width(),
                                     static_cast<double>(kReportPixelsHigh) / all.height()});
    QImage image(kReportPixelsWide, kReportPixelsHigh, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setDotsPerMeterX(static_cast<int>(std::lround(kNatural * kTwipsPerInch / 0.0254)));
    image.setDotsPerMeterY(image.dotsPerMeterX());
    QPainter painter(&image);
    painter.translate((kReportPixelsWide - all.width() * perTwip) / 2,
                      (kReportPixelsHigh - all.height() * perTwip) / 2);
    painter.scale(perTwip, perTwip);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const ChartPainter chart(surface, shown.metrics, surface.AdjustColors);
    chart.Paint(painter, all, std::max(kTwipsPerPixel, 1 / perTwip));
    painter.end();
    return ToPng(image).toHex().toStdString();
}

}  // namespace vortan
