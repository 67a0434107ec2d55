#include "shell/main/ContextPage.h"

#include <map>

#include "help/HelpHistory.h"
#include "model/Fault.h"
#include "paint/Text.h"
#include "shell/main/Command.h"
#include "shell/trees/Node.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/TemplateTreeForm.h"
#include "shell/trees/Trees.h"

namespace vortan {
namespace {

using Kinds = std::map<NodeKind, const char*>;

std::string TreePage(TreeForm& form, const Trees& trees, bool anything, const std::string& key,
                     const Kinds& kinds) {
    if (!anything) return key + " Without " + key.substr(0, key.find(' '));
    const Node* node = trees.DragNode();
    if (!node || node->Tree != &form.Tree()) return key;
    const auto kind = kinds.find(node->Image());
    if (kind != kinds.end()) return kind->second;
    Refuse(S(form.FormName()) + ".Tree.SelectedItem.Image = \"" + static_cast<char>(node->Image()) + "\"");
}

/// Of a control within a control that has a name, such as the text of a list, that name.
QString ControlName(const QWidget* control) {
    while (control && (control->objectName().isEmpty() || control->objectName().startsWith("qt_")))
        control = control->isWindow() ? nullptr : control->parentWidget();
    return control ? control->objectName() : QString();
}

/// Where neither form and control nor the control alone has a page.
std::string FormPage(ChildForm& form) {
    static const std::map<QString, const char*> pages = {
        {"CalendarForm", "Calendar"}, {"ZoomForm", "Zoom"}, {"CrashDataForm", "Crash analysis"}};
    if (const auto found = pages.find(form.FormName()); found != pages.end()) return found->second;
    for (const CommandMenu& menu : AllMenus()) {
        for (const Command& command : menu.commands) {
            if (command.traits.page && command.caption && form.PageName() == command.traits.page)
                return S(QString(command.caption).remove('&'));
        }
    }
    const std::string caption = S(form.Window().windowTitle());
    return TheManual().GetHelpPage(caption) ? caption : GetFirstWord(caption);
}

}  // namespace

std::string ContextPage(ChildForm& active, const Trees& trees, const Workspace& workspace) {
    if (&active == static_cast<ChildForm*>(&trees.ProjectTree())) {
        const Kinds kinds = {{NodeKind::Project, "Project"},
                             {NodeKind::Subproject, "Subproject"},
                             {NodeKind::Task, "Task"},
                             {NodeKind::Dependency, "Dependency"},
                             {NodeKind::Assignment, "Assignment"}};
        return TreePage(trees.ProjectTree(), trees, workspace.ThisProject() != nullptr, "Project Tree",
                        kinds);
    }
    if (&active == static_cast<ChildForm*>(&trees.TemplateTree())) {
        const Kinds kinds = {{NodeKind::Template, "Template"},
                             {NodeKind::Shift, "Shift"},
                             {NodeKind::Department, "Department"},
                             {NodeKind::Resource, "Resource"}};
        return TreePage(trees.TemplateTree(), trees, workspace.ThisTemplate() != nullptr, "Template Tree",
                        kinds);
    }
    const std::string control = GetFirstWord(S(ControlName(active.Window().focusWidget())));
    const std::string key = GetFirstWord(S(active.Window().windowTitle())) + "." + control;
    // Options of a chart have names of things that they are not about: "Project" in a budget.
    const bool page = active.Class() == FormClass::FullPage;
    const bool found = TheManual().GetHelpPage(key) || (!page && TheManual().GetHelpPage(control));
    return found ? key : FormPage(active);
}

}  // namespace vortan
