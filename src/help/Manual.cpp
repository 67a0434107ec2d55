#include "help/Manual.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <set>
#include <utility>

namespace vortan {
namespace {

using Kind = HelpBlock::Kind;

std::string Small(std::string_view text) {
    std::string small(text);
    for (char& c : small) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return small;
}

bool IsWordChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || static_cast<unsigned char>(c) >= 128;
}

/// How often a word of the text begins with `word`, up to `most`.
int CountWord(const std::string& text, const std::string& word, int most) {
    int count = 0;
    for (std::size_t at = text.find(word); at != std::string::npos && count < most;
         at = text.find(word, at + 1)) {
        if (at == 0 || !IsWordChar(text[at - 1]) || !IsWordChar(word.front())) ++count;
    }
    return count;
}

template <class Visit>
void VisitTexts(const HelpPage& page, const Visit& visit) {
    for (const HelpBlock& block : page.blocks) {
        visit(block, block.text);
        for (const auto& row : block.rows) {
            for (const HelpText& cell : row) visit(block, cell);
        }
    }
}

/// Changes of one letter that turn one text into the other.
std::size_t Distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = i;
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t changed = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            diagonal = std::exchange(row[j], std::min({changed, row[j] + 1, row[j - 1] + 1}));
        }
    }
    return row.back();
}

}  // namespace

std::vector<std::string> SearchWords(std::string_view text) {
    std::vector<std::string> words(1);
    for (const char c : Small(text)) {
        if (c == ' ') {
            if (!words.back().empty()) words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    if (words.back().empty()) words.pop_back();
    return words;
}

Manual::Manual(std::span<const HelpSource> sources, std::vector<HelpFault>& faults) {
    for (const HelpSource& source : sources)
        pages_.push_back(ParseHelpPage(source.file, source.text, faults));
    std::sort(pages_.begin(), pages_.end(), [](const HelpPage& a, const HelpPage& b) {
        return std::pair(Small(a.key), a.file) < std::pair(Small(b.key), b.file);
    });
    for (const HelpPage& page : pages_) {
        const auto [other, added] = byKey_.emplace(Small(page.key), 0);
        if (!added) faults.push_back({page.file, 1, "another page has the key \"" + page.key + "\""});
        other->second = static_cast<std::size_t>(&page - pages_.data());
        Searched& searched = searched_.emplace_back();
        searched.key = Small(page.key);
        VisitTexts(page, [&](const HelpBlock& block, const HelpText& text) {
            const bool heading = block.kind == Kind::Title || block.kind == Kind::Section;
            (heading ? searched.headings : searched.text) += Small(PlainText(text)) + "\n";
        });
    }
    AddIndex();
}

/// A heading a letter, and a line for each key.
void Manual::AddIndex() {
    const auto index = byKey_.find("index");
    if (index == byKey_.end()) return;
    std::string letter;
    std::vector<HelpBlock>& blocks = pages_[index->second].blocks;
    for (const HelpPage& page : pages_) {
        const std::string first(1, static_cast<char>(std::toupper(static_cast<unsigned char>(page.key[0]))));
        if (first != letter) {
            letter = first;
            blocks.push_back({Kind::Section, 0, {{HelpRun::Kind::Plain, letter}}});
        }
        blocks.push_back({Kind::Item, 0, {{HelpRun::Kind::Link, page.key, page.key}}});
    }
}

const HelpPage* Manual::Find(std::string_view key) const {
    const auto found = byKey_.find(Small(key));
    return found == byKey_.end() ? nullptr : &pages_[found->second];
}

const HelpPage* Manual::GetHelpPage(std::string_view key) const {
    std::string tried(key);
    while (true) {
        if (const HelpPage* page = Find(tried)) return page;
        if (tried.ends_with('s')) {
            tried.pop_back();
        } else if (tried.ends_with("ie")) {
            tried.replace(tried.size() - 2, 2, "y");
        } else {
            return nullptr;
        }
    }
}

std::vector<const HelpPage*> Manual::Search(std::string_view text) const {
    constexpr int kWholeKey = 1000, kInKey = 100, kInHeading = 20, kMostInText = 5;
    const std::vector<std::string> words = SearchWords(text);
    if (words.empty()) return {};
    std::string whole;
    for (const std::string& word : words) whole += (whole.empty() ? "" : " ") + word;
    std::vector<std::pair<int, const HelpPage*>> hits;
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        const Searched& in = searched_[i];
        int score = in.key == whole ? kWholeKey : in.key.starts_with(whole) ? kInKey : 0;
        const bool all = std::all_of(words.begin(), words.end(), [&](const std::string& word) {
            const int found = kInKey * CountWord(in.key, word, 1) +
                              kInHeading * CountWord(in.headings, word, 1) +
                              CountWord(in.text, word, kMostInText);
            score += found;
            return found > 0;
        });
        if (all) hits.emplace_back(-score, &pages_[i]);
    }
    std::stable_sort(hits.begin(), hits.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<const HelpPage*> best;
    for (const auto& [score, page] : hits) best.push_back(page);
    return best;
}

std::vector<std::string> Manual::NearestKeys(std::string_view key, std::size_t atMost) const {
    std::vector<std::pair<std::size_t, std::string>> all;
    for (const HelpPage& page : pages_) all.emplace_back(Distance(Small(key), Small(page.key)), page.key);
    std::sort(all.begin(), all.end());
    std::vector<std::string> nearest;
    for (const auto& [distance, each] : all) {
        if (nearest.size() < atMost && distance <= 1 + key.size() / 3) nearest.push_back(each);
    }
    for (const HelpPage* page : Search(key)) {
        if (nearest.size() < atMost && std::find(nearest.begin(), nearest.end(), page->key) == nearest.end())
            nearest.push_back(page->key);
    }
    return nearest;
}

void Manual::Check(std::vector<HelpFault>& faults) const {
    std::set<const HelpPage*> linked;
    for (const HelpPage& page : pages_) {
        const auto follow = [&](const std::string& key, int line) {
            const HelpPage* to = GetHelpPage(key);
            if (!to) faults.push_back({page.file, line, "there is no page \"" + key + "\" for this link"});
            if (to && to != &page && line > 0) linked.insert(to);
        };
        if (!page.next.empty()) follow(page.next, 2);
        VisitTexts(page, [&](const HelpBlock&, const HelpText& text) {
            for (const HelpRun& run : text) {
                if (run.kind == HelpRun::Kind::Link) follow(run.target, run.line);
            }
        });
    }
    for (const HelpPage& page : pages_) {
        if (!linked.contains(&page) && page.key.find('.') == std::string::npos)
            faults.push_back({page.file, 1, "no other page leads to \"" + page.key + "\""});
    }
    CheckTours(faults);
}

/// "Guide me" leads to the list, the list to the first tour, a tour to its first step, a step to the next
/// one, the last step back to the list.
void Manual::CheckTours(std::vector<HelpFault>& faults) const {
    for (const HelpPage& page : pages_) {
        const std::string key = Small(page.key);
        const std::size_t point = key.find('.');
        std::string wanted;
        if (key == "guide me") wanted = "Tour list";
        if (key == "tour list") wanted = "Tour #1";
        if (key.starts_with("tour #")) wanted = "Tour " + key.substr(6) + ".1";
        if (key.starts_with("tour ") && point != std::string::npos && std::isdigit(key[5]) != 0) {
            wanted =
                "Tour " + key.substr(5, point - 4) + std::to_string(std::stoi(key.substr(point + 1)) + 1);
            if (!Find(wanted)) wanted = "Tour list";
        }
        if (Small(wanted) != Small(page.next))
            faults.push_back({page.file, 2, "the page that follows is to be \"" + wanted + "\""});
    }
}

}  // namespace vortan
