#include "shell/PreferencesForm.h"

namespace vortan {

void PreferencesForm::Start(Desktop& desktop) {
    auto* form = new PreferencesForm(desktop);
    form->ShowWith(form->OkCommand());
}

PreferencesForm::PreferencesForm(Desktop& desktop) : EntryForm(desktop, "PreferencesForm", "Preferences") {}

void PreferencesForm::LoadSettings() {}

bool PreferencesForm::Finish() {
    return true;
}

}  // namespace vortan
