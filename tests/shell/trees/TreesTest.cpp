#include "model/Fault.h"
#include "shell/trees/TreeBench.h"

namespace vortan {
namespace {

TEST(Trees, ShowNodesInTheirOrderWithChildrenOnDemand) {
    TreeBench bench;
    EXPECT_EQ(bench.SeenProject(), "Alpha\n 1: Dig\n +2: Build\n +3: Beta\n 10\n");
    EXPECT_EQ(bench.SeenTemplate(),
              "Crew\n Night\n Standard\n Office\n  10: Cid\n yard\n  1: Ann\n  2: Bob\n");

    bench.Click(bench.NodeOf(bench.build));
    bench.Key(bench.trees.ProjectTree(), Qt::Key_Right);
    bench.Click(bench.NodeOf(bench.link));
    bench.Key(bench.trees.ProjectTree(), Qt::Key_Right);
    const std::string open =
        "Alpha\n 1: Dig\n 2: Build\n  1: Dig\n  1: Ann @8 MoTuWeThFr\n 3: Beta\n  1: Wire\n 10\n";
    EXPECT_EQ(bench.SeenProject(), open);

    // What is no longer included in the plan is gone when its parent is opened the next time.
    bench.needsDig->Delete();
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right}) {
        bench.Click(bench.NodeOf(bench.build));
        bench.Key(bench.trees.ProjectTree(), key);
    }
    EXPECT_EQ(bench.SeenProject(),
              "Alpha\n 1: Dig\n 2: Build\n  1: Ann @8 MoTuWeThFr\n 3: Beta\n  1: Wire\n 10\n");
    for (Vproject* project : {bench.alpha, bench.beta}) project->AddJournal(DateTime(37140));
    bench.last->SetInclude(false), bench.build->SetInclude(false);
    bench.workspace.BroadcastNewJournal();
    EXPECT_EQ(bench.SeenProject(), "Alpha\n 1: Dig\n 3: Beta\n  1: Wire\n");
}

TEST(Trees, PutANewNodeBeforeTheFirstThatSortsAfterIt) {
    const std::pair<const char*, const char*> cases[] = {
        // kinds and texts as they come, and in order
        {"t10 t9 t1 t10:b", "t1 t9 t10 t10:b"},
        {"r2:b r10 r1 r2:a", "r1 r2:b r2:a r10"},
        {"db dA dc dB", "dA db dB dc"},
        {"dz a10 a2 a10:x", "dz a2 a10 a10:x"},
        {"hnight hDay gyard gOffice gYard", "hDay hnight gOffice gyard gYard"},
        {"d\xC3\xA4 d\xC3\x84 dz", "dz d\xC3\xA4 d\xC3\x84"},
    };
    for (const auto& [order, expected] : cases) {
        Nodes nodes;
        for (const QString& word : Q(order).split(' '))
            AddNode(nodes, MakeNode("", S(word.mid(1)), S(word.left(1))));
        std::string result;
        for (const auto& node : nodes) result += (result.empty() ? "" : " ") + node->Tag + node->Text;
        EXPECT_EQ(result, expected);
    }
}

TEST(Trees, HaveOneSelectedNode) {
    struct Counter : Listener {
        void NewDragNode() override { ++count; }
        int count = 0;
    } counter;
    TreeBench bench;
    bench.workspace.AddListener(&counter);
    bench.Click(bench.NodeOf(bench.dig));
    bench.Click(bench.NodeOf(bench.dig));
    EXPECT_EQ(bench.Marked(), "1: Dig;");
    EXPECT_EQ(counter.count, 1) << "the same node again is no news";

    bench.Click(bench.NodeOf(bench.ann));
    EXPECT_EQ(bench.Marked(), "1: Ann;");
    bench.Key(bench.trees.TemplateTree(), Qt::Key_Down);
    EXPECT_EQ(bench.Marked(), "2: Bob;");
    EXPECT_EQ(bench.trees.DragNode(), &bench.NodeOf(bench.bob));
    bench.Select(bench.annBuilds);
    EXPECT_EQ(bench.Marked(), "1: Ann @8 MoTuWeThFr;");
    EXPECT_EQ(counter.count, 4);

    // The keyboard coming to the other tree selects nothing there.
    bench.trees.TemplateTree().setFocus();
    EXPECT_EQ(bench.trees.DragNode(), &bench.NodeOf(bench.annBuilds));

    QWidget& empty = *bench.trees.ProjectTree().View().viewport();
    QTest::mouseClick(&empty, Qt::LeftButton, {}, QPoint(20, empty.height() - 2));
    EXPECT_EQ(bench.trees.DragNode(), nullptr);
    EXPECT_EQ(bench.Marked(), "");
    bench.workspace.RemoveListener(&counter);
}

TEST(Trees, LeadFromObjectsToNodesAndBack) {
    TreeBench bench;
    Trees& trees = bench.trees;
    const PlanObject objects[] = {bench.alpha, bench.dig,       bench.link,
                                  bench.wire,  bench.needsDig,  bench.crew,
                                  bench.bob,   bench.annBuilds, bench.crew->ShiftList()[1]};
    for (const PlanObject& object : objects)
        EXPECT_EQ(trees.FindObjectFromNode(trees.FindNodeFromObject(object)), object) << object.index();
    EXPECT_EQ(&bench.NodeOf(bench.beta), &bench.NodeOf(bench.link));
    EXPECT_EQ(trees.FindProjectFromNode(bench.NodeOf(bench.link)), bench.beta);
    EXPECT_EQ(trees.FindProjectFromNodeText("Beta"), bench.beta);
    EXPECT_EQ(trees.TaskOfNode(bench.NodeOf(bench.annBuilds)), bench.build);

    // A new name and a new number arrive with the text.
    bench.crew->SetTemplateName("Team");
    bench.dig->SetTaskID(7);
    trees.RefreshNode(bench.NodeOf(bench.crew));
    trees.RefreshNode(bench.NodeOf(bench.dig));
    EXPECT_EQ(trees.ObjectOf<Vtemplate>(bench.NodeOf(bench.crew)), bench.crew);
    EXPECT_EQ(trees.ObjectOf<Vresource>(bench.NodeOf(bench.ann)), bench.ann);
    EXPECT_EQ(bench.NodeOf(bench.dig).Text, "7: Dig");
    EXPECT_EQ(trees.ObjectOf<Vtask>(bench.NodeOf(bench.dig)), bench.dig);

    Node& gone = bench.NodeOf(bench.last);
    bench.last->Delete();
    EXPECT_THROW(trees.FindObjectFromNode(gone), Fault);
    EXPECT_THROW(trees.FindObjectFromNode(*bench.NodeOf(bench.ann).Parent), Fault) << "a department";
    EXPECT_THROW(trees.FindProjectFromNode(bench.NodeOf(bench.dig)), Fault);
    EXPECT_THROW(trees.FindNodeFromObject(bench.Project("Gamma")), Fault);
}

TEST(Trees, StayOpenAndClosedWhileTheProjectIsTheSame) {
    TreeBench bench;
    bench.Select(bench.annBuilds);
    bench.NodeOf(bench.wire);
    bench.Click(*bench.NodeOf(bench.cid).Parent);
    bench.Key(bench.trees.TemplateTree(), Qt::Key_Left);
    const std::string project = bench.SeenProject(), crew = bench.SeenTemplate();
    EXPECT_EQ(project,
              "Alpha\n 1: Dig\n 2: Build\n  1: Dig\n  1: Ann @8 MoTuWeThFr\n 3: Beta\n  1: Wire\n 10\n");
    EXPECT_EQ(crew, "Crew\n Night\n Standard\n +Office\n yard\n  1: Ann\n  2: Bob\n");
    bench.workspace.BroadcastNewJournal();
    EXPECT_EQ(bench.SeenProject(), project);
    EXPECT_EQ(bench.SeenTemplate(), crew);
    EXPECT_TRUE(bench.trees.ProjectTree().View().isExpanded(
        bench.trees.ProjectTree().Tree().IndexOf(&bench.NodeOf(bench.build))));
    EXPECT_EQ(bench.trees.DragNode(), nullptr);

    // A part that is made anew takes up the selected node again.
    bench.Select(bench.annBuilds);
    bench.trees.ProjectTree().RebuildTaskSubTree(*bench.build, true);
    EXPECT_EQ(bench.trees.DragNode(), &bench.NodeOf(bench.annBuilds));
    TreeBench::Task(bench.alpha, 5, "Roof");
    bench.trees.ProjectTree().RebuildProjectSubTree(*bench.alpha, bench.NodeOf(bench.alpha), true);
    EXPECT_EQ(bench.SeenProject(),
              "Alpha\n 1: Dig\n 2: Build\n  1: Dig\n  1: Ann @8 MoTuWeThFr\n 3: Beta\n  1: Wire\n 5: "
              "Roof\n 10\n");
    EXPECT_EQ(bench.Marked(), "1: Ann @8 MoTuWeThFr;");

    bench.workspace.SetThisProject(bench.Project("Gamma"));
    bench.workspace.BroadcastNewThisProject();
    EXPECT_EQ(bench.SeenProject(), "Gamma\n");
    bench.workspace.SetThisProject(nullptr);
    bench.trees.ProjectTree().Start();
    EXPECT_EQ(bench.SeenProject(), "");
}

TEST(Trees, ShowThePathToAnActiveSubproject) {
    TreeBench bench;
    bench.workspace.SetThisProject(bench.beta);
    bench.workspace.BroadcastNewThisProject();
    EXPECT_EQ(bench.SeenProject(), "Alpha\n 3: Beta\n  1: Wire\n");
    EXPECT_EQ(&bench.NodeOf(bench.beta), &bench.NodeOf(bench.link));

    // Projects that hold each other have no master, and can be opened without end.
    Vtask* back = TreeBench::Task(bench.beta, 2, "");
    back->SetSubproject(bench.alpha);
    bench.workspace.BroadcastNewThisProject();
    EXPECT_EQ(bench.SeenProject(), "Beta\n 1: Wire\n +2: Alpha\n");
    Node& inner = bench.NodeOf(bench.link);
    bench.trees.ProjectTree().Expand(inner);
    bench.workspace.BroadcastNewJournal();
    EXPECT_EQ(
        bench.SeenProject(),
        "Beta\n 1: Wire\n 2: Alpha\n  1: Dig\n  +2: Build\n  3: Beta\n   1: Wire\n   +2: Alpha\n  10\n");
}

TEST(Trees, ExpandAllOpensOneMoreLevelOfWhatIsSeen) {
    TreeBench bench;
    TreeBench::Task(bench.beta, 2, "Test")->SetSubproject(bench.Project("Gamma"));
    TreeBench::Task(bench.workspace.ProjectList().Find("Gamma"), 1, "Deep");
    bench.Click(bench.NodeOf(bench.dig));
    bench.trees.Commands().GlobalExpand(true);
    EXPECT_EQ(bench.SeenProject(),
              "Alpha\n 1: Dig\n 2: Build\n  1: Dig\n  1: Ann @8 MoTuWeThFr\n 3: Beta\n  1: Wire\n  +2: "
              "Gamma\n 10\n");
    EXPECT_EQ(bench.trees.ProjectTree().View().indexBelow(
                  bench.trees.ProjectTree().Tree().IndexOf(&bench.NodeOf(bench.link))),
              bench.trees.ProjectTree().Tree().IndexOf(&bench.NodeOf(bench.wire)));
    bench.trees.Commands().GlobalExpand(true);
    EXPECT_NE(bench.SeenProject().find("\n   1: Deep\n"), std::string::npos);
    bench.Select(bench.wire);
    bench.trees.Commands().GlobalExpand(false);
    EXPECT_EQ(bench.SeenProject(), "Alpha\n 1: Dig\n +2: Build\n +3: Beta\n 10\n");
    EXPECT_EQ(bench.Marked(), "3: Beta;") << "what hides the selected node";
    EXPECT_EQ(bench.SeenTemplate().find('+'), std::string::npos);
}

TEST(Trees, DoubleClickAndReturnOpenTheEntryFormAndLeaveTheNodeAsItWas) {
    TreeBench bench;
    bench.DoubleClick(bench.NodeOf(bench.build));
    EXPECT_EQ(bench.SeenProject(), "Alpha\n 1: Dig\n +2: Build\n +3: Beta\n 10\n");
    auto* form = bench.main.findChild<QDialog*>("TaskEntryForm");
    ASSERT_TRUE(form);
    form->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    bench.Key(bench.trees.ProjectTree(), Qt::Key_Return);
    EXPECT_TRUE(bench.main.findChild<QDialog*>("TaskEntryForm"));
}

TEST(Trees, TheSelectedLineStandsOutAndIsPalerWithoutTheKeys) {
    TreeBench bench;
    for (TreeForm* form : bench.Forms()) {
        form->setFocus();
        bench.trees.SetDragNode(form->Tree().Roots().front().get());
        NodeView& view = form->View();
        const QRect line = bench.RectOf(*bench.trees.DragNode());
        const auto ground = [&] {
            return view.viewport()->grab().toImage().pixelColor(line.topRight() - QPoint(9, -2));
        };
        const QColor full = ground(), empty = view.palette().color(QPalette::Base);
        bench.main.setFocus();
        EXPECT_GT(ground().lightness(), full.lightness());
        EXPECT_LT(ground().lightness(), empty.lightness());
        EXPECT_FALSE(view.accessibleName().isEmpty());
        for (const char kind : std::string("pstdalhgrn")) {
            const QIcon& icon = form->Tree().Picture(static_cast<NodeKind>(kind));
            const QImage picture = icon.pixmap({24, 24}, QIcon::Selected).toImage();
            EXPECT_EQ(picture.pixelColor(12, 1).alpha(), 255) << "the picture brings its own ground";
        }
    }
}

}  // namespace
}  // namespace vortan
