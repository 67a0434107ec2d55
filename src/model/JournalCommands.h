#pragma once

#include <string>

#include "model/Workspace.h"

namespace vortan {

/// The journal commands. All projects that have the active project's master, in whatever journal, and all
/// templates move together. A journal that they make is a whole day.

/// Journal/New: asks for a date and makes the journal of that date active, adding it where it is missing.
/// Returns whether a journal was added.
bool NewJournal(Workspace& workspace);

/// The journal list: makes the journal that `nodeText` names active and tells everyone. The text of a list
/// without journals does nothing.
void SelectJournal(Workspace& workspace, const std::string& nodeText);

/// Journal/Set as plan: the active journal becomes the plan of all projects of the active one's master. Fault
/// if one of them stands at another journal; nothing changes then.
void SetAsPlan(Workspace& workspace);

/// Adds a journal to all projects that move with the active one and to all templates; it becomes the active
/// one.
void AddJournalEverywhere(Workspace& workspace, DateTime date);

/// Makes a journal active in all projects that move with the active one and in all templates. Fault if one of
/// those that have its master now lacks it, and nothing changes; others and templates that lack it get it.
void ActivateJournal(Workspace& workspace, DateTime date);

}  // namespace vortan
