#include "shell/pages/SpreadsheetForm.h"
#include "shell/trees/TreeBench.h"
#include "support/Paths.h"

namespace vortan {
namespace {

class TreesFindTest : public ::testing::Test, protected TreeBench {
  protected:
    std::string Lines(const NodeView& view, const Nodes& nodes) {
        std::string all;
        for (const auto& node : nodes) {
            const QModelIndex index = node->Tree->IndexOf(node.get());
            if (view.isRowHidden(index.row(), index.parent())) continue;
            all += node->Text + ";";
            if (view.isExpanded(index)) all += Lines(view, node->Children);
        }
        return all;
    }
    /// The lines in both trees, and the marked one.
    std::string Seen() {
        QCoreApplication::processEvents();
        std::string all;
        for (TreeForm* form : Forms()) all += Lines(form->View(), form->Tree().Roots()) + "|";
        return all + Marked();
    }
    void Keys(const char* keys) {
        QTest::keySequence(&Find<QLineEdit>("FindText"), QKeySequence(keys));
        QCoreApplication::processEvents();
    }
};

TEST_F(TreesFindTest, NarrowsTheTreesAndWalksThroughWhatItFound) {
    const std::string all = Seen();
    QTest::keySequence(&main, QKeySequence("Ctrl+F"));
    alpha->SetManager(cid);
    const std::pair<const char*, const char*> cases[] = {
        {"wire", "Alpha;3: Beta;1: Wire;||1: Wire;"}, {"UI 2", "Alpha;2: Build;||2: Build;"},
        {"yard b", "|Crew;yard;2: Bob;|2: Bob;"},     {"cid", "Alpha;|Crew;Office;10: Cid;|Alpha;"},
        {"10", "Alpha;10;|Crew;Office;10: Cid;|10;"}, {"nobody", "||Night;"},  // which has the first letter
    };
    for (const auto& [words, seen] : cases) {
        Type("FindText", words);
        EXPECT_EQ(Seen(), seen) << words;
    }
    Type("FindText", "10");
    Keys("Return");
    EXPECT_EQ(Marked(), "10: Cid;");
    Keys("Return");
    EXPECT_EQ(Marked(), "10;") << "from the last to the first";
    Keys("Shift+Return");
    EXPECT_EQ(Marked(), "10: Cid;");
    // What comes meanwhile is narrowed too.
    Task(alpha, 5, "Roof");
    workspace.BroadcastNewThisProject();
    EXPECT_EQ(Seen().substr(0, 9), "Alpha;10;");
    alpha->FindTask(5)->Delete();
    workspace.BroadcastNewThisProject();
    Type("FindText", "wire");
    Type("FindText", "10");
    Keys("Return");
    Keys("Escape");
    EXPECT_EQ(Seen(), all.substr(0, all.rfind('|') + 1) + "10: Cid;") << "open and closed as before";
    EXPECT_FALSE(Find<QLineEdit>("FindText").isVisible());
}

TEST(PageFind, MarksRowsAndBoxes) {
    Shell shell;
    shell.desktop.files.LoadFile(ExampleFile("house.vta"));
    shell.Solve();
    const auto find = [&](const char* words) { shell.Type("FindText", words); };
    shell.Choose("EditFindMenu");
    shell.Choose("SpreadsheetTypeMenu(2)");
    const auto row = [&] {
        const int top = shell.Find<GridView>("Vwindow").Selection().top;
        std::string text;
        const auto& table = SpreadsheetForm::InFront(shell.desktop)->Surface()->surface;
        for (int col = 0; col < table.Cols(); ++col) text += std::string(table.Cell(top, col)) + " ";
        return text;
    };
    find("frame ROOF");
    EXPECT_NE(row().find("Roof frame"), std::string::npos);
    find("slab");
    const std::string first = row();
    QTest::keyClick(&shell.Find<QLineEdit>("FindText"), Qt::Key_Return);
    EXPECT_NE(row(), first);
    QTest::keyClick(&shell.Find<QLineEdit>("FindText"), Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(row(), first);

    for (const char* chart : {"GraphicsGanttMenu", "GraphicsPrecedenceMenu"}) {
        shell.Choose(chart);
        auto& view = shell.Find<SurfaceView>("Vwindow");
        find("roof frame");
        ASSERT_TRUE(view.Marked()) << chart;
        const QRect roof = *view.Marked();
        find("topsoil");
        EXPECT_TRUE(view.Marked() && *view.Marked() != roof) << chart;
        find("nobody");
        EXPECT_FALSE(view.Marked()) << chart;
    }

    shell.platform.ExpectInput({true, " 10 "});
    shell.Choose("EditGoToMenu");
    EXPECT_EQ(shell.Marked(), "10: Roof frame;");
    EXPECT_FALSE(shell.main.FullPage());
    for (const char* number : {"400", "1x", "-1"}) {
        shell.platform.ExpectInput({true, number});
        shell.platform.ExpectBox("Task Not Found", BoxAnswer::Ok, number);
        shell.Choose("EditGoToMenu");
    }
    EXPECT_EQ(shell.Marked(), "10: Roof frame;");
}

TEST_F(TreesFindTest, InsMakesWhatFitsTheNode) {
    const std::tuple<PlanObject, const char*, const char*> cases[] = {
        {alpha, "PopupNewTaskMenu PopupNewSubprojectMenu ", "TaskEntryForm"},
        {build, "PopupNewTaskMenu PopupNewDependencyMenu PopupNewAssignmentMenu PopupNewSubprojectMenu ",
         "TaskEntryForm"},
        {needsDig, "PopupNewDependencyMenu PopupNewTaskMenu PopupNewAssignmentMenu PopupNewSubprojectMenu ",
         "DependencyEntryForm"},
        {annBuilds, "PopupNewAssignmentMenu PopupNewTaskMenu PopupNewDependencyMenu PopupNewSubprojectMenu ",
         "AssignmentEntryForm"},
        {ann, "PopupNewResourceMenu PopupNewShiftMenu ", "ResourceEntryForm"},
        {crew->ShiftList()[0], "PopupNewShiftMenu PopupNewResourceMenu ", "ShiftEntryForm"},
    };
    for (const auto& [object, offered, form] : cases) {
        Select(object);
        QTest::keyClick(&ViewOf(NodeOf(object)), Qt::Key_Insert);
        auto& menu = Find<QMenu>("InsertMenu");
        std::string names;
        for (const QAction* action : menu.actions()) names += S(action->objectName()) + " ";
        EXPECT_EQ(names, offered);
        ASSERT_TRUE(menu.isVisible());
        QTest::keyClick(&menu, Qt::Key_Return);
        EXPECT_EQ(S(Dialog().objectName()), form);
        Click("CancelCommand");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    // Below a subproject the new task is its own.
    Select(link);
    QTest::keyClick(&ViewOf(NodeOf(link)), Qt::Key_Insert);
    QTest::keyClick(&Find<QMenu>("InsertMenu"), Qt::Key_Return);
    Do("DescriptionText=Paint;OkCommand!");
    EXPECT_TRUE(beta->FindTask(2) && beta->FindTask(2)->Description() == "Paint");
    TheTrees().SetDragNode(nullptr);
    QTest::keyClick(&TheTrees().TemplateTree().View(), Qt::Key_Insert);
    EXPECT_EQ(S(Dialog().objectName()), "ResourceEntryForm");
}

}  // namespace
}  // namespace vortan
