#pragma once

#include <algorithm>
#include <string_view>

/// The small change of reading texts: characters are bytes, and nothing depends on a locale.
namespace vortan {

inline bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
inline bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}
inline char LowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// `text` without the blanks and tabs around it.
inline std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

/// Takes a whole number of at most `most` digits (9 or fewer) off the front of `text`; -1 if there is none.
inline int TakeDigits(std::string_view& text, int most) {
    int value = -1;
    for (int i = 0; i < most && !text.empty() && IsDigit(text.front()); ++i) {
        value = std::max(value, 0) * 10 + (text.front() - '0');
        text.remove_prefix(1);
    }
    return value;
}

}  // namespace vortan
