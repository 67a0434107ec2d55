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

QIcon NodeIcon(char kind) {
    static const std::map<char, const char*> names = {
        {'p', "Project"},  {'s', "Subproject"}, {'t', "Task"},       {'d', "Dependency"}, {'a', "Assignment"},
        {'l', "Template"}, {'h', "Shift"},      {'g', "Department"}, {'r', "Resource"},   {'n', "NoDrop"}};
    const auto found = names.find(kind);
    if (found == names.end()) AssertionFailed();
    return GetResIcon(std::string(found->second) + ".ico");
}

}  // namespace vortan
