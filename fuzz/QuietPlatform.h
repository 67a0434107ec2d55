#pragma once

#include <string>

#include "model/Platform.h"

/// A Platform without a user: says nothing and changes nothing.
class QuietPlatform : public vortan::Platform {
  public:
    vortan::BoxAnswer MessageBox(const std::string&, const std::string&, vortan::BoxIcon,
                                 vortan::BoxButtons) override {
        return vortan::BoxAnswer::Cancel;
    }
    vortan::InputAnswer InputBox(const std::string&, const std::string&, const std::string&) override {
        return {};
    }
    vortan::InputAnswer SaveFileDialog(const std::string&, const std::string&) override { return {}; }
    void Beep() override {}
    void StatusMessage(const std::string&) override {}
    void SolveStatus(const std::string&) override {}
    void ServeEvents() override {}
    void ArmSolveTimer(bool) override {}
    vortan::DateTime Now() override { return vortan::DateTime(37137.5); }
    std::string CurrencySymbol() override { return "$"; }
    std::string SettingsDirectory() override { return {}; }
    std::string LogDirectory() override { return {}; }
    std::string BackupDirectory() override { return {}; }
    std::string ProgramFile() override { return {}; }
};
