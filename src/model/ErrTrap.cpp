#include "model/ErrTrap.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>

#include "model/Conventions.h"
#include "model/Fault.h"
#include "model/ValueText.h"

namespace vortan {
namespace {

/// The sections that the fault under way has left, the innermost first. A fixed size, because it grows where
/// nothing may fail; of a deeper chain the outer part is lost.
struct CallChain {
    static constexpr std::size_t kMost = 64;

    void Add(const char* name) {
        if (count < kMost) names[count++] = name;
    }

    std::array<const char*, kMost> names{};
    std::size_t count = 0;
};

thread_local CallChain chain;

/// Gives a command a chain of its own, and the command around it its chain back.
class ChainOfCommand {
  public:
    ChainOfCommand() : outer_(chain) { chain.count = 0; }
    ~ChainOfCommand() { chain = outer_; }
    ChainOfCommand(const ChainOfCommand&) = delete;
    ChainOfCommand& operator=(const ChainOfCommand&) = delete;

  private:
    CallChain outer_;
};

std::string ChainText(const char* section, const CallChain& left) {
    std::string text = std::string("Call chain:\n  ") + section;
    for (std::size_t i = left.count; i-- > 0;) text += std::string("\n  ") + left.names[i];
    return text;
}

/// Modification time of a file in local time as text, empty if there is no telling.
std::string FileDateText(const std::string& fileName) {
    std::error_code error;
    const auto written = std::filesystem::last_write_time(fileName, error);
    if (error) return {};
    const auto sinceEpoch = std::chrono::file_clock::to_sys(written).time_since_epoch();
    const std::time_t time = std::chrono::floor<std::chrono::seconds>(sinceEpoch).count();
    const std::tm* local = std::localtime(&time);
    if (!local) return {};
    const UseConventions plain;
    return FormatDate(FromParts({local->tm_year + 1900, local->tm_mon + 1, local->tm_mday, local->tm_hour,
                                 local->tm_min, local->tm_sec}));
}

/// "09/03/01 08:05:00am".
std::string LogTimeText(DateTime time) {
    const DateParts parts = ToParts(time);
    char text[80];
    std::snprintf(text, sizeof text, "%02d/%02d/%02d %02d:%02d:%02d%s", parts.month, parts.day,
                  parts.year % 100, (parts.hour + 11) % 12 + 1, parts.minute, parts.second,
                  parts.hour < 12 ? "am" : "pm");
    return text;
}

std::string LabelledLine(std::string label, const std::string& value) {
    label.resize(14, ' ');
    return label + value + "\n";
}

const char* ActionText(BoxAnswer action) {
    switch (action) {
        case BoxAnswer::Retry:
            return "[Retry]";
        case BoxAnswer::Ignore:
            return "[Ignore]";
        default:
            return "[Abort]";
    }
}

}  // namespace

Section::Section(const char* name) : name_(name), uncaught_(std::uncaught_exceptions()) {
    if (uncaught_ == 0) chain.count = 0;
}

Section::~Section() {
    const int uncaught = std::uncaught_exceptions();
    if (uncaught > uncaught_) {
        chain.Add(name_);
    } else if (uncaught == 0) {
        chain.count = 0;
    }
}

void RefuseIn(const char* section, const std::string& description) {
    const Section left(section);
    Refuse(description);
}

void Steps::Do(const std::function<void()>& step) {
    int number = Fault::kUnexpected;
    std::string description;
    try {
        return step();
    } catch (const Fault& fault) {
        number = fault.Number();
        description = fault.Description();
    } catch (const std::exception& exception) {
        description = exception.what();
    }
    if (number_ == 0 || number_ == Fault::kUnwinding) {
        number_ = number;
        description_ = description;
        chain_.assign(chain.names.begin(), chain.names.begin() + static_cast<std::ptrdiff_t>(chain.count));
    } else if (number != Fault::kUnwinding) {
        description_ += "\n\nInternal error " + std::to_string(number) + ": " + description;
    }
}

void Steps::End() {
    if (number_ == 0) return;
    chain.count = 0;
    for (const char* name : chain_) chain.Add(name);
    throw Fault(number_, description_);
}

bool ErrTrap::RunCommand(const char* section, const std::function<void()>& command) {
    const ChainOfCommand ownChain;
    for (;;) {
        int number = Fault::kUnexpected;
        std::string description;
        chain.count = 0;
        try {
            command();
            return true;
        } catch (const Fault& fault) {
            number = fault.Number();
            description = fault.Description();
        } catch (const std::exception& exception) {
            description = exception.what();
        }
        if (number == Fault::kUnwinding) return false;

        const CallChain left = chain;  // the box may let other commands run
        const std::string message = "Internal error " + std::to_string(number) + ": " + description;
        const BoxAnswer answer = Ask(message);
        WriteErrorLog(message, left.count > 0 ? left.names[0] : section, answer);
        if (answer == BoxAnswer::Retry) continue;
        if (answer == BoxAnswer::Abort) WriteErrorLog(ChainText(section, left), "", std::nullopt);
        try {
            platform_.StatusMessage("");  // whatever the command said it was doing, it does no more
        } catch (const std::exception&) {
        }
        return false;
    }
}

BoxAnswer ErrTrap::Ask(const std::string& message) {
    struct Open {
        ErrTrap& trap;
        explicit Open(ErrTrap& t) : trap(t) { ++trap.openBoxes_; }
        ~Open() { --trap.openBoxes_; }
    };
    BoxAnswer answer;
    {
        const Open open(*this);
        answer = platform_.MessageBox(message, "Internal Error", BoxIcon::Stop, BoxButtons::AbortRetryIgnore);
    }
    if (!BoxOpen() && BoxAnswered) BoxAnswered();
    return answer == BoxAnswer::Retry || answer == BoxAnswer::Ignore ? answer : BoxAnswer::Abort;
}

void ErrTrap::WriteErrorLog(const std::string& message, const std::string& section,
                            std::optional<BoxAnswer> action) {
    try {
        const std::string entry = action ? LogEntry(message, section, *action) : message + "\n";
        std::ofstream log(std::filesystem::path(platform_.LogDirectory()) / "ErrTrap.log", std::ios::app);
        log << entry;
    } catch (const std::exception&) {
        // A fault while reporting one must not hide it.
    }
}

std::string ErrTrap::LogEntry(const std::string& message, const std::string& section, BoxAnswer action) {
    const std::string program = platform_.ProgramFile();
    return std::string(79, '-') + "\n" + message + "\n\n" +
           LabelledLine("Time:", LogTimeText(platform_.Now())) + LabelledLine("Section:", section) +
           LabelledLine("Exe file:", program) + LabelledLine("Exe version:", GetAppVersion()) +
           LabelledLine("Exe date:", FileDateText(program)) +
           LabelledLine("User action:", ActionText(action));
}

}  // namespace vortan
