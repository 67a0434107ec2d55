#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <array>
#include <optional>
#include <string>

#include "model/Estimates.h"
#include "shell/widgets/Fields.h"

namespace vortan {

/// The frame "Estimates" of the task screen. Whoever edits one of its boxes changes the others with it.
class EstimateGrid : public QGroupBox {
  public:
    struct Refusal {
        TextField* field;
        std::string text, title;
    };

    /// Without `manyRows` only what remains can be entered.
    EstimateGrid(const std::string& journalDate, bool manyRows);

    void Load(const Estimates::Minutes& minutes, std::int32_t effortUnits);
    /// Whether the units are those of work or of the clock, and whether the task has estimates at all.
    void SetControl(bool effortDriven, bool live);

    /// The first box in reading order whose text cannot be stored, or none.
    std::optional<Refusal> VerifyData() const;
    /// What the boxes show.
    const Estimates& Values() const { return values_; }

  private:
    void Type(int box, const std::string& text);
    /// In all boxes but `changed`.
    void UpdateEstimates(int changed);
    void UpdateEnabled();

    Estimates values_;
    std::array<TextField*, 9> boxes_{};
    std::array<QLabel*, 6> labels_{};
    std::array<QRadioButton*, 5> units_{};
    QCheckBox* three_;
};

}  // namespace vortan
