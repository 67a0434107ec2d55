#include "shell/trees/TreeBench.h"

namespace vortan {
namespace {

QMenu& Menu(TreeBench& bench) {
    return *bench.main.findChild<QMenu*>("PopupMainMenu");
}
QAction& Item(TreeBench& bench, const char* name) {
    return *Menu(bench).findChild<QAction*>(name);
}

TEST(TreesPopup, SpeaksOfTheKindOfTheNode) {
    TreeBench bench;
    Node& department = *bench.NodeOf(bench.cid).Parent;
    bench.NodeOf(bench.annBuilds);
    const std::pair<Node*, std::string> cases[] = {{&bench.NodeOf(bench.alpha), "project"},
                                                   {&bench.NodeOf(bench.link), "subproject"},
                                                   {&bench.NodeOf(bench.dig), "task"},
                                                   {&bench.NodeOf(bench.needsDig), "dependency"},
                                                   {&bench.NodeOf(bench.annBuilds), "assignment"},
                                                   {&bench.NodeOf(bench.crew), "template"},
                                                   {&bench.NodeOf(bench.crew->ShiftList()[0]), "shift"},
                                                   {&department, "department"},
                                                   {&bench.NodeOf(bench.ann), "resource"},
                                                   {bench.NodeOf(bench.link).Children[0].get(), "n/a"}};
    for (const auto& [node, word] : cases) {
        bench.trees.SetDragNode(node);
        bench.trees.Commands().UpdatePopupMenu();
        for (const std::string verb : {"Modify", "Delete"}) {
            const QAction& item = Item(bench, ("Popup" + verb + "Menu").c_str());
            EXPECT_EQ(S(item.text()), "&" + verb + " this " + word);
            EXPECT_EQ(item.isEnabled(), node->Image() != NodeKind::None) << word;
        }
        EXPECT_EQ(Item(bench, "PopupSetActiveMenu").isEnabled(), word == "subproject");
    }
    // The placeholder that stands for nothing is not modified by a key either.
    bench.trees.Commands().Modify();
    bench.trees.Commands().Delete();

    bench.Select(bench.link);
    bench.trees.Commands().UpdatePopupMenu();
    Item(bench, "PopupSetActiveMenu").trigger();
    EXPECT_EQ(bench.workspace.ThisProject(), bench.beta);
    for (const PlanObject& object : {PlanObject(bench.link), PlanObject(bench.alpha)}) {
        bench.Select(object);
        bench.trees.Commands().UpdatePopupMenu();
        EXPECT_EQ(Item(bench, "PopupSetActiveMenu").isEnabled(), object == PlanObject(bench.alpha));
    }
    bench.trees.Commands().Modify();
    EXPECT_EQ(bench.workspace.ThisProject(), bench.alpha) << "the project that is modified is the active one";
    EXPECT_TRUE(bench.main.findChild<QDialog*>("ProjectEntryForm"));
}

TEST(TreesPopup, OpensWithARightClickAtTheNode) {
    TreeBench bench;
    const QPoint at = bench.PointOf(bench.NodeOf(bench.dig));
    QWidget& viewport = *bench.trees.ProjectTree().View().viewport();
    QTest::mouseClick(bench.main.windowHandle(), Qt::RightButton, {}, viewport.mapTo(&bench.main, at));
    QCoreApplication::processEvents();
    EXPECT_EQ(bench.Marked(), "1: Dig;");
    EXPECT_TRUE(Menu(bench).isVisible());
    EXPECT_GT(Menu(bench).pos().x(), viewport.mapToGlobal(at).x()) << "beside the text";
    Menu(bench).hide();
}

TEST(TreesPopup, DeletingSaysWhatRefersToTheObject) {
    const std::tuple<PlanObject (*)(TreeBench&), std::string, const char*> cases[] = {
        {[](TreeBench& b) { return PlanObject(b.dig); }, "task", "1 dependency of other tasks."},
        {[](TreeBench& b) { return PlanObject(b.build); }, "task", ""},
        {[](TreeBench& b) { return PlanObject(b.link); }, "subproject", "The project Beta stays in memory"},
        {[](TreeBench& b) { return PlanObject(b.needsDig); }, "dependency", ""},
        {[](TreeBench& b) { return PlanObject(b.annBuilds); }, "assignment", ""},
        {[](TreeBench& b) { return PlanObject(b.ann); }, "resource",
         "1 assignment, which stays and goes on being planned until it is removed."},
        {[](TreeBench& b) { return PlanObject(b.bob); }, "resource", ""},
        {[](TreeBench& b) { return PlanObject(b.crew->ShiftList()[0]); }, "shift",
         "the shift of 3 resources, which keep it."},
        {[](TreeBench& b) { return PlanObject(b.crew); }, "template", "used by 1 assignment."},
        {[](TreeBench& b) { return PlanObject(b.alpha); }, "project",
         "It has 4 tasks.  1 subproject stays in memory as a master project."},
    };
    for (const auto& [object, word, told] : cases) {
        TreeBench bench;
        bench.alpha->SetDirty(false);
        bench.crew->SetDirty(false);
        Node& node = bench.NodeOf(object(bench));
        const std::string key = node.Key;
        const NodeTree& tree = *node.Tree;
        const bool inProject = &tree == &bench.trees.ProjectTree().Tree();
        bench.trees.SetDragNode(&node);
        for (const BoxAnswer answer : {BoxAnswer::No, BoxAnswer::Yes}) {
            SCOPED_TRACE(word);
            bench.platform.ExpectBox("Confirm Delete " + word, answer);
            bench.Key(
                inProject ? static_cast<TreeForm&>(bench.trees.ProjectTree()) : bench.trees.TemplateTree(),
                Qt::Key_Delete);
            EXPECT_EQ(tree.FindNodeFromKey(key) == nullptr, answer == BoxAnswer::Yes);
        }
        const std::string text = bench.platform.boxTexts.back();
        const std::string question = "Are you sure you want to delete this " + word + "?";
        EXPECT_EQ(text.substr(0, question.size()), question);
        EXPECT_EQ(text.size() > question.size(), *told != 0) << text;
        EXPECT_NE(text.find(told), std::string::npos) << text;
        EXPECT_EQ(bench.trees.DragNode(), nullptr);
        EXPECT_EQ(bench.Marked(), "");
        const bool owned = word != "project" && word != "template";
        EXPECT_EQ(owned && inProject, bench.alpha->Dirty()) << word;
        EXPECT_EQ(owned && !inProject, bench.crew->Dirty()) << word;
    }
}

TEST(TreesPopup, WhatIsDeletedIsGoneFromTheTextsAndTheModel) {
    TreeBench bench;
    const Node& dependency = bench.NodeOf(bench.needsDig);
    Vshift* standard = bench.crew->ShiftList()[0];
    const auto remove = [&](const PlanObject& object, const char* word, const char* unsaved = nullptr) {
        bench.Select(object);
        if (unsaved) {
            bench.platform.ExpectBox("Save All Changes To Disk", BoxAnswer::Cancel, unsaved);
            bench.trees.Commands().Delete();
            bench.platform.ExpectBox("Save All Changes To Disk", BoxAnswer::Yes, unsaved);
            bench.platform.ExpectSaveFileDialog({});
            bench.trees.Commands().Delete();
            bench.platform.ExpectBox("Save All Changes To Disk", BoxAnswer::No, unsaved);
        }
        bench.platform.ExpectBox(std::string("Confirm Delete ") + word, BoxAnswer::Yes);
        bench.trees.Commands().Delete();
    };
    remove(bench.dig, "task");
    remove(standard, "shift");
    remove(bench.cid, "resource");
    EXPECT_EQ(dependency.Text, "<deleted>");
    EXPECT_EQ(bench.ann->Shift(), standard) << "as it was";
    EXPECT_EQ(bench.SeenTemplate(), "Crew\n Night\n yard\n  1: Ann\n  2: Bob\n") << "no empty department";
    remove(bench.link, "subproject");
    EXPECT_EQ(bench.beta->Parent(), nullptr);
    TreeBench::Task(bench.alpha, 4, "")->SetSubproject(bench.beta);
    bench.beta->SetDirty(false);
    remove(bench.crew, "template", "Changes have been made to template Crew.  These");
    EXPECT_EQ(bench.SeenTemplate(), "");
    EXPECT_EQ(bench.SeenProject(), "Alpha\n 2: Build\n  <deleted>\n  <none> @8 MoTuWeThFr\n 10\n");
    remove(bench.alpha, "project", "Changes have been made to project Alpha.  These");
    EXPECT_EQ(bench.SeenProject(), "Beta\n 1: Wire\n") << "its family stays";
    EXPECT_EQ(bench.beta->Parent(), nullptr);
    EXPECT_TRUE(bench.beta->Dirty());
}

TEST(TreesPopup, ADepartmentIsANameOfItsResources) {
    TreeBench bench;
    MakePlan(bench.workspace, R"(resource 3 "Gus" in yard)");
    Vresource* gone = bench.crew->FindResource(3);
    gone->Delete();
    bench.crew->SetDirty(false);
    bench.trees.SetDragNode(bench.NodeOf(bench.ann).Parent);
    bench.platform.ExpectInput({false, "Dock"});
    bench.trees.Commands().Modify();
    bench.platform.ExpectInput({true, "  "});
    bench.trees.Commands().Modify();
    EXPECT_FALSE(bench.crew->Dirty());
    bench.platform.ExpectInput({true, " Dock "});
    bench.trees.Commands().Modify();
    EXPECT_EQ(bench.SeenTemplate(),
              "Crew\n Night\n Standard\n Dock\n  1: Ann\n  2: Bob\n Office\n  10: Cid\n");
    EXPECT_EQ(bench.Marked(), "Dock;");
    EXPECT_EQ(gone->Department(), "yard");
    EXPECT_TRUE(bench.crew->Dirty());

    // One that is there already takes them in.
    bench.platform.ExpectInput({true, "Office"});
    bench.trees.Commands().Modify();
    EXPECT_EQ(bench.SeenTemplate(), "Crew\n Night\n Standard\n Office\n  1: Ann\n  2: Bob\n  10: Cid\n");
    bench.platform.ExpectBox("Can't Delete Department", BoxAnswer::Ok);
    bench.trees.Commands().Delete();
    EXPECT_EQ(bench.ann->Department(), "Office");
}

}  // namespace
}  // namespace vortan
