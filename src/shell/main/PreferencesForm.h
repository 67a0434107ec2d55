#pragma once

#include "shell/forms/EntryForm.h"

namespace vortan {

/// The one screen for the options of the whole system. Each control has the name of its preference.
class PreferencesForm : public EntryForm {
  public:
    static void Start(Desktop& desktop);

  private:
    explicit PreferencesForm(Desktop& desktop);

    void LoadSettings();
    bool Finish() override;
};

}  // namespace vortan
