#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "cli/Cli.h"
#include "model/Platform.h"

namespace vortan {

/// The batch tool's outside: boxes become lines on standard error and are answered with the safe choice,
/// progress is one line that overwrites itself.
class CliPlatform : public Platform {
  public:
    explicit CliPlatform(const CliStreams& streams) : streams_(streams) {}
    ~CliPlatform() override { ClearProgress(); }

    BoxAnswer MessageBox(const std::string& text, const std::string& title, BoxIcon icon,
                         BoxButtons buttons) override;
    InputAnswer InputBox(const std::string&, const std::string&, const std::string&) override { return {}; }
    InputAnswer SaveFileDialog(const std::string&, const std::string&) override { return {}; }
    void Beep() override {}
    void StatusMessage(const std::string& text) override { ShowProgress(text); }
    void SolveStatus(const std::string& text) override;
    void ServeEvents() override {}
    void ArmSolveTimer(bool) override {}
    DateTime Now() override;
    std::string CurrencySymbol() override;
    /// Instead of that of the environment.
    void UseCurrencySymbol(std::string symbol) { symbol_ = std::move(symbol); }
    std::string SettingsDirectory() override;
    std::string LogDirectory() override;
    std::string BackupDirectory() override { return LogDirectory(); }
    std::string ProgramFile() override;

  private:
    void ShowProgress(const std::string& text);
    void ClearProgress();

    CliStreams streams_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    bool shown_ = false;
    std::optional<std::string> symbol_;
};

}  // namespace vortan
