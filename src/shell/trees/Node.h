#pragma once

#include <memory>
#include <string>
#include <vector>

#include "shell/desk/NodeKind.h"

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
    bool Hit = false;       ///< has the words that are looked for
    bool Hidden = false;    ///< while words are looked for: it has not, and nothing below it has

    NodeKind Image() const { return Tag.empty() ? NodeKind::None : static_cast<NodeKind>(Tag.front()); }
};

}  // namespace vortan
