#pragma once

#include "shell/Desktop.h"
#include "shell/Node.h"

/// The way out of a halted solve: what stands behind a click on the text about the solve. Each explains its
/// problem, and repairs it or opens the form that does when the user agrees. The objects at fault may have
/// been deleted since the solve; then all that is done is to ask for a new one.
namespace vortan {

/// Does nothing unless the solve has halted.
void SolvePanelClick(Desktop& desktop);

/// Makes `project` active, shows its tree in front, and selects the node of an object below it there.
void ShowInProjectTree(Desktop& desktop, NodeObject object, Vproject& project);
/// Deletes a dependency without a question and has everything solved again.
void DeleteDependency(Desktop& desktop, Vdependency& dependency);

}  // namespace vortan
