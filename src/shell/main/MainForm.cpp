#include "shell/main/MainForm.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QScreen>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>

#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "paint/Text.h"
#include "shell/desk/Contrast.h"
#include "shell/desk/Icons.h"
#include "shell/help/HelpForm.h"
#include "shell/main/ContextPage.h"
#include "shell/main/OutputCommands.h"
#include "shell/main/WelcomeForm.h"
#include "shell/pages/WhyPane.h"
#include "shell/problems/ProblemDialogs.h"
#include "shell/trees/FindBar.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/TemplateTreeForm.h"
#include "shell/trees/Trees.h"
#include "shell/widgets/FocusFrames.h"
#include "shell/widgets/Readable.h"

namespace vortan {
namespace {

constexpr const char *kPlaceKey = "MainForm.Place", *kPanesKey = "MainForm.Panes";
constexpr const char* kSizeKey = ".Size";  // behind the name of an entry form
constexpr int kBackupPeriod = 10'000;      // milliseconds between looks at the clock
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
        why_->Restore();
    });
    desktop_.solver.SuspendSolve();
    desktop_.solver.ResumeSolve();
    backupTimer_.start(kBackupPeriod);

    PlaceWindow();
    FollowContrast();
    InstallReadables();
    setAcceptDrops(true);
    desktop_.Ended = [this] { ShowTitle(); };
    ShowTitle();
}

/// Where it was when the program ended, as far as that is on a screen.
void MainForm::PlaceWindow() {
    const QRect available = screen()->availableGeometry();
    const int left = available.width() / 24, top = available.height() / 24;
    setGeometry(available.x() + left, available.y() + top, available.width() - 2 * left,
                available.height() - 3 * top);
    const auto stored = [this](const char* key) {
        return QByteArray::fromBase64(QByteArray::fromStdString(desktop_.settings.ReadSettings(key)));
    };
    desktop_.Run("Main:PlaceWindow", [&] {
        restoreGeometry(stored(kPlaceKey));
        splitter_->restoreState(stored(kPanesKey));
    });
}

void MainForm::RememberPlace() {
    desktop_.settings.WriteSettings(kPlaceKey, saveGeometry().toBase64().toStdString());
    desktop_.settings.WriteSettings(kPanesKey, splitter_->saveState().toBase64().toStdString());
}

MainForm::~MainForm() {
    desktop_.Ended = [] {};
    forms_.UnloadScreens();
    desktop_.workspace.RemoveListener(this);
    desktop_.files.UnloadScreens = nullptr;
    desktop_.SolveEnded = nullptr;
    desktop_.host = nullptr;
}

/// What the parts of the window have to tell each other.
void MainForm::Connect() {
    forms_.SizeOf = [this](const QString& name) {
        const QStringList parts = Q(desktop_.settings.ReadSettings(S(name) + kSizeKey)).split(' ');
        return parts.size() == 2 ? QSize(parts[0].toInt(), parts[1].toInt()) : QSize();
    };
    forms_.KeepSize = [this](const QString& name, const QSize& size) {
        desktop_.settings.WriteSettings(S(name) + kSizeKey,
                                        std::to_string(size.width()) + " " + std::to_string(size.height()));
    };
    desktop_.files.UnloadScreens = [this] { forms_.UnloadScreens(); };
    connect(&backupTimer_, &QTimer::timeout, this, [this] { desktop_.AutoBackupTimerTick(); });
    forms_.PageChanged = [this] {
        commands_.UpdateChecks();
        ShowTitle();
        if (findBar_) findBar_->Again();
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
        if (findBar_) findBar_->setEnabled(!entryForm);
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
    auto* splitter = splitter_ = new QSplitter;
    splitter->setObjectName("WorkArea");
    splitter->addWidget(BuildProjectPane());
    splitter->addWidget(templateTree_);
    splitter->setChildrenCollapsible(false);
    splitter->setStretchFactor(0, kProjectShare);
    splitter->setStretchFactor(1, kTemplateShare);
    splitter->setSizes({kProjectShare * 100, kTemplateShare * 100});
    BuildWhyPane();
    forms_.SetWorkArea(*splitter, {projectTree_, templateTree_, why_});
    BuildFindBar();
}

void MainForm::BuildWhyPane() {
    why_ = new WhyPane(desktop_);
    addDockWidget(Qt::BottomDockWidgetArea, why_);
    setContextMenuPolicy(Qt::PreventContextMenu);  // one of the toolkit would show and hide the pane
    why_->hide();
    why_->SelectedTask = [this]() -> Vtask* {
        const Node* node = trees_ ? trees_->DragNode() : nullptr;
        const NodeKind kind = node ? node->Image() : NodeKind::None;
        const bool ofTask = kind == NodeKind::Task || kind == NodeKind::Dependency ||
                            kind == NodeKind::Assignment || (kind == NodeKind::Subproject && node->Parent);
        return ofTask ? trees_->TaskOfNode(*node) : nullptr;
    };
    why_->SelectTask = [this](Vtask& task) { SelectTask(task); };
    desktop_.SolveEnded = [this] { why_->SolveEnded(); };
}

void MainForm::SelectTask(Vtask& task) {
    const Vproject* active = desktop_.workspace.ThisProject();
    if (active && task.Project()->DescendsFrom(active)) return desktop_.SelectObject(&task);
    trees_->ShowInProjectTree(&task, *task.Project());
}

QWidget* MainForm::BuildProjectPane() {
    nextStep_ = new QLabel;
    nextStep_->setObjectName("NextStepLabel");
    nextStep_->setWordWrap(true);
    nextStep_->setMargin(fontMetrics().height() / 2);
    nextStep_->setTextInteractionFlags(Qt::TextBrowserInteraction);
    nextStep_->hide();
    connect(nextStep_, &QLabel::linkActivated, this,
            [this](const QString& command) { Action(command.toUtf8()).trigger(); });
    auto* pane = new QWidget;
    auto* column = new QVBoxLayout(pane);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(projectTree_, 1);
    column->addWidget(nextStep_);
    return pane;
}

void MainForm::ShowNextStep() {
    const Workspace& workspace = desktop_.workspace;
    const Vproject* project = workspace.ThisProject();
    bool isEmpty = project != nullptr;
    if (project) {
        for (const Vtask* task : project->TaskList()) isEmpty = isEmpty && !task->Include();
    }
    nextStep_->setVisible(isEmpty);
    if (!isEmpty) return;
    QString text = "<b>This project has no tasks yet.</b><br><a href=\"TaskNew\">Make its first task</a>";
    text += workspace.ThisTemplate()
                ? ", then drag people from the other tree onto it"
                : ", and <a href=\"TemplateNewMenu\">make a template</a> for the people who work on it";
    nextStep_->setText(text + ". Drag one task onto another that waits for it.");
}

void MainForm::BuildFindBar() {
    findBar_ = new FindBar(desktop_, *trees_);
    auto* line = new QToolBar("Find");
    line->setObjectName("FindLine");
    line->setMovable(false);
    line->setContextMenuPolicy(Qt::PreventContextMenu);
    line->addWidget(findBar_);
    addToolBarBreak();
    addToolBar(line);
    line->hide();
    findBar_->Shown = [line](bool shown) { line->setVisible(shown); };
}

void MainForm::ShowTitle() {
    QString title = Q("VORTAN " + GetAppVersion());
    const Workspace& workspace = desktop_.workspace;
    const auto dirty = [](const auto& list) {
        return std::any_of(list.begin(), list.end(), [](const auto* owner) { return owner->Dirty(); });
    };
    const bool any = !workspace.ProjectList().empty() || !workspace.TemplateList().empty();
    if (any && !workspace.LastFileName.empty())
        title += " - " + QFileInfo(Q(workspace.LastFileName)).fileName().replace("[*]", "[*][*]");
    if (any) title += "[*]";
    if (ChildForm* page = FullPage()) title += " - " + page->Window().windowTitle().replace("[*]", "[*][*]");
    if (title != windowTitle()) setWindowTitle(title);
    setWindowModified(any && (dirty(workspace.ProjectList()) || dirty(workspace.TemplateList())));
}

namespace {

/// The one file that is dragged, or empty.
QString DraggedFile(const QDropEvent& event) {
    const QList<QUrl> urls = event.mimeData()->urls();
    return urls.size() == 1 ? urls.front().toLocalFile() : QString();
}

}  // namespace

void MainForm::dragEnterEvent(QDragEnterEvent* event) {
    if (!IsEntering() && !DraggedFile(*event).isEmpty()) event->acceptProposedAction();
}

void MainForm::dropEvent(QDropEvent* event) {
    const QString file = DraggedFile(*event);
    if (IsEntering() || file.isEmpty()) return;
    event->acceptProposedAction();
    // When the other program has its mouse again: there may be questions.
    QTimer::singleShot(0, this, [this, file] {
        desktop_.Run("Main:Form_OLEDragDrop", [&] { desktop_.files.OpenFile(S(file)); });
    });
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

void MainForm::FollowContrast() {
    const QString sheet = ContrastSheet(QApplication::palette());
    if (qApp->styleSheet() != sheet) qApp->setStyleSheet(sheet);
}

void MainForm::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) FollowContrast();
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
    ShowNextStep();
}

void MainForm::NewThisProject() {
    desktop_.iterative.NewThisProject();
    UpdateMenu();
    status_.Boxes().UpdateProjectCombo();
    status_.Boxes().UpdateJournalCombo();
    ShowNextStep();
}

void MainForm::NewThisTemplate() {
    UpdateMenu();
    status_.Boxes().UpdateTemplateCombo();
    status_.Boxes().UpdateJournalCombo();
    ShowNextStep();
}

/// The first close takes the page in front away, the next one ends the program; so does the first while a
/// dialog is in front.
bool MainForm::QueryUnload() {
    if (FullPage() && forms_.Active() == FullPage()) {
        FullPage()->Unload();
        return false;
    }
    RememberPlace();
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
