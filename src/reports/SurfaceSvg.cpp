#include "reports/SurfaceSvg.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <vector>

#include "charts/HtmlText.h"
#include "charts/TextLines.h"
#include "charts/Twips.h"
#include "reports/PageMetrics.h"

namespace vortan {

const char* const kSurfaceStyle =
    ".chart{overflow:auto;max-height:85vh;border:1px solid var(--line)}"
    ".chart table{border-collapse:collapse;table-layout:fixed}"
    ".chart td{padding:0;vertical-align:top;background:var(--paper)}"
    ".chart thead{position:sticky;top:0;z-index:2}"
    ".chart thead td{background:var(--head);font-weight:bold}"
    ".chart svg{display:block}"
    ".chart .band{content-visibility:auto;overflow:hidden;display:grid}"
    ".chart p{margin:0;padding:0 3px;font-size:12px;line-height:16px;white-space:pre;overflow:hidden;"
    "unicode-bidi:plaintext;align-content:center;border:solid var(--line);border-width:0 1px 1px 0}"
    ".chart .r{text-align:right}.chart .c{text-align:center}"
    ".chart .b{text-align:right;align-content:end;border-bottom:0}"
    ".chart text{font:24px Arial,'Liberation Sans',Helvetica,sans-serif;fill:var(--ink);white-space:pre}"
    ".chart .mid{text-anchor:middle}.chart .small{font-size:17px}"
    ".chart .grid{fill:none;stroke:var(--line);stroke-width:2}"
    ".chart .faint{fill:none;stroke:var(--faint);stroke-width:2}"
    "@media screen and (min-width:900px){.chart td:first-child{position:sticky;left:0;z-index:1}}"
    "@media print{.chart{overflow:visible;max-height:none;border:0}.chart thead{position:static}"
    ".chart .band{content-visibility:visible}.chart tr{break-inside:avoid}}";

namespace {

constexpr double kUnit = kTwipsPerPixel / 2;  // drawings count in half pixels
// How high a band is: with the headings it stands on a page of paper, and small charts fill their pages
// better.
constexpr int kBandUnits = 2 * 620, kSmallBandUnits = 2 * 200, kSmallRows = 1000;
constexpr int kLineUnits = 2 * PageMetrics::kLinePixels, kAscentUnits = 2 * PageMetrics::kAscentPixels;
constexpr int kOutside = 40;  // units beyond the edge of a drawing to which lines are cut off

int Units(double twips) {
    return static_cast<int>(std::lround(twips / kUnit));
}

std::string PointText(int x, int y) {
    return std::to_string(x) + (y < 0 ? "" : " ") + std::to_string(y);
}

/// Paths of items in drawing order; neighbours of one look share a path.
class Paths {
  public:
    Paths(std::string& out, PageColors& colors) : out_(out), colors_(colors) {}
    ~Paths() { Close(); }
    Paths(const Paths&) = delete;
    Paths& operator=(const Paths&) = delete;

    void Add(const std::string& look, const std::string& tip, const std::string& path) {
        if (look != look_ || tip != tip_) {
            Close();
            look_ = look;
            tip_ = tip;
        }
        if (drawn_.insert(path).second) path_ += path;
    }
    void Close() {
        if (!path_.empty()) {
            out_ += "<path class=" + look_ + " d=\"" + path_ + "\"";
            out_ += tip_.empty() ? "/>" : "><title>" + EscapedHtml(tip_, "\n") + "</title></path>";
        }
        path_.clear();
        drawn_.clear();
    }
    PageColors& Colors() { return colors_; }

  private:
    std::string& out_;
    PageColors& colors_;
    std::string look_, tip_, path_;
    std::unordered_set<std::string> drawn_;  ///< arrows share many of their lines
};

/// A part of a surface that is a drawing of its own, in units. Lines are cut off a little outside.
struct Part {
    int left, top, right, bottom;

    int X(double twips) const { return Units(twips) - left; }
    int Y(double twips) const { return Units(twips) - top; }
    int LineX(int twips) const { return std::clamp(X(twips) / 2 * 2, -kOutside, right - left + kOutside); }
    int LineY(int twips) const { return std::clamp(Y(twips) / 2 * 2, -kOutside, bottom - top + kOutside); }
};

/// Level and upright lines lie on whole pixels, so that many of them are one.
std::string LinePath(const DrawItem& item, const Part& part) {
    const bool upright = item.x1 == item.x2;
    if (!upright && item.y1 != item.y2)
        return "M" + PointText(part.X(item.x1), part.Y(item.y1)) + "L" +
               PointText(part.X(item.x2), part.Y(item.y2));
    const auto [left, right] = std::minmax({part.LineX(item.x1), part.LineX(item.x2)});
    const auto [top, bottom] = std::minmax({part.LineY(item.y1), part.LineY(item.y2)});
    return "M" + PointText(left, top) +
           (upright ? "V" + std::to_string(bottom) : "H" + std::to_string(right));
}

std::string AreaPath(const DrawItem& item, const Part& part) {
    const int x1 = part.X(item.x1), y1 = part.Y(item.y1), x2 = part.X(item.x2), y2 = part.Y(item.y2);
    const int middleX = part.X((item.x1 + item.x2) / 2.0), middleY = part.Y((item.y1 + item.y2) / 2.0);
    if (item.kind == DrawItem::Kind::Rect)
        return "M" + PointText(x1, y1) + "H" + std::to_string(x2) + "V" + std::to_string(y2) + "H" +
               std::to_string(x1) + "z";
    if (item.kind == DrawItem::Kind::Milestone)
        return "M" + PointText(middleX, y1) + "L" + PointText(x2, middleY) + " " + PointText(middleX, y2) +
               " " + PointText(x1, middleY) + "z";
    if (item.apex == Apex::Right)
        return "M" + PointText(x1, y1) + "L" + PointText(x2, middleY) + " " + PointText(x1, y2) + "z";
    const int base = item.apex == Apex::Up ? y2 : y1, apex = item.apex == Apex::Up ? y1 : y2;
    return "M" + PointText(x1, base) + "h" + std::to_string(x2 - x1) + "l" +
           PointText(middleX - x2, apex - base) + "z";
}

/// The text of one line.
void AddText(std::string& out, int x, int y, std::string_view text, const char* look = nullptr) {
    if (text.empty()) return;
    out += std::string("<text") + (look ? std::string(" class=") + look : "") + " x=" + std::to_string(x) +
           " y=" + std::to_string(y) + ">" + EscapedHtml(text, " ") + "</text>";
}

/// Three columns: the titled ones on both sides as texts, and the time columns between them as drawings.
class Drawing {
  public:
    Drawing(const Vwindow& surface, PageColors& colors, const std::function<std::string(int, int)>& tip)
        : surface_(surface),
          colors_(colors),
          tip_(tip),
          footer_(surface.Rows() - (surface.HasFooter() ? 1 : 0)) {
        while (timeAt_ < surface.Cols() && !surface.IsTimeColumn(timeAt_)) ++timeAt_;
        for (timeEnd_ = timeAt_; timeEnd_ < surface.Cols() && surface.IsTimeColumn(timeEnd_);) ++timeEnd_;
    }

    std::string Html() {
        std::string html =
            "<table role=presentation style=\"width:" + std::to_string(PixelsOf(0, surface_.Cols())) +
            "px\"><thead>";
        AddRow(html, 0, 1);
        html += "</thead><tbody>";
        const int limit = footer_ > kSmallRows ? kBandUnits : kSmallBandUnits;
        for (int row = 1, next = 1; row < footer_; row = next) {
            const int top = Top(row);
            for (next = row + 1; next < footer_ && Top(next + 1) - top <= limit;) ++next;
            AddRow(html, row, next);
        }
        if (footer_ < surface_.Rows()) {
            html += "<tr><td colspan=3>";
            AddSvg(html, {0, Top(footer_), Units(surface_.ContentWidth()) + 2, Top(footer_ + 1)}, 0, 0);
        }
        return html + "</tbody></table>";
    }

  private:
    int Top(int row) const { return Units(surface_.RowPos(row)); }
    int Left(int col) const { return Units(surface_.ColPos(col)); }
    /// Whole pixels, the same for all rows.
    int PixelsOf(int col, int endCol) const { return (Left(endCol) - Left(col) + 1) / 2; }

    void AddRow(std::string& html, int row, int next) {
        html += "<tr>";
        AddTexts(html, 0, timeAt_, row, next);
        html +=
            row == 0 ? "<td style=\"width:" + std::to_string(PixelsOf(timeAt_, timeEnd_)) + "px\">" : "<td>";
        AddSvg(html, {Left(timeAt_), Top(row), Left(timeEnd_), Top(next)}, row, next);
        AddTexts(html, timeEnd_, surface_.Cols(), row, next);
        html += "\n";
    }

    /// Cells of titled columns, row by row, as high as the rows of the drawing.
    void AddTexts(std::string& html, int col, int endCol, int row, int next) {
        std::string columns, rows;
        for (int at = col; at < endCol; ++at) columns += std::to_string(PixelsOf(at, at + 1)) + "px ";
        for (int at = row; at < next; ++at) rows += std::to_string(Top(at + 1) / 2 - Top(at) / 2) + "px ";
        html += row == 0 ? "<td style=\"width:" + std::to_string(PixelsOf(col, endCol)) + "px\">" : "<td>";
        if (col == endCol) return;
        html += "<div class=band style=\"height:" + std::to_string(Top(next) / 2 - Top(row) / 2) +
                "px;grid:" + rows + "/" + columns + "\">";
        for (int line = row; line < next; ++line) {
            for (int at = col; at < endCol; ++at) AddCell(html, line, at);
        }
        html += "</div>";
    }

    void AddCell(std::string& html, int row, int col) {
        lines_.clear();
        surface_.CellLines(row, col, lines_);
        const Alignment alignment =
            row == 0 || surface_.CellMarkC(row, col) ? Alignment::Center : surface_.ColumnAlignment(col);
        html += alignment == Alignment::Left          ? "<p>"
                : alignment == Alignment::Right       ? "<p class=r>"
                : alignment == Alignment::RightBottom ? "<p class=b>"
                                                      : "<p class=c>";
        for (std::size_t i = 0; i < lines_.size(); ++i)
            html += (i > 0 ? "<br>" : "") + EscapedHtml(lines_[i], " ");
    }

    void AddSvg(std::string& html, const Part& part, int row, int next) {
        const int width = part.right - part.left, height = part.bottom - part.top;
        html += "<div class=band style=\"height:" + std::to_string(part.bottom / 2 - part.top / 2) +
                "px\"><svg width=" + std::to_string((width + 1) / 2) +
                " height=" + std::to_string((height + 1) / 2) + " viewBox=\"0 0 " +
                std::to_string((width + 1) / 2 * 2) + " " + std::to_string((height + 1) / 2 * 2) + "\">";
        if (row < next) AddGrid(html, part, row, next);
        if (row == 0 && next == 1) AddHeading(html, part);
        AddItems(html, part);
        html += "</svg></div>";
    }

    void AddGrid(std::string& html, const Part& part, int row, int next) const {
        std::string grid, faint;
        const std::string height = std::to_string(part.bottom - part.top),
                          width = std::to_string(part.right - part.left);
        if (row == 0) {
            for (int col = timeAt_ + 1; col < timeEnd_; ++col)
                faint += "M" + PointText(Left(col) - part.left, 0) + "v2000";
            // The bands below show the same lines.
            html += "<path id=" + Id() + " class=faint d=\"" + faint + "\"/>";
            const int middle = part.Y(surface_.RowPos(1) / 2.0);
            for (const auto& label : surface_.UpperLabels())
                grid += "M" + PointText(Left(label.firstCol) - part.left, 0) + "v" + height + "M" +
                        PointText(Left(label.firstCol) - part.left, middle) + "H" +
                        std::to_string(Left(label.lastCol) - part.left);
        } else {
            html += "<use href=#" + Id() + " />";
        }
        for (int at = row + 1; at <= next; ++at)
            grid += "M0 " + std::to_string(Top(at) - part.top - 1) + "h" + width;
        html += "<path class=grid d=\"" + grid + "\"/>";
    }

    /// Of the lines between time columns, once in a page for each such surface.
    std::string Id() const { return "c" + std::to_string(Left(timeEnd_)) + "-" + std::to_string(timeEnd_); }

    void AddHeading(std::string& html, const Part& part) const {
        const int half = part.Y(surface_.RowPos(1) / 2.0);
        const auto base = [](int top, int bottom) { return (top + bottom - kLineUnits) / 2 + kAscentUnits; };
        for (int col = timeAt_; col < timeEnd_; ++col)
            AddText(html, (Left(col) + Left(col + 1)) / 2 - part.left, base(half, part.bottom),
                    surface_.ColumnTitle(col), "mid");
        for (const auto& label : surface_.UpperLabels())
            AddText(html, Left(label.firstCol) - part.left + 6, base(0, half), label.text);
    }

    void AddItems(std::string& html, const Part& part) {
        const auto twips = [](int units) { return static_cast<int>(units * kUnit); };
        surface_.ItemsIn(twips(part.left), twips(part.top), twips(part.right), twips(part.bottom), found_);
        Paths paths(html, colors_);
        for (const std::int32_t index : found_) {
            const DrawItem& item = surface_.Items()[static_cast<std::size_t>(index)];
            if (item.kind == DrawItem::Kind::Text) {
                paths.Close();
                AddDrawnText(html, part, item);
            } else if (item.kind == DrawItem::Kind::Line) {
                paths.Add(colors_.ClassOf(item.border, item.border, item.width), "", LinePath(item, part));
            } else {
                const bool tells = tip_ && item.kind != DrawItem::Kind::Triangle;
                paths.Add(item.kind == DrawItem::Kind::Rect && item.hatch != Hatch::Solid
                              ? colors_.OutlineClassOf(item.border)
                              : colors_.ClassOf(item.fill, item.border, 1),
                          tells ? tip_((item.x1 + item.x2) / 2, (item.y1 + item.y2) / 2) : "",
                          AreaPath(item, part));
            }
        }
    }

    static void AddDrawnText(std::string& html, const Part& part, const DrawItem& item) {
        std::vector<std::string_view> lines;
        SplitLines(item.text, lines);
        const double scale = item.small ? kSmallText : 1;
        int y = part.Y(item.y1) + static_cast<int>(std::lround(kAscentUnits * scale));
        for (const std::string_view line : lines) {
            AddText(html, part.X(item.x1), y, line, item.small ? "small" : nullptr);
            y += static_cast<int>(std::lround(kLineUnits * scale));
        }
    }

    const Vwindow& surface_;
    PageColors& colors_;
    const std::function<std::string(int, int)>& tip_;
    const int footer_;              ///< the row of the footer, or that behind the last
    int timeAt_ = 0, timeEnd_ = 0;  ///< the first time column, and that behind the last
    std::vector<std::string_view> lines_;
    std::vector<std::int32_t> found_;
};

/// A colour on a dark page.
Color OnDark(Color color) {
    if (color == kBlack) return 0xE6E6E6;
    if (color == kWhite) return 0x1C1A18;
    const auto channel = [color](int place) { return static_cast<int>(color >> (8 * place) & 255); };
    if (299 * channel(0) + 587 * channel(1) + 114 * channel(2) > 90'000) return color;
    const auto lighter = [&](int place) {
        return static_cast<Color>(channel(place) + (255 - channel(place)) * 55 / 100) << (8 * place);
    };
    return lighter(0) | lighter(1) | lighter(2);
}

}  // namespace

std::string PageColors::ClassOf(Color fill, Color border, int width) {
    return ClassOf(Look{fill, border, std::max(width, 1)});
}

std::string PageColors::OutlineClassOf(Color border) {
    return ClassOf(Look{kWhite, border, 0});
}

std::string PageColors::ClassOf(const Look& look) {
    return "k" + std::to_string(classes_.try_emplace(look, classes_.size()).first->second);
}

std::string PageColors::Rules(bool dark) const {
    std::string rules;
    for (const auto& [look, number] : classes_) {
        const auto colorOf = [dark](Color color) { return HtmlColor(dark ? OnDark(color) : color); };
        rules += ".k" + std::to_string(number) + "{fill:" + (look.width == 0 ? "none" : colorOf(look.fill)) +
                 ";stroke:" + colorOf(look.border) +
                 ";stroke-width:" + std::to_string(2 * std::max(look.width, 1)) + "}";
    }
    return rules;
}

std::string SurfaceSvg(const Vwindow& surface, PageColors& colors,
                       const std::function<std::string(int, int)>& tip) {
    return Drawing(surface, colors, tip).Html();
}

int SurfacePixels(const Vwindow& surface) {
    return static_cast<int>(std::ceil(surface.ContentWidth() / kTwipsPerPixel));
}

}  // namespace vortan
