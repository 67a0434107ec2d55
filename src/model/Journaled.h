#pragma once

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace vortan {

/// A per-journal field: one value for all journals of its owner, or one value per journal, oldest first.
///
/// Reading takes the index of the journal in force. Writing goes through Let, whose rule is: a change in the
/// first journal applies to every journal and wipes what later ones held; a change in a later journal runs
/// forward to the last and leaves the earlier ones alone. Adding and removing a journal goes through Resize.
template <class T>
class Journaled {
  public:
    explicit Journaled(T value = T()) : single_(std::move(value)) {}

    /// The value in journal `index`. An index past the last value reads the last.
    T At(int index) const {
        if (!many_) return single_;
        return (*many_)[std::min<std::size_t>(static_cast<std::size_t>(index), many_->size() - 1)];
    }
    bool IsArray() const { return many_ != nullptr; }
    int Count() const { return many_ ? static_cast<int>(many_->size()) : 1; }

    /// Whether all journals hold the same value, so that one value stands for all of them in a file.
    bool AllEqual() const {
        return !many_ ||
               std::all_of(many_->begin(), many_->end(), [&](const Cell& v) { return v == (*many_)[0]; });
    }

    /// Writes `value` in journal `current` of `count`.
    void Let(T value, int current, int count) {
        if (current <= 0) {
            SetSingle(std::move(value));
            return;
        }
        if (!many_) many_ = std::make_unique<std::vector<Cell>>(static_cast<std::size_t>(count), single_);
        std::fill(many_->begin() + std::min(current, Count()), many_->end(), Cell(value));
    }
    /// One value for all journals.
    void SetSingle(T value) {
        many_.reset();
        single_ = std::move(value);
    }
    /// One value per journal; `values` must not be empty.
    void SetArray(const std::vector<T>& values) {
        many_ = std::make_unique<std::vector<Cell>>(values.begin(), values.end());
    }

    /// Follows a journal that was added at, or removed from, index `current`, leaving `count`. An added
    /// journal starts as a copy of the one before it; added in front, as a copy of the old first one.
    void Resize(int count, int current) {
        if (!many_) return;
        auto at = many_->begin() + std::min(current, Count() - 1);
        if (count < Count()) {
            if (Count() > 1) many_->erase(at);
        } else if (count > Count()) {
            const auto source = static_cast<std::size_t>(std::max(current - 1, 0));
            const Cell copy = (*many_)[std::min(source, many_->size() - 1)];
            many_->insert(many_->begin() + std::min(current, Count()), copy);
        }
        Fit(count);
    }
    /// Cuts or extends (with the last value) to `count` values.
    void Fit(int count) {
        if (many_ && count != Count()) {
            const Cell last = many_->back();
            many_->resize(static_cast<std::size_t>(std::max(count, 1)), last);
        }
    }

  private:
    using Cell = std::conditional_t<std::is_same_v<T, bool>, unsigned char, T>;

    T single_;
    std::unique_ptr<std::vector<Cell>> many_;
};

template <class T>
struct IsJournaled : std::false_type {};
template <class T>
struct IsJournaled<Journaled<T>> : std::true_type {};

/// Whether an object exists in a journal. A single value stands for true, whatever it holds: an object that
/// is gone from every journal has the array form.
class JournaledInclude : public Journaled<bool> {
  public:
    JournaledInclude() : Journaled<bool>(true) {}

    bool At(int index) const { return !IsArray() || Journaled<bool>::At(index); }
    bool AnyTrue(int count) const {
        for (int i = 0; i < count; ++i) {
            if (At(i)) return true;
        }
        return false;
    }
    /// For an object made in journal `current` of `count`: absent before, present from there on.
    void StartAt(int current, int count) {
        std::vector<bool> values(static_cast<std::size_t>(std::max(count, 1)), true);
        std::fill(values.begin(), values.begin() + current, false);
        SetArray(values);
    }
    /// Absent from journal `current` of `count` on. A single value counts as `before` in the earlier ones.
    void EndAt(int current, int count, bool before) {
        std::vector<bool> values;
        for (int i = 0; i < std::max(count, 1); ++i)
            values.push_back(i < current && (IsArray() ? At(i) : before));
        SetArray(values);
    }
    void Read(const std::vector<bool>& values) { SetArray(values); }
};
template <>
struct IsJournaled<JournaledInclude> : std::true_type {};

}  // namespace vortan
