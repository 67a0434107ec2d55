#include "shell/trees/TemplateTreeForm.h"

#include <unordered_map>

#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtemplate.h"
#include "paint/Text.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/trees/NodeView.h"

namespace vortan {

TemplateTreeForm::TemplateTreeForm(Desktop& desktop)
    : TreeForm(desktop, "TemplateTreeForm", "No template is loaded.  Use Template > New or File > Open.") {
    View().setAccessibleName("Template tree");
}

void TemplateTreeForm::Start() {
    Begin(desktop_.workspace.ThisTemplate(), [this] { return BuildRoots(); });
}

void TemplateTreeForm::RebuildTree() {
    ReplaceAll(desktop_.workspace.ThisTemplate(), [this] { return BuildRoots(); });
}

/// Departments are nodes alone: there is one for each name that a resource has.
Nodes TemplateTreeForm::BuildRoots() {
    const Vtemplate* active = desktop_.workspace.ThisTemplate();
    if (!active) return {};
    Nodes roots;
    Node& root = AddNode(roots, MakeNode(*active));
    root.Expanded = WasExpanded(root.Key, true);
    for (const Vshift* shift : active->ShiftList()) AddNode(root.Children, MakeNode(*shift));
    std::unordered_map<std::string, Node*> departments;
    for (const Vresource* resource : active->ResourceList()) {
        if (!resource->Include()) continue;
        const std::string name = resource->Department();
        Node*& department = departments[name];
        if (!department) {
            department = &AddNode(root.Children, MakeDepartment(name));
            department->Expanded = WasExpanded(department->Key, true);
        }
        AddNode(department->Children, MakeNode(*resource));
    }
    return roots;
}

/// The department of a resource.
QString TemplateTreeForm::MoreText(const Node& node) const {
    return node.Image() == NodeKind::Resource && node.Parent ? Q(node.Parent->Text) : QString();
}

bool TemplateTreeForm::ChangeFont() {
    if (desktop_.workspace.ThisTemplateSet() && ShowFont(desktop_, objectName())) Start();
    return true;
}

}  // namespace vortan
