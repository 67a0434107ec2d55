#include "transfer/Losses.h"

#include <utility>

namespace vortan {
namespace {

std::string OneLine(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = ' ';
    return text;
}

}  // namespace

void Losses::Add(std::string object, std::string what, std::string why, std::string instead) {
    list_.push_back({OneLine(std::move(object)), OneLine(std::move(what)), OneLine(std::move(why)),
                     OneLine(std::move(instead))});
}

std::string Losses::Text(std::size_t limit) const {
    std::string text;
    std::size_t lines = 0;
    for (const Loss& each : list_) {
        if (limit != 0 && lines == limit) {
            text += "... and " + std::to_string(list_.size() - lines) + " more.\n";
            break;
        }
        text += each.object + ": " + each.what + ": " + each.why + ". " + each.instead + ".\n";
        ++lines;
    }
    return text;
}

std::string Losses::TableText() const {
    std::string text = "Object\tWhat\tWhy\tInstead\n";
    for (const Loss& each : list_)
        text += each.object + "\t" + each.what + "\t" + each.why + "\t" + each.instead + "\n";
    return text;
}

}  // namespace vortan
