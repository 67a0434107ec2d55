#include <string>
#include <string_view>

#include "FuzzTargets.h"
#include "persist/PackedText.h"

namespace {

void ExpectRestored(std::string_view text) {
    const std::string packed = vortan::PackText(text);
    const vortan::UnpackResult result = vortan::UnpackText(packed, text.size());
    FuzzCheck(result.text == text, "packing and unpacking changed the text");
    FuzzCheck(result.suffixFound && result.crcMatches && !result.tooLarge, "the packed text is not accepted");
    FuzzCheck(result.bytesUsed == packed.size(), "the packed text is not read to its end");
}

/// The bytes as a packed file and what comes out of it packed again; and the bytes as a text.
void FuzzUnpack(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMaxText = 1 << 16;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const vortan::UnpackResult result = vortan::UnpackText(input, kMaxText);
    FuzzCheck(result.text.size() <= kMaxText, "the text is longer than allowed");
    FuzzCheck(result.bytesUsed <= size, "more bytes used than given");
    FuzzCheck(result.suffixFound || !result.crcMatches, "a check sum without a suffix");
    ExpectRestored(result.text);
    ExpectRestored(input);
}

const FuzzTarget kTarget("unpack", FuzzUnpack);

}  // namespace
