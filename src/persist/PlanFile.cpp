#include "persist/PlanFile.h"

#include "model/Fault.h"
#include "persist/Vfile.h"

namespace vortan {

bool LoadPlan(Workspace& workspace, const std::string& fileName, PlanLoad& load) {
    load = {};
    if (!IsPlanFile(fileName)) AssertionFailed();
    FileText file;
    if (!ReadFileText(workspace.ThePlatform(), fileName, file)) return false;
    load.mark = file.mark;
    load.packed = file.packed;
    if (file.packed && !file.suffixFound) {
        load.damage = PlanLoad::Damage::CutOff;
    } else if (file.packed && !file.crcMatches) {
        load.damage = PlanLoad::Damage::CheckSum;
    }
    TokenReader reader(file.text, fileName, file.packed);
    LoadRecords(workspace, reader, load.report);
    return true;
}

}  // namespace vortan
