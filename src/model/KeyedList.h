#pragma once

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

namespace vortan {

/// References in a fixed order with unique text keys. Looking up a missing key is a normal probe and gives
/// none. Owns nothing. Look-up and adding take constant time, removing takes time in the list's length.
template <class T>
class KeyedList {
  public:
    T* Find(const std::string& key) const {
        auto it = byKey_.find(key);
        return it == byKey_.end() ? nullptr : it->second;
    }
    /// Adds at the end. The key must be free.
    void Add(T* item, const std::string& key) {
        byKey_.emplace(key, item);
        items_.push_back(item);
    }
    /// Adds before the item at `index`; behind all if there are not so many.
    void Insert(T* item, const std::string& key, std::size_t index) {
        byKey_.emplace(key, item);
        items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(std::min(index, items_.size())), item);
    }
    void Remove(const std::string& key) {
        auto it = byKey_.find(key);
        if (it == byKey_.end()) return;
        items_.erase(std::find(items_.begin(), items_.end(), it->second));
        byKey_.erase(it);
    }
    void Clear() {
        items_.clear();
        byKey_.clear();
    }

    bool empty() const { return items_.empty(); }
    std::size_t size() const { return items_.size(); }
    T* operator[](std::size_t i) const { return items_[i]; }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }

  private:
    std::vector<T*> items_;
    std::unordered_map<std::string, T*> byKey_;
};

}  // namespace vortan
