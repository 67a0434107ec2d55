#pragma once

#include "shell/desk/Desktop.h"
#include "shell/desk/QtPlatform.h"
#include "shell/main/MainForm.h"

namespace vortan {

/// The whole desktop program but for the event loop. Needs a QApplication that outlives it.
class App {
  public:
    App() : desktop(platform), mainForm(desktop) {
        platform.ShowStatusMessage = [this](const std::string& text) {
            mainForm.Status().StatusMessage(text);
        };
        platform.ShowSolveStatus = [this](const std::string& text) { mainForm.Status().SolveStatus(text); };
        platform.SolveTick = [this] { desktop.SolveTimerTick(); };
        mainForm.Status().SolveStatus(desktop.solver.SolveMessage());
    }
    ~App() {
        platform.ShowStatusMessage = nullptr;
        platform.ShowSolveStatus = nullptr;
        platform.SolveTick = nullptr;
    }
    App(const App&) = delete;
    App& operator=(const App&) = delete;

    QtPlatform platform;
    Desktop desktop;
    MainForm mainForm;
};

}  // namespace vortan
