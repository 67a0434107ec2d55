#pragma once

#include <cstdint>
#include <string>

#include "persist/Records.h"

namespace vortan {

/// What became of a plan file that was read.
struct PlanLoad {
    enum class Damage { None, CutOff, CheckSum };

    std::uint64_t mark = 0;        ///< ContentMark of the file; 0 if it was not read
    LoadReport report;             ///< of the records
    bool packed = false;           ///< a bundle
    Damage damage = Damage::None;  ///< of the packed form
};

/// Adds a bundle or ASCII file to the workspace. False: it could not be read, which the user has been told in
/// a box. A fault of LoadRecords goes on to the caller, with `load` as far as it goes; another type is a
/// fault.
bool LoadPlan(Workspace& workspace, const std::string& fileName, PlanLoad& load);

}  // namespace vortan
