#include "help/HelpHistory.h"

namespace vortan {

const HelpPage* HelpHistory::Display(std::string_view page) {
    if (page == "+") {
        if (nextPages_.empty()) return manual_.GetHelpPage(currentPage_);
        backPages_.push_back(std::move(currentPage_));
        currentPage_ = std::move(nextPages_.front());
        nextPages_.pop_front();
    } else if (page == "-") {
        if (backPages_.empty()) return manual_.GetHelpPage(currentPage_);
        nextPages_.push_front(std::move(currentPage_));
        currentPage_ = std::move(backPages_.back());
        backPages_.pop_back();
    } else {
        nextPages_.clear();
        if (!currentPage_.empty()) backPages_.push_back(std::move(currentPage_));
        currentPage_ = page;
    }
    const HelpPage* found = manual_.GetHelpPage(currentPage_);
    if (found) {
        currentPage_ = found->key;
    } else if (const std::size_t point = currentPage_.find('.'); point != std::string::npos) {
        found = manual_.GetHelpPage(currentPage_.substr(point + 1));
    }
    if (found && !found->next.empty()) nextPages_ = {found->next};
    return found;
}

std::string HelpHistory::Listing() const {
    std::string all;
    const auto list = [&](const char* name, const std::deque<std::string>& pages) {
        all += std::string(name) + "\n";
        int number = 0;
        for (const std::string& page : pages) all += "  " + std::to_string(++number) + ": " + page + "\n";
    };
    list("BackPages:", backPages_);
    list("NextPages:", nextPages_);
    return all;
}

std::string GetFirstWord(std::string_view text) {
    std::size_t end = 1;
    while (end < text.size() && static_cast<unsigned char>(text[end]) >= 'a') ++end;
    return std::string(text.substr(0, end));
}

}  // namespace vortan
