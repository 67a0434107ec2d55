#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vortan {

/// Columns that a UTF-8 text takes on a terminal: 2 for wide East Asian characters, 0 for combining marks.
int TextWidth(std::string_view text);

/// The text cut to `width` columns, with an ellipsis where something is missing; control characters become
/// blanks.
std::string FitText(std::string_view text, int width);

/// The text broken at blanks into lines of at most `width` columns, as far as its words allow; 0 is no limit.
std::string WrapText(std::string_view text, int width);

/// A table of text for a terminal: a heading, a line below it, rows. One column gives way when the table is
/// wider than it may be, and the widest of the others when that does not suffice.
class TextTable {
  public:
    enum class Align { Left, Right };

    /// `elastic` is the index of the column that is cut when the space does not suffice.
    TextTable(std::vector<std::string> headings, std::vector<Align> alignment, std::size_t elastic);

    void AddRow(std::vector<std::string> cells);
    /// A line of hyphens.
    void AddRule() { rows_.emplace_back(); }

    /// Columns below which the elastic column is cut so far that it is hard to read.
    int ReadableWidth() const;
    /// `width` 0 is no limit.
    std::string Print(int width) const;

  private:
    std::vector<int> NaturalColumns() const;

    std::vector<Align> alignment_;
    std::size_t elastic_;
    std::vector<std::vector<std::string>> rows_;  ///< the headings first; an empty row is a rule
};

}  // namespace vortan
