#include "shell/ResourceEntryForm.h"

namespace vortan {

void ResourceEntryForm::StartAdd(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

void ResourceEntryForm::StartModify(Desktop& desktop) {
    desktop.workspace.NotReadyYet();
}

}  // namespace vortan
