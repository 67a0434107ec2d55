#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace vortan {

/// Keeps copies of many texts side by side, and frees them all at once: a table of a large plan has hundreds
/// of thousands of short ones, and a piece of memory for each costs more than what they say. A copy stays
/// where it is as long as the store, also when the store is moved.
class TextStore {
  public:
    std::string_view Keep(std::string_view text) {
        if (text.empty()) return {};
        if (text.size() > room_) NewBlock(text.size());
        char* place = end_ - room_;
        std::memcpy(place, text.data(), text.size());
        room_ -= text.size();
        return {place, text.size()};
    }
    /// Nothing that was kept is there any more.
    void Clear() {
        blocks_.clear();
        end_ = nullptr;
        room_ = 0;
    }

  private:
    static constexpr std::size_t kSmallest = 1 << 10, kLargest = 1 << 16;  // bytes of a block

    /// Blocks double, so that small tables stay small; a text that fits none has one to itself.
    void NewBlock(std::size_t needed) {
        const std::size_t doubled = kSmallest << std::min<std::size_t>(blocks_.size(), 6);
        const std::size_t size = std::max(needed, std::min(doubled, kLargest));
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(size));
        end_ = blocks_.back().get() + size;
        room_ = size;
    }

    std::vector<std::unique_ptr<char[]>> blocks_;
    char* end_ = nullptr;   ///< of the last block
    std::size_t room_ = 0;  ///< bytes free before it
};

}  // namespace vortan
