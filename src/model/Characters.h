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

/// `text` without what stands around it. By hand, since every line of a file goes through here.
template <class IsAround>
std::string_view TrimAll(std::string_view text, IsAround isAround) {
    while (!text.empty() && isAround(text.front())) text.remove_prefix(1);
    while (!text.empty() && isAround(text.back())) text.remove_suffix(1);
    return text;
}
/// `text` without the blanks and tabs around it.
inline std::string_view Trim(std::string_view text) {
    return TrimAll(text, IsBlank);
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
