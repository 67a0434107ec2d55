#include <string>
#include <string_view>

#include "FuzzTargets.h"
#include "QuietPlatform.h"
#include "model/Fault.h"
#include "model/Vproject.h"
#include "model/Workspace.h"
#include "persist/Records.h"
#include "solve/Solver.h"

namespace {

/// Reads `text` into a new Workspace, which activates the first project, and gives what it saves.
std::string Reload(std::string_view text) {
    QuietPlatform platform;
    vortan::Workspace workspace(platform);
    vortan::TokenReader reader(text, "fuzz");
    vortan::LoadReport report;
    vortan::LoadRecords(workspace, reader, report);
    if (!workspace.ProjectList().empty()) workspace.SetThisProject(workspace.ProjectList()[0]);
    return vortan::SaveRecords(workspace);
}

/// Whether a value has blanks or line breaks at an end, which a file does not keep.
bool HasLooseEnds(std::string_view text) {
    for (const std::string_view loose : {", ", " \r\n", ",\"\r", "\r\r", "\r,"}) {
        if (text.find(loose) != std::string_view::npos) return true;
    }
    for (std::size_t at = 0; (at = text.find('\r', at)) != std::string_view::npos; ++at) {
        if (text.substr(at, 2) != "\r\n") return true;
    }
    return false;
}

/// The bytes as a plan: reading ends or raises a fault; what was read can be solved, and saved in a text that
/// reads back as the same plan.
void FuzzRecords(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    QuietPlatform platform;
    vortan::Workspace workspace(platform);
    vortan::Solver solver(workspace);
    vortan::TokenReader reader(text, "fuzz");
    vortan::LoadReport report;
    bool whole = true;
    try {
        vortan::LoadRecords(workspace, reader, report);
    } catch (const vortan::Fault& fault) {
        FuzzCheck(fault.Description().find("fuzz") != std::string::npos, "a fault without the file's name");
        whole = false;
    }
    if (!workspace.ProjectList().empty()) workspace.SetThisProject(workspace.ProjectList()[0]);
    if (whole) {
        solver.RestartSolve();
        solver.SolveTimerTick();
    }
    const std::string saved = vortan::SaveRecords(workspace);
    if (HasLooseEnds(saved)) return;
    FuzzCheck(Reload(saved) == saved, "what was saved reads back as another plan");
}

const FuzzTarget kTarget("records", FuzzRecords);

}  // namespace
