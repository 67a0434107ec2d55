#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// The numbers of the custom fields that a transfer uses.
namespace vortan {

inline constexpr std::int32_t kTaskNumber1 = 188743767;
inline constexpr std::int32_t kTaskDuration1 = 188743783;  ///< and the two behind it
inline constexpr std::int32_t kTaskText30 = 188744016;     ///< Text21 to Text30 follow each other
inline constexpr std::int32_t kResourceText30 = 205521140;

/// Flag1 to Flag10 of an assignment, which are declared with those of resources.
constexpr std::int32_t AssignmentFlag(int flag) {
    return flag == 10 ? 255852666 : 255852666 + flag;
}
constexpr std::int32_t ResourceFlag(int flag) {
    return flag == 10 ? 205521022 : 205521022 + flag;
}

/// A text field takes 255 characters, as UTF-16 counts them. A longer text of ours goes on in Text29 and so
/// on to Text21.
inline constexpr std::size_t kTextLength = 255, kTextFields = 10;
/// The last one takes what is left.
std::vector<std::string> TextPieces(const std::string& text);

}  // namespace vortan
