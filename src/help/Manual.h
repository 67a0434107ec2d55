#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "help/HelpPage.h"

namespace vortan {

/// A page as it was written.
struct HelpSource {
    std::string_view file, text;
};

/// All pages, by key. Keys are the same in capitals and small letters.
class Manual {
  public:
    /// Faults of the pages are added to `faults`. The page "Index" gets the list of all keys by letter.
    Manual(std::span<const HelpSource> sources, std::vector<HelpFault>& faults);

    /// In the order of their keys.
    const std::vector<HelpPage>& Pages() const { return pages_; }

    /// The page of a key, or of the singular of a key in plural: "Tasks" and "dependencies" find "Task" and
    /// "Dependency". None if there is no such page.
    const HelpPage* GetHelpPage(std::string_view key) const;

    /// The pages that have each of the words, or a longer word that begins with it, best first; none for no
    /// words. What stands in the key and the headings counts more than what the text says.
    std::vector<const HelpPage*> Search(std::string_view words) const;

    /// The keys that look most like one that there is not, best first.
    std::vector<std::string> NearestKeys(std::string_view key, std::size_t atMost) const;

    /// Links that lead nowhere, keys that two pages have, steps of tours out of their order, and pages that
    /// no other page leads to.
    void Check(std::vector<HelpFault>& faults) const;

  private:
    const HelpPage* Find(std::string_view key) const;
    void AddIndex();
    void CheckTours(std::vector<HelpFault>& faults) const;

    struct Searched {
        std::string key, headings, text;  // in small letters
    };
    std::vector<HelpPage> pages_;
    std::vector<Searched> searched_;  // parallel to pages_
    std::map<std::string, std::size_t> byKey_;
};

/// The manual of this program, compiled into it.
const Manual& TheManual();

/// Words of a search in small letters.
std::vector<std::string> SearchWords(std::string_view text);

}  // namespace vortan
