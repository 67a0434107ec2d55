#pragma once

#include <QDockWidget>
#include <QTextBrowser>
#include <functional>
#include <string>
#include <vector>

#include "model/Listener.h"
#include "shell/desk/ChildForm.h"
#include "shell/desk/Desktop.h"
#include "solve/PlanEffect.h"

namespace vortan {

/// Beside the work area: why the selected task lies where it does, and what the last edit has moved. While it
/// is shut it costs a solve nothing.
class WhyPane : public QDockWidget, public ChildForm, public Listener {
  public:
    explicit WhyPane(Desktop& desktop);
    ~WhyPane() override;

    FormClass Class() const override { return FormClass::Pane; }
    QWidget& Window() override { return *this; }
    void Unload() override { SetShown(false); }
    bool IsShown() const { return shown_; }
    /// The next run of the program begins with the same.
    void SetShown(bool shown);
    /// As it was when the program ended last.
    void Restore();
    /// A solve is complete or has halted.
    void SolveEnded();

    void NewDragNode() override { Follow(); }
    void ObjectsChanged(const std::vector<Change>& changes) override;

    // Set by the main window.
    std::function<Vtask*()> SelectedTask;    ///< the one to tell about, or none
    std::function<void(Vtask&)> SelectTask;  ///< what a link does

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    QTextBrowser* NewView(const char* name, const char* accessibleName);
    /// Watches the selected task, which takes a solve.
    void Follow();
    void TellWhy();
    void TellEffect(const PlanEffect& effect);
    /// A link to the task; `text` has no mark-up yet.
    QString LinkTo(const Vtask& task, const std::string& text, std::vector<Link<Vtask>>& targets);

    Desktop& desktop_;
    bool shown_ = false, edited_ = false;
    Link<Vtask> followed_;
    PlanWatch watch_;
    QTextBrowser *why_, *effect_;
    std::vector<Link<Vtask>> whyTargets_, effectTargets_;  // of links, by their number
};

}  // namespace vortan
