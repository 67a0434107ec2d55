#include <sys/ioctl.h>
#include <unistd.h>

#include <clocale>
#include <iostream>

#include "cli/Cli.h"

namespace {

int TerminalWidth() {
    winsize size{};
    if (!isatty(STDOUT_FILENO) || ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return 0;
    return size.ws_col;
}

}  // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_MONETARY, "");
    std::ios::sync_with_stdio(false);
    const vortan::CliStreams streams{std::cout, std::cerr, isatty(STDERR_FILENO) != 0, TerminalWidth()};
    return vortan::RunCli(std::vector<std::string>(argv + 1, argv + argc), streams);
}
