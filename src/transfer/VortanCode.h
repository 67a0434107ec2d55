#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/DateTime.h"
#include "model/Money.h"
#include "model/Vproject.h"

/// The alphabet of the texts that stand in Text30: how a value becomes letters and back, exactly. A value
/// has none of the characters that part the text, no blanks and nothing that cannot stand in XML.
namespace vortan {

/// Part the text, from the coarsest to the finest.
inline constexpr char kSectionEnd = ';', kItemEnd = '|', kFieldEnd = ',', kJournalEnd = '/';

/// 32 bits of a text, the same on every machine (FNV-1a).
std::uint32_t TextHash(std::string_view text);
/// Eight hexadecimal digits.
std::string HashText(std::uint32_t hash);

/// With every character that parts texts, or that is none, as % and two hexadecimal digits.
void AppendEscaped(std::string& out, std::string_view text);
std::string Unescaped(std::string_view text);

/// The pieces between `end` marks; an empty text has none.
std::vector<std::string_view> SplitText(std::string_view text, char end);

void AppendCode(std::string& out, const std::string& value);
void AppendCode(std::string& out, bool value);
void AppendCode(std::string& out, std::int32_t value);
void AppendCode(std::string& out, std::uint8_t value);
void AppendCode(std::string& out, double value);
void AppendCode(std::string& out, float value);
void AppendCode(std::string& out, Money value);
/// The day, and behind a colon the minute of the day if there is one; whatever is not on the grid of minutes
/// behind an "e" as a number.
void AppendCode(std::string& out, DateTime value);
void AppendCode(std::string& out, SolveRule value);

/// The reverse. Each is false for what is no such value.
bool ReadCode(std::string_view code, std::string& value);
bool ReadCode(std::string_view code, bool& value);
bool ReadCode(std::string_view code, std::int32_t& value);
bool ReadCode(std::string_view code, std::uint8_t& value);
bool ReadCode(std::string_view code, double& value);
bool ReadCode(std::string_view code, float& value);
bool ReadCode(std::string_view code, Money& value);
bool ReadCode(std::string_view code, DateTime& value);
bool ReadCode(std::string_view code, SolveRule& value);

}  // namespace vortan
