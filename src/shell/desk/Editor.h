#pragma once

#include <QString>
#include <QStringList>
#include <optional>

/// The program that the user's desktop has registered for RTF documents.
namespace vortan {

/// A program and its arguments, which no shell reads: a file name can run nothing.
struct EditorCommand {
    QString program;
    QStringList arguments;
};

/// What opens the document `fileName`. None if no program is registered.
std::optional<EditorCommand> FindEditor(const QString& fileName);

/// The command of a desktop entry for a file. None if the entry has none, or is of a program that is not
/// there.
std::optional<EditorCommand> CommandOfDesktopEntry(const QString& entryFile, const QString& fileName);

}  // namespace vortan
