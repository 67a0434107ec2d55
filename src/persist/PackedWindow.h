#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vortan {

/// The last 8 KB or so of unpacked text, which tokens of a packed file point into. Packer and unpacker each
/// keep one and change it by the same calls, so that both always hold the same bytes.
///
/// The first 256 positions hold the byte values 0 to 255 for good: a character seen for the first time is
/// coded as its own position there. The rest starts as repeats of those and is overwritten from front to
/// back, turn after turn.
class PackedWindow {
  public:
    static constexpr std::size_t kSize = 8192;
    static constexpr std::size_t kFixed = 256;

    PackedWindow();

    const char* Data() const { return bytes_.data(); }
    std::string_view View(std::size_t position, std::size_t length) const {
        return {bytes_.data() + position, length};
    }

    /// Takes in the text of a token that pointed to `position`: a copy of what stands there, held outside
    /// the window and at most 128 characters. Returns where in the window the copy went.
    std::size_t Append(std::size_t position, std::string_view text);

  private:
    std::array<char, kSize> bytes_;
    std::size_t next_ = kSize;  // where the next text goes, if it fits there
};

}  // namespace vortan
