#include "transfer/XmlText.h"

#include <algorithm>

#include "model/Characters.h"
#include "persist/TextEncoding.h"

namespace vortan {
namespace {

void AppendUtf8(std::string& out, std::uint32_t code) {
    const auto put = [&out](std::uint32_t byte) { out += static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

std::string FromUtf16(std::string_view bytes, bool bigEndian) {
    std::string out;
    out.reserve(bytes.size() / 2 + bytes.size() / 8);
    const auto unit = [&](std::size_t at) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return static_cast<std::uint32_t>(bigEndian ? first << 8 | second : second << 8 | first);
    };
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        std::uint32_t code = unit(at);
        const bool high = code >= 0xD800 && code < 0xDC00;
        if (high && at + 3 < bytes.size() && unit(at + 2) >= 0xDC00 && unit(at + 2) < 0xE000) {
            code = 0x10000 + ((code - 0xD800) << 10) + (unit(at + 2) - 0xDC00);
            at += 2;
        } else if (code >= 0xD800 && code < 0xE000) {
            code = 0xFFFD;
        }
        AppendUtf8(out, code);
    }
    return out;
}

/// Whether the declaration in front names an encoding of one byte a character, of the Latin family.
bool DeclaresLatin(std::string_view text) {
    if (!text.starts_with("<?xml")) return false;
    std::string declaration(text.substr(0, text.substr(0, 300).find("?>")));
    std::transform(declaration.begin(), declaration.end(), declaration.begin(), LowerCase);
    return declaration.find("iso-8859-1") != std::string::npos ||
           declaration.find("windows-1252") != std::string::npos ||
           declaration.find("latin1") != std::string::npos;
}

}  // namespace

std::string XmlToUtf8(std::string bytes) {
    const std::string_view text = bytes;
    if (text.starts_with("\xFF\xFE")) return FromUtf16(text.substr(2), false);
    if (text.starts_with("\xFE\xFF")) return FromUtf16(text.substr(2), true);
    if (text.starts_with(std::string_view("<\0", 2))) return FromUtf16(text, false);
    if (text.starts_with(std::string_view("\0<", 2))) return FromUtf16(text, true);
    if (DeclaresLatin(text)) {
        // A lone continuation byte is no UTF-8, so that nothing is taken for it by chance.
        std::string latin = ToUtf8("\x80" + std::move(bytes));
        return latin.erase(0, std::string_view("\xE2\x82\xAC").size());
    }
    return ToUtf8(std::move(bytes));
}

LineStarts::LineStarts(std::string_view text) {
    starts_.push_back(0);
    for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1))
        starts_.push_back(static_cast<std::uint32_t>(at + 1));
}

std::int32_t LineStarts::LineAt(std::ptrdiff_t offset) const {
    if (offset < 0) return 1;
    const auto next = std::upper_bound(starts_.begin(), starts_.end(), static_cast<std::uint32_t>(offset));
    return static_cast<std::int32_t>(next - starts_.begin());
}

std::string CleanText(std::string_view text) {
    std::string clean(text);
    for (char& c : clean)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = ' ';
    if (!IsUtf8(clean)) {
        // Numbered characters of a file may be halves of a pair.
        std::string kept;
        for (std::size_t at = 0; at < clean.size();) {
            const auto lead = static_cast<unsigned char>(clean[at]);
            const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
            const std::string_view one = std::string_view(clean).substr(at, size);
            if (IsUtf8(one)) {
                kept += one;
                at += size;
            } else {
                ++at;
            }
        }
        clean = kept;
    }
    return std::string(TrimAll(clean, [](char c) { return c == ' '; }));
}

}  // namespace vortan
