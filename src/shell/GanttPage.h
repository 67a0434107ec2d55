#pragma once

#include <QWidget>
#include <memory>

#include "charts/GanttForm.h"
#include "model/Listener.h"
#include "paint/QtTextMetrics.h"
#include "shell/ChildForm.h"
#include "shell/Desktop.h"
#include "shell/SurfaceView.h"

namespace vortan {

/// The Mechanized Gantt chart as a page of the work area.
class GanttPage : public QWidget, public ChildForm, public Listener {
  public:
    static GanttPage* Start(Desktop& desktop);
    ~GanttPage() override;

    FormClass Class() const override { return FormClass::FullPage; }
    QWidget& Window() override { return *this; }
    void Unload() override;
    bool Print() override { return NotReady(); }
    bool Copy() override { return NotReady(); }
    bool ChangeFont() override;

    void NewThisProject() override { Unload(); }
    void NewSolution() override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    explicit GanttPage(Desktop& desktop);
    /// In the font of the form, from the present solution.
    void Restart();
    bool NotReady() {
        desktop_.workspace.NotReadyYet();
        return true;
    }

    Desktop& desktop_;
    std::unique_ptr<QtTextMetrics> metrics_;
    std::unique_ptr<GanttForm> chart_;
    std::unique_ptr<SurfaceView> view_;
    QWidget* options_;
    bool unloaded_ = false;
};

}  // namespace vortan
