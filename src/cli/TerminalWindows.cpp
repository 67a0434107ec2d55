#include <windows.h>
// behind it
#include <shellapi.h>

#include <algorithm>
#include <filesystem>

#include "cli/Terminal.h"

namespace vortan {
namespace {

std::string Utf8(const wchar_t* text) {
    const std::u8string name = std::filesystem::path(text).u8string();
    return {name.begin(), name.end()};
}

std::string LocaleText(const std::wstring& name, LCTYPE what) {
    wchar_t text[90] = L"";
    ::GetLocaleInfoEx(name.empty() ? LOCALE_NAME_USER_DEFAULT : name.c_str(), what, text, 90);
    return Utf8(text);
}

}  // namespace

int TerminalWidth() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    const HANDLE out = ::GetStdHandle(STD_OUTPUT_HANDLE);
    return ::GetConsoleScreenBufferInfo(out, &info) != 0 ? info.srWindow.Right - info.srWindow.Left + 1 : 0;
}

bool ErrorsAreOnTerminal() {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

/// The arguments of main are in the code page of the machine, which lacks letters.
std::vector<std::string> ProgramArguments(int, char**) {
    ::SetConsoleOutputCP(CP_UTF8);
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    for (int i = 1; words && i < count; ++i) arguments.push_back(Utf8(words[i]));
    ::LocalFree(words);
    return arguments;
}

std::string ProgramFileName() {
    std::wstring name(32768, L'\0');
    name.resize(::GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
    return Utf8(name.c_str());
}

std::tm LocalTime(std::time_t time) {
    std::tm local{};
    localtime_s(&local, &time);
    return local;
}

std::optional<CountryHabits> HabitsOf(const std::string& locale) {
    if (locale == "C" || locale == "POSIX") return CountryHabits{};
    std::wstring name =
        locale == "user" ? L"" : std::filesystem::u8path(locale.substr(0, locale.find('.'))).wstring();
    std::replace(name.begin(), name.end(), L'_', L'-');
    if (!name.empty() && !::IsValidLocaleName(name.c_str())) return std::nullopt;
    CountryHabits habits;
    habits.currencySymbol = LocaleText(name, LOCALE_SCURRENCY);
    habits.conventions.TakeDatePattern(LocaleText(name, LOCALE_SSHORTDATE));
    habits.conventions.halfDayClock = LocaleText(name, LOCALE_SSHORTTIME).find('t') != std::string::npos;
    habits.conventions.TakeNumberSigns(LocaleText(name, LOCALE_SDECIMAL), LocaleText(name, LOCALE_STHOUSAND));
    return habits;
}

}  // namespace vortan
