#pragma once

#include <QIcon>
#include <string>

#include "shell/desk/NodeKind.h"

namespace vortan {

/// The picture of a name such as "Task.ico", at any size. Fault if there is none.
QIcon GetResIcon(const std::string& name);

QIcon NodeIcon(NodeKind kind);

}  // namespace vortan
