#include <QFontDialog>
#include <QInputDialog>

#include "model/Fault.h"
#include "persist/PackedText.h"
#include "shell/Shell.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/main/App.h"
#include "shell/trees/ProjectTreeForm.h"
#include "support/Paths.h"
#include "support/PlanFiles.h"

namespace vortan {
namespace {

// ---- what the user does while a solve runs

/// The main window with the plan of a house about to be solved, and a solve that serves events whenever it
/// could.
class BusySolveTest : public ::testing::Test {
  protected:
    BusySolveTest() {
        shell.desktop.files.LoadFile(ExampleFile("house.vta"));
        shell.desktop.solver.SetServiceInterval(std::chrono::microseconds(0));
    }

    Shell shell;
};

TEST_F(BusySolveTest, TasksAreDeletedInTheTree) {
    Workspace& workspace = shell.desktop.workspace;
    const auto tasks = workspace.ThisProject()->TaskList().size();
    int deleted = 0;
    shell.platform.onServeEvents = [&] {
        if (++deleted > 3) return;
        Vtask* last = *(workspace.ThisProject()->TaskList().end() - 1);
        shell.main.TheTrees().SetDragNode(&shell.main.TheTrees().FindNodeFromObject(last));
        shell.platform.ExpectBox("Confirm Delete task", BoxAnswer::Yes);
        QTest::keyClick(shell.main.TheTrees().ProjectTree().findChild<QWidget*>("Tree"), Qt::Key_Delete);
    };
    shell.Solve();
    EXPECT_EQ(workspace.ThisProject()->TaskList().size(), tasks - 3);
    EXPECT_NE(shell.desktop.solver.Mode(), SolveMode::Running);
    EXPECT_NE(shell.desktop.solver.Mode(), SolveMode::Restart);
}

TEST_F(BusySolveTest, TheProgramIsLeft) {
    bool left = false;
    shell.platform.onServeEvents = [&] {
        if (!left) shell.main.close();
        left = true;
    };
    shell.Solve();
    EXPECT_TRUE(left);
    EXPECT_FALSE(shell.main.isVisible());
    EXPECT_FALSE(shell.platform.solveTimerArmed);
    EXPECT_TRUE(shell.desktop.workspace.ProjectList().empty());
}

// ---- damage

TEST(StartUp, ADamagedFileOfSettingsTakesNothingElseWithIt) {
    ScriptedPlatform platform;
    WriteBytes(platform.Directory() + "/Vortan.cfg",
               PackText("INITIALIZATION\r\nBarOption\r\nAutomaticBackupCombo,5\r\n"));
    platform.ExpectBox("Internal Error", BoxAnswer::Abort, "there is no value for BarOption");
    Desktop desktop(platform);
    const MainForm main(desktop);
    EXPECT_EQ(desktop.workspace.BackupMinutes, 5);
    EXPECT_EQ(desktop.workspace.FileDialogPath, S(QDir::currentPath()));
    EXPECT_TRUE(desktop.settings.ThePreferences().bars);
    EXPECT_EQ(main.findChild<QComboBox*>("JournalCombo")->currentText(), "<journal n/a>");
    EXPECT_TRUE(main.TheTrees().ProjectTree().isVisibleTo(&main));
    EXPECT_NE(FileBytes(platform.Directory() + "/ErrTrap.log").find("Call chain:\n  Main:MDIForm_Load\n"),
              std::string::npos);
}

/// What a command left half done when it failed is neither saved nor solved before the user has answered.
TEST(ErrorBox, StopsTheTimers) {
    Shell shell;
    Desktop& desktop = shell.desktop;
    desktop.files.LoadFile(ExampleFile("house.vta"));
    desktop.workspace.BackupMinutes = 1;
    desktop.workspace.ThisProject()->SetDirty(true);
    const std::string before = desktop.solver.SolveMessage();
    shell.platform.onBox = [&] {
        shell.platform.solveTimerArmed = false;
        desktop.SolveTimerTick();
        desktop.AutoBackupTimerTick();
        EXPECT_EQ(desktop.solver.SolveMessage(), before);
        EXPECT_TRUE(desktop.workspace.ThisProject()->Dirty());
    };
    shell.platform.ExpectBox("Internal Error", BoxAnswer::Ignore);
    desktop.Run("Task:OkCommand_Click", [] { AssertionFailed(); });
    EXPECT_TRUE(shell.platform.solveTimerArmed);
    desktop.SolveTimerTick();
    EXPECT_EQ(desktop.solver.SolveMessage(), "Solve complete");
    EXPECT_TRUE(FilesIn(shell.platform.Directory(), ".vtb").empty());
    desktop.AutoBackupTimerTick();
    EXPECT_FALSE(FilesIn(shell.platform.Directory(), ".vtb").empty());
}

TEST(ErrorBox, TheLogNamesTheForm) {
    struct : Listener {
        void NewSolution() override { AssertionFailed(); }
    } faulty;
    Shell shell;
    shell.desktop.workspace.AddListener(&faulty);
    shell.Choose("SetupPreferencesMenu");
    shell.platform.ExpectBox("Internal Error", BoxAnswer::Abort);
    shell.Click("OkCommand");
    EXPECT_TRUE(FileBytes(shell.platform.Directory() + "/ErrTrap.log")
                    .ends_with("Call chain:\n  Preferences:OkCommand_Click\n"));
    shell.desktop.workspace.RemoveListener(&faulty);
}

// ---- the real boxes

void Press(QWidget& box, Qt::Key key) {
    QTest::keyClick(box.focusWidget() ? box.focusWidget() : &box, key);
}
void Escape(QWidget& box) {
    Press(box, Qt::Key_Escape);
}

TEST(BoxTest, EnterAndEscAnswerEveryBox) {
    using enum BoxAnswer;
    QtPlatform platform;
    const std::tuple<BoxButtons, BoxAnswer, BoxAnswer> cases[] = {
        {BoxButtons::Ok, Ok, Ok},
        {BoxButtons::YesNo, Yes, No},
        {BoxButtons::YesNoCancel, Yes, Cancel},
        {BoxButtons::OkCancel, Ok, Cancel},
        {BoxButtons::AbortRetryIgnore, Abort, Abort}};
    for (const auto& [buttons, enter, escape] : cases) {
        const auto ask = [&, all = buttons] {
            return platform.MessageBoxWithDetail("<b>text", "<i>more", "title", BoxIcon::Warning, all);
        };
        const auto read = [](QWidget& box) {
            const auto& message = dynamic_cast<QMessageBox&>(box);
            EXPECT_EQ(box.windowTitle() + message.text() + message.informativeText(), "title<b>text<i>more");
            Press(box, Qt::Key_Return);
        };
        EXPECT_EQ(InBox(ask, read), enter);
        EXPECT_EQ(InBox(ask, Escape), escape);
    }
}

TEST(BoxTest, AFontIsKeptForItsScreenAlone) {
    Shell shell;
    const auto ask = [&] { return ShowFont(shell.desktop, "ProjectTreeForm"); };
    EXPECT_FALSE(InBox(ask, Escape));
    EXPECT_EQ(shell.desktop.settings.ReadSettings("ProjectTreeForm.FontSize"), "");
    EXPECT_TRUE(InBox(ask, [](QWidget& box) {
        auto& dialog = dynamic_cast<QFontDialog&>(box);
        EXPECT_EQ(dialog.currentFont().pointSize(), 9);
        QFont font("Liberation Sans", 14);
        font.setBold(true);
        dialog.setCurrentFont(font);
        dialog.accept();
    }));
    const QFont kept = FontOfForm(shell.desktop, "ProjectTreeForm");
    EXPECT_EQ(kept.family(), "Liberation Sans");
    EXPECT_EQ(kept.pointSize(), 14);
    EXPECT_TRUE(kept.bold());
    EXPECT_EQ(FontOfForm(shell.desktop, "TemplateTreeForm").family(), "Times New Roman");
}

TEST(BoxTest, AFileNameTakesTheTypeThatIsChosen) {
    const auto ask = [] { return ShowSave(S(QDir::tempPath()), "NoName.vtb"); };
    const auto type = [](QWidget& box, int typesDown) {
        auto* types = box.findChild<QComboBox*>("fileTypeCombo");
        for (int i = 0; i < typesDown; ++i) QTest::keyClick(types, Qt::Key_Down);
        auto* line = box.findChild<QLineEdit*>("fileNameEdit");
        line->selectAll();
        QTest::keyClicks(line, "plan-that-is-new");
        auto* save = box.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save);
        QTest::mouseClick(save, Qt::LeftButton);
    };
    const std::string name = S(QDir::tempPath()) + "/plan-that-is-new";
    EXPECT_EQ(InBox(ask, [&](QWidget& box) { type(box, 0); }), name + ".vtb");
    EXPECT_EQ(InBox(ask, [&](QWidget& box) { type(box, 1); }), name + ".vta");
    EXPECT_EQ(InBox(ask, Escape), "");
    // Whatever the plan was, bundles come first; another type changes the name that is offered.
    InBox([] { return ShowSave(S(QDir::tempPath()), "plan.vta"); },
          [](QWidget& box) {
              auto* types = box.findChild<QComboBox*>("fileTypeCombo");
              EXPECT_EQ(S(types->currentText()), "VORTAN Bundle (*.vtb)");
              EXPECT_EQ(S(dynamic_cast<QFileDialog&>(box).defaultSuffix()), "vtb");
              for (int i = 0; i < 2; ++i) QTest::keyClick(types, Qt::Key_Down);
              EXPECT_EQ(S(box.findChild<QLineEdit*>("fileNameEdit")->text()), "plan.mpp");
              Press(box, Qt::Key_Escape);
          });
}

}  // namespace
}  // namespace vortan
