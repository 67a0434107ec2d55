// A plan that is exported and imported again comes back equal.

#include "model/Vproject.h"
#include "model/Vtemplate.h"
#include "support/LoadedPlan.h"
#include "support/PlanGenerator.h"
#include "transfer/Transfer.h"

namespace vortan {

namespace {

/// The plan in `text`, solved, as a file.
std::string Solved(LoadedPlan& plan) {
    plan.Solve();
    return SaveRecords(plan.workspace);
}

struct Trip {
    std::string before, after, lostOut, lostIn;
};
Trip RoundTrip(std::string_view text) {
    LoadedPlan plan, back;
    plan.platform.keepsSolveStatuses = back.platform.keepsSolveStatuses = false;
    plan.Load(text);
    Trip trip{Solved(plan), {}, {}, {}};
    const std::string xml = plan.platform.Directory() + "/plan.xml";
    Transfer out(plan.workspace), in(back.workspace);
    EXPECT_TRUE(out.ExportToMSProject(xml));
    EXPECT_TRUE(in.ImportMSProject(xml));
    trip.lostOut = out.LastLosses().Text();
    trip.lostIn = in.LastLosses().Text();
    trip.after = Solved(back);
    return trip;
}

TEST(RoundTrip, OfTheExamplesIsExact) {
    for (const std::string& file : FilesIn(ExampleFile(""), ".vta")) {
        const Trip trip = RoundTrip(FileBytes(file));
        EXPECT_EQ(FirstDifference(trip.after, trip.before), "") << file;
        EXPECT_EQ(trip.lostIn, "") << file;
    }
}

/// With up to three journals, two templates and subprojects two levels deep.
TEST(RoundTrip, OfGeneratedPlansIsExact) {
    int exact = 0;
    for (std::uint64_t seed = 1; exact < 200; ++seed) {
        PlanKnobs knobs = MixedKnobs(seed);
        knobs.masters = 1;
        const Trip trip = RoundTrip(GeneratePlan(seed, knobs));
        if (trip.lostOut.find("All of it") != std::string::npos) continue;  // a template that nobody wants
        ASSERT_EQ(FirstDifference(trip.after, trip.before), "") << "seed " << seed;
        ASSERT_EQ(trip.lostIn, "") << "seed " << seed;
        ++exact;
    }
}

}  // namespace

}  // namespace vortan
