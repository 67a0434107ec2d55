#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "help/Manual.h"

namespace vortan {

/// The way of a reader through the pages. A page with one that follows it has that one ahead, which is all
/// that a tour is.
class HelpHistory {
  public:
    /// The manual must outlive the object.
    explicit HelpHistory(const Manual& manual) : manual_(manual) {}

    /// Goes to a page: by key, "+" for the nearest ahead, "-" for the one before. Returns the page, or none
    /// if there is no such page. The key of a form and a control, as "Task.Description", finds the page of
    /// the control if it has none of its own, and stays the title.
    const HelpPage* Display(std::string_view page);

    const std::string& CurrentPage() const { return currentPage_; }
    const std::deque<std::string>& BackPages() const { return backPages_; }  ///< the last one is the nearest
    const std::deque<std::string>& NextPages() const { return nextPages_; }  ///< the first one is the nearest
    /// Both lists in lines, to look at the way.
    std::string Listing() const;

  private:
    const Manual& manual_;
    std::string currentPage_;
    std::deque<std::string> backPages_, nextPages_;
};

/// The first word of a caption, or the first hump of a control's name: up to the first character after the
/// first that is no small letter.
std::string GetFirstWord(std::string_view text);

}  // namespace vortan
