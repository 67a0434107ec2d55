#pragma once

#include <memory>
#include <string>
#include <vector>

namespace vortan {

class NodeTree;

/// One line of a tree: texts alone. The object behind it is looked up by `Tag` when it is needed, so a node
/// cannot hold on to what has been deleted.
struct Node {
    std::string Key;   ///< unique in its tree but for placeholders, whose key is empty
    std::string Text;  ///< what the tree shows
    std::string Tag;   ///< kind letter and key of the object
    Node* Parent = nullptr;
    std::vector<std::unique_ptr<Node>> Children;
    NodeTree* Tree = nullptr;
    int Row = 0;            ///< place among the siblings
    bool Expanded = false;  ///< kept in step with the view

    /// The kind: p s t d a n in the project tree, l h g r in the template tree.
    char Image() const { return Tag.empty() ? '?' : Tag.front(); }
};

}  // namespace vortan
