#include "model/TypedValues.h"

#include <cmath>

#include "model/Conventions.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"

namespace vortan {

Typed<DateTime> TypedDate(const std::string& text) {
    if (const auto date = ParseDate(text)) return {date, {}, {}};
    return {std::nullopt, "Invalid date", "Invalid Date"};
}

Typed<Money> TypedMoney(const std::string& text, const std::string& what, const std::string& symbol) {
    if (const auto amount = ParseCurrency(text, symbol)) return {amount, {}, {}};
    return {std::nullopt, "The " + what + " must be an amount of money.", "Invalid Amount"};
}

Typed<double> TypedNumber(const std::string& text, const std::string& what) {
    if (const auto number = ParseNumber(PlainTyped(text))) return {number, {}, {}};
    return {std::nullopt, "The " + what + " must be a number.", "Invalid Number"};
}

Typed<std::int32_t> TypedWhole(const std::string& text, const std::string& what, std::int32_t least,
                               std::int32_t most) {
    const auto number = ParseNumber(PlainTyped(text));
    if (number && *number >= least && *number <= most && *number == std::floor(*number))
        return {static_cast<std::int32_t>(*number), {}, {}};
    return {std::nullopt,
            "The " + what + " must be a whole number from " + std::to_string(least) + " to " +
                std::to_string(most) + ".",
            "Invalid Number"};
}

Typed<double> TypedOffset(const std::string& text) {
    const auto lastDigit = text.find_last_of("0123456789");
    const bool number =
        lastDigit != std::string::npos && ParseNumber(PlainTyped(text.substr(0, lastDigit + 1)));
    const auto days = number ? TextToDuration(text) : std::nullopt;
    // What is beyond the calendar is none.
    if (days && std::abs(*days) <= kLastDay) return {days, {}, {}};
    return {std::nullopt, "The offset must be a duration, such as \"2 days\" or \"4 hours\".",
            "Invalid Duration"};
}

Typed<double> TypedEfficiency(const std::string& text) {
    Typed<double> typed = TypedNumber(text, "efficiency");
    if (!typed.value || (*typed.value > 0 && *typed.value <= 1)) return typed;
    return {std::nullopt, "The efficiency must be above 0 and not above 1.", "Invalid Number"};
}

Typed<std::int32_t> TypedTaskId(const std::string& text, const Vproject& project, const Vtask* task) {
    const auto id = TypedWhole(text, "task ID", 1, kHighestId);
    const Vtask* other = id.value ? project.FindTask(*id.value) : nullptr;
    if (!other || other == task) return id;
    return {std::nullopt,
            "The task ID " + std::to_string(*id.value) + " is already in use by task " +
                other->BuildNodeText() +
                (other->Include() ? "." : ", which has been deleted in this journal."),
            "Task ID In Use"};
}

Typed<std::int32_t> TypedResourceId(const std::string& text, const Vtemplate& owner,
                                    const Vresource* resource) {
    const auto id = TypedWhole(text, "Resource ID", 1, kHighestId);
    const Vresource* other = id.value ? owner.FindResource(*id.value) : nullptr;
    if (!other || other == resource) return id;
    return {std::nullopt, "The Resource ID " + std::to_string(*id.value) + " is already in use.",
            "Resource ID In Use"};
}

}  // namespace vortan
