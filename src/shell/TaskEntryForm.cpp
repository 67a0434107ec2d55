#include "shell/TaskEntryForm.h"

namespace vortan {

void TaskEntryForm::StartAdd(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

void TaskEntryForm::StartModify(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

}  // namespace vortan
