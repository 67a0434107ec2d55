#include "shell/SubprojectEntryForm.h"

namespace vortan {

void SubprojectEntryForm::StartAdd(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

void SubprojectEntryForm::StartModify(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

}  // namespace vortan
