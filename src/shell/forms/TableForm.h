#pragma once

#include <optional>

#include "shell/forms/EntryForm.h"
#include "shell/widgets/TableView.h"

namespace vortan {

/// An entry form that only shows a table, as large as that as far as the screen allows. It can be printed and
/// copied, and has a font of its own.
class TableForm : public EntryForm {
  public:
    std::optional<ShownSurface> Surface() override;
    bool ChangeFont() override;
    bool IsPrintable() const override { return true; }

  protected:
    TableForm(Desktop& desktop, const char* name);

    /// Builds the grid, from ClearLayout to EndLayout.
    virtual void RedoLayout(Vwindow& table) = 0;
    /// Lays the table out, in the font of the form. False if it has no rows.
    bool Refill();
    /// With the focus in the table.
    void ShowTable();

  private:
    bool Finish() override { return true; }

    TableView* table_;
};

}  // namespace vortan
