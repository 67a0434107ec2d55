#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <clocale>
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

std::optional<CountryHabits> HabitsOf(const std::string& locale) {
    const std::string name = locale == "user" ? "" : locale;
    locale_t known = nullptr;
    // The other encodings are of no use here.
    if (!name.empty() && name.find('.') == std::string::npos)
        known = newlocale(LC_ALL_MASK, (name + ".UTF-8").c_str(), nullptr);
    if (!known) known = newlocale(LC_ALL_MASK, name.c_str(), nullptr);
    if (!known) return std::nullopt;
    CountryHabits habits;
    const locale_t before = uselocale(known);
    const std::lconv& numbers = *localeconv();
    habits.currencySymbol = numbers.currency_symbol;
    // The "C" locale has no groups: it says nothing of people.
    if (*numbers.thousands_sep || *numbers.currency_symbol) {
        habits.conventions.TakeDatePattern(nl_langinfo(D_FMT));
        const std::string_view clock = nl_langinfo(T_FMT);
        const auto says = [clock](const char* part) { return clock.find(part) != std::string_view::npos; };
        habits.conventions.halfDayClock = says("%r") || says("%I") || says("%p");
        habits.conventions.TakeNumberSigns(numbers.decimal_point, numbers.thousands_sep);
    }
    uselocale(before);
    freelocale(known);
    return habits;
}

}  // namespace vortan
