#include "shell/ShiftEntryForm.h"

namespace vortan {

void ShiftEntryForm::StartAdd(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

void ShiftEntryForm::StartModify(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

}  // namespace vortan
