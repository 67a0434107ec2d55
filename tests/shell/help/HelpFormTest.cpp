#include "shell/help/HelpForm.h"

#include <QAbstractTextDocumentLayout>
#include <QScrollBar>
#include <QTextBlock>

#include "shell/Shell.h"
#include "support/TextPlan.h"

namespace vortan {
namespace {

/// The manual beside a main window that fills the screen.
class HelpFormTest : public ::testing::Test {
  protected:
    HelpFormTest() { Show("Task"); }
    void Show(const char* page) { shell.main.DisplayHelpPage(page); }
    HelpForm& Help() { return *dynamic_cast<HelpForm*>(shell.main.findChild<QWidget*>("HelpForm")); }
    HelpView& View() { return *dynamic_cast<HelpView*>(Help().findChild<QWidget*>("ViewableText")); }
    template <class T>
    T& Part(const char* name) {
        return *Help().findChild<T*>(name);
    }
    std::string Title() { return S(Help().windowTitle()); }
    void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
        Help().activateWindow();
        QApplication::processEvents();
        QTest::keyClick(Help().focusWidget(), static_cast<Qt::Key>(key), modifiers);
    }
    /// Where a text stands in the view.
    QPoint At(const QString& text) {
        const QTextCursor found = View().document()->find(text, 0, QTextDocument::FindWholeWords);
        EXPECT_FALSE(found.isNull()) << S(text);
        QTextCursor inside = found;
        inside.setPosition(found.selectionStart() + 1);
        View().setTextCursor(inside);
        return View().cursorRect().center();
    }

    Shell shell;
};

TEST_F(HelpFormTest, LinksAndButtonsLeadThroughThePages) {
    Show("Guide me");
    const auto& next = Part<QPushButton>("NextCommand");
    const auto& back = Part<QPushButton>("BackCommand");
    EXPECT_EQ(S(next.toolTip() + back.toolTip()), "Next to Tour listBack to Task");
    Key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(Title(), "Tour list");
    QTest::mouseClick(View().viewport(), Qt::LeftButton, {}, At("Tour #2"));
    EXPECT_EQ(Title(), "Tour #2");
    QTest::mouseClick(View().viewport(), Qt::BackButton);
    EXPECT_EQ(Title(), "Tour list");
    Key(Qt::Key_Left, Qt::AltModifier);
    QTest::mouseClick(&Part<QPushButton>("BackCommand"), Qt::LeftButton);
    EXPECT_EQ(Title(), "Task");
    EXPECT_FALSE(back.isEnabled());
    Key(Qt::Key_Tab);
    Key(Qt::Key_Return);
    EXPECT_NE(Title(), "Task") << "the first link, by keys";
    EXPECT_TRUE(View().textCursor().selectedText().isEmpty());
    EXPECT_EQ(shell.platform.beeps, 0);
}

TEST_F(HelpFormTest, APageThatIsMissingIsSaidInRed) {
    Show("No.Such <page>s");
    EXPECT_EQ(Title(), "No.Such <page>s");
    EXPECT_EQ(S(View().toPlainText()), "The help screen for No.Such <page>s is missing.");
    const QTextCharFormat format = View().document()->begin().begin().fragment().charFormat();
    EXPECT_EQ(format.foreground().color(), QColor(240, 0, 0));
    EXPECT_EQ(format.fontPointSize(), 12);
    QTest::mouseDClick(&Help(), Qt::LeftButton, {}, {2, 2});
    EXPECT_EQ(S(View().toPlainText()), "BackPages:\n  1: Task\nNextPages:");
    Key(Qt::Key_Escape);
    EXPECT_FALSE(Help().isVisible());
    Show("-");
    EXPECT_TRUE(Help().isVisible());
    EXPECT_EQ(Title(), "Task");
}

TEST_F(HelpFormTest, LettersGoThroughTheIndexAndBeepElsewhere) {
    for (const int key : {Qt::Key_T, Qt::Key_Space, Qt::Key_Backspace}) Key(key);
    EXPECT_EQ(shell.platform.beeps, 3);
    Show("Index");
    Key(Qt::Key_T);
    const QPoint top(View().viewport()->width() / 2, 4);
    EXPECT_EQ(S(View().cursorForPosition(top).block().text()), "T");
    Key(Qt::Key_X);
    EXPECT_EQ(S(View().cursorForPosition(top).block().text()), "T");
    Key(Qt::Key_A);
    EXPECT_EQ(View().verticalScrollBar()->value(), 0);
    EXPECT_EQ(shell.platform.beeps, 3);
    Key(Qt::Key_1);
    EXPECT_EQ(shell.platform.beeps, 4);
}

TEST_F(HelpFormTest, WordsAreFoundInAllPagesAndInOne) {
    auto& search = Part<QLineEdit>("SearchText");
    search.setFocus();
    QTest::keyClicks(&search, "burd cal");
    auto& results = Part<QListWidget>("ResultList");
    ASSERT_GT(results.count(), 0);
    EXPECT_TRUE(results.item(0)->text().startsWith("Burdened Rate Calculator"));
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_EQ(Title(), "Burdened Rate Calculator");
    ASSERT_FALSE(View().extraSelections().isEmpty());
    EXPECT_TRUE(
        View().extraSelections().front().cursor.selectedText().startsWith("burd", Qt::CaseInsensitive));
    search.setFocus();
    Key(Qt::Key_Escape);
    EXPECT_TRUE(Help().isVisible() && search.text().isEmpty() && View().extraSelections().isEmpty());

    Key(Qt::Key_F, Qt::ControlModifier);
    auto& find = Part<QLineEdit>("FindText");
    QTest::keyClicks(&find, "rate");
    const int first = View().textCursor().position();
    QTest::keyClick(&find, Qt::Key_Return);
    EXPECT_GT(View().textCursor().position(), first);
    QTest::keyClick(&find, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(View().textCursor().position(), first);
    QTest::keyClicks(&find, "#");
    EXPECT_EQ(shell.platform.beeps, 1);
}

TEST_F(HelpFormTest, ZoomKeepsThePicturesWithinTheWindow) {
    Show("Histogram");
    const double usual = View().document()->size().height();
    Key(Qt::Key_Plus, Qt::ControlModifier);
    Key(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_GT(View().document()->size().height(), usual);
    Help().resize(420, 700);
    QApplication::processEvents();
    EXPECT_EQ(View().horizontalScrollBar()->maximum(), 0);
    Key(Qt::Key_0, Qt::ControlModifier);
    Help().resize(1200, 700);
    QApplication::processEvents();
    EXPECT_EQ(View().ZoomSteps(), 0);
}

/// Both windows whole on the screen beside each other; at worst the field with the focus is free.
TEST_F(HelpFormTest, AFormIsNotCovered) {
    MakePlan(shell.desktop.workspace,
             R"(template Crew; resource 1 "Ann" $50; project Shed rule 1; task 1 "Dig" start)");
    shell.desktop.workspace.BroadcastNewThisProject();
    shell.Choose("TaskNew");
    QDialog& form = shell.Dialog();
    const QRect screen = shell.main.screen()->availableGeometry();
    for (const int left : {0, 200, 400}) {
        Help().setGeometry(screen.left() + left, screen.top() + 40, std::min(400, screen.width() - left),
                           500);
        for (const char* box : {"DescriptionText", "MaterialCostText"}) {
            auto& field = shell.Find<QWidget>(box);
            field.setFocus();
            QTest::keyClick(&field, Qt::Key_F1);
            const QRect focus(field.mapToGlobal(QPoint(0, 0)), field.size());
            const QRect help = Help().frameGeometry();
            EXPECT_FALSE(help.intersects(focus)) << left << box;
            EXPECT_TRUE(screen.contains(help)) << left << box;
            if (form.width() + help.width() <= screen.width()) {
                EXPECT_FALSE(help.intersects(form.frameGeometry())) << left << box;
            }
        }
    }
    shell.Click("CancelCommand");
    shell.Choose("TaskNew");
    EXPECT_FALSE(Help().frameGeometry().intersects(
        QRect(shell.Dialog().focusWidget()->mapToGlobal(QPoint(0, 0)), shell.Dialog().focusWidget()->size())))
        << "also as the form comes";
}

TEST_F(HelpFormTest, GoesAndComesWithTheMainWindow) {
    shell.main.setWindowState(Qt::WindowMinimized);
    EXPECT_FALSE(Help().isVisible());
    shell.main.setWindowState(Qt::WindowNoState);
    EXPECT_TRUE(Help().isVisible());
    Help().close();
    shell.main.setWindowState(Qt::WindowMinimized);
    shell.main.setWindowState(Qt::WindowNoState);
    EXPECT_FALSE(Help().isVisible());
    shell.Choose("HelpAboutMenu");
    shell.Click("GuideMeCommand");
    EXPECT_EQ(Title(), "Guide me");
    EXPECT_FALSE(shell.IsOpen("WelcomeForm"));
    Show("Project.Nothing");
    shell.desktop.files.UnloadScreens();
    EXPECT_TRUE(Help().isVisible()) << "it stays when memory is cleared";
}

}  // namespace
}  // namespace vortan
