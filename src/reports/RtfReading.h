#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "reports/RtfText.h"

/// What is read out of the tokens of a document, one after the other.
namespace vortan {

/// The groups around a token, as far as it matters what they are.
class RtfGroups {
  public:
    struct Group {
        std::size_t begin = 0;    ///< the token that opens it
        bool isShown = true;      ///< its text belongs to the text around it
        bool isMargin = false;    ///< in a header, footer or list of bullets
        bool isFallback = false;  ///< for readers that cannot show what stands before it
    };
    void Take(std::size_t number, const RtfToken& token);
    bool HasGroup() const { return !groups_.empty(); }
    const Group& Innermost() const { return groups_.back(); }

  private:
    std::vector<Group> groups_;
};

/// The text of a cell in UTF-8, from its tokens.
class RtfPlainText {
  public:
    void Take(const RtfToken& token);
    /// Begins anew.
    std::string TakeText();

  private:
    void AppendUnit(int unit);

    std::string text_;
    int fallback_ = 1;  ///< characters that stand for each of a \u, for readers that do not know it
    int skip_ = 0;      ///< of those, still to come
    char32_t high_ = 0;
};

/// The colours of a document.
class RtfColors {
  public:
    explicit RtfColors(const std::vector<RtfToken>& tokens);
    bool Has(int number) const { return number >= 0 && static_cast<std::size_t>(number) < colors_.size(); }
    /// Whether the colour can be taken for that of a mark, 'G', 'Y' or 'R'.
    bool Suits(int number, char mark) const;
    /// The first that does, or -1.
    int FirstFor(char mark) const;

  private:
    std::vector<std::array<int, 3>> colors_;
};

}  // namespace vortan
