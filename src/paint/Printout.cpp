#include "paint/Printout.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QLocale>
#include <QPdfWriter>
#include <algorithm>
#include <cmath>

#include "charts/Twips.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "paint/ChartPainter.h"
#include "paint/Text.h"

namespace vortan {
namespace {

constexpr double kMarginPoints = 36;
constexpr int kHeadLetters = 180;  // twips: nine points
constexpr int kHeadLine = 360;     // twips: the line at the head and the space below it
constexpr int kPdfDots = 1200;     // to the inch

std::string ProgramTitle() {
    return "VORTAN " + GetAppVersion();
}

}  // namespace

QPageLayout DefaultPageLayout() {
    const bool letter = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    return {QPageSize(letter ? QPageSize::Letter : QPageSize::A4), QPageLayout::Landscape,
            QMarginsF(kMarginPoints, kMarginPoints, kMarginPoints, kMarginPoints), QPageLayout::Point};
}

Vwindow::Page PageOf(const QPageLayout& layout) {
    const QRectF sheet = layout.fullRect(QPageLayout::Inch), inner = layout.paintRect(QPageLayout::Inch);
    const auto twips = [](double inches) { return static_cast<int>(inches * kTwipsPerInch); };
    Vwindow::Page page;
    page.width = std::max(1, twips(inner.width()));
    page.height = std::max(1, twips(inner.height()) - kHeadLine);
    page.marginWidth = (twips(sheet.width()) - page.width) / 2;
    page.marginHeight = (twips(sheet.height()) - page.height) / 2;
    return page;
}

Printout::Printout(QPagedPaintDevice& device, const ShownSurface& shown, int pages)
    : device_(device), shown_(shown), pages_(pages), dotsPerTwip_(device.logicalDpiX() / kTwipsPerInch) {
    if (!painter_.begin(&device_)) Refuse("The printer could not be started.");
}

void Printout::PrintPiece(const Piece& piece) {
    if (piece.newPage) {
        if (page_++ > 0 && !device_.newPage()) Refuse("The printer could not begin a new page.");
        PrintHead();
    }
    painter_.save();
    painter_.scale(dotsPerTwip_, dotsPerTwip_);
    painter_.translate(piece.destX, piece.destY + kHeadLine);
    painter_.scale(piece.scale, piece.scale);
    painter_.translate(-piece.x1, -piece.y1);
    const ChartPainter chart(shown_.surface, shown_.metrics, shown_.surface.AdjustColors);
    // The surface ends with a line on its edge. Where it is cut, the part gets one, in place of the half line
    // of what begins there.
    const int line = static_cast<int>(kTwipsPerPixel);
    const int right = piece.x2 + (piece.x2 >= shown_.surface.ContentWidth() ? line : -line / 2);
    const int bottom = piece.y2 + (piece.y2 >= shown_.surface.ContentHeight() ? line : -line / 2);
    const QRect part(piece.x1, piece.y1, right - piece.x1, bottom - piece.y1);
    if (piece.x2 > piece.x1 && piece.y2 > piece.y1) {
        chart.Paint(painter_, part, kTwipsPerPixel);
        chart.PaintCut(painter_, part, kTwipsPerPixel);
    }
    painter_.restore();
}

void Printout::PrintHead() {
    painter_.save();
    painter_.scale(dotsPerTwip_, dotsPerTwip_);
    QFont font = shown_.metrics.DrawingFont();
    font.setPixelSize(kHeadLetters);
    painter_.setFont(font);
    painter_.setPen(Qt::black);
    const QFontMetricsF metrics(font);
    const double width = painter_.device()->width() / dotsPerTwip_;
    QString right = Q(ProgramTitle());
    if (pages_ > 1) right += QString(", page %1 of %2").arg(page_).arg(pages_);
    const double rightWidth = metrics.horizontalAdvance(right);
    const double room = std::max(0.0, width - rightWidth - kHeadLetters);
    const int base = static_cast<int>(metrics.ascent());
    painter_.drawText(QPointF(0, base), metrics.elidedText(Q(shown_.title), Qt::ElideRight, room));
    painter_.drawText(QPointF(width - rightWidth, base), right);
    painter_.restore();
}

void Printout::EndDoc() {
    if (!painter_.end()) Refuse("The printer could not finish.");
}

void PrintPieces(QPagedPaintDevice& device, const ShownSurface& shown, const std::vector<Piece>& pieces) {
    const auto pages =
        std::count_if(pieces.begin(), pieces.end(), [](const Piece& piece) { return piece.newPage; });
    Printout job(device, shown, static_cast<int>(pages));
    for (const Piece& piece : pieces) job.PrintPiece(piece);
    job.EndDoc();
}

QByteArray MakePdf(const QPageLayout& layout, const ShownSurface& shown, const std::vector<Piece>& pieces) {
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter pdf(&buffer);
    pdf.setResolution(kPdfDots);
    pdf.setPageLayout(layout);
    pdf.setTitle(Q(shown.title));
    pdf.setCreator(Q(ProgramTitle()));
    PrintPieces(pdf, shown, pieces);
    return data;
}

}  // namespace vortan
