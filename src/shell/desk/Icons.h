#pragma once

#include <QIcon>
#include <string>

namespace vortan {

/// The picture of a name such as "Task.ico", at any size. Fault if there is none.
QIcon GetResIcon(const std::string& name);

/// The icon of a kind of node ("p", "s", "t" and so on; "n" is a placeholder).
QIcon NodeIcon(char kind);

}  // namespace vortan
