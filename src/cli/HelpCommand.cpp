#include <ostream>

#include "cli/Command.h"
#include "cli/Session.h"
#include "help/HelpViews.h"
#include "help/Manual.h"

namespace vortan {
namespace {

constexpr std::size_t kUsualWidth = 80, kNarrowest = 40, kNearest = 5;

struct HelpOptions {
    std::vector<std::string> words;
};

int Run(CliSession& session, const HelpOptions& options) {
    std::string key;
    for (const std::string& word : options.words) key += (key.empty() ? "" : " ") + word;
    const Manual& manual = TheManual();
    if (key.empty()) {
        for (const HelpPage& page : manual.Pages()) session.streams.out << page.key << "\n";
        return kExitDone;
    }
    const HelpPage* page = manual.GetHelpPage(key);
    if (!page) {
        std::string message = "The manual has no page \"" + key + "\".";
        const auto nearest = manual.NearestKeys(key, kNearest);
        for (const std::string& each : nearest)
            message += (&each == &nearest.front() ? "\nLook at: " : ", ") + each;
        throw CliError(message + "\nRun \"vortan-cli help\" for the list of pages.");
    }
    const auto width = static_cast<std::size_t>(session.streams.width);
    session.streams.out << HelpPlainText(*page, width > 0 ? std::max(width, kNarrowest) : kUsualWidth);
    return kExitDone;
}

}  // namespace

CliCommand HelpCommand() {
    return MakeCommand<HelpOptions>(
        "help", "Show a page of the manual, or the list of its pages",
        [](HelpOptions& o) -> std::vector<Option> {
            return {{"KEY", &o.words, "The page; the list of all pages if not given"}};
        },
        Run);
}

}  // namespace vortan
