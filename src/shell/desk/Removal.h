#pragma once

#include <vector>

#include "shell/desk/Desktop.h"

namespace vortan {

/// Whether the unsaved changes of a project or template that is to go may be lost, or have been saved.
bool MayLose(Desktop& desktop, const Vproject& project);
bool MayLose(Desktop& desktop, const Vtemplate& condemned);

/// Takes projects out of memory as they stand, without a question. Their subprojects that stay are master
/// projects from then on.
void RemoveProjects(Workspace& workspace, const std::vector<Vproject*>& removed);
/// Takes a template out of memory; assignments of its resources are left without one.
void RemoveTemplate(Workspace& workspace, Vtemplate& removed);

}  // namespace vortan
