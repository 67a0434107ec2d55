#include "shell/main/WelcomeForm.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>

#include "model/Build.h"
#include "model/ValueText.h"
#include "paint/Text.h"
#include "shell/desk/FormHost.h"
#include "shell/desk/Icons.h"

namespace vortan {
namespace {

/// "Version 1.2.3 BETA  (VORTAN.EXE 9/3/2001)": the program's file in capitals, and its date.
QString VersionText(const std::string& programFile) {
    const QFileInfo file(Q(programFile));
    const QString version =
        Q("Version " + GetAppVersion() + " BETA  (") + file.completeBaseName().toUpper() + ".EXE ";
    if (!file.lastModified().isValid()) return version + QString("?\?/?\?/?\?)");
    return version + QLocale::system().toString(file.lastModified().date(), QLocale::ShortFormat) + ")";
}

}  // namespace

void WelcomeForm::Start(Desktop& desktop) {
    auto* form = new WelcomeForm(desktop);
    form->ShowWith(form->OkCommand());
}

WelcomeForm::WelcomeForm(Desktop& desktop)
    : EntryForm(desktop, "WelcomeForm", "Welcome to VORTAN for Windows") {
    const int line = fontMetrics().height();
    auto* picture = new QLabel;
    picture->setPixmap(GetResIcon("Vortan.ico").pixmap(QSize(4 * line, 4 * line), devicePixelRatioF()));
    auto* name = new QLabel("VORTAN for Windows");
    name->setObjectName("Label1");
    QFont large("Times New Roman");
    large.setPointSizeF(font().pointSizeF() * 2.4);
    large.setBold(true);
    name->setFont(large);
    auto* version = new QLabel(VersionText(desktop.platform.ProgramFile()));
    version->setObjectName("VersionLabel");
    auto* build = new QLabel(Q(GetBuildText()));
    build->setObjectName("BuildLabel");
    build->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* words = new QVBoxLayout;
    words->addWidget(name);
    words->addWidget(version);
    words->addWidget(build);
    auto* head = new QHBoxLayout;
    head->setSpacing(line);
    head->setContentsMargins(line, line, 2 * line, line);
    head->addWidget(picture);
    head->addLayout(words, 1);
    Body().addLayout(head);

    auto* guideMe = new QPushButton("I'm new -- please guide me");
    guideMe->setObjectName("GuideMeCommand");
    connect(guideMe, &QPushButton::clicked, this,
            Command("Welcome:GuideMeCommand_Click", [this] { ExitScreen(true); }));
    AddButton(guideMe);
    CancelCommand().hide();
}

void WelcomeForm::ExitScreen(bool guideMe) {
    hide();
    desktop_.platform.StatusMessage("");
    if (guideMe) desktop_.host->DisplayHelpPage("Guide Me");
    Unload();
}

bool WelcomeForm::Finish() {
    ExitScreen(false);
    return true;
}

}  // namespace vortan
