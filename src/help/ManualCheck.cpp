#include "help/ManualCheck.h"

#include <algorithm>

namespace vortan {
namespace {

/// The parts of a path through menus: "File > Save" are two.
std::vector<std::string> Parts(const std::string& path) {
    constexpr std::string_view kBetween = " > ";
    std::vector<std::string> parts;
    std::size_t begin = 0;
    while (true) {
        const std::size_t end = path.find(kBetween, begin);
        parts.push_back(path.substr(begin, end - begin));
        if (end == std::string::npos) return parts;
        begin = end + kBetween.size();
    }
}

/// As a user reads it.
std::string AsShown(std::string text) {
    std::erase(text, '&');
    while (text.ends_with(':') || text.ends_with(' ')) text.pop_back();
    return text;
}

void AddEscaped(std::string& text, char c) {
    if (c == 'n') c = '\n';
    if (c == 't') c = '\t';
    text += c;
}

}  // namespace

/// Walks the source once. Comments and the paths of includes are passed by.
void ProgramTexts::AddSource(const std::string& source) {
    std::string joined;
    bool any = false;  // literals that may go on in the next one
    const auto end = [&] {
        if (any) Add(joined);
        any = false;
        joined.clear();
    };
    for (std::size_t i = 0; i < source.size(); ++i) {
        if (source.compare(i, 2, "//") == 0 || source[i] == '#') {
            i = std::min(source.find('\n', i), source.size());
        } else if (source[i] == '\'' && i + 2 < source.size()) {
            end();
            i = std::min(source.find('\'', source[i + 1] == '\\' ? i + 3 : i + 2), source.size());
        } else if (source.compare(i, 3, "R\"(") == 0) {
            const std::size_t close = std::min(source.find(")\"", i), source.size());
            joined += source.substr(i + 3, close - i - 3);
            any = true;
            i = close + 1;
        } else if (source[i] == '"') {
            for (++i; i < source.size() && source[i] != '"'; ++i) {
                if (source[i] == '\\')
                    AddEscaped(joined, source[++i]);
                else
                    joined += source[i];
            }
            any = true;
        } else if (source[i] != ' ' && source[i] != '\n') {
            end();
        }
    }
    end();
}

void ProgramTexts::Add(std::string text) {
    if (text.starts_with('-')) {
        for (std::size_t begin = 0; begin < text.size();) {
            const std::size_t end = std::min(text.find(',', begin), text.size());
            options_.insert(text.substr(begin, end - begin));
            begin = end + 1;
        }
    }
    texts_.insert(AsShown(std::move(text)));
}

bool ProgramTexts::Has(const std::string& text) const {
    return texts_.contains(AsShown(text));
}

void CheckTexts(const Manual& manual, const ProgramTexts& program, const std::set<std::string>& pictures,
                std::vector<HelpFault>& faults) {
    const auto complain = [&](const HelpPage& page, int line, const std::string& text) {
        faults.push_back({page.file, line, text});
    };
    const auto checkRun = [&](const HelpPage& page, const HelpRun& run) {
        if (run.kind == HelpRun::Kind::ProgramText && !program.Has(run.text)) {
            for (const std::string& part : Parts(run.text)) {
                if (!program.Has(part)) complain(page, run.line, "the program has no text \"" + part + "\"");
            }
        }
        if (run.kind != HelpRun::Kind::Code) return;
        if (!run.text.starts_with('-') && run.text.find("vortan-cli") == std::string::npos) return;
        for (std::string word : SearchWords(run.text)) {
            const auto letters = std::find_if(word.begin(), word.end(), [](char c) {
                return c != '-' && (c < 'a' || c > 'z') && (c < '0' || c > '9');
            });
            word.erase(letters, word.end());
            if (word.size() > 1 && word.starts_with('-') && !program.HasOption(word) && word != "--help")
                complain(page, run.line, "vortan-cli has no option \"" + word + "\"");
        }
    };
    for (const HelpPage& page : manual.Pages()) {
        for (const HelpBlock& block : page.blocks) {
            for (const HelpRun& run : block.text) checkRun(page, run);
            for (const auto& row : block.rows) {
                for (const HelpText& cell : row) {
                    for (const HelpRun& run : cell) checkRun(page, run);
                }
            }
            if (block.kind == HelpBlock::Kind::Picture && !pictures.contains(block.picture))
                complain(page, block.line, "nothing draws the picture \"" + block.picture + "\"");
        }
    }
}

}  // namespace vortan
