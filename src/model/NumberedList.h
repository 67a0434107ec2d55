#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace vortan {

/// References in ascending order of a unique number. Owns nothing. Finding takes logarithmic time, adding at
/// the end constant time.
template <class T>
class NumberedList {
  public:
    T* Find(std::int32_t number) const {
        const auto at = Place(number);
        return at < numbers_.size() && numbers_[at] == number ? items_[at] : nullptr;
    }
    /// The number must be free.
    void Add(T* item, std::int32_t number) {
        const auto at = static_cast<std::ptrdiff_t>(Place(number));
        numbers_.insert(numbers_.begin() + at, number);
        items_.insert(items_.begin() + at, item);
    }
    void Remove(std::int32_t number) {
        const auto at = Place(number);
        if (at == numbers_.size() || numbers_[at] != number) return;
        numbers_.erase(numbers_.begin() + static_cast<std::ptrdiff_t>(at));
        items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(at));
    }
    /// Empties the list and returns what it held.
    std::vector<T*> TakeAll() {
        numbers_.clear();
        return std::exchange(items_, {});
    }

    bool empty() const { return items_.empty(); }
    std::size_t size() const { return items_.size(); }
    T* operator[](std::size_t i) const { return items_[i]; }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }

  private:
    std::size_t Place(std::int32_t number) const {
        if (numbers_.empty() || numbers_.back() < number) return numbers_.size();
        return static_cast<std::size_t>(std::lower_bound(numbers_.begin(), numbers_.end(), number) -
                                        numbers_.begin());
    }

    std::vector<std::int32_t> numbers_;
    std::vector<T*> items_;
};

}  // namespace vortan
