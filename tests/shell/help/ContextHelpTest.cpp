#include <QAccessible>
#include <filesystem>
#include <set>

#include "shell/Shell.h"
#include "shell/help/HelpForm.h"
#include "shell/main/Command.h"
#include "shell/pages/CrashDataForm.h"
#include "shell/pages/ZoomForm.h"
#include "support/Paths.h"

namespace vortan {
namespace {

/// Goes through the forms of the program and presses F1 wherever the focus can be.
class ContextHelpTest : public ::testing::Test {
  protected:
    ContextHelpTest() {
        shell.desktop.files.LoadFile(ExampleFile("house.vta"));
        shell.Solve();
    }
    static HelpForm& Help(Shell& of) {
        of.main.DisplayHelpPage("Index");
        return *dynamic_cast<HelpForm*>(of.main.findChild<QWidget*>("HelpForm"));
    }
    static void PressF1(Shell& of, QWidget& control, const std::string& where) {
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&control);
        ASSERT_TRUE(told) << where;
        EXPECT_FALSE(told->text(QAccessible::Name).isEmpty()) << where << " has no name to be read out";
        EXPECT_NE(told->role(), QAccessible::NoRole) << where;
        HelpForm& help = Help(of);
        control.setFocus();
        QTest::keyClick(&control, Qt::Key_F1);
        const std::string page = help.History().CurrentPage();
        EXPECT_NE(page, "Index") << where << ": F1 does nothing";
        const QString shown = help.findChild<QTextEdit*>("ViewableText")->toPlainText();
        EXPECT_FALSE(shown.startsWith("The help screen for ")) << where << ": no page " << page;
    }
    void Walk(Shell& of, QWidget& form) {
        const std::string name = S(form.objectName());
        walked.insert(name);
        int controls = 0;
        for (QWidget* control : form.findChildren<QWidget*>()) {
            if (control->window() != form.window() || !control->isVisibleTo(&form) || !control->isEnabled() ||
                control->focusPolicy() == Qt::NoFocus || control->focusProxy())
                continue;
            ++controls;
            PressF1(of, *control, name + "/" + S(control->objectName()));
        }
        EXPECT_GT(controls, 0) << name;
    }
    /// Of the form in front, which is closed then.
    void WalkAndClose() {
        ChildForm* form = shell.main.Forms().Active();
        Walk(shell, form->Window());
        if (form->Class() != FormClass::Pane) form->Unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    Shell shell;
    std::set<std::string> walked;
};

TEST_F(ContextHelpTest, F1FindsAPageInEveryControlOfEveryForm) {
    // What ends the program, asks outside of its forms, or leads to forms that come below.
    const std::set<std::string> noForm = {"FileNewMenu",
                                          "FileOpenMenu",
                                          "FileSaveMenu",
                                          "FileExitMenu",
                                          "EditUndoMenu",
                                          "EditRedoMenu",
                                          "EditWhyMenu",
                                          "EditTreeColumnsMenu",
                                          "EditFindMenu",
                                          "EditGoToMenu",
                                          "ProjectSelectMenu",
                                          "ProjectDeleteMenu",
                                          "TemplateSelectMenu",
                                          "TemplateDeleteMenu",
                                          "JournalNewMenu",
                                          "JournalSelectMenu",
                                          "JournalModifyMenu",
                                          "JournalDeleteMenu",
                                          "IterativeShortenMenu",
                                          "IterativeToldOrderMenu",
                                          "OutputPrintMenu",
                                          "OutputExportMenu",
                                          "OutputCopyMenu",
                                          "OutputPublishMenu",
                                          "SetupFontMenu",
                                          "SetupPrinterMenu",
                                          "SpreadsheetTypeMenu(4)",
                                          "SpreadsheetTypeMenu(9)",
                                          "SpreadsheetTypeMenu(11)",
                                          "DependencyNew",
                                          "DepartmentNew",
                                          "JournalSetAsPlanMenu",
                                          "GraphicsStatusReportMenu",
                                          "IterativeDetailedRiskSolveMenu",
                                          "IterativeDetailedCrashSolveMenu"};
    Vproject& house = *shell.desktop.workspace.ThisProject();
    for (const char* number : {"20", "0.5"}) shell.platform.ExpectInput({true, number});
    for (const CommandMenu& menu : AllMenus()) {
        for (const Command& command : menu.commands) {
            const std::string id = command.id;
            const bool help = id.find("Help") != std::string::npos && id != "HelpAboutMenu";
            if (help || noForm.contains(id)) continue;
            shell.Select(*house.TaskList().begin());
            shell.Choose(command.id);
            const bool page = command.traits.page || id.starts_with("Iterative");
            ASSERT_EQ(shell.main.Forms().Active()->Class(), page ? FormClass::FullPage : FormClass::EntryForm)
                << id;
            WalkAndClose();
            shell.Solve();
        }
    }
    shell.DoubleClick(shell.NodeOf(*(*house.TaskList().begin())->AssignmentList().begin()));
    WalkAndClose();
    for (Vtask* task : house.TaskList()) {
        if (task->DependencyList().empty() || walked.contains("DependencyEntryForm")) continue;
        shell.DoubleClick(shell.NodeOf(*task->DependencyList().begin()));
        WalkAndClose();
    }
    shell.Choose("GraphicsHistogramMenu");
    shell.Click("FilterCommand");
    WalkAndClose();
    shell.Choose("OutputPrintMenu");
    WalkAndClose();
    const IterativeResults& results = shell.desktop.iterative.Results();
    ZoomForm::Start(shell.desktop, results.crashList.front().endDate);
    WalkAndClose();
    CrashDataForm::Start(shell.desktop, results.crashList.front().endDate, results.crashList);
    WalkAndClose();
    shell.Choose("ResourceNew");
    shell.Click("RateCalculatorCommand");
    WalkAndClose();
    WalkAndClose();
    Shell halted;
    halted.desktop.files.LoadFile(ExampleFile("overtime.vta"));
    halted.Solve();
    halted.Click("SolvePanel");
    Walk(halted, halted.Dialog());

    // Every class of a form is among them. The others wait for another program, or show nothing but a bar.
    std::set<std::string> forms;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(ProjectFile("src/shell"))) {
        const std::string file = S(Q(entry.path().string()).section('/', -1));
        if (file.ends_with("Form.cpp")) forms.insert(file.substr(0, file.size() - 4));
    }
    for (const char* other :
         {"MainForm", "HelpForm", "EntryForm", "PageForm", "TableForm", "TreeForm", "EditorWaitForm",
          "StatusReportForm", "LossesForm", "ProgressForm", "ProjectTreeForm", "TemplateTreeForm"})
        forms.erase(other);
    for (const std::string& form : forms) EXPECT_TRUE(walked.contains(form)) << form;
}

TEST_F(ContextHelpTest, ATreeHasThePageOfTheSelectedNode) {
    HelpForm& help = Help(shell);
    Vproject& house = *shell.desktop.workspace.ThisProject();
    Vtemplate& crew = *shell.desktop.workspace.ThisTemplate();
    Vtask& task = **house.TaskList().begin();
    const auto page = [&](TreeForm& tree) {
        shell.main.activateWindow();
        QApplication::processEvents();
        tree.View().setFocus();
        shell.Key(tree, Qt::Key_F1);
        return help.History().CurrentPage();
    };
    const std::pair<PlanObject, const char*> objects[] = {
        {&house, "Project"}, {&task, "Task"}, {*task.AssignmentList().begin(), "Assignment"}};
    for (const auto& [object, key] : objects) {
        shell.Select(object);
        EXPECT_EQ(page(shell.TheTrees().ProjectTree()), key);
    }
    EXPECT_EQ(page(shell.TheTrees().TemplateTree()), "Template Tree")
        << "what is selected is in the other tree";
    shell.Select(*crew.ResourceList().begin());
    EXPECT_EQ(page(shell.TheTrees().TemplateTree()), "Resource");
    EXPECT_EQ(page(shell.TheTrees().ProjectTree()), "Project Tree");
}

TEST_F(ContextHelpTest, AFormWithNoProjectHasAPageOfItsOwn) {
    Shell empty;
    empty.main.ContextHelp();
    EXPECT_EQ(S(empty.main.findChild<QWidget*>("HelpForm")->windowTitle()), "Project Tree without project");
}

}  // namespace
}  // namespace vortan
