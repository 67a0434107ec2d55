#include "model/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "model/Characters.h"

namespace vortan {
namespace {

// The exponents of ten between which numbers are written without an exponent.
constexpr int kLeastFixedExponent = -7;
constexpr int kGreatestFixedExponent = 14;

template <class T>
void AppendInteger(std::string& out, T value) {
    char buffer[24];
    out.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

template <class T>
T MakeFinite(T value) {
    if (value != value) return 0;
    return std::clamp(value, std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max());
}

template <class T>
void AppendFloat(std::string& out, T value) {
    value = MakeFinite(value);
    constexpr double wholeLimit = sizeof(T) == sizeof(float) ? 1e7 : 1e15;
    if (std::abs(value) < wholeLimit && value == std::trunc(value)) {
        return AppendInteger(out, static_cast<std::int64_t>(value));
    }
    // The shortest text that reads back, as d.ddde+xx.
    char buffer[40];
    char* const end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific).ptr;
    char* digits = buffer;
    if (*digits == '-') {
        out += '-';
        ++digits;
    }
    char* const e = std::find(digits, end, 'e');
    int exponent = 0;
    std::from_chars(e[1] == '+' ? e + 2 : e + 1, end, exponent);
    if (exponent < kLeastFixedExponent || exponent > kGreatestFixedExponent) {
        out.append(digits, e);
        out += 'E';
        out.append(e + 1, end);
        return;
    }
    // Close the gap of the point: digits[0] to count - 1 are then the significant digits.
    std::ptrdiff_t count = 1;
    if (digits[1] == '.') {
        count = e - digits - 1;
        std::copy(digits + 2, e, digits + 1);
    }
    if (exponent < 0) {
        out += '.';
        out.append(static_cast<std::size_t>(-1 - exponent), '0');
        out.append(digits, digits + count);
        return;
    }
    const std::ptrdiff_t wholeDigits = std::ptrdiff_t{exponent} + 1;
    out.append(digits, digits + std::min(count, wholeDigits));
    if (count > wholeDigits) {
        out += '.';
        out.append(digits + wholeDigits, digits + count);
    } else {
        out.append(static_cast<std::size_t>(wholeDigits - count), '0');
    }
}

/// The pieces of the number at the front of a text.
struct NumberPrefix {
    bool found = false;
    bool negative = false;
    std::string_view whole, fraction;  ///< digits before and behind the point
    std::int64_t exponent = 0;         ///< kept well inside the range
    const char* start = nullptr;       ///< of the number behind its sign
    const char* end = nullptr;         ///< behind the number

    std::size_t DigitCount() const { return whole.size() + fraction.size(); }
    int Digit(std::size_t i) const {
        return (i < whole.size() ? whole[i] : fraction[i - whole.size()]) - '0';
    }
};

const char* SkipDigits(const char* p, const char* end) {
    while (p != end && IsDigit(*p)) ++p;
    return p;
}

NumberPrefix FindNumber(std::string_view text) {
    constexpr std::int64_t exponentLimit = 1'000'000'000'000;
    const char* p = text.data();
    const char* const end = p + text.size();
    while (p != end && IsBlank(*p)) ++p;
    NumberPrefix number;
    if (p != end && (*p == '-' || *p == '+')) number.negative = *p++ == '-';
    number.start = p;
    p = SkipDigits(p, end);
    number.whole = std::string_view(number.start, static_cast<std::size_t>(p - number.start));
    if (p != end && *p == '.') {
        const char* const fraction = ++p;
        p = SkipDigits(p, end);
        number.fraction = std::string_view(fraction, static_cast<std::size_t>(p - fraction));
    }
    number.end = p;
    number.found = number.DigitCount() > 0;
    if (!number.found || p == end || LowerCase(*p) != 'e') return number;
    ++p;
    bool minus = false;
    if (p != end && (*p == '-' || *p == '+')) minus = *p++ == '-';
    if (p == end || !IsDigit(*p)) return number;
    for (; p != end && IsDigit(*p); ++p) {
        number.exponent = std::min(number.exponent * 10 + (*p - '0'), exponentLimit);
    }
    if (minus) number.exponent = -number.exponent;
    number.end = p;
    return number;
}

/// The number without its sign. from_chars does the common case; it leaves open on which side a number is out
/// of range.
template <class T>
T MagnitudeOf(const NumberPrefix& number) {
    T value = 0;
    const auto direct = std::from_chars(number.start, number.end, value);
    if (direct.ec == std::errc() && direct.ptr == number.end) return MakeFinite(value);

    std::size_t first = 0;
    while (first < number.DigitCount() && number.Digit(first) == 0) ++first;
    if (first == number.DigitCount()) return 0;
    // The power of ten of the first digit that is not 0.
    const std::int64_t power = static_cast<std::int64_t>(number.whole.size()) -
                               static_cast<std::int64_t>(first) - 1 + number.exponent;
    if (power > std::numeric_limits<T>::max_exponent10) return std::numeric_limits<T>::max();
    if (power < -400) return 0;
    std::string text;
    text.reserve(number.DigitCount() + 8);
    for (std::size_t i = first; i < number.DigitCount(); ++i) {
        text += static_cast<char>('0' + number.Digit(i));
        if (i == first) text += '.';
    }
    text += 'e';
    AppendInteger(text, power);
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        return power > 0 ? std::numeric_limits<T>::max() : T(0);
    }
    return MakeFinite(value);
}

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

template <class T>
T ValueOf(const NumberPrefix& number) {
    if (!number.found) return 0;
    // Both the digits and the power of ten are exact here, so the one division rounds correctly.
    constexpr bool single = sizeof(T) == sizeof(float);
    constexpr std::size_t exactDigits = single ? 7 : 15;
    T magnitude;
    if (number.DigitCount() <= exactDigits && number.exponent == 0) {
        std::int64_t digits = 0;
        for (char c : number.whole) digits = digits * 10 + (c - '0');
        for (char c : number.fraction) digits = digits * 10 + (c - '0');
        magnitude = static_cast<T>(digits) / static_cast<T>(kPowersOfTen[number.fraction.size()]);
    } else {
        magnitude = MagnitudeOf<T>(number);
    }
    return number.negative ? -magnitude : magnitude;
}

struct MoneyScan {
    Money value;
    bool saturated = false;
};

MoneyScan MoneyOf(const NumberPrefix& number) {
    const std::uint64_t limit =
        static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (number.negative ? 1 : 0);
    const auto count = static_cast<std::int64_t>(number.DigitCount());
    const auto digit = [&](std::int64_t i) { return number.Digit(static_cast<std::size_t>(i)); };
    // So many digits belong to whole ten-thousandths; those behind them are rounded away.
    const std::int64_t wanted = static_cast<std::int64_t>(number.whole.size()) + number.exponent + 4;
    std::uint64_t units = 0;
    bool saturated = false;
    for (std::int64_t i = 0; i < wanted && !saturated; ++i) {
        if (i >= count && units == 0) break;
        const std::uint64_t next = i < count ? static_cast<std::uint64_t>(digit(i)) : 0;
        saturated = units > (limit - next) / 10;
        units = units * 10 + next;
    }
    if (!saturated && wanted >= 0 && wanted < count) {
        const int next = digit(wanted);
        bool more = false;
        for (std::int64_t i = wanted + 1; i < count && next == 5 && !more; ++i) more = digit(i) != 0;
        if (next > 5 || (next == 5 && (more || units % 2 == 1))) {
            saturated = units == limit;
            ++units;
        }
    }
    if (saturated) units = limit;
    if (number.negative) units = 0 - units;
    return {Money::FromUnits(static_cast<std::int64_t>(units)), saturated};
}

/// The number that is all of `text`; not found if there is more or less.
NumberPrefix WholeNumber(std::string_view text) {
    text = Trim(text);
    NumberPrefix number = FindNumber(text);
    number.found = number.found && number.end == text.data() + text.size();
    return number;
}

/// Two digits as a number, or a negative one if they are not digits.
int TwoDigits(const char* p) {
    return IsDigit(p[0]) && IsDigit(p[1]) ? (p[0] - '0') * 10 + (p[1] - '0') : -10000;
}

void PutTwoDigits(char* p, int value) {
    p[0] = static_cast<char>('0' + value / 10);
    p[1] = static_cast<char>('0' + value % 10);
}

}  // namespace

void AppendNumber(std::string& out, std::int32_t value) {
    AppendInteger(out, value);
}
void AppendNumber(std::string& out, std::int64_t value) {
    AppendInteger(out, value);
}
void AppendNumber(std::string& out, float value) {
    AppendFloat(out, value);
}
void AppendNumber(std::string& out, double value) {
    AppendFloat(out, value);
}
void AppendNumber(std::string& out, bool value) {
    out += value ? "True" : "False";
}

void AppendNumber(std::string& out, Money value) {
    const bool negative = value.Units() < 0;
    const auto units = static_cast<std::uint64_t>(value.Units());
    const std::uint64_t magnitude = negative ? 0 - units : units;
    if (negative) out += '-';
    const std::uint64_t whole = magnitude / Money::kUnit;
    const auto fraction = static_cast<int>(magnitude % Money::kUnit);
    if (whole > 0 || fraction == 0) AppendInteger(out, whole);
    if (fraction == 0) return;
    char decimals[4];
    PutTwoDigits(decimals, fraction / 100);
    PutTwoDigits(decimals + 2, fraction % 100);
    int count = 4;
    while (decimals[count - 1] == '0') --count;
    out += '.';
    out.append(decimals, static_cast<std::size_t>(count));
}

double ScanNumber(std::string_view text) {
    return ValueOf<double>(FindNumber(text));
}
float ScanFloat(std::string_view text) {
    return ValueOf<float>(FindNumber(text));
}
Money ScanMoney(std::string_view text) {
    return MoneyOf(FindNumber(text)).value;
}
std::int32_t ScanInt32(std::string_view text) {
    return RoundToInt32(ScanNumber(text));
}

std::optional<double> ParseNumber(std::string_view text) {
    const NumberPrefix number = WholeNumber(text);
    if (!number.found) return std::nullopt;
    return ValueOf<double>(number);
}

std::optional<Money> ParseMoney(std::string_view text) {
    const NumberPrefix number = WholeNumber(text);
    if (!number.found) return std::nullopt;
    const MoneyScan scan = MoneyOf(number);
    if (scan.saturated) return std::nullopt;
    return scan.value;
}

std::optional<bool> ParseBool(std::string_view text) {
    text = Trim(text);
    if (SameText(text, "true")) return true;
    if (SameText(text, "false")) return false;
    const std::optional<double> number = ParseNumber(text);
    if (!number) return std::nullopt;
    return *number != 0;
}

void AppendFileDate(std::string& out, DateTime date) {
    const DateParts parts = ToParts(date);
    char text[] = "00/00/0000 00:00am";
    PutTwoDigits(text, parts.month);
    PutTwoDigits(text + 3, parts.day);
    PutTwoDigits(text + 6, parts.year / 100);
    PutTwoDigits(text + 8, parts.year % 100);
    PutTwoDigits(text + 11, (parts.hour + 11) % 12 + 1);
    PutTwoDigits(text + 14, parts.minute);
    if (parts.hour >= 12) text[16] = 'p';
    out.append(text, sizeof text - 1);
}

std::optional<DateTime> ParseFileDate(std::string_view text) {
    if (text.size() < 10) return std::nullopt;
    DateParts parts;
    parts.month = TwoDigits(text.data());
    parts.day = TwoDigits(text.data() + 3);
    parts.year = TwoDigits(text.data() + 6) * 100 + TwoDigits(text.data() + 8);
    if (!ValidDate(parts.year, parts.month, parts.day)) return std::nullopt;
    const DateTime day = FromParts(parts);
    const std::string_view time = text.size() > 11 ? text.substr(11) : std::string_view();
    if (Trim(time).empty()) return day;
    const std::optional<double> timeOfDay = ParseTimeOfDay(time);
    if (!timeOfDay) return std::nullopt;
    return AddDays(day, *timeOfDay);
}

std::optional<double> ParseTimeOfDay(std::string_view text) {
    text = Trim(text);
    int hour = TakeDigits(text, 2);
    int fields[2] = {-1, 0};  // minutes, which must be there, and seconds
    for (int& field : fields) {
        if (text.empty() || text.front() != ':') break;
        text.remove_prefix(1);
        field = TakeDigits(text, 2);
        if (field < 0) return std::nullopt;
    }
    text = Trim(text);
    const bool morning = SameText(text, "am");
    const bool afternoon = SameText(text, "pm");
    if (morning || afternoon) {
        if (hour > 12) return std::nullopt;
        if (hour == 12) hour = 0;
        if (hour >= 0 && afternoon) hour += 12;
    } else if (!text.empty()) {
        return std::nullopt;
    }
    if (hour < 0 || hour > 23 || fields[0] < 0 || fields[0] > 59 || fields[1] > 59) return std::nullopt;
    return (hour * 3600 + fields[0] * 60 + fields[1]) / 86400.0;
}

void AppendQuoted(std::string& out, std::string_view text) {
    // A reader takes blanks at the ends of a token for the layout of the line.
    const bool bare = !text.empty() && text.front() != '"' && text.front() != ' ' && text.back() != ' ';
    if (bare && text.find(',') == std::string_view::npos) {
        out += text;
        return;
    }
    out += '"';
    for (char c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    out += '"';
}

}  // namespace vortan
