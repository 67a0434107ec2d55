#include "shell/entry/SubprojectEntryForm.h"

#include "model/Vproject.h"
#include "paint/Text.h"

namespace vortan {
namespace {

constexpr const char* kChoose = "<choose one of the following projects>";

}  // namespace

void SubprojectEntryForm::StartAdd(Desktop& desktop, Vproject& owner) {
    auto* form = new SubprojectEntryForm(desktop, *desktop.workspace.NewVObject<Vtask>(), owner, true);
    form->ShowWith(*form->taskId_);
}

void SubprojectEntryForm::StartModify(Desktop& desktop, Vtask& object) {
    auto* form = new SubprojectEntryForm(desktop, object, *object.Project(), false);
    form->ShowWith(*form->taskId_);
}

SubprojectEntryForm::SubprojectEntryForm(Desktop& desktop, Vtask& object, Vproject& owner, bool adding)
    : ObjectForm(desktop, "SubprojectEntryForm", "Subproject Entry (link to project)", object, adding),
      owner_(owner),
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
    taskId_->SetValue(std::to_string(owner_.HighestTaskID() + 1));
    for (const Vproject* project : workspace.ProjectList()) {
        if (!project->Parent() && project != &owner_) {
            project_->addItem(Q(project->ProjectName()));
        }
    }
    project_->addItem(kChoose);
    project_->setCurrentIndex(project_->count() - 1);
}

bool SubprojectEntryForm::VerifyData() {
    subprojectRead_ = desktop_.workspace.ProjectList().Find(S(project_->currentText()));
    if (!subprojectRead_) {
        return Complain(*project_, "Please select a parent project, or click [Cancel].",
                        "No Project Selected");
    }
    const auto id = ValueOf(*taskId_, TypedTaskId(taskId_->Value(), owner_, object_.Get()));
    if (!id) return false;
    idRead_ = *id;
    if (!owner_.DescendsFrom(subprojectRead_)) return true;
    return Complain(*project_,
                    "The project " + owner_.ProjectName() + " is itself a part of " +
                        subprojectRead_->ProjectName() + ".",
                    "Project Contains Itself");
}

bool SubprojectEntryForm::SaveData() {
    object_->SetTaskID(idRead_);
    object_->SetSubproject(subprojectRead_);
    return true;
}

}  // namespace vortan
