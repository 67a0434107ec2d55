#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "persist/PackedWindow.h"

namespace vortan {

/// Finds where in a PackedWindow some `Gram` characters in a row stand, in order of position.
///
/// Every position is linked into the chain of the hash of its characters, and each chain is kept sorted by
/// position, so a walk along it meets all places of a text from front to back, besides a few others with the
/// same hash. Since a window fills from front to back, a new place belongs just behind the one last added to
/// its chain: adding starts to look there and, over a whole turn of the window, costs constant time.
template <std::size_t Gram>
class GramIndex {
  public:
    static constexpr std::size_t kEnd = PackedWindow::kSize;  ///< at or above: no position, the chain's end

    explicit GramIndex(const PackedWindow& window) {
        for (std::size_t key = 0; key < kKeys; ++key)
            next_[kEnd + key] = prev_[kEnd + key] = Node(kEnd + key);
        for (std::size_t key = 0; key < kKeys; ++key) last_[key] = Node(kEnd + key);
        keys_.fill(kNoKey);
        Refresh(window, 0, PackedWindow::kSize);
    }

    /// Brings the index up to date after `count` bytes of the window from `start` on were overwritten.
    void Refresh(const PackedWindow& window, std::size_t start, std::size_t count) {
        const std::size_t first = start < Gram - 1 ? 0 : start - (Gram - 1);
        const std::size_t behind = start + count < kPlaces ? start + count : kPlaces;
        for (std::size_t place = first; place < behind; ++place) {
            const Node key = Key(window.Data() + place);
            if (key == keys_[place]) continue;
            if (keys_[place] != kNoKey) Unlink(place);
            Link(place, key);
        }
    }

    /// The first position from `from` on that may hold `gram`, or a value of at least kEnd if there is none.
    std::size_t FirstFrom(std::size_t from, const char* gram) const {
        const Node key = Key(gram);
        if (from > 0 && keys_[from - 1] == key) return next_[from - 1];
        std::size_t place = next_[kEnd + key];
        while (place < from) place = next_[place];
        return place;
    }

    /// The next position behind `place`, itself from an answer, in the same chain.
    std::size_t Next(std::size_t place) const { return next_[place]; }

  private:
    using Node = std::uint16_t;  // a position, or kEnd + key: both ends of that key's ring
    static constexpr int kKeyBits = 13;
    static constexpr std::size_t kKeys = std::size_t{1} << kKeyBits;
    static constexpr std::size_t kPlaces = PackedWindow::kSize - (Gram - 1);
    static constexpr Node kNoKey = kKeys;

    static Node Key(const char* gram) {
        std::uint32_t value = 0;
        std::memcpy(&value, gram, Gram);
        return static_cast<Node>(value * 2654435761u >> (32 - kKeyBits));
    }

    void Unlink(std::size_t place) {
        const Node before = prev_[place];
        const Node behind = next_[place];
        next_[before] = behind;
        prev_[behind] = before;
        Node& last = last_[keys_[place]];
        if (last == place) last = before;
    }

    void Link(std::size_t place, Node key) {
        std::size_t before = last_[key];
        while (before < kEnd && before > place) before = prev_[before];
        while (next_[before] < place) before = next_[before];
        const Node behind = next_[before];
        next_[place] = behind;
        prev_[place] = Node(before);
        next_[before] = prev_[behind] = Node(place);
        last_[key] = Node(place);
        keys_[place] = key;
    }

    std::array<Node, kEnd + kKeys> next_;
    std::array<Node, kEnd + kKeys> prev_;
    std::array<Node, kKeys> last_;                // by key: the place last added, or the ring's end
    std::array<Node, PackedWindow::kSize> keys_;  // by position: the chain that it is in
};

}  // namespace vortan
