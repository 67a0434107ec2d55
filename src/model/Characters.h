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

/// Whether two texts are the same but for the case of their letters.
inline bool SameText(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerCase(x) == LowerCase(y); });
}
/// Whether `text` ends in `ending`, in whatever case.
inline bool EndsWithText(std::string_view text, std::string_view ending) {
    return text.size() >= ending.size() && SameText(text.substr(text.size() - ending.size()), ending);
}

/// `text` without the blanks and tabs around it.
inline std::string_view Trim(std::string_view text, std::string_view blanks = " \t") {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
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
