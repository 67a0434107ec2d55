#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace vortan {

/// Keeps one value or a row of values. Values of up to four bytes share a word with the pointer to the row:
/// the lowest bit, which no pointer has set, marks a single value.
template <class T, bool Small = sizeof(T) <= 4 && std::is_trivially_copyable_v<T>>
class JournalCells {
  public:
    using Cell = std::conditional_t<std::is_same_v<T, bool>, unsigned char, T>;
    using Row = std::vector<Cell>;

    explicit JournalCells(T value) : single_(std::move(value)) {}

    T Single() const { return single_; }
    const Row* Many() const { return many_.get(); }
    Row* Many() { return many_.get(); }
    void SetSingle(T value) {
        many_.reset();
        single_ = std::move(value);
    }
    void SetMany(Row row) { many_ = std::make_unique<Row>(std::move(row)); }

  private:
    T single_;
    std::unique_ptr<Row> many_;
};

template <class T>
class JournalCells<T, true> {
  public:
    using Cell = std::conditional_t<std::is_same_v<T, bool>, unsigned char, T>;
    using Row = std::vector<Cell>;

    explicit JournalCells(T value) { Pack(value); }
    ~JournalCells() { delete Many(); }
    JournalCells(const JournalCells&) = delete;
    JournalCells& operator=(const JournalCells&) = delete;

    T Single() const { return static_cast<T>(static_cast<std::uint32_t>(word_ >> 32)); }
    const Row* Many() const { return (word_ & 1) != 0 ? nullptr : reinterpret_cast<const Row*>(word_); }
    Row* Many() { return (word_ & 1) != 0 ? nullptr : reinterpret_cast<Row*>(word_); }
    void SetSingle(T value) {
        delete Many();
        Pack(value);
    }
    void SetMany(Row row) {
        auto made = std::make_unique<Row>(std::move(row));
        delete Many();
        word_ = reinterpret_cast<std::uintptr_t>(made.release());
    }

  private:
    static_assert(sizeof(std::uintptr_t) == 8 && alignof(Row) > 1);
    void Pack(T value) { word_ = std::uintptr_t{static_cast<std::uint32_t>(value)} << 32 | 1; }

    std::uintptr_t word_;
};

/// A per-journal field: one value for all journals of its owner, or one value per journal, oldest first.
///
/// Reading takes the index of the journal in force. Writing goes through Let, whose rule is: a change in the
/// first journal applies to every journal and wipes what later ones held; a change in a later journal runs
/// forward to the last and leaves the earlier ones alone. Adding and removing a journal goes through Resize.
template <class T>
class Journaled {
  public:
    explicit Journaled(T value = T()) : cells_(std::move(value)) {}

    /// The value in journal `index`. An index past the last value reads the last.
    T At(int index) const {
        const Row* many = cells_.Many();
        if (!many) return cells_.Single();
        return static_cast<T>(
            (*many)[std::min<std::size_t>(static_cast<std::size_t>(index), many->size() - 1)]);
    }
    bool IsArray() const { return cells_.Many() != nullptr; }
    int Count() const { return IsArray() ? static_cast<int>(cells_.Many()->size()) : 1; }

    /// Whether all journals hold the same value, so that one value stands for all of them in a file.
    bool AllEqual() const {
        const Row* many = cells_.Many();
        return !many ||
               std::all_of(many->begin(), many->end(), [&](const Cell& v) { return v == many->front(); });
    }

    /// Whether every journal from `first` on holds `value`.
    bool Holds(const T& value, int first) const {
        const Row* many = cells_.Many();
        if (!many) return cells_.Single() == value;
        return std::all_of(many->begin() + std::clamp(first, 0, Count()), many->end(),
                           [&](const Cell& v) { return static_cast<T>(v) == value; });
    }

    /// Writes `value` in journal `current` of `count`.
    void Let(T value, int current, int count) {
        if (current <= 0) {
            SetSingle(std::move(value));
            return;
        }
        if (!IsArray())
            cells_.SetMany(Row(static_cast<std::size_t>(count), static_cast<Cell>(cells_.Single())));
        Row& many = *cells_.Many();
        std::fill(many.begin() + std::min(current, Count()), many.end(), static_cast<Cell>(value));
    }
    /// One value for all journals.
    void SetSingle(T value) { cells_.SetSingle(std::move(value)); }
    /// One value per journal; `values` must not be empty.
    void SetArray(const std::vector<T>& values) { cells_.SetMany(Row(values.begin(), values.end())); }

    /// Follows a journal that was added at, or removed from, index `current`, leaving `count`. An added
    /// journal starts as a copy of the one before it; added in front, as a copy of the old first one.
    void Resize(int count, int current) {
        if (!IsArray()) return;
        Row& many = *cells_.Many();
        if (count < Count()) {
            if (Count() > 1) many.erase(many.begin() + std::min(current, Count() - 1));
        } else if (count > Count()) {
            const auto source = static_cast<std::size_t>(std::max(current - 1, 0));
            const Cell copy = many[std::min(source, many.size() - 1)];
            many.insert(many.begin() + std::min(current, Count()), copy);
        }
        Fit(count);
    }
    /// Cuts or extends (with the last value) to `count` values.
    void Fit(int count) {
        if (!IsArray() || count == Count()) return;
        Row& many = *cells_.Many();
        const Cell last = many.back();
        many.resize(static_cast<std::size_t>(std::max(count, 1)), last);
    }

  private:
    using Cell = typename JournalCells<T>::Cell;
    using Row = typename JournalCells<T>::Row;

    JournalCells<T> cells_;
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
};
template <>
struct IsJournaled<JournaledInclude> : std::true_type {};

}  // namespace vortan
