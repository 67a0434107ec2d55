#pragma once

#include <QAction>
#include <QComboBox>
#include <QMainWindow>
#include <QStackedWidget>
#include <QTimer>
#include <QToolBar>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/Listener.h"
#include "shell/desk/ChildForm.h"
#include "shell/desk/Desktop.h"
#include "shell/main/SelectorBoxes.h"

class QSplitter;
class QToolButton;

namespace vortan {

class ElidedLabel;
class Printing;
class ProjectTreeForm;
class TemplateTreeForm;
class Trees;

/// The one top-level window: menus, toolbar, status bar, and the work area with the trees and the page in
/// front of them. Every command of the program starts here. It decides which forms may be open together,
/// places them, and shuts the commands off while an entry form is open.
class MainForm : public QMainWindow, public Listener {
  public:
    /// The desktop must outlive the form. Nothing is shown and no file is read yet.
    explicit MainForm(Desktop& desktop);
    ~MainForm() override;

    /// First activation: opens the file of the command line, if there is one, and the welcome screen.
    void Activate(const std::string& commandLine);

    /// Places and shows a form by its class; an entry form locks the rest, a full page closes the one before.
    void ShowForm(ChildForm& form);
    /// Each form calls this once when it is unloaded.
    void UnlockEntryForm(ChildForm& form);
    /// The page in front of the trees, or none.
    ChildForm* FullPage() const { return fullPage_; }
    /// Closes every form but the trees.
    void UnloadScreens();

    /// The foreground operation in panel 5; empty clears it.
    void StatusMessage(const std::string& text);
    /// A word in panel 5 about what has just been done, for some seconds.
    void Note(const std::string& text);
    /// The text about the solve, in panel 4. It stands out while the solve is halted.
    void SolveStatus(const std::string& text);

    /// The manual, page by page and for the control that has the focus.
    void DisplayHelpPage(const std::string& page);
    void ContextHelp();

    /// The font of the form in front, and the printer and its page.
    void SetupFont();
    void SetupPrinter();
    Printing& ThePrinting() { return *printing_; }
    /// The year that the calendar showed last, 0 before it was open.
    int CalendarYear() const { return calendarYear_; }
    void SetCalendarYear(int year) { calendarYear_ = year; }

    QAction& Action(const char* name) const { return *actions_.at(name); }
    Trees& TheTrees() const { return *trees_; }

    void UpdateMenu();
    void RedoRecentMenu();

    /// Whether the unsaved changes of a project or template that is to go may be lost, or have been saved.
    bool MayLose(const Vproject& project);
    bool MayLose(const Vtemplate& condemned);
    /// Takes projects out of memory as they stand, without a question. Their subprojects that stay are master
    /// projects from then on.
    void RemoveProjects(const std::vector<Vproject*>& removed);
    void RemoveTemplate(Vtemplate& removed);

    void NewDragNode() override { boxes_->UpdateProjectCombo(); }
    void NewJournal() override;
    void NewThisProject() override;
    void NewThisTemplate() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void BuildMenus();
    void BuildToolbar();
    void BuildStatusBar();
    void BuildWorkArea();
    QAction* AddAction(QMenu& menu, const char* name, const QString& caption, const char* section,
                       std::function<void()> command);

    void LockEntryForms(ChildForm& form);
    bool EntryFormOpen() const;
    static bool IsPrintable(ChildForm& form);
    void PlaceEntryForm(QWidget& form);
    bool QueryUnload();

    void SolvePanelClick();
    void FileOpen();
    void ProjectDelete();
    void TemplateDelete();
    void TemplateModify();
    void JournalSelect();
    void JournalSetAsPlan();
    bool MayLose(const JournalOwner& owner, const std::string& what);
    void CantCreateDepartment();
    /// Takes the page of that name away if it is in front, else lets `start` show it; nothing of the kind
    /// unless it is `allowed`.
    void TogglePage(const char* name, bool allowed, const std::function<void()>& start);
    void GraphicsGantt();
    void GraphicsRiskAnalysis();
    void GraphicsCrashAnalysis();
    void UpdateChecks();
    /// A chart that is yet to come.
    void Chart();
    void SpreadsheetType(int index);
    void Calendar();
    std::optional<double> AskNumber(const char* prompt, const char* title, double offered,
                                    const std::function<std::optional<std::string>(double)>& check) const;
    void RiskSolve(bool quick);
    void CrashSolve(bool quick);
    bool ExplainOutcome(const IterativeSolve::Outcome& outcome);
    void StartRiskForm();
    void StartCrashForm();
    void OutputPrint();
    void OutputCopy();
    ChildForm* ActiveForm() const;
    /// The form in front if it has a complete surface, else none after a message.
    ChildForm* SurfaceToOutput(const std::string& word);
    void NotSupported(ChildForm& form, const std::string& word);

    Desktop& desktop_;
    std::map<std::string, QAction*> actions_;  // by control name
    std::vector<QAction*> recent_;
    std::vector<ChildForm*> forms_;  // open ones, the trees included
    ChildForm* fullPage_ = nullptr;
    ChildForm* lastPane_ = nullptr;  // the tree that had the focus last

    QStackedWidget* pages_ = nullptr;
    QSplitter* splitter_ = nullptr;
    ProjectTreeForm* projectTree_ = nullptr;
    TemplateTreeForm* templateTree_ = nullptr;
    std::unique_ptr<Trees> trees_;
    std::unique_ptr<SelectorBoxes> boxes_;
    std::unique_ptr<Printing> printing_;
    QToolBar* toolbar_ = nullptr;
    QToolButton* solvePanel_ = nullptr;
    ElidedLabel* messagePanel_ = nullptr;
    QTimer backupTimer_, noteTimer_;
    bool busy_ = false;  // with an operation in panel 5
    bool closing_ = false;
    int calendarYear_ = 0;
    // What the prompts of iterative solves offer, and the top of the risk plot's cost axis.
    std::int32_t riskIterations_ = IterativeSolve::kUsualIterations;
    double teamIncrement_ = IterativeSolve::kUsualIncrement;
    Money highestCost_;
};

}  // namespace vortan
