#pragma once

#include "shell/forms/TableForm.h"

namespace vortan {

/// Everything that is booked on one day.
class ZoomForm : public TableForm {
  public:
    /// Tells so in a box, and shows nothing, if nothing is booked.
    static void Start(Desktop& desktop, DateTime day);

    void NewSolution() override {
        desktop_.Run("Zoom:NewSolution", [this] { Refresh(); });
    }

  private:
    ZoomForm(Desktop& desktop, DateTime day);
    /// Shows what is booked now; unloads the form if nothing is.
    bool Refresh();
    void RedoLayout(Vwindow& table) override;

    DateTime zoomDate_;
};

}  // namespace vortan
