#include "persist/PackedText.h"

#include <gtest/gtest.h>

#include <random>

#include "persist/Crc16.h"
#include "support/PlanFiles.h"

namespace vortan {
namespace {

using namespace std::string_literals;

std::string Golden(const std::string& name) {
    return FileBytes(TestFile("golden/packed/" + name));
}
std::string RandomText(std::string_view alphabet, std::size_t length, unsigned seed) {
    std::mt19937 random(seed);
    std::string text;
    while (text.size() < length) text += alphabet[random() % alphabet.size()];
    return text;
}

std::string AllBytes() {
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    return bytes;
}

/// Field lines with numbers that grow and jump about, as in a plan.
std::string PlanLines(std::size_t length, unsigned seed) {
    static const char* const kNames[] = {
        "  TaskID,",      "  Description,Task ", "  TaskRequired,Pump,",
        "TASK\r\n  Key,", "  OverheadRate,.",    "  Include,True\r\n  EarlyFinish,"};
    std::mt19937 random(seed);
    std::string text;
    for (unsigned line = 0; text.size() < length; ++line)
        text += kNames[random() % std::size(kNames)] + std::to_string(line / 3 + random() % 20) + "\r\n";
    return text;
}

/// Pieces cut out of the text itself and of the window's first filling: long runs, also over the borders.
std::string Echoes(std::size_t length, unsigned seed) {
    std::mt19937 random(seed);
    std::string text = AllBytes() + AllBytes();
    while (text.size() < length) {
        const std::size_t from = random() % text.size();
        text += text.substr(from, 1 + random() % 300);
        if (random() % 4 == 0) text += static_cast<char>(random());
    }
    return text;
}

void ExpectRoundTrip(const std::string& text, const std::string& packed) {
    const UnpackResult result = UnpackText(packed);
    EXPECT_TRUE(result.text == text && result.suffixFound && result.crcMatches && !result.tooLarge);
    EXPECT_EQ(result.bytesUsed, packed.size());
}

int SumOf(const std::string& bytes) {
    Crc16 sum;
    sum.Add(bytes);
    return sum.High() * 256 + sum.Low();
}

std::string Packed(const std::string& text) {
    std::string packed = PackText(text);
    ExpectRoundTrip(text, packed);
    return packed;
}

TEST(PackText, WritesTheGoldenFilesByteForByte) {
    for (const char* const name : {"p0", "p1", "p2"})
        EXPECT_TRUE(Packed(Golden(name + ".vta"s)) == Golden(name + ".vtb"s)) << name;
    EXPECT_EQ(Packed("A"), Golden("A.vtb"));
    EXPECT_EQ(Packed(""), Golden("empty.vtb"));
}

// How many bytes the packed form of a text has, and their check sum: what an earlier version wrote is written
// again. Each has been compared with a packer that searches character by character.
TEST(PackText, WritesTheSameBytesOfAnyText) {
    std::string shortTexts;
    for (unsigned seed = 0; seed < 300; ++seed) {
        const std::string text = RandomText(seed % 2 == 0 ? "aab" : "\xFD\xFE\xFF\x00\x01"s, seed, seed);
        shortTexts += Packed(text);
    }
    // Runs whose source the first part of their own copy may destroy.
    std::string overlaps;
    for (std::size_t from = 129; from < 256; ++from) {
        for (std::size_t length = 257 - from; length < 280; length += 9) {
            const std::string text = (AllBytes() + AllBytes()).substr(from, length) + "tail";
            overlaps += Packed(text);
        }
    }
    const std::tuple<const char*, std::string, std::size_t, int> cases[] = {
        {"one letter", Packed(std::string(40000, 'z')), 656, 18489},
        {"two letters", Packed(RandomText("ab", 30000, 1)), 8680, 11737},
        {"the window's last own bytes", Packed(RandomText("\xFE\xFF", 30000, 2)), 9516, 23775},
        {"plan lines", Packed(PlanLines(120000, 4)), 47224, 7080},
        {"all bytes", Packed(RandomText(AllBytes(), 40000, 6)), 79388, 26551},
        {"echoes", Packed(Echoes(100000, 7)), 10680, 23478},
        {"short texts", shortTexts, 49244, 40918},
        {"overlaps", overlaps, 63646, 43810},
    };
    for (const auto& [name, packed, size, sum] : cases)
        EXPECT_TRUE(packed.size() == size && SumOf(packed) == sum) << name;
}

TEST(PackText, StartsARunOverWhoseSourceItsOwnCopyDestroyed) {
    // The run stands at 254. Its first two bytes go to 256, where the third stood.
    const std::string packed = PackText("\xFE\xFF\x00"s);
    EXPECT_EQ(packed.substr(0, 6), "\x07\xF1\x00\x00\xFF\xFF"s);
    ExpectRoundTrip("\xFE\xFF\x00"s, packed);
}

TEST(UnpackText, GivesWhatThereIsOfACutFile) {
    const std::string text = PlanLines(600, 9);
    const std::string packed = PackText(text);
    std::size_t longest = 0;
    for (std::size_t size = 0; size < packed.size(); ++size) {
        const UnpackResult result = UnpackText(std::string_view(packed).substr(0, size));
        EXPECT_TRUE(text.starts_with(result.text)) << size;
        EXPECT_GE(result.text.size(), longest) << size;
        EXPECT_FALSE(result.suffixFound || result.crcMatches || result.tooLarge) << size;
        EXPECT_LE(result.bytesUsed, size);
        longest = result.text.size();
    }
    EXPECT_EQ(longest, text.size());
}

TEST(UnpackText, NoticesDamagedTextByTheCheckSum) {
    const std::string text = PlanLines(600, 10);
    const std::string packed = PackText(text);
    std::size_t damagedTexts = 0;
    for (std::size_t at = 0; at < packed.size(); ++at) {
        std::string damaged = packed;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x41);
        const UnpackResult result = UnpackText(damaged);
        if (result.text == text) continue;  // a token may well point to the same characters elsewhere
        EXPECT_FALSE(result.crcMatches) << at;
        ++damagedTexts;
    }
    EXPECT_GT(damagedTexts, packed.size() / 2);
}

TEST(UnpackText, EndsAtWhateverPointsOutOfTheWindow) {
    // Position 8191 with length 2 is no token either; the check sum of "A" follows, then other things.
    const UnpackResult result = UnpackText("\x02\x08\xFF\xF9\x58\xE5tail");
    EXPECT_EQ(result.text, "A");
    EXPECT_TRUE(result.suffixFound);
    EXPECT_TRUE(result.crcMatches);
    EXPECT_EQ(result.bytesUsed, 6u);
}

TEST(UnpackText, ReadsTheWindowsLastPosition) {
    const UnpackResult result = UnpackText("\xFF\xF8\xFC\x07"s);  // 8191, one byte; 8064, 128 bytes
    EXPECT_EQ(result.text, "\xFF" + AllBytes().substr(128));
    EXPECT_FALSE(result.suffixFound);
}

TEST(UnpackText, StopsBeforeTheTextOutgrowsItsLimit) {
    const std::string packed = PackText(std::string(10000, 'x'));
    EXPECT_FALSE(UnpackText(packed, 10000).tooLarge);
    const UnpackResult result = UnpackText(packed, 9999);
    EXPECT_TRUE(result.tooLarge);
    EXPECT_FALSE(result.suffixFound);
    EXPECT_LE(result.text.size(), 9999u);
    EXPECT_TRUE(UnpackText("\x02\x08", 0).tooLarge);
    EXPECT_FALSE(UnpackText("", 0).tooLarge);
}

}  // namespace
}  // namespace vortan
