#include "persist/TextEncoding.h"

#include <gtest/gtest.h>

namespace vortan {
namespace {

TEST(TextEncoding, Utf8IsKnownByTheStandard) {
    const struct {
        std::string_view bytes;
        bool valid;
    } cases[] = {
        {"", true},
        {"plain text of more than eight bytes", true},
        {{"nul \0 inside", 12}, true},
        {"caf\xC3\xA9", true},
        {"\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", true},
        {"caf\xE9", false},
        {"cut \xE2\x82", false},
        {"\x80", false},
        {"\xC0\xAF", false},          // overlong
        {"\xC1\xBF", false},          //
        {"\xE0\x9F\xBF", false},      //
        {"\xF0\x8F\xBF\xBF", false},  //
        {"\xED\xA0\x80", false},      // a surrogate
        {"\xF4\x90\x80\x80", false},  // above U+10FFFF
        {"\xF5\x80\x80\x80", false},  //
        {"\xE2\x82\xAC\xE2\x28\xAC", false},
        {"eight bytes, then\xFF", false},
    };
    for (const auto& test : cases) EXPECT_EQ(IsUtf8(test.bytes), test.valid) << test.bytes;
}

TEST(TextEncoding, FilesBecomeUtf8) {
    EXPECT_EQ(ToUtf8("na\xC3\xAFve"), "na\xC3\xAFve");
    EXPECT_EQ(ToUtf8("\xEF\xBB\xBFPROJECT"), "PROJECT");
    EXPECT_EQ(ToUtf8("\xEF\xBB\xBF"), "");
    // As soon as one byte is not UTF-8, all are in the code page.
    EXPECT_EQ(ToUtf8("\xC3\xA9 \xE9"), "\xC3\x83\xC2\xA9 \xC3\xA9");
    EXPECT_EQ(ToUtf8("\x80 100 \x96 M\xFCller \xFF"), "\xE2\x82\xAC 100 \xE2\x80\x93 M\xC3\xBCller \xC3\xBF");
    EXPECT_EQ(ToUtf8("\x83\x8A\x9F\xA0"), "\xC6\x92\xC5\xA0\xC5\xB8\xC2\xA0");
    for (const char* const undefined : {"\x81", "\x8D", "\x8F", "\x90", "\x9D"})
        EXPECT_EQ(ToUtf8(undefined), "\xEF\xBF\xBD");
}

}  // namespace
}  // namespace vortan
