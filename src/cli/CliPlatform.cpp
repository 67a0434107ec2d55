#include "cli/CliPlatform.h"

#include <clocale>
#include <ctime>
#include <ostream>

#include "cli/Terminal.h"
#include "cli/TextTable.h"
#include "persist/UserDirectories.h"

namespace vortan {

namespace {

// Work that is done sooner shows no progress.
constexpr std::chrono::milliseconds kQuiet{300};
constexpr int kProgressWidth = 78;

}  // namespace

BoxAnswer CliPlatform::MessageBox(const std::string& text, const std::string& title, BoxIcon,
                                  BoxButtons buttons) {
    ClearProgress();
    streams_.err << title << ": " << text << "\n";
    switch (buttons) {
        case BoxButtons::Ok:
            return BoxAnswer::Ok;
        case BoxButtons::YesNo:
            return BoxAnswer::No;
        case BoxButtons::AbortRetryIgnore:
            return BoxAnswer::Abort;
        default:
            return BoxAnswer::Cancel;
    }
}

void CliPlatform::SolveStatus(const std::string& text) {
    ShowProgress(text.ends_with("...") ? text : "");
}

void CliPlatform::ShowProgress(const std::string& text) {
    if (!streams_.progress || std::chrono::steady_clock::now() - start_ < kQuiet) return;
    ClearProgress();
    if (text.empty()) return;
    streams_.err << FitText(text, kProgressWidth) << std::flush;
    shown_ = true;
}

void CliPlatform::ClearProgress() {
    if (shown_) streams_.err << "\r\033[K" << std::flush;
    shown_ = false;
}

DateTime CliPlatform::Now() {
    const std::tm local = LocalTime(std::time(nullptr));
    return FromParts(
        {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec});
}

std::string CliPlatform::CurrencySymbol() {
    if (symbol_) return *symbol_;
    const std::lconv* locale = std::localeconv();
    return locale && locale->currency_symbol ? locale->currency_symbol : "";
}

std::string CliPlatform::SettingsDirectory() {
    return vortan::SettingsDirectory(ProgramFile());
}

std::string CliPlatform::LogDirectory() {
    return vortan::LogDirectory(ProgramFile());
}

std::string CliPlatform::ProgramFile() {
    return ProgramFileName();
}

}  // namespace vortan
