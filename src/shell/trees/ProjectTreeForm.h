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
    /// Shows columns behind the tasks, as many as there are, or none; and keeps that.
    void SetColumnsShown(bool shown);
    bool ColumnsShown() const;

    void NewThisProject() override { Start(); }
    void NewJournal() override { Start(); }
    void NewSolution() override;

  protected:
    QString MoreText(const Node& node) const override;
    bool HidesHits(const Node& node, const FindWords& words) const override;

  private:
    /// The task that a node stands for, also as a subproject.
    const Vtask* TaskOf(const Node& node) const;
    void ShowColumns();
    void ColumnMenu(const QPoint& at);
    bool columnsUnknown_ = true;  // not read from the settings yet
    Nodes BuildRoots();
    std::unique_ptr<Node> TaskNode(Vtask& task);
    Nodes ProjectChildren(Vproject& project, bool showChildren);
    static Nodes TaskChildren(const Vtask& task, bool showChildren);
};

}  // namespace vortan
