#include "shell/forms/PageForm.h"

#include "shell/desk/FormHost.h"

namespace vortan {

PageForm::PageForm(Desktop& desktop) : desktop_(desktop) {
    desktop_.workspace.AddListener(this);
}

PageForm::~PageForm() {
    // A page that was never shown has no parent and may outlive the memory.
    if (unloaded_) return;
    desktop_.workspace.RemoveListener(this);
    // Closed with the program: the main window is not there to be told.
    if (desktop_.host) desktop_.host->FormClosed(*this);
}

void PageForm::Show(const std::function<bool()>& fill) {
    try {
        if (fill()) return desktop_.host->ShowForm(*this);
    } catch (...) {
        Unload();
        throw;
    }
    Unload();
}

void PageForm::Unload() {
    if (unloaded_) return;
    unloaded_ = true;
    desktop_.workspace.RemoveListener(this);
    hide();
    if (desktop_.host) desktop_.host->FormClosed(*this);
    setObjectName({});
    deleteLater();
}

}  // namespace vortan
