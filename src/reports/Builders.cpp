#include "reports/Builders.h"

#include <cmath>
#include <cstdlib>

#include "model/ValueText.h"

namespace vortan {

RowWriter& RowWriter::Date(DateTime date) {
    return Text(FormatDate(date), date);
}

RowWriter& RowWriter::Amount(Money amount, const std::string& symbol) {
    return Text(FormatCurrency(amount, symbol), amount);
}

RowWriter& RowWriter::Span(double days) {
    return Text(FormatDuration(days, true), TimeSpan{days});
}

RowWriter& RowWriter::HoursOf(float hours, bool blankIfZero) {
    if (blankIfZero && hours == 0) return Skip(1);
    return Text(FormatHours(hours, false), HourCount{hours});
}

std::string EffortText(const Vtask& task, std::int32_t journalIndex) {
    if (task.Subproject()) return {};
    const std::int32_t units = task.EffortUnitsAt(journalIndex);
    const std::int32_t low = task.OptimisticAt(journalIndex), likely = task.MostLikelyAt(journalIndex),
                       high = task.PessimisticAt(journalIndex);
    if (units == 0) return FormatEffort(kMinutesPerDay, low, likely, high, true);
    if (IsEffortUnit(units)) return FormatEffort(units, low, likely, high, true);
    const auto number = [&](std::int32_t minutes) {
        return FormatTwoDecimals(static_cast<float>(minutes / std::abs(static_cast<double>(units))));
    };
    const std::string text =
        low < high ? number(low) + ";" + number(likely) + ";" + number(high) : number(likely);
    return text == "0" ? text : text + " ???";
}

TimeSpan EffortSpan(const Vtask& task, std::int32_t journalIndex) {
    return {static_cast<double>(task.MostLikelyAt(journalIndex)) / kMinutesPerDay};
}

Money ShownCents(Money amount) {
    const std::lldiv_t cents = std::lldiv(amount.Units(), 100);
    const long long up = cents.rem >= 50 ? 1 : cents.rem <= -50 ? -1 : 0;
    return Money::FromUnits(cents.quot * 100) + Money::FromUnits(up * 100);
}

std::int64_t MillisecondsOf(const Vslot& slot) {
    return std::llround(DaysBetween(slot.startTime, slot.endTime) * 24 * kMillisecondsPerHour);
}

}  // namespace vortan
