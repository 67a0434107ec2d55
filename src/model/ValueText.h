#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "model/DateTime.h"
#include "model/Money.h"

/// The texts of values on screens and in reports, and the reading of what a user types, by the conventions in
/// force (Conventions.h); the examples here are as in the United States. Values in files have their own texts
/// (NumberText.h).
namespace vortan {

/// A stretch of the clock, in days, in the largest unit that fits: "1.5 days", short "1.5d". The units are
/// those of elapsed time: a day has 24 hours, a week 7 days, a month 30 days. Rounded to the minute, then to
/// two decimals of the unit.
std::string FormatDuration(double days, bool longForm);
/// The reverse, in days. A text without a unit means hours; "m" means months and "mi" minutes. None for a
/// letter that is no unit.
std::optional<double> TextToDuration(std::string_view text);

/// The estimates of a task, given in minutes, in the unit that `effortUnits` names (see EffortUnitName); all
/// three, with semicolons between, if `optimistic` is below `pessimistic`. "<dates>" for a task that has no
/// estimate because dates drive it, which is what 0 units mean. Other units are a fault.
std::string FormatEffort(int effortUnits, int optimistic, int mostLikely, int pessimistic, bool longForm);
/// "minutes", "hours", "days", "weeks" or "months". Negative units are minutes of work (a day has 8 hours,
/// a week 5 days, a month 20), positive ones minutes on the clock. Other values, and 0, are a fault.
const char* EffortUnitName(int effortUnits);
/// Whether there is such a unit; 0 is none.
bool IsEffortUnit(int effortUnits);
/// At most two decimals, the rest cut off: 1.999 gives 1.99.
std::string FormatTwoDecimals(float value);

/// "$1,234.50", negative "$-1,234.50", rounded to the cent, halves away from zero. An empty symbol, or one
/// that begins with a NUL, gives "$".
std::string FormatCurrency(Money value, const std::string& symbol);
/// The same of a typed amount; an empty text counts as 0. A text that ParseCurrency does not take is a fault.
std::string FormatCurrency(std::string_view text, const std::string& symbol);
/// A typed amount: a number with an optional sign, with group separators, and with the symbol in front or
/// behind. None if the text is not that, or is beyond the range of Money.
std::optional<Money> ParseCurrency(std::string_view text, const std::string& symbol);

/// A whole number from 0 up with a comma between groups of three digits.
std::string GroupDigits(std::int64_t number);
/// A number as short as it can be written, with a zero before the point: 8, 0.5, 7.25.
std::string PlainNumber(double value);

/// One decimal, halves away from zero; empty for 0 if `blankIfZero`.
std::string FormatHours(float hours, bool blankIfZero);
/// An hour of the day, 0 to 24: "12am", "1am", "12pm", "1pm"; padded to "01am".
std::string FormatHour(int hour, bool pad);
/// The same in every country: files name the hours of a shift so.
std::string HourName(int hour, bool pad);

/// 0 "Holiday", 1 "Sunday" to 7 "Saturday", 8 "Shutdown". Other values are a fault.
const char* DayName(int day);
/// The first two letters of the name.
std::string DayLetters(int day);

/// "9/3/2001 8:05:00 AM". The date alone at midnight, the time alone on day 0.
std::string FormatDate(DateTime date);
/// Such a text without seconds that are 0: "9/3/2001 8:05 AM".
std::string WithoutSeconds(std::string text);
/// "9/3/2001".
std::string FormatShortDate(DateTime date);
/// The day by the clock of the system.
DateTime Today();
/// A typed date, month/day/year or year-month-day, with or without a blank and a time of day. A year of two
/// digits, but for one behind hyphens where they part no dates, is the one of the 50 years before `today` and
/// the 50 behind. None if there is no such moment.
std::optional<DateTime> ParseDate(std::string_view text, DateTime today = Today());
/// The date in the first word of an entry such as "9/10/2001 [Current]". A fault if that is no date.
DateTime JDate(std::string_view text);

/// The text before the first NUL.
std::string ChopAtNull(std::string_view text);
/// The program's version, "major.minor.revision".
std::string GetAppVersion();

}  // namespace vortan
