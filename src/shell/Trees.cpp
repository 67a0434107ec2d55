#include "shell/Trees.h"

#include "model/Fault.h"
#include "shell/ProjectTreeForm.h"
#include "shell/TemplateTreeForm.h"

namespace vortan {

Trees::Trees(Desktop& desktop, ProjectTreeForm& projectTree, TemplateTreeForm& templateTree)
    : desktop_(desktop), projectTree_(projectTree), templateTree_(templateTree) {}
Trees::~Trees() = default;

void Trees::SetDragNode(Node* node) {
    dragNode_ = node;
}
NodeObject Trees::FindObjectFromNode(const Node&) const {
    AssertionFailed();
}
Node& Trees::FindNodeFromObject(NodeObject) const {
    AssertionFailed();
}
Vproject* Trees::FindProjectFromNode(const Node&) const {
    AssertionFailed();
}
Vproject* Trees::FindProjectFromNodeText(const std::string&) const {
    AssertionFailed();
}
Vtask* Trees::TaskOfNode(const Node&) const {
    AssertionFailed();
}
void Trees::RefreshNode(Node&) {}
void Trees::NodeGone(const Node&) {}

ProjectTreeForm::ProjectTreeForm(Desktop& desktop) : TreeForm(desktop, "ProjectTreeForm") {}
void ProjectTreeForm::Start() {}
void ProjectTreeForm::RebuildTree() {}
void ProjectTreeForm::RebuildProjectSubTree(Vproject&, Node&, bool) {}
void ProjectTreeForm::RebuildTaskSubTree(Vtask&, bool) {}
bool ProjectTreeForm::ChangeFont() {
    return false;
}
TemplateTreeForm::TemplateTreeForm(Desktop& desktop) : TreeForm(desktop, "TemplateTreeForm") {}
void TemplateTreeForm::Start() {}
void TemplateTreeForm::RebuildTree() {}
bool TemplateTreeForm::ChangeFont() {
    return false;
}

}  // namespace vortan
