#pragma once

#include <QFont>
#include <string>

#include "shell/desk/Desktop.h"

class QWidget;

/// The standard dialogs of the system. Cancel in any of them leaves every setting as it was.
namespace vortan {

/// The name of a file to read; empty on Cancel.
std::string ShowOpen(Desktop& desktop);
/// The name of a file to write, with an extension; empty on Cancel. `suggestedName` is a full or a bare name;
/// one of a web page asks for a web page.
std::string ShowSave(const std::string& directory, const std::string& suggestedName);
/// The name of a file for something of that title, which is offered as far as every file system takes it;
/// empty on Cancel. `filters` as a file dialog has them; the first one's ending is offered.
std::string AskForFile(QWidget* parent, const char* caption, const std::string& title, const char* filters);
/// Lets the user choose the font of a screen and stores it under its name. False on Cancel.
bool ShowFont(Desktop& desktop, const QString& formName);

/// The font of a screen.
QFont FontOfForm(Desktop& desktop, const QString& formName);

}  // namespace vortan
