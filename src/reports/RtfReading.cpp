#include "reports/RtfReading.h"

#include <algorithm>
#include <utility>

#include "persist/TextEncoding.h"

namespace vortan {
namespace {

template <std::size_t N>
bool IsOneOf(std::string_view word, const char* const (&words)[N]) {
    return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

constexpr const char* kMargins[] = {"header",  "headerl", "headerr", "headerf",     "footer",
                                    "footerl", "footerr", "footerf", "listpicture", "background"};
constexpr const char* kNoText[] = {"pict",      "fonttbl",    "colortbl",  "stylesheet", "info",
                                   "listtable", "nonshppict", "generator", "footnote"};

}  // namespace

void RtfGroups::Take(std::size_t number, const RtfToken& token) {
    if (token.IsOpen()) {
        Group group = groups_.empty() ? Group() : groups_.back();
        group.begin = number;
        groups_.push_back(group);
        return;
    }
    if (groups_.empty()) return;
    if (token.IsClose()) {
        groups_.pop_back();
        return;
    }
    Group& group = groups_.back();
    const std::string_view word = token.Word();
    if (token.Text() == "\\*" && number == group.begin + 1) group.isShown = false;
    if (word.empty()) return;
    if (IsOneOf(word, kNoText)) group.isShown = false;
    if (IsOneOf(word, kMargins)) group.isMargin = true;
    if (word == "nonshppict") group.isFallback = true;
}

void RtfPlainText::Take(const RtfToken& token) {
    const std::string_view word = token.Word();
    if (token.IsText()) {
        const auto skipped = std::min(static_cast<std::size_t>(skip_), token.Text().size());
        skip_ -= static_cast<int>(skipped);
        text_ += ToUtf8(std::string(token.Text().substr(skipped)));
    } else if (const auto byte = token.Byte()) {
        if (skip_ > 0) {
            --skip_;
        } else {
            text_ += ToUtf8(std::string(1, static_cast<char>(*byte)));
        }
    } else if (token.IsEscape()) {
        text_ += token.Text().back();
    } else if (word == "uc") {
        fallback_ = std::max(token.Number().value_or(1), 0);
    } else if (word == "u" && token.Number()) {
        AppendUnit(*token.Number() & 0xFFFF);
    } else if (word == "tab") {
        text_ += ' ';
    } else if (token.Text() == "\\~") {
        text_ += ' ';
    }
}

void RtfPlainText::AppendUnit(int unit) {
    skip_ = fallback_;
    if (unit >= 0xD800 && unit < 0xDC00) {
        high_ = static_cast<char32_t>(unit);
    } else if (unit >= 0xDC00 && unit < 0xE000) {
        if (high_ != 0)
            AppendUtf8(text_, 0x10000 + ((high_ - 0xD800) << 10) + static_cast<char32_t>(unit - 0xDC00));
        high_ = 0;
    } else {
        AppendUtf8(text_, static_cast<char32_t>(unit));
    }
}

std::string RtfPlainText::TakeText() {
    skip_ = 0;
    high_ = 0;
    return std::exchange(text_, {});
}

RtfColors::RtfColors(const std::vector<RtfToken>& tokens) {
    const auto table = std::find_if(tokens.begin(), tokens.end(),
                                    [](const RtfToken& token) { return token.Is("colortbl"); });
    std::array<int, 3> color{};
    for (auto token = table; token != tokens.end() && !token->IsClose(); ++token) {
        const std::string_view word = token->Word();
        if (word == "red") color[0] = token->Number().value_or(0);
        if (word == "green") color[1] = token->Number().value_or(0);
        if (word == "blue") color[2] = token->Number().value_or(0);
        if (!token->IsText()) continue;
        for (auto ends = std::count(token->Text().begin(), token->Text().end(), ';'); ends > 0; --ends)
            colors_.push_back(std::exchange(color, {}));
    }
}

bool RtfColors::Suits(int number, char mark) const {
    if (!Has(number)) return false;
    constexpr int kClear = 60, kBright = 110;
    const auto [red, green, blue] = colors_[static_cast<std::size_t>(number)];
    const bool yellow = std::min(red, green) > blue + kClear && std::abs(red - green) < kBright;
    if (mark == 'Y') return yellow;
    if (yellow) return false;
    return mark == 'G' ? green > std::max(red, blue) + kClear : red > std::max(green, blue) + kClear;
}

int RtfColors::FirstFor(char mark) const {
    for (int number = 0; Has(number); ++number)
        if (Suits(number, mark)) return number;
    return -1;
}

}  // namespace vortan
