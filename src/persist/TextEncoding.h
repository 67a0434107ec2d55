#pragma once

#include <string>
#include <string_view>

/// The characters of files. The program works in UTF-8 throughout and writes it; older files are in the code
/// page of the machine that wrote them, which is taken to be Windows-1252.
namespace vortan {

/// Whether `bytes` is UTF-8 as the standard allows it: no overlong forms, no surrogates, nothing above
/// U+10FFFF.
bool IsUtf8(std::string_view bytes);

/// The text of a file in UTF-8: UTF-8 as it is, without a byte order mark in front, anything else taken for
/// Windows-1252. The five bytes that have no character there become U+FFFD.
std::string ToUtf8(std::string bytes);

}  // namespace vortan
