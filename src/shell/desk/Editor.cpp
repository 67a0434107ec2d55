#include "shell/desk/Editor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <QTextStream>
#include <QUrl>

namespace vortan {
namespace {

constexpr int kPatience = 5000;  // milliseconds, for the desktop's answer
const char* const kTypes[] = {"application/rtf", "text/rtf", "application/x-rtf"};

/// The name of the desktop entry that opens files of the type; empty if there is none.
QString EntryOfType(const char* type) {
    const QString tool = QStandardPaths::findExecutable("xdg-mime");
    if (tool.isEmpty()) return {};
    QProcess process;
    process.start(tool, {"query", "default", type}, QIODevice::ReadOnly);
    if (!process.waitForFinished(kPatience)) {
        process.kill();
        process.waitForFinished(kPatience);
        return {};
    }
    const QStringList names = QString::fromUtf8(process.readAllStandardOutput()).trimmed().split(';');
    return names.front().trimmed();
}

/// An entry of a sub-folder has its parts joined by dashes.
QString FindEntry(const QString& name) {
    if (name.isEmpty() || name.contains('/')) return {};
    for (QString path = name;;) {
        const QString file = QStandardPaths::locate(QStandardPaths::ApplicationsLocation, path);
        if (!file.isEmpty()) return file;
        const qsizetype dash = path.indexOf('-');
        if (dash < 0) return {};
        path[dash] = '/';
    }
}

/// The lines of the main group, by their keys.
QMap<QString, QString> MainGroup(const QString& entryFile) {
    QMap<QString, QString> values;
    QFile file(entryFile);
    if (!file.open(QIODevice::ReadOnly)) return values;
    QTextStream stream(&file);
    bool inGroup = false;
    for (QString line; stream.readLineInto(&line);) {
        const QString text = line.trimmed();
        if (text.startsWith('[')) inGroup = text == "[Desktop Entry]";
        const qsizetype equals = text.indexOf('=');
        if (inGroup && !text.startsWith('#') && equals > 0)
            values[text.left(equals).trimmed()] = text.mid(equals + 1).trimmed();
    }
    return values;
}

/// What the backslashes of a value stand for.
QString Unescape(const QString& value) {
    const QMap<QChar, QChar> meanings = {{'s', ' '}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}};
    QString text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        const bool escaped = value[i] == '\\' && i + 1 < value.size() && meanings.contains(value[i + 1]);
        text += escaped ? meanings[value[++i]] : value[i];
    }
    return text;
}

/// The words of a command line, of which some stand in double quotes.
QStringList WordsOf(const QString& command) {
    QStringList words;
    QString word;
    bool quoted = false, any = false;
    for (qsizetype i = 0; i < command.size(); ++i) {
        const QChar c = command[i];
        if (c == '"') {
            quoted = !quoted;
            any = true;
        } else if (c == '\\' && quoted && i + 1 < command.size()) {
            word += command[++i];
        } else if (c.isSpace() && !quoted) {
            if (any) words << word;
            word.clear();
            any = false;
        } else {
            word += c;
            any = true;
        }
    }
    if (any) words << word;
    return words;
}

/// Puts what the fields of a word stand for in their place.
QString FillFields(const QString& word, const QMap<QChar, QString>& fields) {
    QString text;
    for (qsizetype i = 0; i < word.size(); ++i) {
        if (word[i] == '%' && i + 1 < word.size()) {
            text += fields.value(word[++i]);
        } else {
            text += word[i];
        }
    }
    return text;
}

}  // namespace

std::optional<EditorCommand> CommandOfDesktopEntry(const QString& entryFile, const QString& fileName) {
    const auto values = MainGroup(entryFile);
    QStringList words = WordsOf(Unescape(values.value("Exec")));
    if (words.isEmpty()) return std::nullopt;
    const QString url = QString::fromUtf8(QUrl::fromLocalFile(fileName).toEncoded());
    const QMap<QChar, QString> fields = {{'f', fileName}, {'F', fileName}, {'u', url},
                                         {'U', url},      {'%', "%"},      {'c', values.value("Name")},
                                         {'k', entryFile}};
    EditorCommand command;
    bool named = false;
    for (const QString& word : words) {
        if (word == "%i" && !values.value("Icon").isEmpty())
            command.arguments << "--icon" << values.value("Icon");
        for (const char* field : {"%f", "%F", "%u", "%U"}) named = named || word.contains(field);
        const QString filled = FillFields(word, fields);
        if (!filled.isEmpty()) command.arguments << filled;
    }
    if (!named) command.arguments << fileName;
    const QString program = command.arguments.takeFirst();
    command.program = QStandardPaths::findExecutable(program);
    if (command.program.isEmpty()) return std::nullopt;
    return command;
}

std::optional<EditorCommand> FindEditor(const QString& fileName) {
    const QString file = QFileInfo(fileName).absoluteFilePath();
    for (const char* type : kTypes) {
        const QString entry = FindEntry(EntryOfType(type));
        if (entry.isEmpty()) continue;
        if (auto command = CommandOfDesktopEntry(entry, file)) return command;
    }
    return std::nullopt;
}

}  // namespace vortan
