#include "shell/pages/EditorWaitForm.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>
#include <vector>

#include "paint/Text.h"
#include "shell/desk/FormHost.h"

namespace vortan {
namespace {

/// To destroy it would end the program that it runs, so it is kept to the very end.
void LeaveAlone(QProcess* process) {
    static auto* const kept = new std::vector<QProcess*>;
    kept->push_back(process);
}

}  // namespace

int EditorWaitForm::ShortestEdit = 3000;

bool EditorWaitForm::Start(Desktop& desktop, const EditorCommand& editor, const std::string& document,
                           std::function<void()> finished) {
    if (EditorWaitForm* open = Open(desktop)) open->Unload();
    auto* form = new EditorWaitForm(desktop, document, std::move(finished));
    form->running_.start();
    form->editor_->start(editor.program, editor.arguments, QIODevice::NotOpen);
    if (!form->editor_->waitForStarted()) {
        form->Unload();
        return false;
    }
    desktop.host->ShowForm(*form);
    return true;
}

EditorWaitForm* EditorWaitForm::Open(Desktop& desktop) {
    return static_cast<EditorWaitForm*>(desktop.host->MainWindow().findChild<QWidget*>("EditorWaitForm"));
}

EditorWaitForm::EditorWaitForm(Desktop& desktop, const std::string& document, std::function<void()> finished)
    : QDialog(&desktop.host->MainWindow()),
      desktop_(desktop),
      finished_(std::move(finished)),
      what_(new QLabel),
      editor_(new QProcess) {
    setObjectName("EditorWaitForm");
    setWindowTitle("Status Report");
    what_->setTextFormat(Qt::PlainText);
    what_->setText(Q("Please fill in " + document + " in the editor, save it and close it."));
    auto* finish = new QPushButton("I have &finished editing");
    finish->setObjectName("FinishedCommand");
    finish->setDefault(true);
    auto* cancel = new QPushButton("Cancel");
    cancel->setObjectName("CancelCommand");
    connect(finish, &QPushButton::clicked, this, [this] { Finish(); });
    connect(cancel, &QPushButton::clicked, this, [this] { Unload(); });
    // No pipes: the editor may outlive the program.
    editor_->setStandardInputFile(QProcess::nullDevice());
    editor_->setStandardOutputFile(QProcess::nullDevice());
    editor_->setStandardErrorFile(QProcess::nullDevice());
    connect(editor_, &QProcess::finished, this, [this] { EditorEnded(); });
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(finish);
    row->addWidget(cancel);
    auto* all = new QVBoxLayout(this);
    all->addWidget(what_);
    all->addSpacing(fontMetrics().height() / 2);
    all->addLayout(row);
}

/// The editor goes on when the window, or the program, does not.
EditorWaitForm::~EditorWaitForm() {
    editor_->disconnect();
    if (editor_->state() == QProcess::NotRunning) {
        delete editor_;
    } else {
        LeaveAlone(editor_);
        QObject::connect(editor_, &QProcess::finished, editor_, &QObject::deleteLater);
    }
    if (!unloaded_ && desktop_.host) desktop_.host->FormClosed(*this);
}

void EditorWaitForm::Unload() {
    if (unloaded_) return;
    unloaded_ = true;
    setObjectName({});
    hide();
    desktop_.host->FormClosed(*this);
    deleteLater();
}

void EditorWaitForm::EditorEnded() {
    if (unloaded_ || running_.elapsed() < ShortestEdit) return;
    // It comes when it comes: what the user is in the midst of goes first.
    if (desktop_.host->IsEntering() || desktop_.trap.BoxOpen() || QApplication::activeModalWidget()) {
        what_->setText("The editor has been closed. The report goes on with the button below.");
        return;
    }
    Finish();
}

void EditorWaitForm::Finish() {
    desktop_.Run("StatusReport:FinishedCommand_Click", [this] {
        if (desktop_.host->IsEntering()) {
            desktop_.host->Note("Please close the form that is open first");
            return;
        }
        const auto finished = finished_;
        Unload();
        finished();
    });
}

void EditorWaitForm::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_F1) return QDialog::keyPressEvent(event);
    desktop_.Run("EditorWait:Form_KeyDown", [this] { desktop_.host->DisplayHelpPage("Status report"); });
}

}  // namespace vortan
