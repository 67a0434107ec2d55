#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/Workspace.h"
#include "persist/TokenReader.h"

namespace vortan {

/// What a file held, and what in it is odd without being damage.
struct LoadReport {
    int templates = 0, shifts = 0, resources = 0;
    int projects = 0, tasks = 0, dependencies = 0, assignments = 0;
    /// One sentence for each resource whose shift its template does not have.
    std::vector<std::string> missingShifts;
    /// First line behind the blank line that ended the reading, 0 if there is none.
    int lineBehindBlank = 0;
    /// The reading ended at a field or record that only a later version can know.
    bool newer = false;
};

/// Reads all records into the workspace: objects that it knows by name or number take the values read, others
/// are added, dependencies and assignments are always added. A link to something that has not come yet makes
/// a stub. Fault for damage and for what a newer version has written, which tells file, line and what was
/// expected; what was read up to there stays.
void LoadRecords(Workspace& workspace, TokenReader& reader, LoadReport& report);

/// The text of everything in the workspace. The active template and project come first, then the other
/// templates in list order, and the other projects so that reading the text makes the order of its records.
/// A deleted shift that resources still work is kept as a shift of the name that it had.
std::string SaveRecords(Workspace& workspace);

}  // namespace vortan
