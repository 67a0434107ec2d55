#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vortan {

/// The packed form of a text, as bundle and configuration files hold it: two-byte tokens, each a position in
/// a sliding window and a length, then the four-byte suffix 0xFF 0xFF and the check sum. Text and packed
/// form are plain bytes; what the text means is the business of the token reader.

/// Packs `text`. Any bytes will do.
std::string PackText(std::string_view text);

struct UnpackResult {
    std::string text;           ///< what could be unpacked
    bool suffixFound = false;   ///< the packed bytes were ended by a whole suffix, so none are missing
    bool crcMatches = false;    ///< and its check sum is that of the text
    std::size_t bytesUsed = 0;  ///< packed bytes read, suffix included; what lies behind is not looked at
    bool tooLarge = false;      ///< gave up, as the text would have become longer than allowed
};

/// Unpacks up to the suffix or the end of `packed`, whichever comes first. Damaged bytes give wrong text, or
/// too little of it, and never a fault; the flags of the result tell. The text never exceeds `maxText` bytes
/// (a packed file may be a 64th of its text).
UnpackResult UnpackText(std::string_view packed, std::size_t maxText = std::size_t{1} << 30);

}  // namespace vortan
