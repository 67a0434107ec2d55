#include <QClipboard>
#include <QPlainTextEdit>

#include "persist/Records.h"
#include "shell/Shell.h"
#include "support/PlanFiles.h"

namespace vortan {
namespace {

constexpr const char* kPlan =
    "<Project "
    "xmlns=\"http://schemas.microsoft.com/project\"><Name>Shed</Name><Tasks><Task><UID>1</UID><ID>1</ID>"
    "<Name>Dig</Name><Start>2001-09-03T08:00:00</Start><Duration>PT8H0M0S</Duration>"
    "<Deadline>2001-09-20T17:00:00</Deadline></Task></Tasks></Project>";

TEST(ExchangeWithOtherProgram, OpensAPlanAndListsWhatIsLost) {
    Shell shell;
    const std::string name = shell.platform.Directory() + "/shed.xml";
    WriteBytes(name, kPlan);
    const auto open = [&] {
        return shell.desktop.Run("Test:Open", [&] { shell.desktop.files.LoadFile(name); });
    };
    InBox(open, [&](QWidget& box) {
        EXPECT_EQ(box.objectName(), "LossesForm");
        EXPECT_TRUE(box.findChild<QPlainTextEdit*>("LossesList")
                        ->toPlainText()
                        .contains("Task 1 Dig: Deadline 9/20/2001"));
        QTest::mouseClick(box.findChild<QPushButton*>("CopyCommand"), Qt::LeftButton);
        EXPECT_TRUE(
            QApplication::clipboard()->text().startsWith("Object\tWhat\tWhy\tInstead\nTask 1 Dig\tDeadline"));
        EXPECT_EQ(shell.main.TheTrees().ProjectTree().isVisibleTo(&shell.main), true);
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    EXPECT_EQ(shell.desktop.workspace.ThisProject()->ProjectName(), "Shed");
    EXPECT_TRUE(shell.desktop.workspace.ThisProject()->Dirty());
    const std::string before = SaveRecords(shell.desktop.workspace);
    shell.platform.ExpectBox("Using Active Template", BoxAnswer::Cancel);
    open();
    WriteBytes(name, std::string(kPlan).substr(0, 200));
    shell.platform.ExpectBox("Using Active Template", BoxAnswer::Ok);
    shell.platform.ExpectBox("Internal Error", BoxAnswer::Abort, "shed.xml, line 1: ");
    open();
    shell.platform.ExpectBox("Microsoft Project Not Installed", BoxAnswer::Ok,
                             "as XML (*.xml) instead, and open");
    shell.desktop.files.LoadFile("shed.mpp");
    EXPECT_EQ(SaveRecords(shell.desktop.workspace), before);
}

}  // namespace
}  // namespace vortan
