#include "shell/widgets/EstimateGrid.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <cstdlib>
#include <limits>

#include "model/NumberText.h"
#include "model/Rounding.h"
#include "paint/Text.h"

namespace vortan {
namespace {

struct UnitKind {
    const char* workCaption;
    std::int32_t workMinutes;
    const char* clockCaption;
    std::int32_t clockMinutes;
};
constexpr UnitKind kUnits[] = {{"&minutes", 1, "&minutes", 1},
                               {"&hours", 60, "&hours", 60},
                               {"d&ays (8 hours each)", 480, "d&ays (24 hours each)", 1440},
                               {"&weeks (5 days each)", 2400, "&weeks (7 days each)", 10080},
                               {"m&onths (20 days each)", 9600, "m&onths (30 days each)", 43200}};
constexpr int kDays = 2;

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

std::int32_t Saturated(std::int64_t value) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, -std::int64_t{kMost} - 1, kMost));
}

/// At most two decimals, halves away from zero.
std::string FormatEstimate(std::int32_t minutes, std::int32_t unit) {
    const std::int64_t hundredths = (std::abs(std::int64_t{minutes}) * 200 + unit) / (2 * std::int64_t{unit});
    std::string text = std::to_string(hundredths / 100);
    if (const auto rest = static_cast<int>(hundredths % 100); rest > 0) {
        text += '.';
        text += static_cast<char>('0' + rest / 10);
        if (rest % 10 > 0) text += static_cast<char>('0' + rest % 10);
    }
    return minutes < 0 && hundredths > 0 ? "-" + text : text;
}

}  // namespace

EstimateGrid::EstimateGrid(const std::string& journalDate, bool manyRows)
    : QGroupBox("Estimates"), manyRows_(manyRows), three_(new QCheckBox("E&nable 3 estimates")) {
    setObjectName("EstimatesFrame");
    three_->setObjectName("Enable3EstimatesCheck");

    const std::string heads[] = {
        "Optimistic", "Most likely", "Pessimistic", "prior to " + journalDate, journalDate + " and later",
        "total"};
    auto* grid = new QGridLayout;
    for (int i = 0; i < 6; ++i) {
        auto* label = new QLabel(Q(heads[i]));
        label->setObjectName(QString("EstimateLabel(%1)").arg(i));
        labels_[static_cast<std::size_t>(i)] = label;
        if (i < 3) {
            grid->addWidget(label, 0, i + 1, Qt::AlignHCenter);
        } else {
            grid->addWidget(label, i - 2, 0, Qt::AlignRight | Qt::AlignVCenter);
        }
    }
    for (int i = 0; i < 9; ++i) {
        auto* box = new TextField(QString("EstimateText(%1)").arg(i), 9);
        box->setAlignment(Qt::AlignRight);
        box->setAccessibleName(Q(heads[i % 3] + ", " + heads[3 + i / 3]));
        boxes_[static_cast<std::size_t>(i)] = box;
        grid->addWidget(box, 1 + i / 3, 1 + i % 3);
        // By the user alone: what this class writes into the other boxes is rounded.
        connect(box, &QLineEdit::textEdited, this, [this, i] { EstimateTextChange(i); });
    }

    auto* left = new QVBoxLayout;
    left->addWidget(three_);
    left->addLayout(grid);
    left->addStretch();
    auto* right = new QVBoxLayout;
    for (int i = 0; i < 5; ++i) {
        // Wide enough for either caption.
        auto* option = new QRadioButton(kUnits[i].workCaption);
        const int width = option->sizeHint().width();
        option->setText(kUnits[i].clockCaption);
        option->setMinimumWidth(std::max(width, option->sizeHint().width()));
        option->setObjectName(QString("UnitsOption(%1)").arg(i));
        units_[static_cast<std::size_t>(i)] = option;
        StopAtChosen(*option);
        right->addWidget(option);
        connect(option, &QRadioButton::toggled, this, [this](bool checked) {
            if (checked) UpdateEstimates(-1);
        });
    }
    right->addStretch();
    auto* all = new QHBoxLayout(this);
    all->addLayout(left);
    all->addStretch();
    all->addSpacing(fontMetrics().averageCharWidth() * 3);
    all->addLayout(right);
    setMinimumWidth(sizeHint().width());  // of three columns, whether they show or not

    connect(three_, &QCheckBox::toggled, this, [this](bool checked) {
        UpdateEnabled();
        if (checked && isVisible()) boxes_[4]->setFocus(Qt::OtherFocusReason);
    });
}

void EstimateGrid::Load(const Minutes& minutes, std::int32_t effortUnits) {
    minutes_ = minutes;
    int unit = kDays;
    const std::int64_t magnitude = std::abs(std::int64_t{effortUnits});
    for (int i = 0; i < 5; ++i) {
        if (magnitude == kUnits[i].workMinutes || magnitude == kUnits[i].clockMinutes) unit = i;
    }
    units_[static_cast<std::size_t>(unit)]->setChecked(true);
    three_->setChecked(minutes.optimistic < minutes.pessimistic);
    SetControl(effortUnits < 0, effortUnits != 0);
}

void EstimateGrid::SetControl(bool effortDriven, bool live) {
    effortDriven_ = effortDriven;
    live_ = live;
    for (int i = kDays; i < 5; ++i) {
        units_[static_cast<std::size_t>(i)]->setText(effortDriven ? kUnits[i].workCaption
                                                                  : kUnits[i].clockCaption);
    }
    UpdateEnabled();
    UpdateEstimates(-1);
}

int EstimateGrid::Unit() const {
    for (int i = 0; i < 5; ++i) {
        if (units_[static_cast<std::size_t>(i)]->isChecked()) return i;
    }
    return kDays;
}

std::int32_t EstimateGrid::GetUnits() const {
    const UnitKind& unit = kUnits[Unit()];
    return effortDriven_ ? unit.workMinutes : unit.clockMinutes;
}

/// Minutes that box `index` shows: rows of past, rest and total, columns of the three estimates.
std::int32_t EstimateGrid::ValueAt(int index) const {
    if (index < 3) return minutes_.past;
    const std::int32_t totals[] = {minutes_.optimistic, minutes_.mostLikely, minutes_.pessimistic};
    const std::int64_t total = totals[index % 3];
    return Saturated(index < 6 ? total - minutes_.past : total);
}

void EstimateGrid::EstimateTextChange(int index) {
    const std::int32_t typed =
        RoundToInt32(ScanNumber(boxes_[static_cast<std::size_t>(index)]->Value()) * GetUnits());
    if (index < 3) {
        minutes_.past = typed;
    } else {
        std::int32_t* const totals[] = {&minutes_.optimistic, &minutes_.mostLikely, &minutes_.pessimistic};
        *totals[index % 3] = index < 6 ? Saturated(std::int64_t{typed} + minutes_.past) : typed;
    }
    UpdateEstimates(index);
}

void EstimateGrid::UpdateEstimates(int changed) {
    for (int i = 0; i < 9; ++i) {
        if (i != changed)
            boxes_[static_cast<std::size_t>(i)]->SetValue(FormatEstimate(ValueAt(i), GetUnits()));
    }
}

bool EstimateGrid::BoxLive(int index) const {
    const bool column = index % 3 == 1 || three_->isChecked();
    const bool row = index / 3 == 1 || manyRows_;
    return live_ && column && row;
}

void EstimateGrid::UpdateEnabled() {
    for (std::size_t i = 0; i < 3; ++i) {
        labels_[i]->setVisible(live_ && (i == 1 || three_->isChecked()));
        labels_[3 + i]->setVisible(live_ && (i == 1 || manyRows_));
    }
    for (int i = 0; i < 9; ++i) {
        TextField& box = *boxes_[static_cast<std::size_t>(i)];
        EnableTextBox(box, BoxLive(i));
    }
    three_->setVisible(live_);
    for (QRadioButton* option : units_) option->setVisible(live_);
}

std::optional<EstimateGrid::Refusal> EstimateGrid::VerifyData() const {
    for (int i = 0; i < 9; ++i) {
        if (!BoxLive(i)) continue;
        TextField* const box = boxes_[static_cast<std::size_t>(i)];
        const auto number = ParseNumber(box->Value());
        if (!number) return Refusal{box, "The estimate must be a number.", "Invalid Number"};
        const double minutes = *number * GetUnits();
        const bool rest = i / 3 == 1;
        const double total = rest ? minutes + minutes_.past : minutes;
        // More may have been done than was estimated; the whole cannot be less than nothing.
        if (rest ? total < 0 && minutes < 0 : minutes < 0) {
            return Refusal{box, "The estimate must not be negative.", "Invalid Number"};
        }
        if (minutes > kMost || total > kMost) {
            return Refusal{
                box,
                "The estimate is too large.  A task can take at most " + std::to_string(kMost) + " minutes.",
                "Invalid Number"};
        }
    }
    return std::nullopt;
}

EstimateGrid::Minutes EstimateGrid::Totals() const {
    if (three_->isChecked()) return minutes_;
    return {minutes_.past, minutes_.mostLikely, minutes_.mostLikely, minutes_.mostLikely};
}

}  // namespace vortan
