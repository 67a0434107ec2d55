#pragma once

#include <string>

#include "../fuzz/QuietPlatform.h"
#include "model/Vproject.h"
#include "model/Vtemplate.h"
#include "persist/Records.h"
#include "solve/Solver.h"

namespace vortan {

/// A plan in memory with its solver.
struct Loaded {
    explicit Loaded(const std::string& text) {
        TokenReader reader(text, "bench.vta");
        LoadRecords(workspace, reader, report);
        workspace.SetThisProject(workspace.ProjectList()[0]);
        workspace.SetThisTemplate(workspace.TemplateList()[0]);
    }
    void Solve() {
        solver.RestartSolve();
        solver.SolveTimerTick();
    }

    QuietPlatform platform;
    Workspace workspace{platform};
    Solver solver{workspace};
    LoadReport report;
};

}  // namespace vortan
