#include <QMenuBar>
#include <QTemporaryDir>
#include <fstream>
#include <iterator>

#include "shell/Shell.h"
#include "shell/main/App.h"

namespace vortan {
namespace {

/// A planner at the keyboard and the mouse of the whole program. A box that nobody waits for fails the test.
class Planner : public Driver {
  public:
    Planner() {
        QObject::connect(&unexpected_, &QTimer::timeout, [] {
            auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (!box) return;
            const auto* message = qobject_cast<QMessageBox*>(box);
            ADD_FAILURE() << "Unexpected box: " << S(message ? message->text() : box->windowTitle());
            box->reject();
        });
        unexpected_.start(0);
        app.mainForm.setGeometry(20, 30, 1240, 720);
        app.mainForm.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&app.mainForm));
        app.mainForm.Activate("");
        Press(Qt::Key_Return);  // the welcome screen
    }

    MainForm& Window() override { return app.mainForm; }

    /// Once the form is in front, or the list that has popped up before it.
    void Press(Qt::Key key) {
        QCoreApplication::processEvents();
        EXPECT_TRUE(QApplication::activePopupWidget() || QTest::qWaitForWindowActive(&Dialog()));
        Driver::Press(key);
    }
    /// Types into the box with the focus, whose text is selected.
    void Keys(const QString& text) {
        EXPECT_TRUE(QTest::qWaitForWindowActive(&Dialog()));
        QTest::keyClicks(Dialog().focusWidget(), text);
    }
    /// Goes from box to box with the tab key until it stands in that one, and types.
    void Type(const char* box, const char* text) {
        auto& wanted = Find<QWidget>(box);
        const auto there = [&] {
            QWidget* focus = Dialog().focusWidget();
            return focus && (focus == &wanted || wanted.isAncestorOf(focus));
        };
        for (int i = 0; i < 60 && !there(); ++i) Press(Qt::Key_Tab);
        ASSERT_TRUE(there()) << box << " is not reached with the tab key";
        Keys(text);
    }
    /// A button of the toolbar, with the form that it opens.
    void Tool(const std::string& toolTip) { Click(("Toolbar." + toolTip).c_str()); }
    void Menu(const char* menu, const char* item) {
        QMenuBar& bar = *app.mainForm.menuBar();
        QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(&app.mainForm.Action(menu)).center());
        auto* popup = app.mainForm.findChild<QMenu*>(menu);
        ASSERT_TRUE(popup && popup->isVisible());
        QTest::mouseClick(popup, Qt::LeftButton, {},
                          popup->actionGeometry(&app.mainForm.Action(item)).center());
        QCoreApplication::processEvents();
    }
    /// Chooses from a menu what opens a modal box, and answers it.
    void InBox(const char* menu, const char* item, const std::function<void(QWidget&)>& answer) {
        unexpected_.stop();
        vortan::InBox([&] { Menu(menu, item); }, answer);
        unexpected_.start(0);
    }
    /// Ok by the Enter key; the form closes, the solve follows and comes to an end.
    void Ok() {
        const QString form = Dialog().objectName();
        Press(Qt::Key_Return);
        ASSERT_THROW(Dialog(), std::runtime_error) << S(form) << " stays open";
        WaitForSolve();
    }
    void WaitForSolve() {
        const auto ended = [this] {
            const SolveMode mode = app.desktop.solver.Mode();
            return mode == SolveMode::Idle || mode == SolveMode::Halted;
        };
        for (int i = 0; i < 1000 && !ended(); ++i) QCoreApplication::processEvents();
        ASSERT_EQ(SolveText(), app.desktop.solver.SolveMessage());
        ASSERT_TRUE(ended());
    }
    std::string SolveText() { return S(Find<QToolButton>("SolvePanel").text()); }

    /// The task or resource whose text begins so.
    Node& NodeOf(const std::string& text) {
        Node* found = nullptr;
        const std::function<void(const Nodes&)> look = [&](const Nodes& nodes) {
            for (const auto& node : nodes) {
                const bool fits = node->Image() == NodeKind::Task || node->Image() == NodeKind::Resource;
                if (!found && fits && node->Text.starts_with(text)) found = node.get();
                look(node->Children);
            }
        };
        for (TreeForm* form : Forms()) look(form->Tree().Roots());
        if (!found) throw std::runtime_error("There is no node " + text);
        return *found;
    }
    void ClickNode(const std::string& text) {
        Driver::Click(NodeOf(text));
        ASSERT_EQ(TheTrees().DragNode(), &NodeOf(text));
    }
    void Drag(const std::string& from, const std::string& onto) {
        Driver::Drag(NodeOf(from), NodeOf(onto));
        WaitForSolve();
    }
    App app;

    Vproject& Project() { return *app.desktop.workspace.ThisProject(); }

  private:
    QTimer unexpected_;  // looks for boxes that nobody waits for
};

void MakeTemplate(Planner& planner) {
    planner.Menu("TemplateMenu", "TemplateNewMenu");
    planner.Keys("Crew");
    planner.Type("DescriptionText", "Everybody");
    planner.Ok();
    planner.Tool("Shift");
    planner.Type("ShiftNameText", "Early");
    auto& grid = planner.Find<QWidget>("Grid");
    grid.setFocus();
    QTest::keyClick(&grid, Qt::Key_N);  // the first five minutes of the day
    planner.Ok();

    const char* const people[] = {"Ada Berg", "Ben Carter", "Cleo Diaz"};
    for (const char* person : people) {
        planner.Tool("Resource");
        planner.Keys(person);
        planner.Type("DepartmentCombo", person[0] == 'C' ? "Finish" : "Build");
        if (person[0] == 'A') {
            planner.Click("RateCalculatorCommand");
            planner.Type("HourlyRateText(0)", "40");
            planner.Press(Qt::Key_Return);
            EXPECT_EQ(S(planner.Find<QLineEdit>("OvertimeRateText").text().right(5)), "80.00");
            planner.Type("TitleText", "Foreman");
        } else {
            planner.Type("BurdenedRateText", "50");
        }
        planner.Ok();
    }
    EXPECT_EQ(planner.SolveText(), "No projects loaded");
    EXPECT_EQ(planner.app.desktop.workspace.ThisTemplate()->ResourceList().size(), 3U);
}

void MakeProject(Planner& planner) {
    planner.Menu("ProjectMenu", "ProjectNewMenu");
    planner.Keys("Cabin");
    planner.Type("InitialJournalText", "1/4/2027");
    planner.Ok();
    const char* const work[] = {"Survey", "Permits", "Groundwork", "Frame",  "Roof",
                                "Wiring", "Pipes",   "Insulation", "Finish", "Handover"};
    for (const char* description : work) {
        planner.Tool("Task");
        planner.Keys(description);
        planner.Type("EstimateText(4)", "24");
        planner.Ok();
    }
    EXPECT_EQ(planner.Project().TaskList().size(), 10U);
    EXPECT_EQ(planner.SolveText(), "Missing to-start dependency");
}

/// The first task on a date, the others on the one before them: two by the form, the rest by the mouse.
void Connect(Planner& planner) {
    planner.ClickNode("1: ");
    planner.Tool("Dependency");
    planner.Ok();
    for (int task = 2; task <= 10; ++task) {
        const std::string name = std::to_string(task) + ": ", before = std::to_string(task - 1) + ": ";
        if (task > 3) {
            planner.Drag(before, name);
            continue;
        }
        planner.ClickNode(name);
        planner.Tool("Dependency");
        planner.Click("TaskOption");
        planner.Find<QComboBox>("ProjectRequiredCombo").setFocus(Qt::TabFocusReason);
        planner.Press(Qt::Key_Down);
        planner.Press(Qt::Key_Up);
        planner.Find<QComboBox>("TaskRequiredCombo").setFocus(Qt::TabFocusReason);
        planner.Keys(Q(planner.Project().FindTask(task - 1)->BuildNodeText()));
        planner.Click("QuickOption(0)");
        planner.Ok();
    }
    EXPECT_EQ(planner.SolveText(), "Effort without resources");
}

void Assign(Planner& planner) {
    for (int task = 1; task <= 10; ++task) {
        const std::string name = std::to_string(task) + ": ";
        if (task > 1) {
            planner.Drag(task % 2 == 0 ? "1: Ada" : "2: Ben", name);
            continue;
        }
        planner.ClickNode(name);
        planner.Tool("Assignment");
        planner.Find<QComboBox>("ResourceIdCombo").setFocus(Qt::TabFocusReason);
        planner.Keys("3: Cleo Diaz");
        planner.Ok();
    }
    EXPECT_EQ(planner.SolveText(), "Solve complete");
    EXPECT_EQ(FormatDate(planner.Project().FindTask(1)->EarlyFinish()), "1/6/2027 5:00:00 PM");
    EXPECT_EQ(FormatDate(planner.Project().EarlyFinish()), "2/12/2027 5:00:00 PM");
}

void MoveOn(Planner& planner) {
    planner.Menu("JournalMenu", "JournalSetAsPlanMenu");
    planner.InBox("JournalMenu", "JournalNewMenu", [](QWidget& box) {
        QTest::keyClicks(box.focusWidget(), "2027-01-18");
        QTest::keyClick(box.focusWidget(), Qt::Key_Return);
    });
    planner.WaitForSolve();
    EXPECT_EQ(S(planner.Find<QComboBox>("JournalCombo").currentText()), "1/18/2027 [Current]");
    // The roof takes two days longer than planned.
    planner.DoubleClick(planner.NodeOf("5: Roof"));
    QCoreApplication::processEvents();
    planner.Type("EstimateText(4)", "40");
    EXPECT_EQ(planner.Find<QLineEdit>("EstimateText(7)").text(), "40");
    planner.Ok();
    EXPECT_EQ(planner.SolveText(), "Solve complete");
}

TEST(PlannerStoryTest, FromAnEmptyProgramToASavedPlanAndBack) {
    const QTemporaryDir directory;
    for (const char* home : {"XDG_CONFIG_HOME", "XDG_STATE_HOME"}) qputenv(home, directory.path().toUtf8());
    const std::string file = S(directory.filePath("cabin.vtb"));
    const auto ends = [](Planner& planner) {
        return FormatDate(planner.Project().EarlyFinishAt(0)) + ", " +
               FormatDate(planner.Project().EarlyFinish());
    };
    const std::string expected = "2/12/2027 5:00:00 PM, 2/16/2027 5:00:00 PM";
    {
        Planner planner;
        MakeTemplate(planner);
        MakeProject(planner);
        Connect(planner);
        Assign(planner);
        MoveOn(planner);
        EXPECT_EQ(ends(planner), expected);
        planner.InBox("FileMenu", "FileSaveMenu", [&](QWidget& box) {
            auto* name = box.findChild<QLineEdit*>("fileNameEdit");
            name->selectAll();
            QTest::keyClicks(name, Q(file));
            auto* buttons = box.findChild<QDialogButtonBox*>();
            QTest::mouseClick(buttons->button(QDialogButtonBox::Save), Qt::LeftButton);
        });
        EXPECT_FALSE(planner.Project().Dirty());
        planner.Menu("FileMenu", "FileExitMenu");
        EXPECT_FALSE(planner.app.mainForm.isVisible());
    }
    ASSERT_TRUE(std::ifstream(file).good());
    Planner planner;
    planner.Menu("FileMenu", "FileRecentMenu(1)");
    planner.WaitForSolve();
    EXPECT_EQ(planner.SolveText(), "Solve complete");
    for (const auto& [box, text] : {std::pair("ProjectCombo", "Cabin"),
                                    {"TemplateCombo", "Crew"},
                                    {"JournalCombo", "1/18/2027 [Current]"}})
        EXPECT_EQ(planner.Find<QComboBox>(box).currentText(), text);
    EXPECT_EQ(ends(planner), expected);
}

}  // namespace
}  // namespace vortan
