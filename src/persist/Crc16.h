#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vortan {

/// The check sum of a packed file: CRC-16 with polynomial 0x1021, most significant bit first, start value 0,
/// no final inversion. Text followed by its own check sum, high byte first, comes to zero.
class Crc16 {
  public:
    void Add(std::string_view text) {
        std::uint16_t value = value_;
        for (const char c : text) {
            value =
                static_cast<std::uint16_t>(value << 8 ^ kTable[(value >> 8) ^ static_cast<std::uint8_t>(c)]);
        }
        value_ = value;
    }

    std::uint8_t High() const { return static_cast<std::uint8_t>(value_ >> 8); }
    std::uint8_t Low() const { return static_cast<std::uint8_t>(value_); }
    bool IsZero() const { return value_ == 0; }

  private:
    static constexpr auto kTable = [] {
        std::array<std::uint16_t, 256> table{};
        for (std::size_t byte = 0; byte < table.size(); ++byte) {
            unsigned remainder = static_cast<unsigned>(byte) << 8;
            for (int bit = 0; bit < 8; ++bit) {
                remainder = (remainder & 0x8000u) != 0 ? remainder << 1 ^ 0x1021u : remainder << 1;
            }
            table[byte] = static_cast<std::uint16_t>(remainder);
        }
        return table;
    }();

    std::uint16_t value_ = 0;
};

}  // namespace vortan
