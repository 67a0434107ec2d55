#include "transfer/XmlElement.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "model/Characters.h"
#include "model/ErrTrap.h"
#include "model/NumberText.h"

namespace vortan {
namespace {

constexpr std::string_view kWhite = " \t\r\n";
constexpr std::size_t kMostShown = 40;  // characters of a wrong value

/// Takes "-08-17" apart; -1 where there are no digits.
int TakeBehind(std::string_view& text, char mark, int digits) {
    if (text.empty() || text.front() != mark) return -1;
    text.remove_prefix(1);
    return TakeDigits(text, digits);
}

struct TimeParts {
    int hour = 0, minute = 0, second = 0;
};

std::optional<TimeParts> TakeTime(std::string_view& text) {
    TimeParts time;
    time.hour = TakeDigits(text, 2);
    time.minute = TakeBehind(text, ':', 2);
    if (!text.empty() && text.front() == ':') time.second = TakeBehind(text, ':', 2);
    const bool real = time.hour >= 0 && time.hour <= 24 && time.minute >= 0 && time.minute < 60 &&
                      time.second >= 0 && time.second <= 60;
    if (!real || (time.hour == 24 && time.minute + time.second > 0)) return std::nullopt;
    return time;
}

}  // namespace

void XmlFault(const std::string& fileName, std::int32_t line, const std::string& what) {
    RefuseIn("Transfer:ReadMspdi", fileName + ", line " + std::to_string(line) + ": " + what);
}

std::string_view XmlElement::Value() const {
    return TrimAll(node_.child_value(), [](char c) { return kWhite.find(c) != std::string_view::npos; });
}

bool XmlElement::Empty() const {
    if (!Value().empty()) return false;
    for (const pugi::xml_node child : node_.children())
        if (child.type() == pugi::node_element) return false;
    return true;
}

void XmlElement::Fail(const std::string& expected) const {
    std::string path;
    for (pugi::xml_node node = node_; node && node.type() == pugi::node_element; node = node.parent())
        path = std::string(LocalName(node.name())) + (path.empty() ? "" : "/" + path);
    std::string value = CleanText(Value());
    if (value.size() > kMostShown) value = CleanText(value.substr(0, kMostShown)) + "...";
    XmlFault(source_.fileName, Line(),
             "element " + path + " is \"" + value + "\", which is not " + expected + ".");
}

double XmlElement::Number() const {
    std::string_view text = Value();
    if (text.starts_with('+')) text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) return text.starts_with('-') ? -1e300 : 1e300;
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) Fail("a number");
    return value;
}

std::int32_t XmlElement::Int() const {
    const double value = Number();
    constexpr double least = std::numeric_limits<std::int32_t>::min(),
                     most = std::numeric_limits<std::int32_t>::max();
    if (!(value >= least && value <= most) || value != std::floor(value)) Fail("a whole number");
    return static_cast<std::int32_t>(value);
}

bool XmlElement::Bool() const {
    const auto value = ParseBool(Value());
    if (!value) Fail("0 or 1");
    return *value;
}

DateTime XmlElement::Date() const {
    std::string_view text = Value();
    DateParts parts;
    parts.year = TakeDigits(text, 4);
    parts.month = TakeBehind(text, '-', 2);
    parts.day = TakeBehind(text, '-', 2);
    if (!ValidDate(parts.year, parts.month, parts.day)) Fail("a date");
    if (text.empty()) return FromParts(parts);
    if (text.front() != 'T' && text.front() != ' ') Fail("a date");
    text.remove_prefix(1);
    const auto time = TakeTime(text);
    if (!time) Fail("a date and time");
    const int seconds = time->hour * 3600 + time->minute * 60 + time->second;
    return DateTime(FromParts(parts).Days() + seconds / 86400.0);
}

double XmlElement::Minutes() const {
    std::string_view text = Value();
    const bool negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    if (!text.starts_with('P')) Fail("a duration");
    text.remove_prefix(1);
    double minutes = 0;
    bool time = false, any = false;
    while (!text.empty()) {
        if (text.front() == 'T' && !time) {
            time = true;
            text.remove_prefix(1);
            continue;
        }
        double number = 0;
        const auto [end, error] =
            std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
        const auto used = static_cast<std::size_t>(end - text.data());
        if (error != std::errc() || used == text.size() || !std::isfinite(number) || number < 0)
            Fail("a duration");
        const char unit = text[used];
        text.remove_prefix(used + 1);
        const double perUnit = time ? (unit == 'H'   ? 60
                                       : unit == 'M' ? 1
                                       : unit == 'S' ? 1.0 / 60
                                                     : 0)
                                    : (unit == 'D'   ? kMinutesPerDay
                                       : unit == 'W' ? kMinutesPerDay * 7
                                       : unit == 'M' ? kMinutesPerDay * 30
                                       : unit == 'Y' ? kMinutesPerDay * 365
                                                     : 0);
        if (perUnit == 0) Fail("a duration");
        minutes += unit == 'S' ? number / 60 : number * perUnit;
        any = true;
    }
    if (!any) Fail("a duration");
    return negative ? -minutes : minutes;
}

std::int32_t XmlElement::TimeOfDay() const {
    std::string_view text = Value();
    const auto time = TakeTime(text);
    if (!time) Fail("a time of day");
    return time->hour * 60 + time->minute + (time->second >= 30 ? 1 : 0);
}

}  // namespace vortan
