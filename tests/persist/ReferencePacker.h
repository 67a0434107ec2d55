#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// A packer that does one small step at a time with plain searches, slow and easy to check by eye. The tests
/// hold the fast one against it: both must come to the same bytes.
class ReferencePacker {
  public:
    static constexpr std::size_t kSize = 8192;

    ReferencePacker() {
        for (std::size_t i = 0; i < kSize; ++i) buffer_ += static_cast<char>(i % 256);
    }

    std::string Pack(std::string_view text) {
        for (const char c : text) {
            AddToCrc(static_cast<std::uint8_t>(c));
            WritePackedChar(c);
        }
        while (!pending_.empty()) WritePartial();
        for (const unsigned byte : {0xFFu, 0xFFu, crc_ >> 8, crc_ & 0xFFu}) out_ += static_cast<char>(byte);
        return out_;
    }

    /// How often the rest of a run had lost its source and was started over.
    int Restarts() const { return restarts_; }

  private:
    void AddToCrc(unsigned byte) {
        crc_ ^= byte << 8;
        for (int bit = 0; bit < 8; ++bit) crc_ = (crc_ & 0x8000) ? (crc_ << 1 ^ 0x1021) & 0xFFFF : crc_ << 1;
    }

    bool Holds(std::size_t position, char c) const { return position < kSize && buffer_[position] == c; }

    void WritePackedChar(char c) {
        for (;;) {
            if (pending_.empty()) match_ = static_cast<std::uint8_t>(c);
            if (Holds(match_ + pending_.size(), c) || FindElsewhere(c)) break;
            WritePartial();
        }
        pending_ += c;
        if (pending_.size() == 128) WritePartial();
    }

    bool FindElsewhere(char c) {
        std::size_t from = match_ + 1;
        for (std::size_t tries = 0; tries < pending_.size(); ++tries) {
            const std::size_t found = buffer_.find(pending_, from);
            if (found == std::string::npos || found + pending_.size() >= kSize) {
                from = 0;
            } else if (Holds(found + pending_.size(), c)) {
                match_ = found;
                return true;
            } else {
                from = found + 1;
            }
        }
        return false;
    }

    void WritePartial() {
        if (buffer_.compare(match_, pending_.size(), pending_) != 0) {
            ++restarts_;
            std::string rest;
            rest.swap(pending_);
            for (const char c : rest) WritePackedChar(c);
            return;
        }
        std::size_t count = 1;
        unsigned exponent = 0;
        while (count * 2 <= pending_.size()) count *= 2, ++exponent;
        out_ += static_cast<char>(match_ / 32);
        out_ += static_cast<char>(match_ % 32 * 8 + exponent);
        if (next_ >= match_ && next_ < match_ + 2 * count) next_ = match_ + 2 * count;
        if (next_ + count > kSize) next_ = 256;
        buffer_.replace(next_, count, pending_, 0, count);
        pending_.erase(0, count);
        match_ += count;
        next_ += count;
    }

    std::string buffer_, pending_, out_;
    std::size_t match_ = 0;
    std::size_t next_ = kSize;
    unsigned crc_ = 0;
    int restarts_ = 0;
};
