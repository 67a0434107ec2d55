#include "shell/pages/PageSizeForm.h"

#include <QFileDialog>
#include <QTimer>
#include <set>

#include "shell/Shell.h"
#include "shell/desk/Printing.h"
#include "shell/widgets/ElidedLabel.h"
#include "support/Paths.h"

namespace vortan {
namespace {

/// The house's chart, which takes three pages, with the print preview before it.
class PageSizeFormTest : public ::testing::Test {
  protected:
    PageSizeFormTest() {
        shell.desktop.files.LoadFile(ExampleFile("house.vta"));
        shell.Solve();
        shell.Choose("GraphicsGanttMenu");
    }
    /// Presses a button of the preview, and answers the file dialog that follows with `fileName`.
    void Print(const char* button, const std::string& fileName) {
        shell.Choose("OutputPrintMenu");
        InBox([&] { shell.Click(button); },
              [&](QWidget& box) {
                  auto& dialog = dynamic_cast<QFileDialog&>(box);
                  if (fileName.empty()) return dialog.reject();
                  dialog.selectFile(Q(fileName));
                  dialog.findChild<QLineEdit*>("fileNameEdit")->setText(Q(fileName));
                  QMetaObject::invokeMethod(&dialog, "accept");
              });
    }
    static qsizetype Pages(const std::string& fileName) {
        QFile file(Q(fileName));
        if (!file.open(QIODevice::ReadOnly)) return -1;
        return file.readAll().count("/Type /Page\n");
    }
    std::string PathOf(const char* name) { return shell.platform.Directory() + "/" + name; }

    Shell shell;
};

TEST_F(PageSizeFormTest, PrintsWhatTheButtonsSay) {
    shell.Choose("OutputPrintMenu");
    std::string enabled;
    for (int i = 0; i < 8; ++i)
        enabled +=
            shell.Find<QPushButton>("ContinueCommand(" + std::to_string(i) + ")").isEnabled() ? '1' : '0';
    EXPECT_EQ(enabled, "11101111");  // larger than a page
    EXPECT_EQ(shell.Dialog().width(), shell.main.screen()->geometry().width() * 3 / 4);
    std::set<QKeySequence> keys;
    for (auto* button : shell.Dialog().findChildren<QPushButton*>())
        EXPECT_TRUE(button->isHidden() || keys.insert(button->shortcut()).second) << S(button->text());
    EXPECT_EQ(shell.Find<QPushButton>("ContinueCommand(5)").toolTip(), "3 pages");
    QTest::keyClick(&shell.Dialog(), Qt::Key_Escape);
    EXPECT_FALSE(shell.IsOpen("PageSizeForm"));

    Print("ContinueCommand(5)", PathOf("many.pdf"));
    EXPECT_EQ(Pages(PathOf("many.pdf")), 3);
    Print("ContinueCommand(2)", PathOf("one"));
    EXPECT_EQ(Pages(PathOf("one.pdf")), 1);
    EXPECT_EQ(S(shell.Find<ElidedLabel>("MessagePanel").text()), "Written to " + PathOf("one.pdf"));
    Print("ContinueCommand(6)", "");
    EXPECT_TRUE(shell.main.FullPage());
}

TEST_F(PageSizeFormTest, AFileThatCannotBeWrittenIsTold) {
    shell.platform.ExpectBox("File Not Written", BoxAnswer::Ok, "none/chart.pdf\" could not be written");
    Print("ContinueCommand(5)", PathOf("none/chart.pdf"));
}

TEST_F(PageSizeFormTest, AnotherPageIsLaidOutAtOnce) {
    const auto choose = [](QWidget& box) {
        box.findChild<QComboBox*>("PaperCombo")->setCurrentText("A5");
        box.findChild<QComboBox*>("OrientationCombo")->setCurrentText("Portrait");
    };
    const auto shownPage = [&] { return shell.main.FullPage()->Surface()->surface.ThePage(); };
    const int before = shownPage().width;
    InBox([&] { shell.Choose("SetupPrinterMenu"); },
          [&](QWidget& box) { choose(box), static_cast<QDialog&>(box).reject(); });
    EXPECT_EQ(shell.main.ThePrinting().Page().width, before);
    shell.Choose("OutputPrintMenu");
    InBox([&] { shell.Click("ContinueCommand(1)"); },
          [&](QWidget& box) { choose(box), static_cast<QDialog&>(box).accept(); });
    EXPECT_FALSE(shell.IsOpen("PageSizeForm"));
    // 148 by 210 mm less half an inch a side, and a line at the head.
    EXPECT_NEAR(shownPage().width, 148 / 25.4 * 1440 - 1440, 20);
    EXPECT_NEAR(shownPage().height, 210 / 25.4 * 1440 - 1440 - 360, 20);
}

}  // namespace
}  // namespace vortan
