#include "model/JournalCommands.h"
#include "shell/Shell.h"
#include "support/PlanFiles.h"

namespace vortan {
namespace {

TEST(Undo, TakesCommandsOfTheWindowBackToTheLastByte) {
    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
    shell.desktop.Run("Test", [&] { shell.OpenExample("programme.vta"); });
    shell.Solve();
    const auto bytes = [&] {
        shell.Solve();
        return SaveRecords(workspace);
    };
    const auto key = [&](const char* keys) {
        shell.main.activateWindow();
        QTest::keySequence(&shell.main, QKeySequence(keys));
        QApplication::processEvents();
    };
    key("Ctrl+Z");
    const std::string loaded = bytes();
    EXPECT_EQ(workspace.TheHistory().UndoName(), "") << "a file that was opened is not taken back";

    std::vector<std::string> states = {loaded};
    const auto done = [&](const char* name) {
        EXPECT_EQ(workspace.TheHistory().UndoName(), name);
        states.push_back(bytes());
    };
    Vproject& project = *workspace.ThisProject();
    Vtask& first = **project.TaskList().begin();
    const QString text = Q(first.BuildNodeText());
    shell.Select(&first);
    shell.platform.ExpectBox("Confirm Delete task", BoxAnswer::Yes);
    shell.main.TheTrees().Commands().Delete();
    QApplication::processEvents();
    shell.desktop.Run("Test", [] {});
    done("Delete task 1");
    shell.desktop.Run("Test", [&] { AddJournalEverywhere(workspace, DateTime(47000)); });
    done("New journal");
    shell.Select(project.FindTask(3));
    shell.Choose("TaskNew");
    shell.Click("OkCommand");
    done("New task 17");

    while (states.size() > 1) {
        if (states.size() % 2 == 0) {
            key("Ctrl+Z");
        } else {
            shell.Choose("EditUndoMenu");
        }
        states.pop_back();
        EXPECT_EQ(bytes(), states.back()) << states.size();
    }
    EXPECT_EQ(Q(shell.NodeOf(&first).Text), text) << "the trees follow";
    key("Ctrl+Y");
    EXPECT_NE(bytes(), loaded);
    key("Ctrl+Shift+Z");
    EXPECT_EQ(project.NumJournals(), 3);
}

}  // namespace
}  // namespace vortan
