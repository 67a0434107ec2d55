#include "persist/TextEncoding.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace vortan {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// What Windows-1252 has at 0x80 to 0x9F; everything else is at its own number.
constexpr std::array<char16_t, 32> kHigh = {
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178,
};

/// How many of the bytes from `at` on are ASCII, counted in steps of 8.
std::size_t AsciiRun(std::string_view bytes, std::size_t at) {
    std::size_t end = at;
    for (std::uint64_t word; end + sizeof word <= bytes.size(); end += sizeof word) {
        std::memcpy(&word, bytes.data() + end, sizeof word);
        if ((word & 0x8080808080808080u) != 0) break;
    }
    return end - at;
}

/// Length of the character at the front of `bytes`, which is not empty; 0 if there is none.
std::size_t CharacterLength(std::string_view bytes) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned first = byte(0);
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || bytes.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return 0;
    }
    // The second byte alone tells an overlong form, a surrogate, or a number that is too high.
    const unsigned least = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const unsigned most = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    return byte(1) >= least && byte(1) <= most ? length : 0;
}

void AppendCharacter(std::string& out, char16_t character) {
    if (character < 0x80) {
        out += static_cast<char>(character);
    } else if (character < 0x800) {
        out += static_cast<char>(0xC0 | character >> 6);
        out += static_cast<char>(0x80 | (character & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | character >> 12);
        out += static_cast<char>(0x80 | (character >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (character & 0x3F));
    }
}

}  // namespace

bool IsUtf8(std::string_view bytes) {
    for (std::size_t at = AsciiRun(bytes, 0); at < bytes.size();) {
        const std::size_t length = CharacterLength(bytes.substr(at));
        if (length == 0) return false;
        at += length;
        at += AsciiRun(bytes, at);
    }
    return true;
}

std::string ToUtf8(std::string bytes) {
    if (IsUtf8(bytes)) {
        if (bytes.starts_with(kByteOrderMark)) bytes.erase(0, kByteOrderMark.size());
        return bytes;
    }
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        AppendCharacter(out, byte >= 0x80 && byte < 0xA0 ? kHigh[byte - 0x80] : char16_t{byte});
    }
    return out;
}

}  // namespace vortan
