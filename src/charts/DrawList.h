#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vortan {

/// 0x00BBGGRR: red in the low byte.
using Color = std::uint32_t;
constexpr Color kBlack = 0, kRed = 255, kGreen = 65280, kYellow = 65535, kBlue = 0xFF0000, kWhite = 0xFFFFFF;

/// An index of a letter, against the letter.
constexpr double kSmallText = 0.7;

/// How an area is filled.
enum class Hatch : std::uint8_t {
    Solid,
    Transparent,
    Horizontal,
    Vertical,
    Upward,
    Downward,
    Cross,
    DiagonalCross
};
/// Where the tip of a triangle is: in the middle of its top, bottom or right side.
enum class Apex : std::uint8_t { None = 0, Up = 3, Down = 5, Right = 7 };

/// One drawn thing, in twips on the whole unscrolled surface. A later one lies over an earlier one.
struct DrawItem {
    enum class Kind : std::uint8_t { Line, Rect, Milestone, Triangle, Text };
    Kind kind = Kind::Line;
    Hatch hatch = Hatch::Solid;  ///< Rect
    Apex apex = Apex::None;      ///< Triangle
    std::uint8_t width = 1;      ///< Line: pixels
    /// Corners in order, but for a line, which goes from 1 to 2. Of a text: the room that it takes.
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    Color border = kBlack;  ///< of a line or text: its colour
    Color fill = kWhite;
    bool small = false;  ///< Text: of letters kSmallText as large as the others
    std::string text;    ///< lines are separated by "\r\n"
};

/// A picture: items in drawing order, with an index by bands of height, so that a screenful out of many
/// thousand items is found without looking at the rest.
class DrawList {
  public:
    /// The height of a band should be some rows of text.
    void Clear(int bandHeight);
    void Add(DrawItem item);
    const std::vector<DrawItem>& Items() const { return items_; }
    /// Replaces `found` by the indexes, in drawing order, of the items that touch the heights from `top` to
    /// `bottom`, both included, and may touch the widths from `left` to `right`; the thickness of lines
    /// counts, and that letters may turn out wider than they were measured.
    void Between(int top, int bottom, std::vector<std::int32_t>& found, int left = INT32_MIN,
                 int right = INT32_MAX) const;
    /// How far the picture reaches, at least 0.
    int Right() const { return right_; }
    int Bottom() const { return bottom_; }
    int SlantedLines() const { return slantedLines_; }

  private:
    int bandHeight_ = 1;
    int right_ = 0, bottom_ = 0, slantedLines_ = 0;
    std::vector<DrawItem> items_;
    std::vector<std::vector<std::int32_t>> bands_;
    std::vector<std::int32_t> tall_;  ///< those in too many bands, or beyond the last
};

}  // namespace vortan
