#include <algorithm>
#include <utility>

#include "charts/TextLines.h"
#include "charts/Vwindow.h"
#include "model/Rounding.h"

namespace vortan {

void Vwindow::AddItem(DrawItem::Kind kind, double x1, double y1, double x2, double y2, Color border,
                      Color fill, Hatch hatch, Apex apex) {
    DrawItem item;
    item.kind = kind;
    item.hatch = hatch;
    item.apex = apex;
    item.x1 = RoundToInt32(std::min(x1, x2));
    item.y1 = RoundToInt32(std::min(y1, y2));
    item.x2 = RoundToInt32(std::max(x1, x2));
    item.y2 = RoundToInt32(std::max(y1, y2));
    item.border = border;
    item.fill = fill;
    picture_.Add(std::move(item));
}

void Vwindow::DrawLine(double x1, double y1, double x2, double y2, Color color, int width) {
    DrawItem item;
    item.kind = DrawItem::Kind::Line;
    item.width = static_cast<std::uint8_t>(std::clamp(width, 1, 255));
    item.x1 = RoundToInt32(x1);
    item.y1 = RoundToInt32(y1);
    item.x2 = RoundToInt32(x2);
    item.y2 = RoundToInt32(y2);
    item.border = color;
    picture_.Add(std::move(item));
}

void Vwindow::DrawRect(double x1, double y1, double x2, double y2, Color border, Color fill, Hatch hatch) {
    AddItem(DrawItem::Kind::Rect, x1, y1, x2, y2, border, fill, hatch);
}

void Vwindow::DrawMilestone(double x1, double y1, double x2, double y2, Color border, Color fill) {
    AddItem(DrawItem::Kind::Milestone, x1, y1, x2, y2, border, fill);
}

void Vwindow::DrawTriangle(double x1, double y1, double x2, double y2, Color border, Color fill, Apex apex) {
    AddItem(DrawItem::Kind::Triangle, x1, y1, x2, y2, border, fill, Hatch::Solid, apex);
}

void Vwindow::DrawText(double x, double y, const std::string& text, Color color) {
    AddText(x, y, text, color, false);
}

void Vwindow::DrawSmallText(double x, double y, const std::string& text, Color color) {
    AddText(x, y, text, color, true);
}

void Vwindow::AddText(double x, double y, const std::string& text, Color color, bool small) {
    const double scale = small ? kSmallText : 1;
    std::vector<std::string_view> lines;
    SplitLines(text, lines);
    int width = 0;
    for (const std::string_view line : lines) width = std::max(width, metrics_->TextWidth(line));
    DrawItem item;
    item.kind = DrawItem::Kind::Text;
    item.x1 = RoundToInt32(x);
    item.y1 = RoundToInt32(y);
    item.x2 = RoundToInt32(x + scale * width);
    item.y2 = RoundToInt32(y + scale * static_cast<double>(lines.size()) * TextHeight());
    item.border = color;
    item.small = small;
    item.text = text;
    picture_.Add(std::move(item));
}

void Vwindow::DrawDateLine(DateTime when, Color color) {
    DateTime first, last;
    GetShownDates(first, last);
    if (!(when >= first && when <= last)) return;
    const int x = DateToX(when);
    DrawLine(x, 0, x, RowPos(Rows()), color);
}

void Vwindow::EndGraphics() {
    keyRight_ = 0;
    if (hasFooter_)
        for (const DrawItem& item : Items())
            if (std::min(item.y1, item.y2) > DataBottom())
                keyRight_ = std::max({keyRight_, item.x1, item.x2});
    complete_ = true;
}

bool Vwindow::IsComplete() const {
    return complete_;
}

}  // namespace vortan
