#include "model/Conventions.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "model/Characters.h"

namespace vortan {
namespace {

Conventions inForce;

/// Whether groups of three digits are what the points of `text` part: "1.234", "12.345.678"; not "0.500".
bool PointsPartGroups(std::string_view text) {
    const std::size_t first = text.find_first_of("0123456789");
    if (first == std::string_view::npos || text[first] == '0') return false;
    std::size_t point = text.find('.');
    if (point == std::string_view::npos || point <= first || point - first > 3) return false;
    while (point < text.size() && text[point] == '.') {
        const std::size_t end = std::min(text.find_first_not_of("0123456789", point + 1), text.size());
        if (end - point != 4) return false;
        point = end;
    }
    return true;
}

void RemoveBetweenDigits(std::string& text, std::string_view sign) {
    for (std::size_t at = 0; (at = text.find(sign, at)) != std::string::npos;) {
        const std::size_t behind = at + sign.size();
        const bool inside = at > 0 && IsDigit(text[at - 1]) && behind < text.size() && IsDigit(text[behind]);
        if (inside) {
            text.erase(at, sign.size());
        } else {
            at = behind;
        }
    }
}

}  // namespace

void Conventions::TakeDatePattern(std::string_view pattern) {
    const auto find = [pattern](std::string_view letters) { return pattern.find_first_of(letters); };
    // A pattern of the C library may say %D or %F for a whole date; those leave the order as it is.
    const std::size_t day = find("de"), month = find("mMb"), year = find("yY");
    if (std::max({day, month, year}) == std::string_view::npos) return;
    order = year < std::min(month, day) ? DateOrder::YearMonthDay
            : day < month               ? DateOrder::DayMonthYear
                                        : DateOrder::MonthDayYear;
    const std::size_t sign = pattern.find_first_of("./-", std::min({day, month, year}));
    dateSeparator = sign == std::string_view::npos ? '/' : pattern[sign];
    const bool ofTheLibrary = pattern.find('%') != std::string_view::npos;
    twoDigits =
        ofTheLibrary ? order != DateOrder::MonthDayYear : pattern.find("dd") != std::string_view::npos;
}

void Conventions::TakeNumberSigns(std::string_view point, std::string_view groups) {
    if ((point != "." && point != ",") || point == groups) return;
    decimalPoint = point;
    groupSeparator = groups;
}

const Conventions& TheConventions() {
    return inForce;
}

UseConventions::UseConventions(Conventions conventions)
    : before_(std::exchange(inForce, std::move(conventions))) {}

UseConventions::~UseConventions() {
    inForce = std::move(before_);
}

std::string LocalNumber(std::string plain) {
    const std::size_t point = plain.find('.');
    if (point != std::string::npos && inForce.decimalPoint != ".")
        plain.replace(point, 1, inForce.decimalPoint);
    return plain;
}

std::string PlainTyped(std::string_view text) {
    std::string plain(text);
    if (inForce.decimalPoint == "." && inForce.groupSeparator == ",") return plain;
    if (inForce.groupSeparator != "." || plain.find(inForce.decimalPoint) != std::string::npos ||
        PointsPartGroups(plain)) {
        if (!inForce.groupSeparator.empty()) RemoveBetweenDigits(plain, inForce.groupSeparator);
    }
    // What parts groups may be a blank that no keyboard has.
    if (!inForce.groupSeparator.empty() &&
        !std::ispunct(static_cast<unsigned char>(inForce.groupSeparator[0])))
        RemoveBetweenDigits(plain, " ");
    const std::size_t point = plain.find(inForce.decimalPoint);
    if (point != std::string::npos) plain.replace(point, inForce.decimalPoint.size(), ".");
    return plain;
}

}  // namespace vortan
