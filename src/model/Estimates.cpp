#include "model/Estimates.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include "model/Conventions.h"
#include "model/NumberText.h"
#include "model/Rounding.h"

namespace vortan {
namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

std::int32_t Saturated(std::int64_t value) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, -std::int64_t{kMost} - 1, kMost));
}

/// At most two decimals, halves away from zero.
std::string FormatEstimate(std::int32_t minutes, std::int32_t unit) {
    const std::int64_t hundredths = (std::abs(std::int64_t{minutes}) * 200 + unit) / (2 * std::int64_t{unit});
    std::string text = std::to_string(hundredths / 100);
    if (const auto rest = static_cast<int>(hundredths % 100); rest > 0) {
        text += '.';
        text += static_cast<char>('0' + rest / 10);
        if (rest % 10 > 0) text += static_cast<char>('0' + rest % 10);
    }
    return LocalNumber(minutes < 0 && hundredths > 0 ? "-" + text : text);
}

/// What a box can hold, in `unit` or in that of the other boxes.
struct TypedEstimate {
    std::vector<double> numbers;  // one or three
    std::optional<int> unit;
};

constexpr std::array<std::array<std::string_view, 5>, 5> kUnitWords = {
    {{"m", "min", "mins", "minute", "minutes"},
     {"h", "hr", "hrs", "hour", "hours"},
     {"d", "day", "days"},
     {"w", "wk", "wks", "week", "weeks"},
     {"mo", "mon", "mos", "month", "months"}}};

std::optional<int> UnitOfWord(const std::string& word) {
    for (std::size_t i = 0; i < kUnitWords.size(); ++i) {
        if (std::find(kUnitWords[i].begin(), kUnitWords[i].end(), word) != kUnitWords[i].end())
            return static_cast<int>(i);
    }
    return std::nullopt;
}

std::optional<TypedEstimate> ParseEstimate(std::string_view text) {
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    TypedEstimate typed;
    std::string word;
    for (; !text.empty(); text.remove_suffix(1)) {
        const char lower = static_cast<char>(text.back() | 0x20);
        if (lower < 'a' || lower > 'z') break;
        word.insert(word.begin(), lower);
    }
    if (!word.empty() && !(typed.unit = UnitOfWord(word))) return std::nullopt;
    for (;;) {
        const std::size_t end = text.find(';');
        const auto number = ParseNumber(PlainTyped(text.substr(0, end)));
        if (!number) return std::nullopt;
        typed.numbers.push_back(*number);
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    if (typed.numbers.size() != 1 && typed.numbers.size() != 3) return std::nullopt;
    return typed;
}

}  // namespace

const std::array<Estimates::UnitKind, 5> Estimates::kUnits = {
    {{"&minutes", 1, "&minutes", 1},
     {"&hours", 60, "&hours", 60},
     {"d&ays (8 hours each)", 480, "d&ays (24 hours each)", 1440},
     {"&weeks (5 days each)", 2400, "&weeks (7 days each)", 10080},
     {"m&onths (20 days each)", 9600, "m&onths (30 days each)", 43200}}};

int Estimates::UnitOf(std::int32_t effortUnits) {
    const std::int64_t magnitude = std::abs(std::int64_t{effortUnits});
    const auto fits = [magnitude](const UnitKind& kind) {
        return magnitude == kind.workMinutes || magnitude == kind.clockMinutes;
    };
    const auto found = std::find_if(kUnits.begin(), kUnits.end(), fits);
    return found == kUnits.end() ? kDays : static_cast<int>(found - kUnits.begin());
}

std::int32_t Estimates::GetUnits() const {
    return MinutesPer(unit);
}

std::int32_t Estimates::MinutesPer(int anyUnit) const {
    const UnitKind& kind = kUnits[static_cast<std::size_t>(anyUnit)];
    return effortDriven ? kind.workMinutes : kind.clockMinutes;
}

bool Estimates::BoxLive(int box) const {
    const bool column = box % 3 == 1 || three;
    const bool row = box / 3 == 1 || manyRows;
    return live && column && row;
}

std::string Estimates::TextOf(int box) const {
    const std::int64_t totals[] = {minutes.optimistic, minutes.mostLikely, minutes.pessimistic};
    const std::int64_t total = totals[box % 3];
    const std::int64_t values[] = {minutes.past, total - minutes.past, total};
    return FormatEstimate(Saturated(values[box / 3]), GetUnits());
}

void Estimates::Type(int box, const std::string& text) {
    TypedEstimate typed{{ScanNumber(PlainTyped(text))}, std::nullopt};
    if (auto whole = ParseEstimate(text)) typed = std::move(*whole);
    unit = typed.unit.value_or(unit);
    const auto minutesOf = [this](double number) { return RoundToInt32(number * GetUnits()); };
    if (box < 3) {
        minutes.past = minutesOf(typed.numbers.front());
        return;
    }
    std::int32_t* const totals[] = {&minutes.optimistic, &minutes.mostLikely, &minutes.pessimistic};
    const auto take = [&](int column, double number) {
        const std::int32_t value = minutesOf(number);
        *totals[column] = box < 6 ? Saturated(std::int64_t{value} + minutes.past) : value;
    };
    if (typed.numbers.size() == 1) return take(box % 3, typed.numbers.front());
    three = true;
    for (int column = 0; column < 3; ++column) take(column, typed.numbers[static_cast<std::size_t>(column)]);
}

std::optional<std::string> Estimates::Refusal(int box, const std::string& text) const {
    const auto whole = ParseEstimate(text);
    if (!whole || (box < 3 && whole->numbers.size() > 1)) return "The estimate must be a number.";
    const bool rest = box / 3 == 1;
    for (const double number : whole->numbers) {
        const double typed = number * MinutesPer(whole->unit.value_or(unit));
        const double total = rest ? typed + minutes.past : typed;
        // More may have been done than was estimated; the whole cannot be less than nothing.
        if (rest ? total < 0 && typed < 0 : typed < 0) return "The estimate must not be negative.";
        if (typed > kMost || total > kMost)
            return "The estimate is too large.  A task can take at most " + std::to_string(kMost) +
                   " minutes.";
    }
    return std::nullopt;
}

Estimates::Minutes Estimates::Totals() const {
    if (three) return minutes;
    return {minutes.past, minutes.mostLikely, minutes.mostLikely, minutes.mostLikely};
}

}  // namespace vortan
