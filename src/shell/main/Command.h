#pragma once

#include <span>
#include <string>

namespace vortan {

class MainForm;

/// What must be in memory for a command. Each guard but the first shows a warning of its own.
enum class Needs { Nothing, Project, Template, ProjectAndTemplate, Solved };
/// When a command can be chosen, as long as no entry form is open.
enum class Offered { Always, WithProject, WithTemplate, WithEither };
/// Whether a command can be chosen while an entry form is open; `Printable`: a form that can be printed.
enum class WhileEntering { Off, On, Printable };

/// What is not told for most commands.
struct CommandTraits {
    int button = 0;                 ///< the place on the toolbar from 1 on, 0 for none
    const char* toolTip = nullptr;  ///< of the button, and the name of its picture
    Needs needs = Needs::Nothing;
    Offered offered = Offered::Always;
    WhileEntering whileEntering = WhileEntering::Off;
    const char* page = nullptr;       ///< the form that it shows, and takes away if it is in front
    const char* separator = nullptr;  ///< the name of a line above it in the menu
    const char* keys = nullptr;       ///< "Ctrl+Z"; several with "; " between
    /// What stands behind the caption when the menu opens.
    std::string (*what)(MainForm& main) = nullptr;
};

/// A command of the main window: one action, in a menu, on the toolbar or on both.
struct Command {
    const char* id;       ///< the name of its control
    const char* caption;  ///< in the menu
    void (*run)(MainForm& main);
    CommandTraits traits = {};
};

/// The commands of a menu, in their order there.
struct CommandMenu {
    const char *id, *caption;  ///< none: they are on the toolbar alone
    std::span<const Command> commands;
    WhileEntering whileEntering = WhileEntering::Off;
};

/// In the order of the menu bar. A menu of one command that has its name is that command.
std::span<const CommandMenu> AllMenus();

}  // namespace vortan
