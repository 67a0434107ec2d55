#include "shell/problems/OverageForm.h"

#include <QComboBox>

#include "shell/Shell.h"
#include "support/Paths.h"

namespace vortan {
namespace {

/// A plan that halts because a plumber is wanted twice.
class OverageFormTest : public ::testing::Test {
  protected:
    OverageFormTest() {
        shell.desktop.files.LoadFile(ExampleFile("overtime.vta"));
        shell.Solve();
        shell.Click("SolvePanel");
    }
    std::string OpenForm() { return S(shell.Dialog().objectName()); }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
};

TEST_F(OverageFormTest, ShowsTheShortage) {
    EXPECT_EQ(S(shell.Dialog().windowTitle()), "Overtime needed");
    const struct {
        const char *box, *value;
    } boxes[] = {{"TemplateText", "Bath crew"},
                 {"ResourceText", "2: Ben Carter"},
                 {"ProjectText", "Bathroom: Renew the bathroom, 12 Mill Road"},
                 {"TaskText", "3: Move the radiator"},
                 {"BeginningText", "5/12/2027"},
                 {"RequestedHoursText", "6"},
                 {"AssignedHoursText", "0"}};
    for (const auto& one : boxes) EXPECT_EQ(shell.Value(one.box), one.value) << one.box;
    const Vwindow& table =
        static_cast<TableView*>(shell.Find<QWidget>("Vwindow").parentWidget())->TheVwindow();
    ASSERT_EQ(table.Rows(), 3);
    EXPECT_EQ(table.Cell(1, 0) + " " + table.Cell(2, 1) + " " + table.Cell(1, 3),
              "8:00:00 AM 5:00:00 PM 2: New water and waste pipes");
    shell.Press(Qt::Key_Escape);
    EXPECT_FALSE(shell.IsOpen("OverageForm"));
    EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Halted);
}

TEST_F(OverageFormTest, LeadsToTheAssignmentOrTheSolveRule) {
    shell.Click("OkCommand");
    ASSERT_EQ(OpenForm(), "AssignmentEntryForm");
    EXPECT_EQ(shell.main.TheTrees().DragNode()->Image(), 'a');
    EXPECT_EQ(shell.Value("HoursText"), "6");
    shell.Press(Qt::Key_Escape);
    shell.Click("SolvePanel");
    shell.Do("ChangeSolveRulesOption!;OkCommand!");
    ASSERT_EQ(OpenForm(), "ProjectEntryForm");
    EXPECT_EQ(shell.Focus(), "SolveRulesCombo");
    EXPECT_EQ(shell.main.TheTrees().DragNode(), nullptr);
    shell.Do("SolveRulesCombo#1;OkCommand!");
    shell.Solve();
    EXPECT_EQ(shell.desktop.solver.SolveMessage(), "Solve complete");
}

TEST_F(OverageFormTest, AnAssignmentThatIsGoneLeadsNowhere) {
    const Link<Vassignment> assignment = shell.desktop.solver.Problem()->assignment;
    workspace.FreeVobject(assignment.Get());
    shell.Click("OkCommand");
    EXPECT_THROW(shell.Dialog(), std::runtime_error);
    shell.Click("SolvePanel");
    shell.Solve();
    EXPECT_NE(shell.desktop.solver.SolveMessage(), "Overtime needed");
}

}  // namespace
}  // namespace vortan
