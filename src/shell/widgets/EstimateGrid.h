#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "shell/widgets/Fields.h"

namespace vortan {

/// The frame "Estimates" of the task screen: one estimate of a task or three, each split at the date of the
/// journal into what was done before it and what remains. Four numbers of minutes are what counts; the nine
/// boxes are views of them in the chosen unit, and whoever edits one changes the others with it.
class EstimateGrid : public QGroupBox {
  public:
    /// What was done before the journal date, and the estimates of the whole task.
    struct Minutes {
        std::int32_t past = 0, optimistic = 0, mostLikely = 0, pessimistic = 0;
    };
    struct Refusal {
        TextField* field;
        std::string text, title;
    };

    /// Without `manyRows` only what remains can be entered.
    EstimateGrid(const std::string& journalDate, bool manyRows);

    void Load(const Minutes& minutes, std::int32_t effortUnits);
    /// Whether the units are those of work or of the clock, and whether the task has estimates at all.
    void SetControl(bool effortDriven, bool live);

    /// Minutes per unit.
    std::int32_t GetUnits() const;
    /// The first box in reading order whose text cannot be stored, or none.
    std::optional<Refusal> VerifyData() const;
    /// The estimates as the row of totals shows them.
    Minutes Totals() const;

  private:
    int Unit() const;
    std::int32_t ValueAt(int index) const;
    bool BoxLive(int index) const;
    void EstimateTextChange(int index);
    void UpdateEstimates(int changed);
    void UpdateEnabled();

    Minutes minutes_;
    bool manyRows_;
    bool effortDriven_ = true;
    bool live_ = true;
    std::array<TextField*, 9> boxes_{};
    std::array<QLabel*, 6> labels_{};
    std::array<QRadioButton*, 5> units_{};
    QCheckBox* three_;
};

}  // namespace vortan
