// A solve of an unchanged project must not allocate. The sanitizers bring an allocator of their own, so this
// is checked in the other builds.
#ifndef __SANITIZE_ADDRESS__

#include <gtest/gtest.h>

#include "model/Vproject.h"
#include "persist/Records.h"
#include "support/AllocationCount.h"
#include "support/LoadedPlan.h"
#include "support/PlanGenerator.h"

namespace vortan {
namespace {

class SilentPlatform : public ScriptedPlatform {
  public:
    void SolveStatus(const std::string&) override {}
};

TEST(AllocationTest, ASolveOfAnUnchangedProjectAllocatesNothing) {
    for (const bool crowded : {false, true}) {
        const std::string text = GeneratePlan(11, crowded ? CrowdedKnobs(11, 1) : MixedKnobs(11));
        SilentPlatform platform;
        Workspace workspace(platform);
        Solver solver(workspace);
        TokenReader reader(text, "plan.vta");
        LoadReport report;
        LoadRecords(workspace, reader, report);
        workspace.SetThisProject(workspace.ProjectList()[0]);
        const auto solve = [&] {
            solver.RestartSolve();
            solver.SolveTimerTick();
        };
        solve();
        solve();  // two networks alternate, so the second solve still grows
        ASSERT_EQ(solver.Mode(), SolveMode::Idle);
        const std::size_t before = AllocationCount();
        ASSERT_GT(before, 0U);
        solve();
        EXPECT_EQ(AllocationCount() - before, 0U) << (crowded ? "crowded" : "mixed");
    }
}

}  // namespace
}  // namespace vortan

#endif
