#include "shell/entry/SubprojectEntryForm.h"

#include <utility>

#include "paint/Text.h"
#include "shell/trees/Trees.h"

namespace vortan {
namespace {

constexpr const char* kChoose = "<choose one of the following projects>";

}  // namespace

void SubprojectEntryForm::StartAdd(Desktop& desktop) {
    if (!desktop.workspace.ThisProjectSet()) return;
    auto* form = new SubprojectEntryForm(desktop, desktop.workspace.NewVObject<Vtask>(), true);
    form->ShowWith(*form->taskId_);
}

void SubprojectEntryForm::StartModify(Desktop& desktop) {
    auto* object = desktop.trees->ObjectOf<Vtask>(*desktop.trees->DragNode());
    auto* form = new SubprojectEntryForm(desktop, object, false);
    form->ShowWith(*form->taskId_);
}

SubprojectEntryForm::SubprojectEntryForm(Desktop& desktop, Vtask* object, bool adding)
    : EntryForm(desktop, "SubprojectEntryForm", "Subproject Entry (link to project)"),
      object_(object),
      owner_(adding ? desktop.workspace.ThisProject() : object->Project()),
      adding_(adding),
      taskId_(new TextField("TaskIdText", 10)),
      project_(new QComboBox) {
    project_->setObjectName("ProjectCombo");
    AddRow("Task &ID", taskId_);
    AddRow("&Project", project_);
    LoadData();
}

void SubprojectEntryForm::LoadData() {
    const Workspace& workspace = desktop_.workspace;
    if (!adding_) {
        taskId_->SetValue(std::to_string(object_->TaskID()));
        project_->addItem(Q(object_->Subproject()->ProjectName()));
        return;
    }
    taskId_->SetValue(std::to_string(owner_->HighestTaskID() + 1));
    for (const Vproject* project : workspace.ProjectList()) {
        if (!project->Parent() && project != owner_) {
            project_->addItem(Q(project->ProjectName()));
        }
    }
    project_->addItem(kChoose);
    project_->setCurrentIndex(project_->count() - 1);
}

bool SubprojectEntryForm::Finish() {
    Workspace& workspace = desktop_.workspace;
    Vproject& owner = *owner_;
    Vproject* subproject = workspace.ProjectList().Find(S(project_->currentText()));
    if (!subproject) {
        return Complain(*project_, "Please select a parent project, or click [Cancel].",
                        "No Project Selected");
    }
    const auto id = ReadTaskId(*taskId_, owner, object_.Get());
    if (!id) return false;
    if (owner.DescendsFrom(subproject)) {
        return Complain(
            *project_,
            "The project " + owner.ProjectName() + " is itself a part of " + subproject->ProjectName() + ".",
            "Project Contains Itself");
    }
    if (std::exchange(adding_, false)) object_->SetProject(&owner);
    object_->SetTaskID(*id);
    object_->SetSubproject(subproject);
    owner.SetDirty(true);
    workspace.BroadcastNewThisProject();
    return true;
}

void SubprojectEntryForm::FormUnload() {
    if (adding_) desktop_.workspace.FreeVobject(object_.Get());
}

}  // namespace vortan
