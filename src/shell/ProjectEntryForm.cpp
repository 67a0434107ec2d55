#include "shell/ProjectEntryForm.h"

namespace vortan {

void ProjectEntryForm::StartAdd(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

void ProjectEntryForm::StartModify(Desktop& desktop, Vproject*) {
    desktop.workspace.NotReadyYet();
}

}  // namespace vortan
