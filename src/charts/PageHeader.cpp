#include "charts/PageHeader.h"

#include "model/Vproject.h"
#include "model/Vresource.h"

namespace vortan {

std::string GetPageHeader(const Workspace& workspace) {
    const Vproject* project = workspace.ThisProject();
    if (!project) return {};
    std::string header = project->BuildNodeText();
    if (const Vresource* who = project->Manager()) header += " PM:" + who->Description();
    return header;
}

}  // namespace vortan
