#include "shell/desk/Icons.h"

#include <QFile>
#include <map>

#include "model/Fault.h"
#include "paint/Text.h"

namespace vortan {

QIcon GetResIcon(const std::string& name) {
    const std::string file = ":/icons/" + name.substr(0, name.rfind(".ico")) + ".svg";
    if (!QFile::exists(Q(file))) Refuse("There is no icon " + name);
    return QIcon(Q(file));
}

QIcon NodeIcon(NodeKind kind) {
    static const std::map<NodeKind, const char*> names = {{NodeKind::Project, "Project"},
                                                          {NodeKind::Subproject, "Subproject"},
                                                          {NodeKind::Task, "Task"},
                                                          {NodeKind::Dependency, "Dependency"},
                                                          {NodeKind::Assignment, "Assignment"},
                                                          {NodeKind::Template, "Template"},
                                                          {NodeKind::Shift, "Shift"},
                                                          {NodeKind::Department, "Department"},
                                                          {NodeKind::Resource, "Resource"},
                                                          {NodeKind::None, "NoDrop"}};
    const auto found = names.find(kind);
    if (found == names.end()) AssertionFailed();
    return GetResIcon(std::string(found->second) + ".ico");
}

}  // namespace vortan
