#include "persist/TokenReader.h"

#include <algorithm>
#include <utility>

#include "model/Characters.h"
#include "model/ErrTrap.h"
#include "model/Fault.h"

namespace vortan {

namespace {

constexpr std::size_t kLongestQuote = 60;  // of a faulty line or token, in a message

/// The beginning of a text that may be long or binary, fit for a message.
std::string Shorten(std::string_view text) {
    std::size_t length = std::min(text.size(), kLongestQuote);
    while (length < text.size() && length > 0 && (text[length] & 0xC0) == 0x80) --length;
    std::string shown(text.substr(0, length));
    for (char& c : shown) {
        if (static_cast<unsigned char>(c) < 32 || c == 127) c = '?';
    }
    return length < text.size() ? shown + "..." : shown;
}

}  // namespace

bool TokenReader::GetAnotherLine() {
    if (position_ >= text_.size()) {
        current_ = remaining_ = {};
        return false;
    }
    const std::size_t found = text_.find('\n', position_);
    const std::size_t end = std::min(found, text_.size());
    std::string_view line = text_.substr(position_, end - position_);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    position_ = end + 1;
    ++lineNumber_;
    current_ = remaining_ = TrimAll(line, [](char c) { return c == ' '; });
    if (lastLineHasEnd_ && found == std::string_view::npos)
        Fail("the line has no end, so the file was cut off");
    return true;
}

std::string_view TokenReader::ReadToken() {
    if (std::exchange(blankAgain_, false)) return {};
    if (remaining_.empty() && !GetAnotherLine()) return {};
    while (!remaining_.empty() && remaining_.front() == ' ') remaining_.remove_prefix(1);
    if (remaining_.empty()) return {};
    if (remaining_.front() != '"') {
        const std::size_t comma = remaining_.find(',');
        const std::string_view token = remaining_.substr(0, comma);
        remaining_.remove_prefix(comma == std::string_view::npos ? remaining_.size() : comma + 1);
        return token;
    }
    unquoted_.clear();
    std::size_t at = 1;
    for (;;) {
        const std::size_t quote = remaining_.find('"', at);
        if (quote == std::string_view::npos) Fail("a closing quote is missing");
        unquoted_.append(remaining_, at, quote - at);
        at = quote + 1;
        if (at == remaining_.size() || remaining_[at] != '"') break;
        unquoted_ += '"';
        ++at;
    }
    if (at < remaining_.size() && remaining_[at] != ',')
        Fail("Assertion failed: there is text behind a closing quote");
    remaining_.remove_prefix(std::min(at + 1, remaining_.size()));
    return unquoted_;
}

void TokenReader::ExpectToken(std::string_view expected) {
    const std::string_view token = ReadToken();
    if (token != expected) FailValue(token, "\"" + std::string(expected) + "\"");
}

bool TokenReader::NextIs(std::string_view token) {
    const bool is = ReadToken() == token;
    UnReadLine();
    return is;
}

void TokenReader::Fail(const std::string& what) const {
    const Section section("TokenReader:Fail");
    std::string text =
        "Error reading file " + fileName_ + ": " + what + "\nLine " + std::to_string(lineNumber_);
    Refuse(current_.empty() ? text : text + ": " + Shorten(current_));
}

void TokenReader::FailValue(std::string_view token, const std::string& kind) const {
    Fail("read \"" + Shorten(token) + "\" when expecting " + kind);
}

int TokenReader::LineBehindBlank() const {
    TokenReader ahead(text_, fileName_);
    ahead.position_ = position_;
    ahead.lineNumber_ = lineNumber_;
    while (ahead.GetAnotherLine()) {
        if (!ahead.current_.empty()) return ahead.lineNumber_;
    }
    return 0;
}

}  // namespace vortan
