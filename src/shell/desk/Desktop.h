#pragma once

#include <functional>
#include <utility>

#include "model/ErrTrap.h"
#include "model/History.h"
#include "model/Workspace.h"
#include "persist/FileCommands.h"
#include "persist/Settings.h"
#include "shell/desk/PlanObject.h"
#include "solve/IterativeSolve.h"
#include "solve/Solver.h"

namespace vortan {

class FormHost;

/// What every screen of the desktop program works on: one memory with its solver, the settings, the file
/// commands and the error trap. Knows nothing of windows but who shows them.
class Desktop {
  public:
    /// `thePlatform` must outlive the object.
    explicit Desktop(Platform& thePlatform)
        : platform(thePlatform),
          workspace(thePlatform),
          solver(workspace),
          iterative(workspace, solver),
          settings(thePlatform),
          files(workspace, settings),
          trap(thePlatform) {
        workspace.TheHistory().SetKept(true);
        trap.BoxAnswered = [this] {
            if (std::exchange(solveWaits_, false)) platform.ArmSolveTimer(true);
        };
    }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    /// Runs what one click, key or timer tick does, and tells the screens what it has changed. `section`
    /// names it for the log, as ErrTrap::RunCommand.
    bool Run(const char* section, const std::function<void()>& command) {
        ++running_;
        const bool ended = trap.RunCommand(section, command);
        if (--running_ == 0) {
            trap.RunCommand("Main:DeliverChanges", [this] {
                workspace.TheHistory().EndStep();
                workspace.DeliverChanges();
            });
            Ended();
        }
        return ended;
    }

    // The timers' events. While a box about a fault is open they do nothing: what failed may have left the
    // model half done. The solve comes when the box has been answered, the backup with its next tick.
    void SolveTimerTick() {
        if (trap.BoxOpen()) {
            solveWaits_ = true;
        } else {
            // Not a command that others run within: the screens follow each while the solve goes on.
            trap.RunCommand("Main:SolveTimer_Timer", [this] {
                solver.SolveTimerTick();
                if (running_ == 0) workspace.TheHistory().JoinStep();
            });
            if (SolveEnded) trap.RunCommand("Main:SolveEnded", SolveEnded);
        }
    }
    void AutoBackupTimerTick() {
        if (!trap.BoxOpen()) Run("Main:AutoBackupTimer_Timer", [this] { files.AutoBackupTick(); });
    }

    Platform& platform;
    Workspace workspace;
    Solver solver;
    IterativeSolve iterative;
    Settings settings;
    FileCommands files;
    ErrTrap trap;
    FormHost* host = nullptr;  ///< the main window, for as long as there is one
    int calendarYear = 0;      ///< that the calendar showed last, 0 before it was open
    DateTime byDayMonth;       ///< that the loading by day showed last, not set before it was open

    /// After each command; the main window sets it.
    std::function<void()> Ended = [] {};

    enum class Saving { Added, Changed, Moved };
    /// Called by entry forms for what they have saved; `Moved` when its place among its siblings may be
    /// another one. The trees set it.
    std::function<void(const PlanObject&, Saving)> ObjectSaved = [](const PlanObject&, Saving) {};
    /// Called after each tick of the solve timer, whatever came of it. The main window sets it.
    std::function<void()> SolveEnded;
    /// What the trees do for other screens: select an object that they show or can show; delete it, after
    /// their question.
    std::function<void(const PlanObject&)> SelectObject = [](const PlanObject&) {},
                                           RequestDelete = [](const PlanObject&) {};

  private:
    int running_ = 0;  ///< commands within one another
    bool solveWaits_ = false;
};

}  // namespace vortan
