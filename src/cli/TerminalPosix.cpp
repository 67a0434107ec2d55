#include <sys/ioctl.h>
#include <unistd.h>

#include <filesystem>

#include "cli/Terminal.h"

namespace vortan {

int TerminalWidth() {
    winsize size{};
    if (!isatty(STDOUT_FILENO) || ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return 0;
    return size.ws_col;
}

bool ErrorsAreOnTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

std::vector<std::string> ProgramArguments(int argc, char** argv) {
    return {argv + 1, argv + argc};
}

std::string ProgramFileName() {
    std::error_code failed;
    return std::filesystem::read_symlink("/proc/self/exe", failed).string();
}

std::tm LocalTime(std::time_t time) {
    std::tm local{};
    localtime_r(&time, &local);
    return local;
}

}  // namespace vortan
