#include "charts/DrawList.h"

#include <algorithm>
#include <utility>

#include "charts/Twips.h"

namespace vortan {
namespace {

constexpr std::int64_t kMaxBands = 65536;
constexpr std::int64_t kMaxBandsOfItem = 8;

struct Extent {
    std::int64_t top, bottom;
};

Extent VerticalExtent(const DrawItem& item) {
    const auto pen = static_cast<std::int64_t>(kTwipsPerPixel * std::max<int>(item.width, 1));
    const auto [top, bottom] = std::minmax(item.y1, item.y2);
    return {top - pen, bottom + pen};
}

bool MayTouch(const DrawItem& item, std::int64_t left, std::int64_t right) {
    const auto [first, last] = std::minmax<std::int64_t>({item.x1, item.x2});
    const auto pen = static_cast<std::int64_t>(kTwipsPerPixel * std::max<int>(item.width, 1));
    const std::int64_t room = item.kind == DrawItem::Kind::Text ? last - first : pen;
    return first - room <= right && last + room >= left;
}

}  // namespace

void DrawList::Clear(int bandHeight) {
    bandHeight_ = std::max(bandHeight, 1);
    right_ = bottom_ = slantedLines_ = 0;
    items_.clear();
    bands_.clear();
    tall_.clear();
}

void DrawList::Add(DrawItem item) {
    right_ = std::max({right_, item.x1, item.x2});
    bottom_ = std::max({bottom_, item.y1, item.y2});
    if (item.kind == DrawItem::Kind::Line && item.x1 != item.x2 && item.y1 != item.y2) ++slantedLines_;
    const auto index = static_cast<std::int32_t>(items_.size());
    const Extent extent = VerticalExtent(item);
    items_.push_back(std::move(item));
    const std::int64_t first = std::max<std::int64_t>(extent.top, 0) / bandHeight_;
    const std::int64_t last = std::max<std::int64_t>(extent.bottom, 0) / bandHeight_;
    if (last >= kMaxBands || last - first >= kMaxBandsOfItem) {
        tall_.push_back(index);
        return;
    }
    if (static_cast<std::size_t>(last) >= bands_.size()) bands_.resize(static_cast<std::size_t>(last) + 1);
    for (std::int64_t band = first; band <= last; ++band)
        bands_[static_cast<std::size_t>(band)].push_back(index);
}

void DrawList::Between(int top, int bottom, std::vector<std::int32_t>& found, int left, int right) const {
    found.clear();
    if (top > bottom) return;
    const auto addTouching = [&](const std::vector<std::int32_t>& indexes) {
        for (const std::int32_t index : indexes) {
            const DrawItem& item = items_[static_cast<std::size_t>(index)];
            const Extent extent = VerticalExtent(item);
            if (extent.top <= bottom && extent.bottom >= top && MayTouch(item, left, right))
                found.push_back(index);
        }
    };
    addTouching(tall_);
    // What lies above the surface is filed in the first band.
    const auto first = static_cast<std::size_t>(std::max(top, 0) / bandHeight_);
    const auto last = static_cast<std::size_t>(std::max(bottom, 0) / bandHeight_);
    for (std::size_t band = first; band <= last && band < bands_.size(); ++band) addTouching(bands_[band]);
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
}

}  // namespace vortan
