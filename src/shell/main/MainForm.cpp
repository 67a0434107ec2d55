#include "shell/main/MainForm.h"

#include <QCloseEvent>
#include <QScreen>
#include <QSplitter>

#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtemplate.h"
#include "paint/Text.h"
#include "shell/desk/Icons.h"
#include "shell/help/HelpForm.h"
#include "shell/main/ContextPage.h"
#include "shell/main/OutputCommands.h"
#include "shell/main/WelcomeForm.h"
#include "shell/problems/ProblemDialogs.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/TemplateTreeForm.h"
#include "shell/trees/Trees.h"
#include "shell/widgets/FocusFrames.h"

namespace vortan {
namespace {

constexpr int kBackupPeriod = 10'000;  // milliseconds between looks at the clock
// Of the work area, the share of the project tree and that of the template tree.
constexpr int kProjectShare = 60, kTemplateShare = 40;

}  // namespace

MainForm::MainForm(Desktop& desktop)
    : desktop_(desktop), forms_(*this), commands_(*this), status_(desktop, *this), exchange_(desktop, *this) {
    setObjectName("MainForm");
    setWindowTitle(Q("VORTAN " + GetAppVersion()));
    setWindowIcon(GetResIcon("Vortan.ico"));
    desktop_.host = this;
    ShowFocusFrames();
    Connect();
    // Nothing reads a setting before this; a file of settings that is damaged takes nothing else with it.
    desktop_.Run("Main:MDIForm_Load", [this] { desktop_.files.StartUp(); });
    BuildWorkArea();
    desktop_.workspace.AddListener(this);
    desktop_.Run("Main:MDIForm_Load", [this] {
        projectTree_->Start();
        templateTree_->Start();
        NewThisProject();
        NewThisTemplate();
    });
    desktop_.solver.SuspendSolve();
    desktop_.solver.ResumeSolve();
    backupTimer_.start(kBackupPeriod);

    const QRect available = screen()->availableGeometry();
    const int left = available.width() / 24, top = available.height() / 24;
    setGeometry(available.x() + left, available.y() + top, available.width() - 2 * left,
                available.height() - 3 * top);
}

MainForm::~MainForm() {
    forms_.UnloadScreens();
    desktop_.workspace.RemoveListener(this);
    desktop_.files.UnloadScreens = nullptr;
    desktop_.host = nullptr;
}

/// What the parts of the window have to tell each other.
void MainForm::Connect() {
    desktop_.files.UnloadScreens = [this] { forms_.UnloadScreens(); };
    connect(&backupTimer_, &QTimer::timeout, this, [this] { desktop_.AutoBackupTimerTick(); });
    forms_.PageChanged = [this] {
        commands_.UpdateChecks();
        const QString title = Q("VORTAN " + GetAppVersion());
        ChildForm* page = FullPage();
        setWindowTitle(page ? title + " - " + page->Window().windowTitle() : title);
    };
    forms_.EntryFormShown = [this](QWidget& form) {
        if (help_ && help_->isVisible()) help_->SplitScreen(form);
    };
    forms_.EntryFormChanged = [this] {
        const ChildForm* entryForm = forms_.EntryForm();
        if (entryForm) {
            commands_.Lock(entryForm->IsPrintable());
        } else {
            commands_.Unlock();
        }
        status_.Boxes().Lock(entryForm != nullptr);
    };
    status_.Boxes().ShowTemplate = [this] { templateTree_->Start(); };
    // Not while an entry form is open: the dialogs would close it.
    status_.SolvePanelClick = [this] {
        if (!forms_.EntryForm()) vortan::SolvePanelClick(desktop_, *trees_);
    };
}

void MainForm::BuildWorkArea() {
    projectTree_ = new ProjectTreeForm(desktop_);
    templateTree_ = new TemplateTreeForm(desktop_);
    trees_ = std::make_unique<Trees>(desktop_, *projectTree_, *templateTree_);
    auto* splitter = new QSplitter;
    splitter->setObjectName("WorkArea");
    splitter->addWidget(projectTree_);
    splitter->addWidget(templateTree_);
    splitter->setChildrenCollapsible(false);
    splitter->setStretchFactor(0, kProjectShare);
    splitter->setStretchFactor(1, kTemplateShare);
    splitter->setSizes({kProjectShare * 100, kTemplateShare * 100});
    forms_.SetWorkArea(*splitter, {projectTree_, templateTree_});
}

void MainForm::Activate(const std::string& commandLine) {
    desktop_.Run("Main:MDIForm_Activate", [&] { desktop_.files.OfferBackups(); });
    if (!commandLine.empty()) {
        desktop_.Run("Main:MDIForm_Activate", [&] { desktop_.files.OpenFile(commandLine); });
    }
    desktop_.Run("Main:MDIForm_Activate", [&] { WelcomeForm::Start(desktop_); });
}

HelpForm& MainForm::Help() {
    if (!help_) help_ = new HelpForm(desktop_, *this);
    return *help_;
}

void MainForm::DisplayHelpPage(const std::string& page) {
    Help().DisplayHelpPage(page);
}

void MainForm::ContextHelp() {
    ChildForm* active = forms_.Active();
    if (!active) Refuse("MainForm.ActiveForm = Nothing");
    if (active->Class() == FormClass::EntryForm) Help().SplitScreen(active->Window());
    DisplayHelpPage(ContextPage(*active, *trees_, desktop_.workspace));
}

void MainForm::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_F1) return QMainWindow::keyPressEvent(event);
    desktop_.Run("Main:Form_KeyDown", [this] { ContextHelp(); });
}

void MainForm::SetupFont() {
    vortan::SetupFont(*this);
}

void MainForm::SetupPrinter() {
    if (printing_.ShowPrinter(this)) desktop_.workspace.BroadcastNewSolution();
}

void MainForm::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && trees_) status_.PaletteChanged();
    if (event->type() != QEvent::WindowStateChange || !help_) return;
    if (isMinimized() && help_->isVisible()) {
        helpHidden_ = true;
        help_->hide();
    } else if (!isMinimized() && helpHidden_) {
        helpHidden_ = false;
        help_->show();
    }
}

/// An entry form holds the commands shut; its end does what is left out here.
void MainForm::UpdateMenu() {
    if (!forms_.EntryForm()) commands_.Update();
}

void MainForm::NewJournal() {
    desktop_.workspace.RestartSolve();
    status_.Boxes().UpdateJournalCombo();
}

void MainForm::NewThisProject() {
    desktop_.iterative.NewThisProject();
    UpdateMenu();
    status_.Boxes().UpdateProjectCombo();
    status_.Boxes().UpdateJournalCombo();
}

void MainForm::NewThisTemplate() {
    UpdateMenu();
    status_.Boxes().UpdateTemplateCombo();
    status_.Boxes().UpdateJournalCombo();
}

/// The first close takes the page in front away, the next one ends the program; so does the first while a
/// dialog is in front.
bool MainForm::QueryUnload() {
    if (FullPage() && forms_.Active() == FullPage()) {
        FullPage()->Unload();
        return false;
    }
    return desktop_.files.ShutDown();
}

void MainForm::closeEvent(QCloseEvent* event) {
    bool leave = closing_;
    if (!leave) desktop_.Run("Main:MDIForm_QueryUnload", [&] { leave = QueryUnload(); });
    closing_ = leave;
    event->setAccepted(leave);
    if (!leave) return;
    if (help_) help_->hide();
    hide();
}

}  // namespace vortan
