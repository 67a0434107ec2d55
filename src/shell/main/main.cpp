#include <QApplication>
#include <QFileInfo>
#include <QTimer>

#include "paint/Text.h"
#include "shell/main/App.h"

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName("vortan");
    // The whole command line is one file name, which the recent files keep for other directories.
    QStringList words = QApplication::arguments();
    words.removeFirst();
    const QString file = words.isEmpty() ? QString() : QFileInfo(words.join(' ')).absoluteFilePath();
    vortan::App app;
    app.mainForm.show();
    QTimer::singleShot(0, &app.mainForm, [&] { app.mainForm.Activate(vortan::S(file)); });
    return QApplication::exec();
}
