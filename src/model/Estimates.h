#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace vortan {

/// The estimates of a task in the making: one or three, each split at the date of the journal into what was
/// done before it and what remains. Four numbers of minutes are what counts; nine boxes, rows of past, rest
/// and total with columns of the three estimates, are views of them in a unit.
struct Estimates {
    /// What was done before the journal date, and the estimates of the whole task.
    struct Minutes {
        std::int32_t past = 0, optimistic = 0, mostLikely = 0, pessimistic = 0;
    };
    struct UnitKind {
        const char* workCaption;
        std::int32_t workMinutes;
        const char* clockCaption;
        std::int32_t clockMinutes;
    };
    static const std::array<UnitKind, 5> kUnits;
    static constexpr int kBoxes = 9, kDays = 2;

    /// The index of the unit that was stored with a task; days if there is none.
    static int UnitOf(std::int32_t effortUnits);
    /// Minutes per unit.
    std::int32_t GetUnits() const;
    /// Whether a box can be entered.
    bool BoxLive(int box) const;
    /// What a box shows, with at most two decimals.
    std::string TextOf(int box) const;
    /// Takes over what was typed into a box: a number in the unit, or one followed by a unit ("2d", "1.5
    /// weeks"), which becomes that of all boxes. Three of them with semicolons ("3;5;8 h") are all estimates
    /// of the row.
    void Type(int box, const std::string& text);
    /// What is wrong with the text of a box, or none if it can be stored.
    std::optional<std::string> Refusal(int box, const std::string& text) const;
    /// The estimates as the row of totals shows them.
    Minutes Totals() const;

    Minutes minutes;
    int unit = kDays;
    bool effortDriven = true;  ///< units of work, else of the clock
    bool live = true;          ///< the task has estimates at all
    bool three = false;        ///< else the most likely one is all three
    bool manyRows = false;     ///< else only what remains can be entered

  private:
    std::int32_t MinutesPer(int anyUnit) const;
};

}  // namespace vortan
