#pragma once

#include "shell/desk/Desktop.h"

/// The way out of a halted solve: what stands behind a click on the text about the solve. Dangling tasks,
/// journals that differ, missing starts and shortages are explained, and repaired when the user agrees; for
/// others the object at fault is shown. It may have been deleted since the solve; then all that is done is to
/// ask for a new one.
namespace vortan {

class Trees;

/// Does nothing unless the solve has halted.
void SolvePanelClick(Desktop& desktop, Trees& trees);

}  // namespace vortan
