#include <windows.h>
// behind it
#include <shellapi.h>

#include <filesystem>

#include "cli/Terminal.h"

namespace vortan {
namespace {

std::string Utf8(const wchar_t* text) {
    const std::u8string name = std::filesystem::path(text).u8string();
    return {name.begin(), name.end()};
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

}  // namespace vortan
