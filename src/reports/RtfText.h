#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vortan {

/// One piece of an RTF document: a brace, a control word with the blank that ends it, a control symbol, or
/// plain text. A token is never empty.
class RtfToken {
  public:
    explicit RtfToken(std::string_view text) : text_(text) {}

    std::string_view Text() const { return text_; }
    bool IsOpen() const { return text_ == "{"; }
    bool IsClose() const { return text_ == "}"; }
    bool IsText() const { return text_[0] != '{' && text_[0] != '}' && text_[0] != '\\'; }
    /// A brace or backslash that is text.
    bool IsEscape() const { return text_ == "\\{" || text_ == "\\}" || text_ == "\\\\"; }
    /// The letters of a control word; empty for anything else.
    std::string_view Word() const;
    bool Is(std::string_view word) const { return Word() == word; }
    /// The number of a control word, if it has one that fits.
    std::optional<int> Number() const;
    /// The byte that a symbol \'xx stands for.
    std::optional<unsigned char> Byte() const;

  private:
    std::string_view text_;
};

/// An RTF document as tokens, which are not interpreted. Joined they are the document without the line breaks
/// that stand between tokens and within plain text; binary data keep theirs.
class RtfText {
  public:
    /// Texts that stand in place of tokens, by their numbers; an empty one drops its token.
    using Changes = std::map<std::size_t, std::string>;

    explicit RtfText(std::string bytes);
    RtfText(const RtfText&) = delete;
    RtfText& operator=(const RtfText&) = delete;

    /// Why this cannot be worked on, as the end of a sentence about the document: "is no ..."; empty if it
    /// can.
    const std::string& Problem() const { return problem_; }
    const std::vector<RtfToken>& Tokens() const { return tokens_; }
    const std::string& Bytes() const { return bytes_; }
    /// The document with `changes`, in lines of up to 80 characters unless a single token is longer. Without
    /// changes its bytes as they were read.
    std::string Write(const Changes& changes) const;

  private:
    void Read();
    std::size_t EndOfToken(std::size_t begin) const;
    std::size_t EndOfWord(std::size_t begin) const;

    std::string bytes_;
    std::vector<RtfToken> tokens_;  // parts of bytes_
    std::string problem_;
};

/// Plain text as it stands in a document.
std::string RtfEscape(std::string_view utf8);
void AppendUtf8(std::string& text, char32_t character);

}  // namespace vortan
