#pragma once

#include <QTimer>
#include <functional>

#include "model/Conventions.h"
#include "model/Platform.h"

class QLocale;

namespace vortan {

/// How the user of `locale` writes dates, times and numbers.
Conventions ConventionsOf(const QLocale& locale);

/// The desktop's outside: boxes as dialogs, the clock, the user's directories, and the timer that runs the
/// background solve as soon as the event loop is idle.
class QtPlatform : public Platform {
  public:
    QtPlatform();

    // Where the texts of the status bar go, and what the solve timer runs. Set once there are windows.
    std::function<void(const std::string&)> ShowStatusMessage, ShowSolveStatus;
    std::function<void()> SolveTick;

    BoxAnswer MessageBox(const std::string& text, const std::string& title, BoxIcon icon,
                         BoxButtons buttons) override;
    BoxAnswer MessageBoxWithDetail(const std::string& text, const std::string& detail,
                                   const std::string& title, BoxIcon icon, BoxButtons buttons) override;
    InputAnswer InputBox(const std::string& prompt, const std::string& title,
                         const std::string& initial) override;
    InputAnswer SaveFileDialog(const std::string& directory, const std::string& suggestedName) override;
    void Beep() override;
    void StatusMessage(const std::string& text) override;
    void SolveStatus(const std::string& text) override;
    void ServeEvents() override;
    void ArmSolveTimer(bool armed) override;
    DateTime Now() override;
    std::string CurrencySymbol() override;
    std::string SettingsDirectory() override;
    std::string LogDirectory() override;
    std::string BackupDirectory() override;
    std::string ProgramFile() override;

  private:
    QTimer solveTimer_;
};

}  // namespace vortan
