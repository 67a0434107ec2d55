#include <string>
#include <string_view>
#include <vector>

#include "FuzzTargets.h"
#include "model/Fault.h"
#include "model/NumberText.h"
#include "persist/TokenReader.h"

namespace {

/// All tokens up to the end or the first fault.
std::vector<std::string> ReadAll(std::string_view text, bool twice) {
    vortan::TokenReader reader(text, "fuzz");
    std::vector<std::string> tokens;
    try {
        int line = -1;
        for (;;) {
            const std::string token(reader.ReadToken());
            const bool newLine = reader.LineNumber() != line;
            if (token.empty() && reader.EndOfLine() && !newLine && reader.LineBehindBlank() == 0) break;
            line = reader.LineNumber();
            tokens.push_back(token);
            if (twice && newLine) {
                reader.UnReadLine();
                FuzzCheck(reader.ReadToken() == token, "a line that was put back reads differently");
            }
            FuzzCheck(tokens.size() <= 2 * text.size() + 2, "the tokens do not end");
        }
        reader.ExpectToken("one more");
    } catch (const vortan::Fault& fault) {
        FuzzCheck(fault.Description().find("fuzz") != std::string::npos, "a fault without the file's name");
        FuzzCheck(fault.Description().size() < 500, "a fault without measure");
        tokens.emplace_back("fault");
    }
    return tokens;
}

/// The bytes as a file of tokens, and each token written and read again.
void FuzzTokens(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto tokens = ReadAll(text, false);
    FuzzCheck(tokens == ReadAll(text, true), "reading lines twice changes the tokens");
    for (const std::string& token : tokens) {
        // Blanks at the ends of a token without quotes are not kept, and no token holds a line break.
        if (!token.empty() && (token.front() == ' ' || token.back() == ' ')) continue;
        if (token.find_first_of("\r\n") != std::string::npos) continue;
        std::string line;
        vortan::AppendQuoted(line, token);
        line += ',' + line + "\r\n";
        vortan::TokenReader reader(line, "fuzz");
        FuzzCheck(reader.ReadToken() == token, "a token does not come back");
        FuzzCheck(reader.ReadToken() == token && reader.EndOfLine(), "a second token does not come back");
    }
}

const FuzzTarget kTarget("tokens", FuzzTokens);

}  // namespace
