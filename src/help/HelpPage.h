#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vortan {

/// A piece of a text in one style.
struct HelpRun {
    enum class Kind { Plain, Emphasis, Link, ProgramText, Key, Code };
    Kind kind = Kind::Plain;
    std::string text;
    std::string target{};  ///< of a link: a key, in any case, singular or plural
    int line = 0;          ///< of the file
};
using HelpText = std::vector<HelpRun>;

struct HelpBlock {
    enum class Kind { Title, Section, Paragraph, Item, NumberedItem, Table, Picture, Lines };
    Kind kind = Kind::Paragraph;
    int line = 0;     ///< of the file, where it begins
    HelpText text{};  ///< of a picture: what it shows; lines are kept in `Lines` alone
    std::vector<std::vector<HelpText>> rows{};  ///< of a table; the first one is its head
    std::string picture{};                      ///< the name of its file
    int number = 0;                             ///< of a numbered item
};

/// A page of the manual.
struct HelpPage {
    std::string key;   ///< in the form that the user sees
    std::string next;  ///< key of the page that follows in a tour, or empty
    std::string file;
    std::vector<HelpBlock> blocks;

    /// The heading in words; the key if there is none.
    std::string Title() const;
};

/// What is wrong with a page, and where.
struct HelpFault {
    std::string file;
    int line = 0;
    std::string text;
};

/// Reads the source form of a page. What is wrong is added to `faults`, and read as well as can be.
HelpPage ParseHelpPage(std::string_view file, std::string_view source, std::vector<HelpFault>& faults);

/// The name of the file of a page: "Tour #1" is "tour-1.txt".
std::string HelpFileName(std::string_view key);

/// The words alone.
std::string PlainText(const HelpText& text);

}  // namespace vortan
