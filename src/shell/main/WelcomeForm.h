#pragma once

#include "shell/forms/EntryForm.h"

namespace vortan {

/// Greets the user at every start, and is the About box.
class WelcomeForm : public EntryForm {
  public:
    static void Start(Desktop& desktop);

  private:
    explicit WelcomeForm(Desktop& desktop);

    void ExitScreen(bool guideMe);
    bool Finish() override;
    void CancelCommandClick() override { ExitScreen(false); }
};

}  // namespace vortan
