#pragma once

#include "paint/Text.h"
#include "shell/EntryForm.h"
#include "shell/TableView.h"

namespace vortan {

/// Everything that is booked on one day, as a table. A window of the table's size.
class ZoomForm : public EntryForm {
  public:
    /// Tells so in a box, and shows nothing, if nothing is booked.
    static void Start(Desktop& desktop, DateTime day);

    std::optional<ShownSurface> Surface() override { return table_->Shown(S(windowTitle())); }
    bool ChangeFont() override;
    void NewSolution() override { Refresh(); }

  private:
    ZoomForm(Desktop& desktop, DateTime day);
    /// Shows what is booked now; unloads the form if nothing is.
    bool Refresh();
    void RedoLayout();
    bool Finish() override { return true; }

    DateTime zoomDate_;
    TableView* table_;
};

}  // namespace vortan
