#include <map>

#include "shell/trees/TreeBench.h"

namespace vortan {
namespace {

/// A node of each kind.
std::map<char, PlanObject> OneOfEach(TreeBench& bench) {
    return {{'p', bench.alpha},
            {'s', bench.link},
            {'t', bench.dig},
            {'d', bench.needsDig},
            {'a', bench.annBuilds},
            {'l', bench.crew},
            {'h', bench.crew->ShiftList()[0]},
            {'r', bench.bob}};
}
Node& NodeOfKind(TreeBench& bench, char kind) {
    if (kind == 'g') return *bench.NodeOf(bench.cid).Parent;
    return bench.NodeOf(OneOfEach(bench).at(kind));
}

TEST(TreesDrag, PairsThatMeanNothingSaySo) {
    TreeBench bench;
    bench.alpha->SetDirty(false);
    const std::string acting = "rp rs rt rd tt st";
    for (const char from : std::string("pstdalhgr")) {
        for (const char onto : std::string("pstdalhgr")) {
            if (from == onto || acting.find({from, onto}) != std::string::npos) continue;
            bench.platform.ExpectBox("Not Ready Yet", BoxAnswer::Ok);
            bench.Drag(NodeOfKind(bench, from), NodeOfKind(bench, onto));
            ASSERT_TRUE(bench.platform.AllBoxesCame()) << from << onto;
            EXPECT_EQ(bench.trees.DragNode(), &NodeOfKind(bench, from));
        }
    }
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_FALSE(bench.alpha->Dirty());
}

TEST(TreesDrag, ResourcesAreAssigned) {
    TreeBench bench;
    bench.Drag(bench.NodeOf(bench.bob), bench.NodeOf(bench.dig));
    EXPECT_TRUE(bench.alpha->Dirty());
    // Onto a dependency: its task is meant.
    Node& dependency = bench.NodeOf(bench.needsDig);
    bench.Drag(bench.NodeOf(bench.cid), dependency);
    EXPECT_EQ(
        bench.SeenProject(),
        "Alpha\n 1: Dig\n  2: Bob @8 MoTuWeThFr\n 2: Build\n  1: Dig\n  1: Ann @8 MoTuWeThFr\n  10: Cid @8 "
        "MoTuWeThFr\n +3: Beta\n 10\n");
    EXPECT_EQ(bench.Marked(), "10: Cid;");
}

TEST(TreesDrag, TasksDependOnTheTasksThatAreDroppedOnThem) {
    TreeBench bench;
    bench.Drag(bench.NodeOf(bench.build), bench.NodeOf(bench.last));
    bench.Drag(bench.NodeOf(bench.link), bench.NodeOf(bench.last));
    bench.Drag(bench.NodeOf(bench.build), bench.NodeOf(bench.last));
    EXPECT_TRUE(bench.alpha->Dirty());
    EXPECT_EQ(bench.SeenProject(),
              "Alpha\n 1: Dig\n +2: Build\n +3: Beta\n 10\n  2: Build\n  2: Build\n  3: Beta\n");

    // A task that two nodes show can be dropped on itself.
    Vtask* second = TreeBench::Task(bench.alpha, 11, "");
    second->SetSubproject(bench.beta);
    bench.NodeOf(bench.wire);
    bench.trees.ProjectTree().RebuildProjectSubTree(*bench.alpha, bench.NodeOf(bench.alpha), true);
    bench.trees.ProjectTree().Expand(bench.NodeOf(second));
    bench.platform.ExpectBox("Dependency Refused", BoxAnswer::Ok, "A task cannot depend on itself.");
    bench.Drag(*bench.NodeOf(bench.link).Children[0], *bench.NodeOf(second).Children[0]);
    EXPECT_TRUE(bench.wire->DependencyList().empty());
}

TEST(TreesDrag, ResourcesBecomeManagers) {
    TreeBench bench;
    bench.platform.ExpectBox("Project Manager Assigned", BoxAnswer::Ok,
                             "2: Bob is now the project manager for Alpha");
    bench.platform.ExpectBox("Project Manager Assigned", BoxAnswer::Ok,
                             "1: Ann is now the project manager for 3: Beta");
    bench.Drag(bench.NodeOf(bench.bob), bench.NodeOf(bench.alpha));
    bench.Drag(bench.NodeOf(bench.ann), bench.NodeOf(bench.link));
    EXPECT_EQ(bench.alpha->Manager(), bench.bob);
    EXPECT_EQ(bench.beta->Manager(), bench.ann);
    bench.beta->SetDirty(false);
    bench.platform.ExpectBox("Project Manager Assigned", BoxAnswer::Ok);
    bench.Drag(bench.NodeOf(bench.ann), bench.NodeOf(bench.link));
    EXPECT_TRUE(bench.beta->Dirty()) << "confirmed, though nothing differs";
}

TEST(TreesDrag, ThePointerTellsWhatADropWouldDo) {
    TreeBench bench;
    Node& bob = bench.NodeOf(bench.bob);
    NodeView& source = bench.ViewOf(bob);
    const NodeTree& tree = *bob.Tree;
    const auto pointer = [&] {
        if (!QApplication::overrideCursor()) return std::string("none");
        const QImage shown = QApplication::overrideCursor()->pixmap().toImage();
        for (const char kind : std::string("nr")) {
            const QIcon& picture = tree.Picture(static_cast<NodeKind>(kind));
            if (shown == picture.pixmap(source.iconSize()).toImage()) return std::string(1, kind);
        }
        return std::string("other");
    };
    const auto move = [&](const QPoint& to) { bench.Mouse(QEvent::MouseMove, source, to, Qt::LeftButton); };

    // A hand that trembles drags nothing.
    const QPoint at = bench.Global(bob);
    bench.Mouse(QEvent::MouseButtonPress, source, at, Qt::LeftButton);
    move(at + QPoint(QApplication::startDragDistance() - 1, 0));
    EXPECT_EQ(pointer(), "none");
    bench.Mouse(QEvent::MouseButtonRelease, source, at, Qt::NoButton);

    bench.BeginDrag(bob);
    EXPECT_EQ(pointer(), "n") << "over itself";
    move(bench.Global(bench.NodeOf(bench.ann)));
    EXPECT_EQ(pointer(), "r");
    move(bench.main.mapToGlobal(QPoint(3, 3)));
    EXPECT_EQ(pointer(), "n") << "over the menu";
    move(bench.Global(bench.NodeOf(bench.build)));
    EXPECT_EQ(pointer(), "r");
    EXPECT_EQ(bench.Marked(), "2: Build;");
    EXPECT_EQ(bench.trees.DragNode(), &bob);
    EXPECT_EQ(bench.trees.DropNode(), &bench.NodeOf(bench.build));

    QTest::keyClick(&bench.trees.ProjectTree().View(), Qt::Key_Escape);
    EXPECT_EQ(pointer(), "none");
    EXPECT_EQ(bench.Marked(), "2: Bob;");
    bench.Mouse(QEvent::MouseButtonRelease, source, bench.Global(bench.NodeOf(bench.build)), Qt::NoButton);
    EXPECT_EQ(bench.build->AssignmentList().size(), 1U) << "the drag was cancelled";

    // On itself, on empty space and outside.
    bench.Drag(bob, bob);
    for (const QPoint& nowhere : {source.viewport()->mapToGlobal(QPoint(5, source.viewport()->height() - 2)),
                                  bench.main.mapToGlobal(QPoint(3, 3))}) {
        bench.BeginDrag(bob);
        move(nowhere);
        bench.Mouse(QEvent::MouseButtonRelease, source, nowhere, Qt::NoButton);
        EXPECT_EQ(pointer(), "none");
        EXPECT_EQ(bench.Marked(), "2: Bob;");
    }

    // What is dragged can go away meanwhile.
    bench.BeginDrag(bob);
    bench.workspace.BroadcastNewThisTemplate();
    EXPECT_EQ(pointer(), "none");
    EXPECT_EQ(bench.trees.DragNode(), nullptr);
}

TEST(TreesDrag, TheEdgesScroll) {
    TreeBench bench;
    for (int id = 20; id < 120; ++id) TreeBench::Task(bench.alpha, id, "");
    bench.workspace.BroadcastNewThisProject();
    const QWidget& viewport = *bench.trees.ProjectTree().View().viewport();
    Node& bob = bench.NodeOf(bench.bob);
    auto& timer = *bench.main.findChild<QTimer*>("ScrollTreeTimer");
    bench.BeginDrag(bob);
    const auto top = [&] { return bench.trees.ProjectTree().View().verticalScrollBar()->value(); };
    const std::tuple<int, int, int> steps[] = {{viewport.height() / 2, 0, 0},
                                               {viewport.height() - 3, 5, 5},
                                               {viewport.height() / 2, 0, 0},
                                               {3, 3, -3}};
    for (const auto& [y, ticks, lines] : steps) {
        bench.Mouse(QEvent::MouseMove, bench.ViewOf(bob), viewport.mapToGlobal(QPoint(50, y)),
                    Qt::LeftButton);
        EXPECT_EQ(timer.isActive(), ticks > 0);
        const int before = top();
        QTimerEvent tick(timer.timerId());
        for (int i = 0; i < ticks; ++i) QCoreApplication::sendEvent(&timer, &tick);
        EXPECT_EQ(top(), before + lines);
    }
    bench.trees.Drag().Cancel();
    const int scrolled = top();
    bench.workspace.BroadcastNewJournal();
    EXPECT_TRUE(top() == scrolled && scrolled > 0) << "a tree that is built anew stays where it was";

    QScrollBar& sideways = *bench.trees.ProjectTree().View().horizontalScrollBar();
    bench.trees.ProjectTree().View().resize(60, 200);
    QCoreApplication::processEvents();
    sideways.setValue(10);
    bench.Select(bench.dig);
    EXPECT_EQ(sideways.value(), 10) << "choosing a line moves nothing sideways";
}

}  // namespace
}  // namespace vortan
