#include "reports/SurfaceSvg.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <vector>

#include "charts/TextLines.h"
#include "charts/Twips.h"
#include "reports/HtmlText.h"
#include "reports/PageMetrics.h"

namespace vortan {

const char* const kSurfaceStyle =
    ".chart{overflow:auto;max-height:85vh;border:1px solid var(--line)}"
    ".chart table{border-collapse:collapse;table-layout:fixed;width:0}"
    ".chart td{padding:0;vertical-align:top;background:var(--paper)}"
    ".chart thead{position:sticky;top:0;z-index:2}"
    ".chart thead td{background:var(--head)}"
    ".chart svg{display:block}"
    ".chart .band{content-visibility:auto;overflow:hidden}"
    ".chart text{font:24px Arial,'Liberation Sans',Helvetica,sans-serif;fill:var(--ink);white-space:pre}"
    ".chart .end{text-anchor:end}.chart .mid{text-anchor:middle}.chart .small{font-size:17px}"
    ".chart .bold{font-weight:bold}"
    ".chart .grid{fill:none;stroke:var(--line);stroke-width:1}"
    ".chart .faint{fill:none;stroke:var(--faint);stroke-width:1}"
    "@media screen and (min-width:900px){.chart td:first-child{position:sticky;left:0;z-index:1}}"
    "@media print{.chart{overflow:visible;max-height:none;border:0}.chart thead{position:static}"
    ".chart tr{break-inside:avoid}}";

namespace {

constexpr double kUnit = kTwipsPerPixel / 2;  // drawings count in half pixels
constexpr int kBandUnits = 2 * 480;           // a band and the headings stand on a page of paper
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

/// What stands between two edges of a surface, in units.
struct Part {
    int left, top, right, bottom;
};

std::string LinePath(const DrawItem& item, const Part& part) {
    int x1 = Units(item.x1), y1 = Units(item.y1), x2 = Units(item.x2), y2 = Units(item.y2);
    if (x1 == x2 || y1 == y2) {
        for (int* x : {&x1, &x2}) *x = std::clamp(*x, part.left - kOutside, part.right + kOutside);
        for (int* y : {&y1, &y2}) *y = std::clamp(*y, part.top - kOutside, part.bottom + kOutside);
        if (x1 == x2 && (x1 < part.left - 2 || x1 > part.right + 2)) return {};
        if (y1 == y2 && (y1 < part.top - 2 || y1 > part.bottom + 2)) return {};
        const auto [low, high] = x1 == x2 ? std::minmax(y1, y2) : std::minmax(x1, x2);
        if (x1 == x2) return "M" + PointText(x1, low) + "V" + std::to_string(high);
        return "M" + PointText(low, y1) + "H" + std::to_string(high);
    }
    return "M" + PointText(x1, y1) + "L" + PointText(x2, y2);
}

std::string AreaPath(const DrawItem& item) {
    const int x1 = Units(item.x1), y1 = Units(item.y1), x2 = Units(item.x2), y2 = Units(item.y2);
    const int middleX = Units((item.x1 + item.x2) / 2.0), middleY = Units((item.y1 + item.y2) / 2.0);
    switch (item.kind) {
        case DrawItem::Kind::Rect:
            return "M" + PointText(x1, y1) + "H" + std::to_string(x2) + "V" + std::to_string(y2) + "H" +
                   std::to_string(x1) + "z";
        case DrawItem::Kind::Milestone:
            return "M" + PointText(middleX, y1) + "L" + PointText(x2, middleY) + " " +
                   PointText(middleX, y2) + " " + PointText(x1, middleY) + "z";
        default:
            break;
    }
    if (item.apex == Apex::Right)
        return "M" + PointText(x1, y1) + "L" + PointText(x2, middleY) + " " + PointText(x1, y2) + "z";
    const bool up = item.apex == Apex::Up;
    return "M" + PointText(x1, up ? y2 : y1) + "H" + std::to_string(x2) + "L" +
           PointText(middleX, up ? y1 : y2) + "z";
}

/// The text of one line, which stands from, around or before `x`.
void AddText(std::string& out, int x, int y, std::string_view text, const std::string& look = {}) {
    if (text.empty()) return;
    out += "<text" + (look.empty() ? "" : " class=\"" + look + "\"") + " x=" + std::to_string(x) +
           " y=" + std::to_string(y) + ">" + EscapedHtml(text, " ") + "</text>";
}

class Drawing {
  public:
    Drawing(const Vwindow& surface, PageColors& colors, const std::function<std::string(int, int)>& tip)
        : surface_(surface),
          colors_(colors),
          tip_(tip),
          footer_(surface.Rows() - (surface.HasFooter() ? 1 : 0)),
          width_(Units(surface.ContentWidth()) + 2) {}

    std::string Html() {
        std::string html = "<table role=presentation><thead>";
        AddRow(html, 0, 1);
        html += "</thead><tbody>";
        for (int row = 1, next = 1; row < surface_.Rows(); row = next) {
            const int top = Top(row);
            for (next = row + 1; next < surface_.Rows() && Top(next + 1) - top <= kBandUnits;) ++next;
            AddRow(html, row, next);
        }
        return html + "</tbody></table>";
    }

  private:
    int Top(int row) const { return Units(surface_.RowPos(row)); }
    int Left(int col) const { return Units(surface_.ColPos(col)); }

    void AddRow(std::string& html, int row, int next) {
        const int edge = Left(surface_.FixedCols());
        html += "<tr>";
        AddPart(html, {0, Top(row), edge, Top(next)}, row, next);
        AddPart(html, {edge, Top(row), width_, Top(next)}, row, next);
        html += "\n";
    }

    void AddPart(std::string& html, const Part& part, int row, int next) {
        const std::string width = std::to_string((part.right - part.left) / 2),
                          height = std::to_string((part.bottom - part.top) / 2);
        // The cells of a heading tell a browser how wide the columns are.
        html += "<td" + (row == 0 ? " style=\"width:" + width + "px\"" : std::string()) +
                "><div class=band style=\"height:" + height + "px\"><svg width=" + width +
                " height=" + height + " viewBox=\"" + PointText(part.left, part.top) + " " +
                std::to_string(part.right - part.left) + " " + std::to_string(part.bottom - part.top) + "\">";
        const int firstCol = part.left == 0 ? 0 : surface_.FixedCols();
        const int endCol = part.left == 0 ? surface_.FixedCols() : surface_.Cols();
        AddGrid(html, part, row, next, firstCol, endCol);
        if (row == 0) AddHeading(html, firstCol, endCol);
        for (int at = std::max(row, 1); at < std::min(next, footer_); ++at) {
            for (int col = firstCol; col < endCol; ++col) {
                if (!surface_.IsTimeColumn(col)) AddCell(html, at, col);
            }
        }
        AddItems(html, part);
        html += "</svg></div>";
    }

    void AddGrid(std::string& html, const Part& part, int row, int next, int firstCol, int endCol) const {
        std::string grid, faint;
        const int bottom = std::min(part.bottom, Top(footer_)), right = Left(endCol);
        if (part.top >= bottom) return;
        for (int col = firstCol; col <= endCol; ++col) {
            const bool time = col > 0 && col < surface_.Cols() && surface_.IsTimeColumn(col) &&
                              surface_.IsTimeColumn(col - 1);
            (time ? faint : grid) += "M" + PointText(Left(col), part.top) + "V" + std::to_string(bottom);
        }
        for (int at = row; at <= std::min(next, footer_); ++at)
            grid += "M" + PointText(part.left, Top(at)) + "H" + std::to_string(right);
        if (row == 0) {
            const int middle = Units(surface_.RowPos(1) / 2.0);
            for (const auto& label : surface_.UpperLabels()) {
                if (label.firstCol < firstCol || label.firstCol >= endCol) continue;
                grid += "M" + PointText(Left(label.firstCol), 0) + "V" + std::to_string(part.bottom) + "M" +
                        PointText(Left(label.firstCol), middle) + "H" + std::to_string(Left(label.lastCol));
            }
        }
        if (!faint.empty()) html += "<path class=faint d=\"" + faint + "\"/>";
        html += "<path class=grid d=\"" + grid + "\"/>";
    }

    void AddHeading(std::string& html, int firstCol, int endCol) const {
        const int height = Top(1), half = Units(surface_.RowPos(1) / 2.0);
        const auto middle = [&](int top, int bottom) {
            return (top + bottom - kLineUnits) / 2 + kAscentUnits;
        };
        for (int col = firstCol; col < endCol; ++col) {
            const int center = (Left(col) + Left(col + 1)) / 2;
            if (surface_.IsTimeColumn(col)) {
                AddText(html, center, middle(half, height), surface_.ColumnTitle(col), "mid");
                continue;
            }
            std::vector<std::string_view> lines;
            SplitLines(surface_.ColumnTitle(col), lines);
            int y = (height - kLineUnits * static_cast<int>(lines.size())) / 2 + kAscentUnits;
            for (const std::string_view line : lines) {
                AddText(html, center, y, line, "mid");
                y += kLineUnits;
            }
        }
        for (const auto& label : surface_.UpperLabels()) {
            if (label.firstCol >= firstCol && label.firstCol < endCol)
                AddText(html, Left(label.firstCol) + 6, middle(0, half), label.text);
        }
    }

    void AddCell(std::string& html, int row, int col) {
        lines_.clear();
        surface_.CellLines(row, col, lines_);
        const int margin = Units(surface_.CellMargin());
        int x = Left(col) + margin;
        std::string look;
        const Alignment alignment =
            surface_.CellMarkC(row, col) ? Alignment::Center : surface_.ColumnAlignment(col);
        if (alignment == Alignment::Right || alignment == Alignment::RightBottom) {
            x = Left(col + 1) - margin;
            look = "end";
        } else if (alignment != Alignment::Left) {
            x = (Left(col) + Left(col + 1)) / 2;
            look = "mid";
        }
        if (surface_.CellMarkB(row, col)) look += look.empty() ? "bold" : " bold";
        const int height = kLineUnits * static_cast<int>(lines_.size());
        int y = (Top(row) + Top(row + 1) - height) / 2;
        if (alignment == Alignment::RightBottom) y = Top(row + 1) - height;
        for (const std::string_view line : lines_) {
            AddText(html, x, y + kAscentUnits, line, look);
            y += kLineUnits;
        }
    }

    void AddItems(std::string& html, const Part& part) {
        const auto twips = [](int units) { return static_cast<int>(units * kUnit); };
        surface_.ItemsIn(twips(part.left), twips(part.top), twips(part.right), twips(part.bottom), found_);
        Paths paths(html, colors_);
        for (const std::int32_t index : found_) {
            const DrawItem& item = surface_.Items()[static_cast<std::size_t>(index)];
            if (item.kind == DrawItem::Kind::Text) {
                paths.Close();
                AddDrawnText(html, item);
            } else if (item.kind == DrawItem::Kind::Line) {
                const std::string path = LinePath(item, part);
                if (!path.empty()) paths.Add(colors_.ClassOf(item.border, item.border, item.width), "", path);
            } else {
                const bool tells = tip_ && item.kind != DrawItem::Kind::Triangle;
                paths.Add(item.kind == DrawItem::Kind::Rect && item.hatch != Hatch::Solid
                              ? colors_.OutlineClassOf(item.border)
                              : colors_.ClassOf(item.fill, item.border, 1),
                          tells ? tip_((item.x1 + item.x2) / 2, (item.y1 + item.y2) / 2) : "",
                          AreaPath(item));
            }
        }
    }

    void AddDrawnText(std::string& html, const DrawItem& item) {
        std::vector<std::string_view> lines;
        SplitLines(item.text, lines);
        const double scale = item.small ? kSmallText : 1;
        int y = Units(item.y1) + static_cast<int>(std::lround(kAscentUnits * scale));
        for (const std::string_view line : lines) {
            AddText(html, Units(item.x1), y, line, item.small ? "small" : "");
            y += static_cast<int>(std::lround(kLineUnits * scale));
        }
    }

    const Vwindow& surface_;
    PageColors& colors_;
    const std::function<std::string(int, int)>& tip_;
    const int footer_;  ///< the row of the footer, or that behind the last
    const int width_;
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
