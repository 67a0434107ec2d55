#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <numeric>

#include "charts/Twips.h"
#include "model/Fault.h"
#include "paint/Pictures.h"
#include "paint/Printout.h"
#include "paint/ScreenColor.h"

namespace vortan {
namespace {

constexpr int kPixel = 10;  // twips, at 144 pixels per inch

class PictureTest : public testing::Test {
  protected:
    PictureTest() {
        surface.ClearLayout();
        surface.EndLayout(0, 0);
    }
    ShownSurface Shown() {
        surface.EndGraphics();
        return {surface, metrics, "Title"};
    }
    /// The picture in pixels, as a PNG and as an SVG shown in the same size.
    std::vector<QImage> Images() {
        const QImage png = QImage::fromData(MakePicture(Shown(), PictureType::Png), "PNG");
        QImage svg(png.size(), QImage::Format_RGB32);
        svg.fill(Qt::white);
        QPainter painter(&svg);
        QSvgRenderer drawing(MakePicture(Shown(), PictureType::Svg));
        drawing.render(&painter, QRectF(QPointF(), drawing.viewBoxF().size() * (kTwipsPerPixel / kPixel)));
        return {png, svg};
    }

    QtTextMetrics metrics{QFont()};
    Vwindow surface{Vwindow::Style::Free, metrics};
};

TEST_F(PictureTest, ThingsHaveTheirPlacesShapesAndColours) {
    surface.DrawRect(1000, 500, 3000, 1500, kBlack, kGreen);
    surface.DrawTriangle(4000, 500, 5000, 1500, kRed, kRed, Apex::Right);
    surface.DrawTriangle(5500, 500, 6500, 1500, kRed, kRed, Apex::Up);
    surface.DrawMilestone(7000, 500, 8000, 1500, kBlue, kBlue);
    surface.DrawRect(1000, 2000, 1800, 3000, kBlack, kYellow, Hatch::Transparent);
    surface.DrawLine(4000, 2500, 8000, 2500, kBlue, 3);
    surface.DrawRect(2000, 1000, 2400, 1200, kBlue, kYellow);  // over the green one
    const std::tuple<int, int, Color> places[] = {
        {1500, 1300, kGreen}, {1000, 1000, kBlack}, {800, 1000, kWhite},  {2200, 1100, kYellow},
        {4050, 700, kRed},    {4900, 1000, kRed},   {4900, 700, kWhite},  {6000, 650, kRed},
        {5600, 650, kWhite},  {5600, 1400, kRed},   {7500, 1000, kBlue},  {7060, 560, kWhite},
        {1400, 2500, kWhite}, {1000, 2500, kBlack}, {6000, 2500, kBlue},  {6000, 2600, kWhite},
        {3900, 2500, kWhite}, {7950, 2500, kBlue},  {7900, 1450, kWhite},
    };
    for (const QImage& image : Images()) {
        for (const auto& [x, y, color] : places) {
            // Borders are thinner than the pixels of the drawing, which mixes them in.
            const QColor seen = image.pixelColor(x / kPixel, y / kPixel), told = ScreenColor(color);
            EXPECT_NEAR(seen.red(), told.red(), 64) << x << " " << y;
            EXPECT_NEAR(seen.green(), told.green(), 64) << x << " " << y;
            EXPECT_NEAR(seen.blue(), told.blue(), 64) << x << " " << y;
        }
    }
}

TEST_F(PictureTest, AHatchIsOfItsColourAndLeavesRoom) {
    // Whether its lines are level, and whether they are upright.
    const std::tuple<Hatch, bool, bool> hatches[] = {
        {Hatch::Horizontal, true, false}, {Hatch::Vertical, false, true},
        {Hatch::Cross, true, true},       {Hatch::Upward, false, false},
        {Hatch::Downward, false, false},  {Hatch::DiagonalCross, false, false}};
    for (int i = 0; i < 6; ++i)
        surface.DrawRect(i * 2000, 0, i * 2000 + 1000, 1000, kWhite, kGreen, std::get<0>(hatches[i]));
    for (const QImage& image : Images()) {
        for (int i = 0; i < 6; ++i) {
            constexpr int kSide = 96;  // of the area without its border, pixels
            std::vector<int> rows(kSide), columns(kSide);
            for (int k = 0; k < kSide * kSide; ++k) {
                const int row = k / kSide, column = k % kSide;
                const bool colored = image.pixelColor(i * 200 + 2 + column, 2 + row) != Qt::white;
                rows[row] += colored, columns[column] += colored;
            }
            const int all = std::accumulate(rows.begin(), rows.end(), 0);
            EXPECT_TRUE(all > 4 * kSide && all < 60 * kSide) << i << ": " << all;
            EXPECT_EQ(std::count(rows.begin(), rows.end(), kSide) > 0, std::get<1>(hatches[i])) << i;
            EXPECT_EQ(std::count(columns.begin(), columns.end(), kSide) > 0, std::get<2>(hatches[i])) << i;
        }
    }
}

TEST_F(PictureTest, AnSvgHasTheSizeOfTheSurfaceAndItsTitle) {
    surface.DrawRect(0, 0, 2880, 1440, kBlack, kGreen);
    const QByteArray svg = MakePicture(Shown(), PictureType::Svg);
    QSvgRenderer drawing(svg);
    ASSERT_TRUE(drawing.isValid());
    const QRegularExpression millimetres(R"(width="([0-9.]+)mm" height="([0-9.]+)mm")");
    const auto size = millimetres.match(QString::fromUtf8(svg));
    const double sides[][3] = {
        {drawing.viewBoxF().width(), size.captured(1).toDouble(), 1.0 * surface.ContentWidth()},
        {drawing.viewBoxF().height(), size.captured(2).toDouble(), 1.0 * surface.ContentHeight()}};
    for (const auto& [pixels, millimetre, twips] : sides) {
        EXPECT_GE(pixels * kTwipsPerPixel, twips);
        EXPECT_LE(pixels * kTwipsPerPixel, twips + 2 * kTwipsPerPixel);
        EXPECT_NEAR(millimetre, pixels / 96 * 25.4, 0.01);
    }
    EXPECT_TRUE(svg.contains("<title>Title</title>"));
}

TEST_F(PictureTest, InBlackAndWhiteNothingHasColour) {
    surface.AdjustColors = true;
    surface.DrawRect(0, 0, 1000, 1000, kRed, kGreen);
    surface.DrawLine(0, 1500, 1000, 1500, kBlue, 3);
    surface.DrawText(0, 2000, "Text", kRed);
    for (const QImage& image : Images()) {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                ASSERT_LT(image.pixelColor(x, y).saturation(), 8) << x << " " << y;
        }
    }
}

TEST_F(PictureTest, ACellWithTheMarkForTheCentreIsDrawnThere) {
    Vwindow table(Vwindow::Style::Table, metrics);
    table.ClearLayout();
    table.AddColumn(std::string(40, 'M'), Alignment::Left);
    table.AddRow();
    table.SetCell(1, 0, "M");
    for (const bool centre : {false, true}) {
        table.SetCellMarkC(1, 0, centre);
        table.EndLayout(0, 0);
        const QImage image = QImage::fromData(MakePicture({table, metrics, "T"}, PictureType::Png), "PNG");
        const QRect left(3, table.RowPos(1) / kPixel + 3, table.ColPos(1) / kPixel / 3, 15);
        QImage blank = image.copy(left);
        blank.fill(blank.pixel(blank.width() - 1, 0));
        EXPECT_EQ(image.copy(left) == blank, centre);
    }
}

/// The line at the head tells of pages where there is more than one.
TEST_F(PictureTest, TwoPagesAreNumbered) {
    surface.DrawRect(0, 0, 2000, 2000, kBlack, kGreen);
    const ShownSurface shown = Shown();
    const std::vector<Piece> pieces(2, {true, 1, 0, 0, 2000, 2000, 0, 0});
    const auto print = [&](int pages) {
        QByteArray data;
        QBuffer buffer(&data);
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter pdf(&buffer);
        Printout job(pdf, shown, pages);
        for (const Piece& piece : pieces) job.PrintPiece(piece);
        job.EndDoc();
        return data.size();
    };
    EXPECT_GT(print(2), print(1) + 100);
}

TEST_F(PictureTest, WhatIsTooLargeForPixelsIsRefused) {
    surface.DrawRect(0, 0, 3000000, 3000000, kBlack, kGreen);
    EXPECT_THROW(MakePicture(Shown(), PictureType::Png), Fault);
    EXPECT_FALSE(ClipboardData(Shown())->hasImage());
}

}  // namespace
}  // namespace vortan
