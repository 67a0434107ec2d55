#pragma once

#include <functional>
#include <string>

#include "help/HelpPage.h"

namespace vortan {

/// Where links and pictures of a page lead, as the addresses that a browser is to get.
struct HelpAddresses {
    std::function<std::string(const std::string& key)> page;
    std::function<std::string(const std::string& file)> picture;
};

/// The page as the content of an HTML body. Programs' texts are `<b>`, keys `<kbd>`, texts of terminals
/// `<code>`.
std::string HelpHtml(const HelpPage& page, const HelpAddresses& addresses);

/// The page for a terminal, no line longer than `width` columns where words allow that. A picture is what it
/// shows, in brackets.
std::string HelpPlainText(const HelpPage& page, std::size_t width);

}  // namespace vortan
