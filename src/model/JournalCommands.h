#pragma once

#include <string>

#include "model/Workspace.h"

namespace vortan {

/// The journal commands. All projects of one master and all templates move together.

/// Journal/New: asks for a date and makes the journal of that date active, adding it where it is missing.
/// Returns whether a journal was added.
bool NewJournal(Workspace& workspace);

/// The journal list: makes the journal that `nodeText` names active and tells everyone. The text of a list
/// without journals does nothing.
void SelectJournal(Workspace& workspace, const std::string& nodeText);

/// Journal/Set as plan: the active journal becomes the plan of all projects of the active one's master. Fault
/// if one of them stands at another journal; nothing changes then.
void SetAsPlan(Workspace& workspace);

/// Adds a journal to all projects of the active project's master and to all templates; it becomes the active
/// one.
void AddJournalEverywhere(Workspace& workspace, DateTime date);

/// Makes a journal active in all projects of the active project's master and in all templates. Fault if one
/// of the projects does not have it, and nothing changes; a template that lacks it gets it.
void ActivateJournal(Workspace& workspace, DateTime date);

}  // namespace vortan
