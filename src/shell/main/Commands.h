#pragma once

#include <QAction>
#include <QMenu>
#include <map>
#include <string>
#include <vector>

#include "shell/main/Command.h"

class QToolBar;

namespace vortan {

/// The menus and the toolbar of the main window, made from the table of commands.
class Commands {
  public:
    explicit Commands(MainForm& main);

    QAction& Action(const std::string& id) const { return *actions_.at(id); }

    /// While an entry form is open; `printable` if it can be printed.
    void Lock(bool printable);
    void Unlock();
    /// Enables what can be chosen with what is in memory.
    void Update();
    /// A check mark at the command of the page in front.
    void UpdateChecks();
    /// What the file menu says about recent files.
    void RedoRecentMenu();

  private:
    void BuildMenus();
    void BuildRecentMenu(QMenu& file);
    void TellWhat(const CommandMenu& menu);
    void BuildToolbar();
    QAction* NewAction(const Command& command);
    void Run(const Command& command);

    MainForm& main_;
    std::vector<const Command*> all_;
    std::map<std::string, QAction*> actions_;  // menus and commands by their names
    std::vector<QAction*> recent_;             // behind their separator
};

}  // namespace vortan
