#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <iostream>

/// Draws the program's icon in the sizes of an icon theme. Arguments: the .svg, and the folder for
/// <size>.png.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 3) return 1;
    QSvgRenderer icon(QString::fromLocal8Bit(argv[1]));
    bool done = icon.isValid();
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        QImage image(size, size, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        icon.render(&painter);
        painter.end();
        done = done && image.save(QString::fromLocal8Bit(argv[2]) + "/" + QString::number(size) + ".png");
    }
    if (!done) std::cerr << "The icons could not be drawn.\n";
    return done ? 0 : 1;
}
