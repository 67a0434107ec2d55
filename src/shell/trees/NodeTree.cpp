#include "shell/trees/NodeTree.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <cstdlib>

#include "paint/Text.h"
#include "shell/desk/Icons.h"

namespace vortan {

std::string MakeKey(const std::string& department) {
    return "S" + department;
}
std::string MakeKey(const VObject& object) {
    return "O" + std::to_string(object.Id());
}

std::unique_ptr<Node> MakeNode(std::string key, std::string text, std::string tag) {
    auto node = std::make_unique<Node>();
    node->Key = std::move(key);
    node->Text = std::move(text);
    node->Tag = std::move(tag);
    return node;
}

std::unique_ptr<Node> MakePlaceholder() {
    return MakeNode("", "no dependencies/assignments", "n");
}

std::unique_ptr<Node> MakeDepartment(const std::string& name) {
    return MakeNode(MakeKey(name), name, "g");
}

namespace {

bool IsNumbered(NodeKind kind) {
    return kind == NodeKind::Subproject || kind == NodeKind::Task || kind == NodeKind::Resource ||
           kind == NodeKind::Assignment;
}
/// Whether nodes of this kind look for their place among their own kind only.
bool KeepsToItself(NodeKind kind) {
    return kind == NodeKind::Assignment || kind == NodeKind::Department;
}

long LeadingNumber(const std::string& text) {
    return std::strtol(text.c_str(), nullptr, 10);
}

}  // namespace

Node& AddNode(Nodes& siblings, std::unique_ptr<Node> fresh) {
    const NodeKind kind = fresh->Image();
    auto first = siblings.begin();
    if (KeepsToItself(kind)) {
        first = std::partition_point(first, siblings.end(),
                                     [kind](const auto& node) { return node->Image() != kind; });
    }
    auto place = siblings.end();
    if (IsNumbered(kind)) {
        const long number = LeadingNumber(fresh->Text);
        const auto before = [](long mine, const auto& node) { return mine < LeadingNumber(node->Text); };
        if (first != place && before(number, siblings.back()))
            place = std::upper_bound(first, place, number, before);
    } else {
        const QString text = Q(fresh->Text).toUpper();
        place = std::upper_bound(first, place, text, [](const QString& mine, const auto& node) {
            return mine < Q(node->Text).toUpper();
        });
    }
    return **siblings.insert(place, std::move(fresh));
}

// ---- the tree

Node* NodeTree::FindNodeFromKey(const std::string& key) const {
    const auto found = byKey_.find(key);
    return found == byKey_.end() ? nullptr : found->second;
}

void NodeTree::Walk(const Nodes& nodes, const std::function<void(Node&)>& action) {
    for (const auto& node : nodes) {
        action(*node);
        Walk(node->Children, action);
    }
}

/// An object that two nodes show is found at the first.
void NodeTree::Attach(Nodes& nodes, Node* parent) {
    int row = 0;
    for (const auto& node : nodes) {
        node->Parent = parent;
        node->Tree = this;
        node->Row = row++;
        if (!node->Key.empty()) byKey_.try_emplace(node->Key, node.get());
        Attach(node->Children, node.get());
    }
}

void NodeTree::Forget(const Node& node) {
    const auto found = byKey_.find(node.Key);
    if (found != byKey_.end() && found->second == &node) byKey_.erase(found);
    for (const auto& child : node.Children) Forget(*child);
}

void NodeTree::SetRoots(Nodes roots) {
    for (const auto& root : roots_) gone_(*root);
    const Batch batch(*this);
    byKey_.clear();
    roots_ = std::move(roots);
    Attach(roots_, nullptr);
}

void NodeTree::SetChildren(Node& parent, Nodes children) {
    for (const auto& child : parent.Children) gone_(*child);
    const QModelIndex index = IndexOf(&parent);
    if (!parent.Children.empty()) {
        if (!InBatch()) beginRemoveRows(index, 0, static_cast<int>(parent.Children.size()) - 1);
        for (const auto& child : parent.Children) Forget(*child);
        parent.Children.clear();
        if (!InBatch()) endRemoveRows();
    }
    if (children.empty()) return;
    if (!InBatch()) beginInsertRows(index, 0, static_cast<int>(children.size()) - 1);
    parent.Children = std::move(children);
    Attach(parent.Children, &parent);
    if (!InBatch()) endInsertRows();
}

void NodeTree::Remove(Node& node) {
    gone_(node);
    Nodes& siblings = Siblings(node);
    const int row = node.Row;
    if (!InBatch()) beginRemoveRows(IndexOf(node.Parent), row, row);
    Forget(node);
    siblings.erase(siblings.begin() + row);
    for (auto later = siblings.begin() + row; later != siblings.end(); ++later) --(*later)->Row;
    if (!InBatch()) endRemoveRows();
}

void NodeTree::Changed(const Node& node) {
    const QModelIndex index = IndexOf(&node);
    if (!InBatch()) emit dataChanged(index, index.siblingAtColumn(columnCount({}) - 1));
}

NodeTree::Batch::Batch(NodeTree& tree) : tree_(tree) {
    if (tree_.batches_++ == 0) tree_.beginResetModel();
}
NodeTree::Batch::~Batch() {
    if (--tree_.batches_ == 0) tree_.endResetModel();
}

// ---- what the view asks

QModelIndex NodeTree::IndexOf(const Node* node) const {
    return node ? createIndex(node->Row, 0, const_cast<Node*>(node)) : QModelIndex();
}

QModelIndex NodeTree::index(int row, int column, const QModelIndex& parent) const {
    const Nodes& nodes = parent.isValid() ? NodeOf(parent)->Children : roots_;
    if (column < 0 || column >= columnCount({}) || row < 0 || static_cast<std::size_t>(row) >= nodes.size())
        return {};
    return createIndex(row, column, nodes[static_cast<std::size_t>(row)].get());
}

QModelIndex NodeTree::parent(const QModelIndex& child) const {
    return child.isValid() ? IndexOf(NodeOf(child)->Parent) : QModelIndex();
}

int NodeTree::rowCount(const QModelIndex& parent) const {
    return static_cast<int>(parent.isValid() ? NodeOf(parent)->Children.size() : roots_.size());
}

void NodeTree::SetColumns(std::vector<Column> columns) {
    const Batch batch(*this);
    columns_ = std::move(columns);
}

QVariant NodeTree::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return section == 0 ? QString("Task") : columns_.at(static_cast<std::size_t>(section - 1)).title;
}

QVariant NodeTree::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Node& node = *NodeOf(index);
    if (role == Qt::ToolTipRole) return TipOf ? TipOf(node) : QString();
    if (index.column() > 0) {
        const Column& column = columns_[static_cast<std::size_t>(index.column() - 1)];
        if (role == Qt::DisplayRole) return column.text(node);
        if (role == Qt::TextAlignmentRole && column.right) return int(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    }
    switch (role) {
        case Qt::DisplayRole:
            return Q(node.Text);
        case Qt::DecorationRole:
            return Picture(node.Image());
        case Qt::ForegroundRole:
            if (node.Image() == NodeKind::None) return QGuiApplication::palette().placeholderText();
            return {};
        default:
            return {};
    }
}

namespace {

/// The colours of the pictures are made for a light ground, which the line of a selection is not in any
/// palette.
QPixmap OnPlate(const QPixmap& pixmap) {
    QPixmap plate(pixmap.size());
    plate.fill(Qt::transparent);
    QPainter painter(&plate);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(plate.rect(), plate.width() / 6.0, plate.height() / 6.0);
    painter.drawPixmap(0, 0, pixmap);
    return plate;
}

}  // namespace

const QIcon& NodeTree::Picture(NodeKind kind) const {
    const auto known = pictures_.find(kind);
    if (known != pictures_.end()) return known->second;
    // Drawn here at the sizes that occur, since the toolkit would tint the picture of a selected line beyond
    // recognition.
    const QIcon drawn = NodeIcon(kind);
    QIcon& picture = pictures_[kind];
    for (const int size : {16, 24, 32, 36, 48, 72}) {
        const QPixmap pixmap = drawn.pixmap(QSize(size, size), 1);
        picture.addPixmap(pixmap, QIcon::Normal);
        picture.addPixmap(OnPlate(pixmap), QIcon::Selected);
    }
    return picture;
}

}  // namespace vortan
