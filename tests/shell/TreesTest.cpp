#include "TreeBench.h"

namespace vortan {
namespace {

TEST(Trees, ShowNodesInTheirOrderWithChildrenOnDemand) {
    TreeBench bench;
    EXPECT_EQ(bench.SeenProject(), "Alpha\n 1: Dig\n +2: Build\n +3: Beta\n 10\n");
    EXPECT_EQ(bench.SeenTemplate(),
              "Crew\n Night\n Standard\n Office\n  10: Cid\n yard\n  1: Ann\n  2: Bob\n");

    // The keys of the tree open what they stand on.
    bench.Click(bench.NodeOf(bench.build));
    bench.Key(bench.trees.ProjectTree(), Qt::Key_Right);
    bench.Click(bench.NodeOf(bench.link));
    bench.Key(bench.trees.ProjectTree(), Qt::Key_Right);
    EXPECT_EQ(bench.SeenProject(),
              "Alpha\n 1: Dig\n 2: Build\n  1: Dig\n  1: Ann @8 MoTuWeThFr\n 3: Beta\n  1: Wire\n 10\n");
}

}  // namespace
}  // namespace vortan
