// A solve of an unchanged project must not allocate. The sanitizers bring an allocator of their own, so this
// is checked in the other builds.
#ifndef __SANITIZE_ADDRESS__

#include <cstdlib>
#include <new>

#include "support/LoadedPlan.h"
#include "support/PlanGenerator.h"

static std::size_t allocations = 0;  // of the whole test program

void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace vortan {
namespace {

TEST(AllocationTest, ASolveOfAnUnchangedProjectAllocatesNothing) {
    for (const bool crowded : {false, true}) {
        LoadedPlan plan(GeneratePlan(11, crowded ? CrowdedKnobs(11, 1) : MixedKnobs(11)));
        plan.Solve();  // two networks alternate, so the second solve still grows
        ASSERT_TRUE(plan.Complete());
        plan.platform.keepsSolveStatuses = false;
        const std::size_t before = allocations;
        ASSERT_GT(before, 0U);
        plan.Solve();
        EXPECT_EQ(allocations - before, 0U) << (crowded ? "crowded" : "mixed");
    }
}

}  // namespace
}  // namespace vortan

#endif
