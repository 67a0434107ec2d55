#include "shell/DependencyEntryForm.h"

namespace vortan {

void DependencyEntryForm::StartAdd(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

void DependencyEntryForm::StartModify(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

}  // namespace vortan
