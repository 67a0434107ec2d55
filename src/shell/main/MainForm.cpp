#include "shell/main/MainForm.h"

#include <QApplication>
#include <QCloseEvent>
#include <QScreen>
#include <QSplitter>
#include <QToolButton>
#include <algorithm>

#include "model/ValueText.h"
#include "paint/Text.h"
#include "shell/desk/Icons.h"
#include "shell/desk/Printing.h"
#include "shell/main/WelcomeForm.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/TemplateTreeForm.h"
#include "shell/trees/Trees.h"
#include "shell/widgets/ElidedLabel.h"
#include "shell/widgets/FocusFrames.h"

namespace vortan {
namespace {

constexpr int kBackupPeriod = 10'000;  // milliseconds between looks at the clock
constexpr int kNotePeriod = 8'000;     // milliseconds
constexpr QRgb kHaltedOnLight = qRgb(0xB3, 0x26, 0x1E), kHaltedOnDark = qRgb(0xFF, 0x8A, 0x80);
// Of the work area, the share of the project tree and that of the template tree.
constexpr int kProjectShare = 60, kTemplateShare = 40;

}  // namespace

MainForm::MainForm(Desktop& desktop) : desktop_(desktop), printing_(std::make_unique<Printing>()) {
    setObjectName("MainForm");
    setWindowTitle(Q("VORTAN " + GetAppVersion()));
    setWindowIcon(GetResIcon("Vortan.ico"));
    desktop_.mainForm = this;
    ShowFocusFrames();
    desktop_.files.UnloadScreens = [this] { UnloadScreens(); };

    BuildMenus();
    BuildToolbar();
    BuildStatusBar();
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

    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        for (ChildForm* form : forms_) {
            if (form->Class() == FormClass::Pane && now && form->Window().isAncestorOf(now)) lastPane_ = form;
        }
    });
    connect(&backupTimer_, &QTimer::timeout, this, [this] { desktop_.AutoBackupTimerTick(); });
    backupTimer_.start(kBackupPeriod);
    noteTimer_.setSingleShot(true);
    connect(&noteTimer_, &QTimer::timeout, this, [this] { messagePanel_->setText({}); });

    const QRect available = screen()->availableGeometry();
    const int left = available.width() / 24, top = available.height() / 24;
    setGeometry(available.x() + left, available.y() + top, available.width() - 2 * left,
                available.height() - 3 * top);
}

MainForm::~MainForm() {
    disconnect(qApp, nullptr, this, nullptr);
    UnloadScreens();
    desktop_.workspace.RemoveListener(this);
    desktop_.files.UnloadScreens = nullptr;
    desktop_.trees = nullptr;
    desktop_.mainForm = nullptr;
}

void MainForm::BuildWorkArea() {
    projectTree_ = new ProjectTreeForm(desktop_);
    templateTree_ = new TemplateTreeForm(desktop_);
    trees_ = std::make_unique<Trees>(desktop_, *projectTree_, *templateTree_);
    desktop_.trees = trees_.get();

    splitter_ = new QSplitter;
    splitter_->setObjectName("WorkArea");
    splitter_->addWidget(projectTree_);
    splitter_->addWidget(templateTree_);
    splitter_->setChildrenCollapsible(false);
    splitter_->setStretchFactor(0, kProjectShare);
    splitter_->setStretchFactor(1, kTemplateShare);
    splitter_->setSizes({kProjectShare * 100, kTemplateShare * 100});
    pages_ = new QStackedWidget;
    pages_->addWidget(splitter_);
    setCentralWidget(pages_);
    forms_ = {projectTree_, templateTree_};
    lastPane_ = projectTree_;
}

void MainForm::Activate(const std::string& commandLine) {
    if (!commandLine.empty()) {
        desktop_.Run("Main:MDIForm_Activate", [&] { desktop_.files.OpenFile(commandLine); });
    }
    desktop_.Run("Main:MDIForm_Activate", [&] { WelcomeForm::Start(desktop_); });
}

// ---- forms

void MainForm::ShowForm(ChildForm& form) {
    QWidget& window = form.Window();
    if (std::find(forms_.begin(), forms_.end(), &form) == forms_.end()) {
        forms_.push_back(&form);
        connect(&window, &QWidget::windowTitleChanged, this, [this] { UpdateChecks(); });
    }
    switch (form.Class()) {
        case FormClass::FullPage:
            if (fullPage_ && fullPage_ != &form) fullPage_->Unload();
            fullPage_ = &form;
            if (pages_->indexOf(&window) < 0) pages_->addWidget(&window);
            pages_->setCurrentWidget(&window);
            window.setFocus();
            UpdateChecks();
            break;
        case FormClass::EntryForm:
            PlaceEntryForm(window);
            LockEntryForms(form);
            window.show();
            window.raise();
            window.activateWindow();
            break;
        case FormClass::Pane:
        case FormClass::FreeWindow:
            window.show();
            break;
    }
}

/// Centred over the main window, and whole on the screen.
void MainForm::PlaceEntryForm(QWidget& form) {
    if (form.isVisible()) return;
    form.adjustSize();  // to two thirds of the screen at most
    form.resize(form.size().expandedTo(form.sizeHint()));
    const QRect available = screen()->availableGeometry();
    const QSize size = form.size().boundedTo(available.size());
    const QPoint middle = mapToGlobal(rect().center());
    const QPoint corner = middle - QPoint(size.width() / 2, size.height() / 2);
    form.resize(size);
    form.move(std::clamp(corner.x(), available.left(), available.right() + 1 - size.width()),
              std::clamp(corner.y(), available.top(), available.bottom() + 1 - size.height()));
}

void MainForm::UnloadScreens() {
    const auto open = forms_;
    for (ChildForm* form : open) {
        if (form->Class() != FormClass::Pane) form->Unload();
    }
}

bool MainForm::IsPrintable(ChildForm& form) {
    return form.Class() == FormClass::FullPage || form.FormName() == "CrashDataForm" ||
           form.FormName() == "ZoomForm";
}

void MainForm::LockEntryForms(ChildForm& form) {
    const bool printable = IsPrintable(form);
    for (const auto& [name, action] : actions_) {
        const bool help = name.starts_with("Help") && name != "HelpAboutMenu";
        if (help || name == "FileMenu" || name == "FileExitMenu") continue;
        const bool output = name.starts_with("Output") || name == "SetupMenu" || name == "SetupFontMenu" ||
                            name == "SetupPrinterMenu";
        action->setEnabled(output && printable);
    }
    for (QAction* button : toolbar_->actions()) {
        const QString tip = button->toolTip();
        const bool output = tip == "Print" || tip == "Copy" || tip == "Font";
        button->setEnabled(tip == "Help" || (output && printable));
    }
    boxes_->Lock(true);
    for (ChildForm* other : forms_) {
        if (other != &form && other->FormName() != "HelpForm") other->Window().setEnabled(false);
    }
}

void MainForm::UnlockEntryForm(ChildForm& form) {
    forms_.erase(std::remove(forms_.begin(), forms_.end(), &form), forms_.end());
    if (fullPage_ == &form) {
        fullPage_ = nullptr;
        pages_->setCurrentWidget(splitter_);
        UpdateChecks();
    }
    for (ChildForm* other : forms_) other->Window().setEnabled(true);
    // A form that was opened from another entry form leaves that one in charge.
    const auto below = std::find_if(forms_.rbegin(), forms_.rend(),
                                    [](ChildForm* other) { return other->Class() == FormClass::EntryForm; });
    if (below != forms_.rend()) {
        LockEntryForms(**below);
        (*below)->Window().activateWindow();
        return;
    }
    for (const auto& [name, action] : actions_) action->setEnabled(true);
    for (QAction* button : toolbar_->actions()) button->setEnabled(true);
    boxes_->Lock(false);
    UpdateMenu();
    if (fullPage_) fullPage_->Window().setFocus();
}

bool MainForm::EntryFormOpen() const {
    return std::any_of(forms_.begin(), forms_.end(),
                       [](ChildForm* form) { return form->Class() == FormClass::EntryForm; });
}

/// Not while an entry form holds the commands shut; its end comes back here.
void MainForm::UpdateMenu() {
    if (EntryFormOpen()) return;
    const Workspace& workspace = desktop_.workspace;
    Action("FileNewMenu").setEnabled(true);
    Action("FileSaveMenu").setEnabled(!workspace.ProjectList().empty() || !workspace.TemplateList().empty());
    for (QAction* button : toolbar_->actions()) {
        if (button->toolTip() == "Save") button->setEnabled(Action("FileSaveMenu").isEnabled());
    }
    for (const char* name : {"ProjectSelectMenu", "ProjectModifyMenu", "ProjectDeleteMenu"}) {
        Action(name).setEnabled(workspace.ThisProject() != nullptr);
    }
    for (const char* name : {"TemplateSelectMenu", "TemplateModifyMenu", "TemplateDeleteMenu"}) {
        Action(name).setEnabled(workspace.ThisTemplate() != nullptr);
    }
}

// ---- status

void MainForm::StatusMessage(const std::string& text) {
    noteTimer_.stop();
    messagePanel_->setText(text.empty() ? QString() : Q(text + " ..."));
    if (busy_ == !text.empty()) return;
    busy_ = !text.empty();
    if (busy_) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

void MainForm::Note(const std::string& text) {
    if (busy_ || text.empty()) return;
    messagePanel_->setText(Q(text));
    noteTimer_.start(kNotePeriod);
}

void MainForm::SolveStatus(const std::string& text) {
    solvePanel_->setText(Q(text));
    solvePanel_->setAccessibleDescription(Q(text));
    const bool halted = desktop_.solver.Mode() == SolveMode::Halted;
    solvePanel_->setToolTip(Q(halted ? text + "\nClick to see what is wrong and to repair it" : text));
    solvePanel_->setIcon(halted ? GetResIcon("Halted.ico") : QIcon());
    QPalette colors = palette();
    const bool dark =
        colors.color(QPalette::Window).lightness() < colors.color(QPalette::WindowText).lightness();
    if (halted) {
        for (const auto role : {QPalette::ButtonText, QPalette::WindowText})
            colors.setColor(role, QColor(dark ? kHaltedOnDark : kHaltedOnLight));
    }
    solvePanel_->setPalette(colors);
}

void MainForm::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && solvePanel_) SolveStatus(S(solvePanel_->text()));
}

void MainForm::NewJournal() {
    desktop_.workspace.RestartSolve();
    boxes_->UpdateJournalCombo();
}

void MainForm::NewThisProject() {
    desktop_.iterative.NewThisProject();
    UpdateMenu();
    boxes_->UpdateProjectCombo();
    boxes_->UpdateJournalCombo();
}

void MainForm::NewThisTemplate() {
    UpdateMenu();
    boxes_->UpdateTemplateCombo();
    boxes_->UpdateJournalCombo();
}

// ---- leaving

/// The first close takes the page in front away, the next one ends the program; so does the first while a
/// dialog is in front.
bool MainForm::QueryUnload() {
    if (fullPage_ && ActiveForm() == fullPage_) {
        fullPage_->Unload();
        return false;
    }
    return desktop_.files.ShutDown();
}

void MainForm::closeEvent(QCloseEvent* event) {
    bool leave = closing_;
    if (!leave) desktop_.Run("Main:MDIForm_QueryUnload", [&] { leave = QueryUnload(); });
    closing_ = leave;
    event->setAccepted(leave);
    if (leave) hide();
}

}  // namespace vortan
