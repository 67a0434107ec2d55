#include "persist/PackedText.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

#include "persist/Crc16.h"
#include "persist/GramIndex.h"
#include "persist/PackedWindow.h"

namespace vortan {
namespace {

constexpr std::size_t kWindow = PackedWindow::kSize;
constexpr std::size_t kLongestRun = 128;

/// Packs one text. The characters not yet written, the pending run, are always a piece of the text itself,
/// and stand in the window at match_ as well.
class Packer {
  public:
    explicit Packer(std::string_view text) : text_(text), pairs_(window_), quads_(window_) {}

    std::string Pack() {
        packed_.reserve(text_.size() / 2 + 4);
        while (begin_ < text_.size()) {
            if (begin_ + length_ == text_.size() || !Extend(text_[begin_ + length_])) {
                WritePartial();
            } else if (++length_ == kLongestRun) {
                WritePartial();
            }
        }
        Crc16 crc;
        crc.Add(text_);
        PutBytes(0xFF, 0xFF);
        PutBytes(crc.High(), crc.Low());
        return std::move(packed_);
    }

  private:
    /// Sees to it that the pending run with `c` behind it stands in the window at match_, or answers false.
    bool Extend(char c) {
        if (length_ == 0) match_ = static_cast<std::uint8_t>(c);
        const std::size_t end = match_ + length_;
        if (end < kWindow && window_.Data()[end] == c) return true;
        // What a run of this length may cost in tries, and with it which place is taken, is part of the
        // format: other answers would unpack to the same text, but make other files.
        if (length_ == 1) return ExtendSingle(c);
        return length_ < 4 ? Search(pairs_, c) : Search(quads_, c);
    }

    /// Search for a run of one character, which has one try.
    bool ExtendSingle(char c) {
        const char* const data = window_.Data();
        const std::size_t from = match_ + 1;
        const void* const found = std::memchr(data + from, text_[begin_], kWindow - from);
        if (found == nullptr) return false;
        const std::size_t place = static_cast<std::size_t>(static_cast<const char*>(found) - data);
        if (place + 1 >= kWindow || data[place + 1] != c) return false;
        match_ = place;
        return true;
    }

    /// Looks behind match_, and then from the front, for a place of the pending run that goes on with `c`.
    /// Each place of the run, and the jump to the front, counts as one of as many tries as the run is long.
    template <std::size_t Gram>
    bool Search(const GramIndex<Gram>& index, char c) {
        const char* const data = window_.Data();
        const char* const run = text_.data() + begin_;
        const std::size_t last = kWindow - length_;  // the last place that the run can have
        bool wrapped = false;
        std::size_t place = index.FirstFrom(match_ + 1, run);
        for (std::size_t tries = 0; tries < length_; ++tries) {
            while (place <= last && std::memcmp(data + place, run, length_) != 0) place = index.Next(place);
            if (place >= last) {  // none, or one that has no room for another character
                if (wrapped) return false;
                wrapped = true;
                place = index.FirstFrom(0, run);
                continue;
            }
            if (wrapped && place >= match_) return false;  // full circle: the rest was tried before
            if (data[place + length_] == c) {
                match_ = place;
                return true;
            }
            place = index.Next(place);
        }
        return false;
    }

    /// Writes the longest piece of the pending run, which must not be empty, that one token can stand for.
    void WritePartial() {
        const std::string_view run = text_.substr(begin_, length_);
        // The copy that a former piece of the run left in the window may have destroyed the rest of its own
        // source. Then the rest starts over as new characters.
        if (window_.View(match_, length_) != run) {
            length_ = 0;
            return;
        }
        const std::size_t piece = std::bit_floor(length_);
        const auto exponent = static_cast<std::size_t>(std::countr_zero(piece));
        PutBytes(match_ / 32, match_ % 32 * 8 + exponent);
        const std::size_t start = window_.Append(match_, run.substr(0, piece));
        pairs_.Refresh(window_, start, piece);
        quads_.Refresh(window_, start, piece);
        match_ += piece;
        begin_ += piece;
        length_ -= piece;
    }

    void PutBytes(std::size_t first, std::size_t second) {
        packed_ += static_cast<char>(first);
        packed_ += static_cast<char>(second);
    }

    std::string_view text_;
    std::string packed_;
    PackedWindow window_;
    GramIndex<2> pairs_;
    GramIndex<4> quads_;
    std::size_t begin_ = 0;   // of the pending run in the text
    std::size_t length_ = 0;  // of the pending run
    std::size_t match_ = 0;   // of the pending run in the window
};

}  // namespace

std::string PackText(std::string_view text) {
    // On the heap, as the index is large for a stack.
    return std::make_unique<Packer>(text)->Pack();
}

UnpackResult UnpackText(std::string_view packed, std::size_t maxText) {
    UnpackResult result;
    result.text.reserve(std::min(maxText, packed.size() * 2));
    PackedWindow window;
    Crc16 crc;
    while (packed.size() - result.bytesUsed >= 2) {
        const std::size_t first = static_cast<std::uint8_t>(packed[result.bytesUsed]);
        const std::size_t second = static_cast<std::uint8_t>(packed[result.bytesUsed + 1]);
        const std::size_t position = first * 32 + second / 8;
        const std::size_t length = std::size_t{1} << second % 8;
        if (position + length > kWindow) {  // points out of the window: no token, but the suffix
            const std::string_view sum = packed.substr(result.bytesUsed + 2, 2);
            crc.Add(sum);
            result.bytesUsed += 2 + sum.size();
            result.suffixFound = sum.size() == 2;
            result.crcMatches = result.suffixFound && crc.IsZero();
            return result;
        }
        if (length > maxText - result.text.size()) {
            result.tooLarge = true;
            return result;
        }
        const std::string_view source = window.View(position, length);
        crc.Add(source);
        result.text.append(source);
        window.Append(position, std::string_view(result.text).substr(result.text.size() - length));
        result.bytesUsed += 2;
    }
    return result;
}

}  // namespace vortan
