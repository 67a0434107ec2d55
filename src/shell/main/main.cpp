#include <QApplication>
#include <QFileInfo>
#include <QLocale>
#include <QTimer>
#include <clocale>
#include <iomanip>
#include <iostream>
#include <string_view>

#include "model/Build.h"
#include "model/Conventions.h"
#include "model/ValueText.h"
#include "paint/Text.h"
#include "shell/desk/QtPlatform.h"
#include "shell/main/App.h"
#include "shell/main/CommandLine.h"

namespace {

/// Answers what needs no window, and no display. Whether it was such a command line.
bool AnswerOnTerminal(std::string_view argument) {
    if (argument == "--version") {
        std::cout << "vortan " << vortan::GetAppVersion() << ", " << vortan::GetBuildText() << "\n";
        return true;
    }
    if (argument != "--help") return false;
    std::cout << vortan::kProgramPurpose << "\nUsage: " << vortan::kProgramUse << "\n\n" << std::left;
    for (const auto& [name, help] : vortan::kProgramOptions)
        std::cout << "  " << std::setw(12) << name << help << "\n";
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && AnswerOnTerminal(argv[1])) return 0;
    const QApplication application(argc, argv);
    // Files and pictures have points in their numbers, whatever the toolkit has taken from the environment.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName("vortan");
    // The whole command line is one file name, which the recent files keep for other directories.
    QStringList words = QApplication::arguments();
    words.removeFirst();
    const QString file = words.isEmpty() ? QString() : QFileInfo(words.join(' ')).absoluteFilePath();
    const vortan::UseConventions conventions(vortan::ConventionsOf(QLocale::system()));
    vortan::App app;
    app.mainForm.show();
    QTimer::singleShot(0, &app.mainForm, [&] { app.mainForm.Activate(vortan::S(file)); });
    return QApplication::exec();
}
