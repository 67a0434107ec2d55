#pragma once

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "support/LoadedPlan.h"

namespace vortan {

/// Nothing is booked twice, all of it lies in a slice of its task, which costs what was booked for it, and no
/// slice begins before what it waits for. Says nothing of how a schedule is to be found.
inline void ExpectSound(const LoadedPlan& plan) {
    constexpr double kTolerance = 1e-6;  // days
    std::map<const Vtask*, std::vector<Vslice>> slices;
    std::map<const Vtask*, Money> booked;
    for (std::int32_t i = 0; i < plan.solver.SliceCount(); ++i) {
        const Vslice slice = plan.solver.Slice(i);
        slices[slice.task].push_back(slice);
    }
    for (const Vtemplate* pool : plan.workspace.TemplateList()) {
        for (const Vresource* resource : pool->ResourceList()) {
            DateTime end;
            for (const Vslot& slot : plan.solver.HeldSlots(*resource)) {
                EXPECT_GE(slot.startTime, end);
                end = slot.endTime;
                booked[slot.taskRequired] += slot.laborCost;
                const auto& own = slices[slot.taskRequired];
                EXPECT_TRUE(std::any_of(own.begin(), own.end(), [&](const Vslice& slice) {
                    return slot.startTime >= AddDays(slice.earlyStart, -kTolerance) &&
                           slot.endTime <= AddDays(slice.earlyFinish, kTolerance);
                })) << NameOf(slot.taskRequired);
            }
        }
    }
    for (const auto& [task, own] : slices) {
        EXPECT_EQ(task->EarlyFinish(), own.back().earlyFinish) << NameOf(task);
        if (task->Subproject()) continue;
        EXPECT_EQ(task->LaborCost(), booked[task]) << NameOf(task);
        for (const Vdependency* each : task->DependencyList()) {
            if (!each->Include()) continue;
            for (const Vslice& slice : own)
                EXPECT_TRUE(slice.fromPercent < each->ToPercent() ||
                            slice.earlyStart >= AddDays(each->DepDate(), each->Offset() - kTolerance))
                    << NameOf(task);
        }
    }
}

}  // namespace vortan
