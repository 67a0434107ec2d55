#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "model/DateTime.h"
#include "model/Money.h"

/// The texts of values in files, which are the same on every machine: a point as decimal separator, no
/// group separators, no locale. Writing and reading a number gives the same number again, and reading takes
/// whatever a person or another writer may have put there. Loading and saving spend much of their time
/// here, so nothing allocates but the result.
namespace vortan {

/// Each appends the text of `value`: the fewest digits that read back to the same value, a fraction below 1
/// without its leading zero (.85, -.5), an exponent (1.5E+20) only below 1E-07 or from 1E+15 up. "Not a
/// number" is written as 0, an infinity as the largest number of its sign.
void AppendNumber(std::string& out, std::int32_t value);
void AppendNumber(std::string& out, std::int64_t value);
void AppendNumber(std::string& out, float value);
void AppendNumber(std::string& out, double value);
/// At most four decimals, trimmed of zeros.
void AppendNumber(std::string& out, Money value);
/// True or False.
void AppendNumber(std::string& out, bool value);

template <class T>
std::string FormatNumber(T value) {
    std::string text;
    AppendNumber(text, value);
    return text;
}

/// The number at the front of `text`: leading blanks are skipped, then the longest text of an optional
/// sign, digits with an optional point, and an optional exponent after E. No number gives 0. What is
/// too large gives the largest number of its sign.
double ScanNumber(std::string_view text);
/// The same, rounded once to a float.
float ScanFloat(std::string_view text);
/// The same as an exact decimal, rounded to four places, ties to even. What is too large gives the largest
/// amount of its sign.
Money ScanMoney(std::string_view text);
/// The same, rounded to a whole number, ties to even, and stopped at the ends of the range.
std::int32_t ScanInt32(std::string_view text);

/// The number that `text` as a whole is, blanks around it aside; none if it is not one.
std::optional<double> ParseNumber(std::string_view text);
/// The same as an exact decimal; none too if it lies outside the range of Money.
std::optional<Money> ParseMoney(std::string_view text);
/// True and False in any case; a number is true if it is not 0 (-1 is a customary true). None for other
/// texts.
std::optional<bool> ParseBool(std::string_view text);

/// "09/03/2001 08:00am": always 18 characters, to the minute. Seconds are lost, but a moment within half a
/// second of a minute counts as that minute.
void AppendFileDate(std::string& out, DateTime date);
/// Reads by columns: month in 1 to 2, day in 4 to 5, year in 7 to 10, whatever stands between them; a time
/// from column 12 on, or none for midnight. None if there is no such day or time.
std::optional<DateTime> ParseFileDate(std::string_view text);

/// The days, as a fraction below 1, of a time of day "h:mm" or "h:mm:ss": on the 24 hour clock, or followed
/// by am or pm in any case. Blanks are allowed around it and before am and pm. None for other texts.
std::optional<double> ParseTimeOfDay(std::string_view text);

/// `text` as one token of a line of comma-separated tokens: enclosed in double quotes, with doubled ones
/// inside, if it would not read back equal as it stands: if it is empty, has a comma, begins with a quote, or
/// begins or ends with a blank.
void AppendQuoted(std::string& out, std::string_view text);

}  // namespace vortan
