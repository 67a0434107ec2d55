#include "model/ValueText.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>

#include "model/Characters.h"
#include "model/Conventions.h"
#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/NumberText.h"

namespace vortan {
namespace {

struct Unit {
    const char* name;
    int effortMinutes;    ///< of work
    int calendarMinutes;  ///< on the clock
};
constexpr Unit kUnits[] = {{"months", 9600, 43200},
                           {"weeks", 2400, 10080},
                           {"days", 480, 1440},
                           {"hours", 60, 60},
                           {"minutes", 1, 1}};

const Unit* FindUnit(int effortUnits) {
    for (const Unit& unit : kUnits)
        if (effortUnits == -unit.effortMinutes || effortUnits == unit.calendarMinutes) return &unit;
    return nullptr;
}

bool TakePrefix(std::string_view& text, std::string_view prefix) {
    if (prefix.empty() || text.substr(0, prefix.size()) != prefix) return false;
    text = Trim(text.substr(prefix.size()));
    return true;
}

bool TakeSuffix(std::string_view& text, std::string_view suffix) {
    if (suffix.empty() || text.size() < suffix.size()) return false;
    if (text.substr(text.size() - suffix.size()) != suffix) return false;
    text = Trim(text.substr(0, text.size() - suffix.size()));
    return true;
}

/// `number` with its unit behind it: "2 hours", "1 hour", "2h", "2mi".
std::string WithUnit(const std::string& number, std::string_view unit, bool longForm) {
    if (!longForm) return number + std::string(unit.substr(0, unit.front() == 'm' ? 2 : 1));
    if (number == "1") unit.remove_suffix(1);
    return number + " " + std::string(unit);
}

/// The plain decimal text of a value, as short as reads back to the same float. Rounding and cutting go by
/// this text, since it is what a user takes the value for: 0.35 is held as 0.3499999940395355.
std::string PlainText(float value) {
    if (value != value) value = 0;
    value = std::clamp(value, std::numeric_limits<float>::lowest(), std::numeric_limits<float>::max());
    char buffer[128];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed).ptr};
}

/// Takes the sign off "-0", "-0.0" and the like.
std::string WithoutSignOfZero(std::string text) {
    if (text.front() == '-' && text.find_first_of("123456789") == std::string::npos) text.erase(0, 1);
    return text;
}

/// Adds one to the last digit of a decimal text.
void Increment(std::string& text) {
    const std::size_t first = text.front() == '-' ? 1 : 0;
    for (std::size_t i = text.size(); i-- > first;) {
        if (text[i] == '.') continue;
        if (text[i] != '9') {
            ++text[i];
            return;
        }
        text[i] = '0';
    }
    text.insert(first, "1");
}

/// The year that ends in the digits `lastTwo` and lies no more than 50 years before `today`, and less than
/// 50 behind it.
int WholeYear(int lastTwo, DateTime today) {
    const int first = ToParts(today).year - 50;
    return first + ((lastTwo - first) % 100 + 100) % 100;
}

/// What the three numbers of a date are, which stand behind each other and are parted by `separator`. A
/// hyphen parts year, month and day, unless it parts dates here and the first number is too short for a year.
Conventions::DateOrder OrderOf(char separator, std::size_t firstDigits) {
    const Conventions& usual = TheConventions();
    const bool asUsual = separator != '-' || (usual.dateSeparator == '-' && firstDigits <= 2);
    return asUsual ? usual.order : Conventions::DateOrder::YearMonthDay;
}

/// The day that the word `text` names.
std::optional<DateTime> ParseDay(std::string_view text, DateTime today) {
    using Order = Conventions::DateOrder;
    const char usual = TheConventions().dateSeparator;
    const std::size_t separatorAt = text.find_first_of(usual == '.' ? "/-." : "/-");
    if (separatorAt == std::string_view::npos) return std::nullopt;
    const char separator = text[separatorAt];
    const Order order = OrderOf(separator, separatorAt);
    const int yearAt = order == Order::YearMonthDay ? 0 : 2;
    int numbers[3];
    for (int i = 0; i < 3; ++i) {
        if (i > 0) {
            if (text.empty() || text.front() != separator) return std::nullopt;
            text.remove_prefix(1);
        }
        const std::size_t size = text.size();
        numbers[i] = TakeDigits(text, 4);
        if (numbers[i] < 0) return std::nullopt;
        const bool shortYear = i == yearAt && size - text.size() <= 2 && (separator != '-' || usual == '-');
        if (shortYear) numbers[i] = WholeYear(numbers[i], today);
    }
    if (!text.empty()) return std::nullopt;
    DateParts parts;
    parts.year = numbers[yearAt];
    parts.month = numbers[order == Order::MonthDayYear ? 0 : 1];
    parts.day = numbers[order == Order::MonthDayYear ? 1 : order == Order::DayMonthYear ? 0 : 2];
    if (!ValidDate(parts.year, parts.month, parts.day)) return std::nullopt;
    return FromParts(parts);
}

// Tables have a date in every third cell, so dates are put together in place.

void AddNumber(std::string& text, int number, bool twoDigits) {
    if (number > 99) {
        text += std::to_string(number);
        return;
    }
    if (twoDigits || number > 9) text += static_cast<char>('0' + number / 10);
    text += static_cast<char>('0' + number % 10);
}

void AddDay(std::string& text, const DateParts& parts) {
    using Order = Conventions::DateOrder;
    const Conventions& usual = TheConventions();
    const auto add = [&](int number, bool twoDigits, bool last) {
        AddNumber(text, number, twoDigits);
        if (!last) text += usual.dateSeparator;
    };
    const bool monthFirst = usual.order == Order::MonthDayYear;
    if (usual.order == Order::YearMonthDay) {
        add(parts.year, false, false);
        add(parts.month, usual.twoDigits, false);
        add(parts.day, usual.twoDigits, true);
        return;
    }
    add(monthFirst ? parts.month : parts.day, usual.twoDigits, false);
    add(monthFirst ? parts.day : parts.month, usual.twoDigits, false);
    add(parts.year, false, true);
}

void AddTime(std::string& text, const DateParts& parts) {
    const bool halfDay = TheConventions().halfDayClock;
    AddNumber(text, halfDay ? (parts.hour + 11) % 12 + 1 : parts.hour, !halfDay);
    text += ':';
    AddNumber(text, parts.minute, true);
    text += ':';
    AddNumber(text, parts.second, true);
    if (halfDay) text += parts.hour < 12 ? " AM" : " PM";
}

}  // namespace

std::string FormatDuration(double days, bool longForm) {
    const std::int64_t minutes = RoundToInt64(days * kMinutesPerDay);
    if (minutes == 0) return "0";
    const std::uint64_t magnitude =
        minutes < 0 ? 0 - static_cast<std::uint64_t>(minutes) : static_cast<std::uint64_t>(minutes);
    const Unit& unit = *std::find_if(std::begin(kUnits), std::end(kUnits), [&](const Unit& u) {
        return magnitude >= static_cast<std::uint64_t>(u.calendarMinutes);
    });
    const auto size = static_cast<std::uint64_t>(unit.calendarMinutes);
    std::uint64_t whole = magnitude / size;
    std::uint64_t hundredths = (magnitude % size * 200 + size) / (2 * size);
    if (hundredths == 100) {
        ++whole;
        hundredths = 0;
    }
    std::string number = std::to_string(whole);
    if (hundredths > 0) {
        number += TheConventions().decimalPoint;
        number += static_cast<char>('0' + hundredths / 10);
        if (hundredths % 10 > 0) number += static_cast<char>('0' + hundredths % 10);
    }
    return (minutes < 0 ? "-" : "") + WithUnit(number, unit.name, longForm);
}

std::optional<double> TextToDuration(std::string_view text) {
    const auto lastDigit = text.find_last_of("0123456789");
    const auto unit = Trim(lastDigit == std::string_view::npos ? text : text.substr(lastDigit + 1));
    int size = 60;
    switch (unit.empty() ? 'h' : LowerCase(unit.front())) {
        case 'm':
            size = unit.size() > 1 && LowerCase(unit[1]) == 'i' ? 1 : 43200;
            break;
        case 'h':
            size = 60;
            break;
        case 'd':
            size = 1440;
            break;
        case 'w':
            size = 10080;
            break;
        default:
            return std::nullopt;
    }
    constexpr double limit = std::numeric_limits<double>::max();
    return std::clamp(ScanNumber(PlainTyped(text)) * size / kMinutesPerDay, -limit, limit);
}

std::string FormatEffort(int effortUnits, int optimistic, int mostLikely, int pessimistic, bool longForm) {
    if (effortUnits == 0) return "<dates>";
    const char* const unit = EffortUnitName(effortUnits);
    const auto number = [&](int minutes) {
        return FormatTwoDecimals(static_cast<float>(static_cast<double>(minutes) / std::abs(effortUnits)));
    };
    std::string text = number(mostLikely);
    if (optimistic < pessimistic) text = number(optimistic) + ";" + text + ";" + number(pessimistic);
    return text == "0" ? text : WithUnit(text, unit, longForm);
}

const char* EffortUnitName(int effortUnits) {
    const Unit* const unit = FindUnit(effortUnits);
    if (!unit) RefuseIn("Common:EffortUnitName", "Assertion failed");
    return unit->name;
}

bool IsEffortUnit(int effortUnits) {
    return FindUnit(effortUnits) != nullptr;
}

std::string FormatTwoDecimals(float value) {
    std::string text = PlainText(value);
    const auto point = text.find('.');
    if (point != std::string::npos) {
        text.resize(std::min(text.size(), point + 3));
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') text.pop_back();
    }
    return LocalNumber(WithoutSignOfZero(text));
}

std::string FormatCurrency(Money value, const std::string& symbol) {
    const bool negative = value.Units() < 0;
    const auto units = static_cast<std::uint64_t>(value.Units());
    const std::uint64_t cents = ((negative ? 0 - units : units) + 50) / 100;
    std::string text = ChopAtNull(symbol);
    if (text.empty()) text = "$";
    if (negative && cents > 0) text += '-';
    text += GroupDigits(static_cast<std::int64_t>(cents / 100));
    text += TheConventions().decimalPoint;
    text += static_cast<char>('0' + cents / 10 % 10);
    text += static_cast<char>('0' + cents % 10);
    return text;
}

std::string FormatCurrency(std::string_view text, const std::string& symbol) {
    if (Trim(text).empty()) return FormatCurrency(Money(), symbol);
    const std::optional<Money> value = ParseCurrency(text, symbol);
    if (!value) RefuseIn("Common:FormatCurrency", "\"" + std::string(text) + "\" is not an amount of money");
    return FormatCurrency(*value, symbol);
}

std::optional<Money> ParseCurrency(std::string_view text, const std::string& symbol) {
    std::string mark = ChopAtNull(symbol);
    if (mark.empty()) mark = "$";
    text = Trim(text);
    std::string number;
    // The symbol and the sign stand in either order.
    bool marked = TakePrefix(text, mark);
    if (TakePrefix(text, "-")) {
        number = "-";
    } else {
        TakePrefix(text, "+");
    }
    if (!marked) marked = TakePrefix(text, mark);
    if (!marked) TakeSuffix(text, mark);
    const std::string plain = PlainTyped(text);
    if (plain.empty() || !(IsDigit(plain.front()) || plain.front() == '.')) return std::nullopt;
    const std::size_t wholeDigits = plain.find_first_not_of("0123456789,");
    for (std::size_t i = 0; i < plain.size(); ++i) {
        if (plain[i] != ',' || i > wholeDigits) number += plain[i];
    }
    return ParseMoney(number);
}

std::string GroupDigits(std::int64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t i = text.size(); i > 3; i -= 3) text.insert(i - 3, TheConventions().groupSeparator);
    return text;
}

std::string PlainNumber(double value) {
    std::string text = FormatNumber(value);
    const std::size_t point = text.front() == '-' ? 1 : 0;
    if (text[point] == '.') text.insert(point, "0");
    return LocalNumber(text);
}

std::string FormatHours(float hours, bool blankIfZero) {
    if (hours == 0 && blankIfZero) return {};
    std::string text = PlainText(hours);
    auto point = text.find('.');
    if (point == std::string::npos) {
        text += ".0";
    } else if (text.size() > point + 2) {
        const bool up = text[point + 2] >= '5';
        text.resize(point + 2);
        if (up) Increment(text);
    }
    return LocalNumber(WithoutSignOfZero(text));
}

std::string FormatHour(int hour, bool pad) {
    if (TheConventions().halfDayClock) return HourName(hour, pad);
    return (pad && hour < 10 ? "0" : "") + std::to_string(hour) + ":00";
}

std::string HourName(int hour, bool pad) {
    const bool afternoon = hour >= 12 && hour < 24;
    std::string text = std::to_string(hour == 0 || hour == 24 ? 12 : hour > 12 ? hour - 12 : hour);
    text += afternoon ? "pm" : "am";
    return pad && text.size() < 4 ? "0" + text : text;
}

const char* DayName(int day) {
    static constexpr const char* kNames[] = {"Holiday",  "Sunday", "Monday",   "Tuesday", "Wednesday",
                                             "Thursday", "Friday", "Saturday", "Shutdown"};
    if (day < 0 || day > 8) RefuseIn("Common:DayName", "Assertion failed");
    return kNames[day];
}

std::string DayLetters(int day) {
    return std::string(DayName(day), 2);
}

std::string FormatDate(DateTime date) {
    const DateParts parts = ToParts(date);
    const double wholeDay = FromParts({parts.year, parts.month, parts.day}).Days();
    const bool hasTime = parts.hour != 0 || parts.minute != 0 || parts.second != 0;
    std::string text;
    text.reserve(24);
    if (wholeDay != 0) AddDay(text, parts);
    if (wholeDay != 0 && !hasTime) return text;
    if (wholeDay != 0) text += ' ';
    AddTime(text, parts);
    return text;
}

std::string WithoutSeconds(std::string text) {
    const std::size_t last = text.rfind(':');
    if (last != std::string::npos && last >= 3 && text[last - 3] == ':' && text.compare(last, 3, ":00") == 0)
        text.erase(last, 3);
    return text;
}

std::string FormatShortDate(DateTime date) {
    std::string text;
    AddDay(text, ToParts(date));
    return text;
}

DateTime Today() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return AddDays(FromParts({1970, 1, 1}), std::chrono::floor<std::chrono::days>(sinceEpoch).count());
}

std::optional<DateTime> ParseDate(std::string_view text, DateTime today) {
    text = Trim(text);
    const std::size_t blank = text.find_first_of(" \t");
    const std::optional<DateTime> day = ParseDay(text.substr(0, blank), today);
    if (!day || blank == std::string_view::npos) return day;
    const std::optional<double> time = ParseTimeOfDay(text.substr(blank));
    if (!time) return std::nullopt;
    return AddDays(*day, *time);
}

DateTime JDate(std::string_view text) {
    text = Trim(text);
    const std::string_view word = text.substr(0, text.find_first_of(" \t"));
    const std::optional<DateTime> day = ParseDay(word, Today());
    if (!day) RefuseIn("Common:JDate", "\"" + std::string(word) + "\" is not a date");
    return *day;
}

std::string ChopAtNull(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

std::string GetAppVersion() {
    return VORTAN_VERSION;
}

}  // namespace vortan
