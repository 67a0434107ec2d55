#pragma once

#include "model/Listener.h"
#include "shell/TreeForm.h"

namespace vortan {

class Vproject;
class Vtask;

/// The left pane: the active project as a tree of tasks, dependencies and assignments.
class ProjectTreeForm : public TreeForm {
  public:
    explicit ProjectTreeForm(Desktop& desktop);

    /// Shows the active project anew, with nothing selected.
    void Start() override;
    void RebuildTree();
    void RebuildProjectSubTree(Vproject& project, Node& node, bool showChildren);
    void RebuildTaskSubTree(Vtask& task, bool showChildren);

    bool ChangeFont() override;
    void NewThisProject() override { Start(); }
    void NewJournal() override { Start(); }
};

}  // namespace vortan
