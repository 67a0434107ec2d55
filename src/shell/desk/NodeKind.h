#pragma once

namespace vortan {

/// What a node of a tree stands for. The values are the letters that the objects' tags begin with.
enum class NodeKind : char {
    Project = 'p',
    Subproject = 's',
    Task = 't',
    Dependency = 'd',
    Assignment = 'a',
    Template = 'l',
    Shift = 'h',
    Department = 'g',
    Resource = 'r',
    None = 'n',  ///< a placeholder, which stands for nothing
};

}  // namespace vortan
