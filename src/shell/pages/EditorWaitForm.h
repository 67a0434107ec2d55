#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QLabel>
#include <QProcess>
#include <functional>
#include <string>

#include "shell/desk/ChildForm.h"
#include "shell/desk/Desktop.h"
#include "shell/desk/Editor.h"

namespace vortan {

/// A small window that waits for the user to finish with a document in its editor, while the rest of the
/// program goes on. It notices when the editor ends. One that ends at once has handed the document to an
/// instance that was running, so then only the user knows.
class EditorWaitForm : public QDialog, public ChildForm {
  public:
    /// Starts the editor. `finished` runs in the error trap when the user has finished, never while an entry
    /// form is open. False: the editor could not be started, and there is no window.
    static bool Start(Desktop& desktop, const EditorCommand& editor, const std::string& document,
                      std::function<void()> finished);
    /// Of the window that waits, if there is one.
    static EditorWaitForm* Open(Desktop& desktop);
    ~EditorWaitForm() override;

    FormClass Class() const override { return FormClass::FreeWindow; }
    QWidget& Window() override { return *this; }
    void Unload() override;
    void reject() override { Unload(); }

    /// Milliseconds; what has run for less has handed its document on.
    static int ShortestEdit;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    EditorWaitForm(Desktop& desktop, const std::string& document, std::function<void()> finished);
    void EditorEnded();
    void Finish();

    Desktop& desktop_;
    std::function<void()> finished_;
    QLabel* what_;
    QProcess* editor_;
    QElapsedTimer running_;
    bool unloaded_ = false;
};

}  // namespace vortan
