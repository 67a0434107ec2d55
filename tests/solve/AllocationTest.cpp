// A solve of an unchanged project must not allocate. The sanitizers bring an allocator of their own, so this
// is checked in the other builds.
#ifndef __SANITIZE_ADDRESS__

#include "support/AllocationCount.h"
#include "support/LoadedPlan.h"
#include "support/PlanGenerator.h"

namespace vortan {
namespace {

TEST(AllocationTest, ASolveOfAnUnchangedProjectAllocatesNothing) {
    for (const bool crowded : {false, true}) {
        LoadedPlan plan(GeneratePlan(11, crowded ? CrowdedKnobs(11, 1) : MixedKnobs(11)));
        plan.Solve();  // two networks alternate, so the second solve still grows
        ASSERT_TRUE(plan.Complete());
        plan.platform.keepsSolveStatuses = false;
        const std::size_t before = AllocationCount();
        ASSERT_GT(before, 0U);
        plan.Solve();
        EXPECT_EQ(AllocationCount() - before, 0U) << (crowded ? "crowded" : "mixed");
    }
}

}  // namespace
}  // namespace vortan

#endif
