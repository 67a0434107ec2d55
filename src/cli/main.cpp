#include <clocale>
#include <iostream>

#include "cli/Cli.h"
#include "cli/Terminal.h"

int main(int argc, char** argv) {
    std::setlocale(LC_MONETARY, "");
    std::ios::sync_with_stdio(false);
    const vortan::CliStreams streams{std::cout, std::cerr, vortan::ErrorsAreOnTerminal(),
                                     vortan::TerminalWidth()};
    return vortan::RunCli(vortan::ProgramArguments(argc, argv), streams);
}
