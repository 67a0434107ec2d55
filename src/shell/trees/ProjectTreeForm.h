#pragma once

#include "model/Listener.h"
#include "shell/trees/TreeForm.h"

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

    void TreeExpand(Node& node) override;
    /// New texts of the dependencies and assignments that are shown: what they refer to has changed.
    void RefreshReferences();

    bool ChangeFont() override;
    void NewThisProject() override { Start(); }
    void NewJournal() override { Start(); }

  protected:
    QString MoreText(const Node& node) const override;
    bool HidesHits(const Node& node, const FindWords& words) const override;

  private:
    Nodes BuildRoots();
    std::unique_ptr<Node> TaskNode(Vtask& task);
    Nodes ProjectChildren(Vproject& project, bool showChildren);
    static Nodes TaskChildren(const Vtask& task, bool showChildren);
};

}  // namespace vortan
