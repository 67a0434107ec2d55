#pragma once

#include "shell/forms/EntryForm.h"

namespace vortan {

/// The one screen for the options of the whole system. The keys of the settings are the names of its
/// controls, and the last word of a name tells the kind of control.
class PreferencesForm : public EntryForm {
  public:
    static void Start(Desktop& desktop);

  private:
    explicit PreferencesForm(Desktop& desktop);

    void LoadSettings();
    bool Finish() override;
};

}  // namespace vortan
