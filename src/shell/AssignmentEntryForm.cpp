#include "shell/AssignmentEntryForm.h"

namespace vortan {

void AssignmentEntryForm::StartAdd(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

void AssignmentEntryForm::StartModify(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

}  // namespace vortan
