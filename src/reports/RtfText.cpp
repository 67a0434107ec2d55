#include "reports/RtfText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>

#include "model/Characters.h"

namespace vortan {
namespace {

constexpr std::size_t kLineLength = 80;
constexpr std::size_t kMostTokens = 20'000'000;

bool IsLetter(char c) {
    return LowerCase(c) >= 'a' && LowerCase(c) <= 'z';
}
bool IsLineEnd(char c) {
    return c == '\r' || c == '\n';
}
int HexValue(char c) {
    if (IsDigit(c)) return c - '0';
    const char lower = LowerCase(c);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::size_t LettersFrom(std::string_view text, std::size_t at) {
    while (at < text.size() && IsLetter(text[at])) ++at;
    return at;
}

std::optional<int> NumberFrom(std::string_view text, std::size_t at) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data() + at, text.data() + text.size(), number);
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

/// Whether a word would take up what follows it, if no line break kept them apart.
bool Merges(std::string_view before, std::string_view after) {
    const char next = after.front();
    if (before == "\\'") return HexValue(next) >= 0;
    if (before.size() < 2 || before[0] != '\\' || !IsLetter(before[1])) return false;
    const RtfToken word(before);
    if (word.Is("bin") && word.Number().value_or(0) > 0) return false;
    if (!IsLetter(before.back()) && !IsDigit(before.back())) return false;
    return IsLetter(next) || IsDigit(next) || next == '-' || next == ' ';
}

}  // namespace

std::string_view RtfToken::Word() const {
    if (text_[0] != '\\') return {};
    return text_.substr(1, LettersFrom(text_, 1) - 1);
}

std::optional<int> RtfToken::Number() const {
    const std::string_view word = Word();
    return word.empty() ? std::nullopt : NumberFrom(text_, word.size() + 1);
}

std::optional<unsigned char> RtfToken::Byte() const {
    if (text_.size() != 4 || text_[0] != '\\' || text_[1] != '\'') return std::nullopt;
    return static_cast<unsigned char>(HexValue(text_[2]) * 16 + HexValue(text_[3]));
}

RtfText::RtfText(std::string bytes) : bytes_(std::move(bytes)) {
    if (!bytes_.starts_with("{\\rtf")) {
        problem_ = "is no RTF document.";
    } else {
        Read();
    }
    if (!problem_.empty()) tokens_.clear();
}

void RtfText::Read() {
    std::size_t depth = 0;
    for (std::size_t at = 0; at < bytes_.size();) {
        if (IsLineEnd(bytes_[at])) {
            ++at;
            continue;
        }
        const std::size_t end = EndOfToken(at);
        if (end > bytes_.size()) break;  // data that are cut off leave their group open
        const RtfToken token(std::string_view(bytes_).substr(at, end - at));
        if (token.IsClose() && depth == 0) {
            problem_ = "is damaged: it closes more groups than it opens.";
            return;
        }
        depth += token.IsOpen() ? 1 : 0;
        depth -= token.IsClose() ? 1 : 0;
        tokens_.push_back(token);
        if (tokens_.size() > kMostTokens) {
            problem_ = "is too large.";
            return;
        }
        at = end;
    }
    if (depth > 0) problem_ = "is damaged: it ends in the middle of a group.";
}

std::size_t RtfText::EndOfToken(std::size_t begin) const {
    const std::string_view bytes = bytes_;
    if (bytes[begin] == '{' || bytes[begin] == '}') return begin + 1;
    if (bytes[begin] != '\\') return std::min(bytes.find_first_of("{}\\\r\n", begin), bytes.size());
    if (begin + 1 == bytes.size()) return begin + 1;
    const char next = bytes[begin + 1];
    if (IsLetter(next)) return EndOfWord(begin);
    const bool isByte = next == '\'' && begin + 3 < bytes.size() && HexValue(bytes[begin + 2]) >= 0 &&
                        HexValue(bytes[begin + 3]) >= 0;
    const bool isBreak = bytes.substr(begin + 1).starts_with("\r\n");
    return begin + (isByte ? 4 : isBreak ? 3 : 2);
}

std::size_t RtfText::EndOfWord(std::size_t begin) const {
    const std::string_view bytes = bytes_;
    const std::size_t letters = LettersFrom(bytes, begin + 1);
    std::size_t end = letters;
    const auto digitAt = [&](std::size_t at) { return at < bytes.size() && IsDigit(bytes[at]); };
    if (end < bytes.size() && bytes[end] == '-' && digitAt(end + 1)) ++end;
    while (digitAt(end)) ++end;
    if (end < bytes.size() && bytes[end] == ' ') ++end;
    // So many bytes of data follow, whatever they look like.
    if (bytes.substr(begin + 1, letters - begin - 1) == "bin")
        end += static_cast<std::size_t>(std::max(NumberFrom(bytes, letters).value_or(0), 0));
    return end;
}

std::string RtfText::Write(const Changes& changes) const {
    if (changes.empty()) return bytes_;
    const std::string lineEnd = bytes_.find('\r') == std::string::npos ? "\n" : "\r\n";
    std::string out;
    out.reserve(bytes_.size() + bytes_.size() / 64);
    std::size_t lineBegin = 0;
    std::string_view before;
    auto change = changes.begin();
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
        std::string_view text = tokens_[i].Text();
        if (change != changes.end() && change->first == i) text = (change++)->second;
        if (text.empty()) continue;
        const std::size_t length = out.size() - lineBegin;
        // How a document begins stays together.
        if (i > 1 && length > 0 && (length + text.size() >= kLineLength || Merges(before, text))) {
            out += lineEnd;
            lineBegin = out.size();
        }
        out += text;
        before = text;
    }
    return before == "\\" ? out : out + lineEnd;  // a backslash at a line's end is a symbol
}

void AppendUtf8(std::string& text, char32_t character) {
    const auto add = [&](char32_t lead, int shift) {
        text += static_cast<char>(lead | (character >> shift & 0x3F));
    };
    if (character < 0x80) {
        text += static_cast<char>(character);
        return;
    }
    if (character < 0x800) {
        add(0xC0, 6);
    } else if (character < 0x10000) {
        add(0xE0, 12);
        add(0x80, 6);
    } else {
        add(0xF0, 18);
        add(0x80, 12);
        add(0x80, 6);
    }
    add(0x80, 0);
}

std::string RtfEscape(std::string_view utf8) {
    std::string rtf;
    const auto addUnit = [&](char32_t unit) {
        rtf += "\\u" + std::to_string(static_cast<std::int16_t>(unit)) + "?";
    };
    for (std::size_t at = 0; at < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[at++]);
        if (lead < 0x80) {
            if (lead == '\\' || lead == '{' || lead == '}') rtf += '\\';
            rtf += lead < ' ' ? ' ' : static_cast<char>(lead);
            continue;
        }
        char32_t character = lead >= 0xF0 ? lead & 0x07U : lead >= 0xE0 ? lead & 0x0FU : lead & 0x1FU;
        for (; at < utf8.size() && (utf8[at] & 0xC0) == 0x80; ++at)
            character = character << 6 | (static_cast<unsigned char>(utf8[at]) & 0x3FU);
        if (character >= 0x10000) {
            addUnit(0xD800 + ((character - 0x10000) >> 10 & 0x3FF));
            addUnit(0xDC00 + (character & 0x3FF));
        } else {
            addUnit(character);
        }
    }
    return rtf;
}

}  // namespace vortan
