#include <string>

#include "FuzzTargets.h"
#include "QuietPlatform.h"
#include "model/Fault.h"
#include "model/Vproject.h"
#include "model/Workspace.h"
#include "persist/Records.h"
#include "solve/Solver.h"
#include "transfer/Transfer.h"

namespace {

/// The bytes as a plan of Microsoft Project: an import is whole, and can be solved and saved, or leaves
/// nothing behind.
void FuzzMspdi(const std::uint8_t* data, std::size_t size) {
    QuietPlatform platform;
    vortan::Workspace workspace(platform);
    vortan::Solver solver(workspace);
    vortan::Transfer transfer(workspace);
    bool done = false;
    try {
        done = transfer.ImportText(std::string(reinterpret_cast<const char*>(data), size), "fuzz.xml");
    } catch (const vortan::Fault& fault) {
        FuzzCheck(fault.Description().find("fuzz.xml, line ") == 0 ||
                      fault.Description().find("already in use") != std::string::npos ||
                      fault.Description().find("is not an amount") != std::string::npos,
                  "a fault that does not tell where");
    }
    FuzzCheck(done == (workspace.ThisProject() != nullptr), "half an import");
    FuzzCheck(done || (workspace.ProjectList().empty() && workspace.TemplateList().empty()),
              "something left behind");
    solver.RestartSolve();
    solver.SolveTimerTick();
    vortan::SaveRecords(workspace);
}

const FuzzTarget kTarget("mspdi", FuzzMspdi);

}  // namespace
