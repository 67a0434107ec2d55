#include <QApplication>
#include <QTimer>

#include "shell/App.h"
#include "shell/Text.h"

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName("vortan");
    QApplication::setApplicationDisplayName("VORTAN");
    // The whole command line is one file name.
    QStringList words = QApplication::arguments();
    words.removeFirst();
    vortan::App app;
    app.mainForm.show();
    QTimer::singleShot(0, &app.mainForm, [&] { app.mainForm.Activate(vortan::S(words.join(' '))); });
    return QApplication::exec();
}
