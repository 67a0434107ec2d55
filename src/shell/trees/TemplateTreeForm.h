#pragma once

#include "shell/trees/TreeForm.h"

namespace vortan {

/// The right pane: the active template with its shifts, departments and resources.
class TemplateTreeForm : public TreeForm {
  public:
    explicit TemplateTreeForm(Desktop& desktop);

    /// Shows the active template anew, with nothing selected.
    void Start() override;
    void RebuildTree();

    bool ChangeFont() override;
    void NewThisTemplate() override { Start(); }
    void NewJournal() override { Start(); }

  protected:
    QString MoreText(const Node& node) const override;

  private:
    Nodes BuildRoots();
};

}  // namespace vortan
