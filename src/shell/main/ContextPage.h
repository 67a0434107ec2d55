#pragma once

#include <string>

#include "model/Workspace.h"
#include "shell/desk/ChildForm.h"

namespace vortan {

class Trees;

/// The page of the manual for what the user is at: for a tree the page of the selected node's kind, for other
/// forms that of the control with the focus, and if there is none that of the form.
std::string ContextPage(ChildForm& active, const Trees& trees, const Workspace& workspace);

}  // namespace vortan
