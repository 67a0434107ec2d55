#include "shell/main/Commands.h"

#include <QFileInfo>
#include <QMenuBar>
#include <QScreen>
#include <QToolBar>
#include <algorithm>
#include <set>

#include "model/Vproject.h"
#include "model/Vtemplate.h"
#include "paint/Text.h"
#include "shell/desk/Icons.h"
#include "shell/main/MainForm.h"

namespace vortan {
namespace {

/// Pictures of the toolbar, by the width of the screen.
int ToolbarImageSize(int screenWidth) {
    if (screenWidth <= 640) return 16;
    return screenWidth <= 800 ? 24 : 32;
}

bool IsMet(Needs needs, Workspace& workspace) {
    switch (needs) {
        case Needs::Project:
            return workspace.ThisProjectSet();
        case Needs::Template:
            return workspace.ThisTemplateSet();
        case Needs::ProjectAndTemplate:
            return workspace.ThisProjectSet() && workspace.ThisTemplateSet();
        case Needs::Solved:
            return workspace.ThisProjectSolved();
        case Needs::Nothing:
            break;
    }
    return true;
}

bool IsOffered(Offered offered, const Workspace& workspace) {
    switch (offered) {
        case Offered::WithProject:
            return workspace.ThisProject() != nullptr;
        case Offered::WithTemplate:
            return workspace.ThisTemplate() != nullptr;
        case Offered::WithEither:
            return !workspace.ProjectList().empty() || !workspace.TemplateList().empty();
        case Offered::Always:
            break;
    }
    return true;
}

/// For the error log, which wants names that live as long as the program.
const char* SectionOf(const std::string& id) {
    static std::set<std::string> names;
    return names.insert("Main:" + id.substr(0, id.find('(')) + "_Click").first->c_str();
}

}  // namespace

Commands::Commands(MainForm& main) : main_(main) {
    for (const CommandMenu& menu : AllMenus()) {
        for (const Command& command : menu.commands) {
            all_.push_back(&command);
            actions_[command.id] = NewAction(command);
        }
    }
    BuildMenus();
    BuildToolbar();
}

QAction* Commands::NewAction(const Command& command) {
    auto* action = new QAction(command.caption, &main_);
    action->setObjectName(command.id);
    action->setMenuRole(QAction::NoRole);
    action->setCheckable(command.traits.page && command.caption);
    if (command.traits.button > 0) {
        action->setIcon(GetResIcon(std::string(command.traits.toolTip) + ".ico"));
        action->setIconVisibleInMenu(false);
        action->setIconText(command.traits.toolTip);
        action->setToolTip(command.traits.toolTip);
    }
    if (command.traits.keys) action->setShortcuts(QKeySequence::listFromString(command.traits.keys));
    QObject::connect(action, &QAction::triggered, &main_, [this, &command] {
        main_.TheDesktop().Run(SectionOf(command.id), [this, &command] { Run(command); });
    });
    return action;
}

void Commands::Run(const Command& command) {
    UpdateChecks();  // the click has turned the mark over
    if (!IsMet(command.traits.needs, main_.TheDesktop().workspace)) return;
    ChildForm* page = main_.FullPage();
    if (command.traits.page && page && page->PageName() == command.traits.page) return page->Unload();
    command.run(main_);
}

void Commands::BuildMenus() {
    for (const CommandMenu& menu : AllMenus()) {
        if (!menu.id) continue;
        if (const auto itself = actions_.find(menu.id); itself != actions_.end()) {
            // An action of its own: the menu bar would show the picture of the button in place of the words.
            QAction* inBar = main_.menuBar()->addAction(menu.caption);
            QObject::connect(inBar, &QAction::triggered, itself->second, &QAction::trigger);
            QObject::connect(itself->second, &QAction::enabledChanged, inBar, &QAction::setEnabled);
            continue;
        }
        QMenu& made = *main_.menuBar()->addMenu(menu.caption);
        made.setObjectName(menu.id);
        actions_[menu.id] = made.menuAction();
        for (const Command& command : menu.commands) {
            if (command.traits.separator) made.addSeparator()->setObjectName(command.traits.separator);
            made.addAction(actions_.at(command.id));
        }
        QObject::connect(&made, &QMenu::aboutToShow, &main_, [this, &menu] { TellWhat(menu); });
        if (std::string(menu.id) == "FileMenu") BuildRecentMenu(made);
    }
}

void Commands::TellWhat(const CommandMenu& menu) {
    for (const Command& command : menu.commands) {
        if (!command.traits.what) continue;
        const QString what = Q(command.traits.what(main_)).replace("&", "&&");
        QAction& action = *actions_.at(command.id);
        action.setText(what.isEmpty() ? QString(command.caption) : command.caption + (" " + what));
    }
}

void Commands::BuildRecentMenu(QMenu& file) {
    recent_ = {file.addSeparator()};
    recent_[0]->setObjectName("FileSeparatorMenu");
    for (std::size_t i = 0; i < Settings::kRecentFiles; ++i) {
        const std::string name = "FileRecentMenu(" + std::to_string(i + 1) + ")";
        QAction* action = file.addAction(QString::number(i + 1));
        action->setObjectName(Q(name));
        action->setMenuRole(QAction::NoRole);
        QObject::connect(action, &QAction::triggered, &main_, [this, i, name] {
            Desktop& desktop = main_.TheDesktop();
            desktop.Run(SectionOf(name), [&] {
                const auto files = desktop.settings.RecentFiles();
                if (i >= files.size()) return;
                desktop.files.OpenFile(files[i]);
                // It may lie on a drive that is not there now; but it can be opened anew like any file.
                if (!QFileInfo::exists(Q(files[i]))) desktop.settings.DropRecentFile(files[i]);
            });
        });
        recent_.push_back(actions_[name] = action);
    }
    QObject::connect(&file, &QMenu::aboutToShow, &main_,
                     [this] { main_.TheDesktop().Run("Main:RedoRecentMenu", [this] { RedoRecentMenu(); }); });
}

void Commands::RedoRecentMenu() {
    const auto files = main_.TheDesktop().settings.RecentFiles();
    recent_[0]->setVisible(!files.empty());
    for (std::size_t i = 1; i < recent_.size(); ++i) {
        recent_[i]->setVisible(i <= files.size());
        if (i > files.size()) continue;
        QString name = Q(files[i - 1]);
        recent_[i]->setText(QString("&%1 %2").arg(i).arg(name.replace("&", "&&")));
    }
}

void Commands::BuildToolbar() {
    QToolBar* toolbar = main_.addToolBar("Toolbar");
    toolbar->setObjectName("Toolbar");
    toolbar->setMovable(false);
    toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
    const int size = ToolbarImageSize(main_.screen()->geometry().width());
    toolbar->setIconSize({size, size});
    std::map<int, const Command*> buttons;
    for (const Command* command : all_) {
        if (command->traits.button > 0) buttons[command->traits.button] = command;
    }
    for (const auto& [place, command] : buttons) {
        QAction* action = actions_.at(command->id);
        toolbar->addAction(action);
        QWidget* button = toolbar->widgetForAction(action);
        button->setObjectName(QString("Toolbar.") + command->traits.toolTip);
        button->setFocusPolicy(Qt::TabFocus);
    }
}

void Commands::Lock(bool printable) {
    const auto apply = [&](const char* id, WhileEntering when) {
        if (when != WhileEntering::On)
            actions_.at(id)->setEnabled(when == WhileEntering::Printable && printable);
    };
    for (const CommandMenu& menu : AllMenus()) {
        if (menu.id) apply(menu.id, menu.whileEntering);
    }
    for (const Command* command : all_) apply(command->id, command->traits.whileEntering);
    for (std::size_t i = 1; i < recent_.size(); ++i) recent_[i]->setEnabled(false);
}

void Commands::Unlock() {
    for (const auto& [id, action] : actions_) action->setEnabled(true);
    Update();
}

void Commands::Update() {
    const Workspace& workspace = main_.TheDesktop().workspace;
    for (const Command* command : all_) {
        if (command->traits.offered != Offered::Always)
            actions_.at(command->id)->setEnabled(IsOffered(command->traits.offered, workspace));
    }
}

void Commands::UpdateChecks() {
    ChildForm* page = main_.FullPage();
    for (const Command* command : all_) {
        QAction& action = *actions_.at(command->id);
        if (action.isCheckable()) action.setChecked(page && page->PageName() == command->traits.page);
    }
}

}  // namespace vortan
