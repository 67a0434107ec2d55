#include "shell/desk/CommonDialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QRegularExpression>
#include <cmath>
#include <filesystem>

#include "model/Characters.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "paint/QtTextMetrics.h"
#include "paint/Text.h"

namespace vortan {
namespace {

constexpr const char* kFilters =
    "VORTAN Bundle (*.vtb);;VORTAN Ascii (*.vta);;Microsoft Project (*.mpp);;Microsoft Project XML (*.xml)";
constexpr const char* kPageFilter = "Web page (*.html)";

std::string RunSaveDialog(QFileDialog& dialog) {
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    // A name typed without an extension takes that of the chosen type.
    const auto follow = [&dialog](const QString& chosen) {
        dialog.setDefaultSuffix(chosen.section("*.", 1).section(")", 0, 0));
    };
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, follow);
    follow(dialog.selectedNameFilter());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return S(dialog.selectedFiles().front());
}

}  // namespace

std::string ShowOpen(Desktop& desktop) {
    const QString chosen = QFileDialog::getOpenFileName(QApplication::activeWindow(), "Open",
                                                        Q(desktop.workspace.FileDialogPath), kFilters);
    if (!chosen.isEmpty())
        desktop.workspace.FileDialogPath = std::filesystem::path(S(chosen)).remove_filename().string();
    return S(chosen);
}

std::string ShowSave(const std::string& directory, const std::string& suggestedName) {
    QFileDialog dialog(QApplication::activeWindow(), "Save", Q(directory),
                       EndsWithText(suggestedName, ".html") ? kPageFilter : kFilters);
    const QFileInfo suggested(Q(suggestedName));
    if (suggested.isAbsolute()) dialog.setDirectory(suggested.path());
    dialog.selectFile(suggested.fileName());
    return RunSaveDialog(dialog);
}

std::string AskForFile(QWidget* parent, const char* caption, const std::string& title, const char* filters) {
    QFileDialog dialog(parent, caption, {}, filters);
    // Of "Mechanized Gantt chart for House: ..." what every file system takes.
    dialog.selectFile(Q(title).section(':', 0, 0).remove(QRegularExpression("[^\\w .-]")).trimmed());
    return RunSaveDialog(dialog);
}

QFont FontOfForm(Desktop& desktop, const QString& formName) {
    return ToFont(desktop.settings.FontOf(S(formName)));
}

bool ShowFont(Desktop& desktop, const QString& formName) {
    QFont before = FontOfForm(desktop, formName);
    before.setPointSize(static_cast<int>(std::floor(before.pointSizeF() + 0.5)));
    bool chosen = false;
    const QFont font = QFontDialog::getFont(&chosen, before, QApplication::activeWindow(), "Font");
    if (!chosen) return false;
    desktop.settings.SetFont(S(formName), {S(font.family()), font.pointSizeF(), font.bold(), font.italic()});
    return true;
}

}  // namespace vortan
