#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <memory>
#include <string>

#include "model/Listener.h"
#include "shell/desk/Desktop.h"
#include "shell/desk/FormHost.h"
#include "shell/desk/Printing.h"
#include "shell/main/ChartCommands.h"
#include "shell/main/Commands.h"
#include "shell/main/Exchange.h"
#include "shell/main/FormStack.h"
#include "shell/main/StatusBar.h"

class QSplitter;

namespace vortan {

class FindBar;
class HelpForm;
class ProjectTreeForm;
class TemplateTreeForm;
class WhyPane;
class Trees;

/// The one top-level window: menus, toolbar, status bar, and the work area with the trees and the page in
/// front of them. It ties its parts together; what the commands do stands in their table.
class MainForm : public QMainWindow, public Listener, public FormHost {
  public:
    /// The desktop must outlive the form. Nothing is shown and no file is read yet.
    explicit MainForm(Desktop& desktop);
    ~MainForm() override;

    /// First activation: opens the file of the command line, if there is one, and the welcome screen.
    void Activate(const std::string& commandLine);

    QWidget& MainWindow() override { return *this; }
    void ShowForm(ChildForm& form) override { forms_.Show(form); }
    void FormClosed(ChildForm& form) override { forms_.Closed(form); }
    ChildForm* FullPage() const override { return forms_.FullPage(); }
    bool IsEntering() const override { return forms_.EntryForm() != nullptr; }
    void Note(const std::string& text) override { status_.Note(text); }
    void DisplayHelpPage(const std::string& page) override;
    void ContextHelp() override;
    void SetupFont() override;
    /// Everything that fits itself to the page is drawn anew.
    void SetupPrinter() override;
    Printing& ThePrinting() override { return printing_; }

    Desktop& TheDesktop() { return desktop_; }
    FormStack& Forms() { return forms_; }
    StatusBar& Status() { return status_; }
    Trees& TheTrees() const { return *trees_; }
    WhyPane& Why() const { return *why_; }
    FindBar& Finding() const { return *findBar_; }
    QAction& Action(const char* name) const { return commands_.Action(name); }
    void RedoRecentMenu() { commands_.RedoRecentMenu(); }

    void NewDragNode() override { status_.Boxes().UpdateProjectCombo(); }
    void NewJournal() override;
    void NewThisProject() override;
    void NewThisTemplate() override;
    void ObjectsChanged(const std::vector<Change>&) override { ShowNextStep(); }

    IterativeChoices iterative;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void BuildWorkArea();
    void BuildFindBar();
    /// The caption, with the file and a mark while there are changes that no file has.
    void ShowTitle();
    /// Frames that the style of the toolkit leaves out in high contrast.
    void FollowContrast();
    void PlaceWindow();
    void RememberPlace();
    void Connect();
    void BuildWhyPane();
    QWidget* BuildProjectPane();
    /// Below the tree of a project that has no task yet: how to go on.
    void ShowNextStep();
    /// In the tree, with the chart in front left open where the task is part of it.
    void SelectTask(Vtask& task);
    void UpdateMenu();
    bool QueryUnload();
    HelpForm& Help();

    Desktop& desktop_;
    Printing printing_;
    FormStack forms_;
    Commands commands_;
    StatusBar status_;
    ProjectTreeForm* projectTree_ = nullptr;
    TemplateTreeForm* templateTree_ = nullptr;
    QLabel* nextStep_ = nullptr;
    WhyPane* why_ = nullptr;
    QSplitter* splitter_ = nullptr;
    FindBar* findBar_ = nullptr;
    Exchange exchange_;
    std::unique_ptr<Trees> trees_;
    QTimer backupTimer_;
    HelpForm* help_ = nullptr;  // none before its first use
    bool helpHidden_ = false;   // with the main window, when that was minimised
    bool closing_ = false;
};

}  // namespace vortan
