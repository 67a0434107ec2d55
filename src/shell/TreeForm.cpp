#include "shell/TreeForm.h"

namespace vortan {

TreeForm::TreeForm(Desktop& desktop, const char* name) : desktop_(desktop) {
    setObjectName(name);
    desktop_.workspace.AddListener(this);
}

TreeForm::~TreeForm() {
    desktop_.workspace.RemoveListener(this);
}

}  // namespace vortan
