#pragma once

#include <string>
#include <string_view>

namespace vortan {

/// Takes the comma-separated tokens of a text off line by line. A token that begins with a double quote runs
/// to the closing quote, two quotes inside standing for one. A blank line reads as an empty token, which ends
/// the records of a file.
class TokenReader {
  public:
    /// `text` must outlive the reader; `fileName` is for messages. Lines end with LF or CR LF. With
    /// `lastLineHasEnd`, as in every packed file, a last line without its end is a fault: it was cut off, and
    /// half a number is a number.
    TokenReader(std::string_view text, std::string fileName, bool lastLineHasEnd = false)
        : text_(text), fileName_(std::move(fileName)), lastLineHasEnd_(lastLineHasEnd) {}

    /// The next token; fetches the next line when the present one is used up. Empty at the end of the text
    /// and for a blank line. Valid until the next call. Fault for text behind a closing quote.
    std::string_view ReadToken();
    /// Whether the present line is used up.
    bool EndOfLine() const { return remaining_.empty(); }
    /// Drops what is left of the present line.
    void SkipLine() { remaining_ = {}; }
    /// Whether the text is used up.
    bool AtEnd() const { return remaining_.empty() && position_ >= text_.size(); }
    /// Fault "Error reading file ..." if the next token is not `expected`.
    void ExpectToken(std::string_view expected);
    /// Between two lines: whether the next one begins with `token`. Takes nothing.
    bool NextIs(std::string_view token);
    /// Makes the whole of the last line come again.
    void UnReadLine() {
        remaining_ = current_;
        blankAgain_ = current_.empty();
    }

    /// Raises a Fault that tells file, line and the text of the line besides `what`.
    [[noreturn]] void Fail(const std::string& what) const;
    /// The fault for a value that does not fit: `kind` says what was expected.
    [[noreturn]] void FailValue(std::string_view token, const std::string& kind) const;

    const std::string& FileName() const { return fileName_; }
    /// Of the line last fetched, from 1.
    int LineNumber() const { return lineNumber_; }
    /// After a blank line: the number of the first line behind it that is not blank, 0 if there is none.
    int LineBehindBlank() const;

  private:
    bool GetAnotherLine();

    std::string_view text_;
    std::string fileName_;
    bool lastLineHasEnd_;
    std::size_t position_ = 0;
    int lineNumber_ = 0;
    std::string_view current_, remaining_;
    bool blankAgain_ = false;  ///< a blank line was unread
    std::string unquoted_;
};

}  // namespace vortan
