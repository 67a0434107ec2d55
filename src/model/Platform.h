#pragma once

#include <string>

#include "model/DateTime.h"

namespace vortan {

enum class BoxIcon { Information, Warning, Question, Stop };
enum class BoxButtons { Ok, YesNo, YesNoCancel, OkCancel, AbortRetryIgnore };
/// The numbers are those written to the error log.
enum class BoxAnswer { Ok = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

struct InputAnswer {
    bool given = false;  ///< false: the user cancelled
    std::string text;
};

/// Everything that the logic needs of the outside. The desktop implements it with its toolkit, the batch
/// tool with the standard streams, tests with a script of expected boxes and answers.
class Platform {
  public:
    virtual ~Platform() = default;

    /// Shows a modal box and returns which button was pressed.
    virtual BoxAnswer MessageBox(const std::string& text, const std::string& title, BoxIcon icon,
                                 BoxButtons buttons) = 0;
    /// The same with a second, smaller text below: what else the user should know. Empty: none.
    virtual BoxAnswer MessageBoxWithDetail(const std::string& text, const std::string& detail,
                                           const std::string& title, BoxIcon icon, BoxButtons buttons) {
        return MessageBox(detail.empty() ? text : text + "\n\n" + detail, title, icon, buttons);
    }
    /// Asks for a line of text, offering `initial`.
    virtual InputAnswer InputBox(const std::string& prompt, const std::string& title,
                                 const std::string& initial) = 0;
    /// Asks for a file to write. Not given: no file chosen.
    virtual InputAnswer SaveFileDialog(const std::string& directory, const std::string& suggestedName) = 0;
    /// A short sound: the input was not understood.
    virtual void Beep() = 0;

    /// The text about a long step; empty means idle.
    virtual void StatusMessage(const std::string& text) = 0;
    /// The text about the solve (panel 4 of the status bar).
    virtual void SolveStatus(const std::string& text) = 0;

    /// Serves all pending user events on the calling thread. Called by a running solve every few
    /// milliseconds; what it runs may change the model and the solve mode.
    virtual void ServeEvents() = 0;
    /// Arms or disarms the one-shot solve timer, which answers with Solver::SolveTimerTick as soon as
    /// the event loop is idle.
    virtual void ArmSolveTimer(bool armed) = 0;

    /// The wall clock in local time.
    virtual DateTime Now() = 0;
    /// The currency symbol of the user's locale; empty if there is none.
    virtual std::string CurrencySymbol() = 0;

    /// Directory of Vortan.cfg.
    virtual std::string SettingsDirectory() = 0;
    /// Directory of ErrTrap.log.
    virtual std::string LogDirectory() = 0;
    /// Directory of the automatic backups.
    virtual std::string BackupDirectory() = 0;
    /// Full name of the running program file.
    virtual std::string ProgramFile() = 0;
};

}  // namespace vortan
