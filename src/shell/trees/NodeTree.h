#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/ObjectPool.h"
#include "shell/trees/Node.h"

namespace vortan {

using Nodes = std::vector<std::unique_ptr<Node>>;

/// Keys hold for one run of the program: those of departments are made from the name, those of objects from
/// the identity.
std::string MakeKey(const std::string& department);
std::string MakeKey(const VObject& object);

std::unique_ptr<Node> MakeNode(std::string key, std::string text, std::string tag);
template <class T>
std::unique_ptr<Node> MakeNode(const T& object) {
    return MakeNode(MakeKey(object), object.BuildNodeText(), object.Tag());
}
std::unique_ptr<Node> MakePlaceholder();
std::unique_ptr<Node> MakeDepartment(const std::string& name);

/// Puts a node into its place among the siblings, which have all come in this way, kind by kind: numbered
/// kinds by the number in front of their text, others by their text; equals in order of coming.
Node& AddNode(Nodes& siblings, std::unique_ptr<Node> fresh);

/// The nodes of one tree, as a model of the toolkit. Whole families are made apart from the tree and put in
/// at once, so that 10,000 nodes are one change for the view.
class NodeTree : public QAbstractItemModel {
  public:
    /// `gone` is called with each family of nodes that is about to be destroyed, before anything changes.
    explicit NodeTree(std::function<void(const Node&)> gone) : gone_(std::move(gone)) {}

    const Nodes& Roots() const { return roots_; }
    /// None if there is no such node, and for an empty key.
    Node* FindNodeFromKey(const std::string& key) const;
    /// All of these nodes and those below them, parents before children.
    static void Walk(const Nodes& nodes, const std::function<void(Node&)>& action);
    void ForEach(const std::function<void(Node&)>& action) const { Walk(roots_, action); }

    void SetRoots(Nodes roots);
    void SetChildren(Node& parent, Nodes children);
    void Remove(Node& node);
    /// Text or tag of the node is another one.
    void Changed(const Node& node);

    /// What stands behind the nodes, asked for when it is painted.
    struct Column {
        QString title;
        std::function<QString(const Node&)> text;
        bool right = false;  ///< at the right of its column
    };
    void SetColumns(std::vector<Column> columns);
    /// The tip of a node, or none.
    std::function<QString(const Node&)> TipOf;

    /// Makes everything that is done meanwhile one change for the view.
    class Batch {
      public:
        explicit Batch(NodeTree& tree);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

      private:
        NodeTree& tree_;
    };
    bool InBatch() const { return batches_ > 0; }

    QModelIndex IndexOf(const Node* node) const;
    static Node* NodeOf(const QModelIndex& index) { return static_cast<Node*>(index.internalPointer()); }

    QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent) const override;
    int columnCount(const QModelIndex&) const override { return 1 + static_cast<int>(columns_.size()); }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override {
        if (!index.isValid()) return Qt::NoItemFlags;
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    }

    /// The picture of a kind of node.
    const QIcon& Picture(NodeKind kind) const;

  private:
    Nodes& Siblings(const Node& node) { return node.Parent ? node.Parent->Children : roots_; }
    void Attach(Nodes& nodes, Node* parent);
    void Forget(const Node& node);

    std::function<void(const Node&)> gone_;
    std::vector<Column> columns_;
    Nodes roots_;
    std::unordered_map<std::string, Node*> byKey_;
    mutable std::map<NodeKind, QIcon> pictures_;
    int batches_ = 0;
};

}  // namespace vortan
