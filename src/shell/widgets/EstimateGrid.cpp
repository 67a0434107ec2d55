#include "shell/widgets/EstimateGrid.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "model/Conventions.h"
#include "model/NumberText.h"
#include "paint/Text.h"

namespace vortan {

EstimateGrid::EstimateGrid(const std::string& journalDate, bool manyRows)
    : QGroupBox("Estimates"), three_(new QCheckBox("E&nable 3 estimates")) {
    values_.manyRows = manyRows;
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
        // Left: what was read of a unit or of three numbers shows as the other boxes do.
        connect(box, &QLineEdit::editingFinished, this, [this, i] {
            TextField& left = *boxes_[static_cast<std::size_t>(i)];
            if (!ParseNumber(PlainTyped(left.Value())) && !values_.Refusal(i, left.Value()))
                left.SetValue(values_.TextOf(i));
        });
        // By the user alone: what this class writes into the other boxes is rounded.
        connect(box, &QLineEdit::textEdited, this, [this, i](const QString& text) { Type(i, S(text)); });
    }

    auto* left = new QVBoxLayout;
    left->addWidget(three_);
    left->addLayout(grid);
    left->addStretch();
    auto* right = new QVBoxLayout;
    for (std::size_t i = 0; i < units_.size(); ++i) {
        // Wide enough for either caption.
        auto* option = new QRadioButton(Estimates::kUnits[i].workCaption);
        const int width = option->sizeHint().width();
        option->setText(Estimates::kUnits[i].clockCaption);
        option->setMinimumWidth(std::max(width, option->sizeHint().width()));
        option->setObjectName(QString("UnitsOption(%1)").arg(i));
        units_[i] = option;
        StopAtChosen(*option);
        right->addWidget(option);
        connect(option, &QRadioButton::toggled, this, [this, i](bool checked) {
            if (!checked) return;
            values_.unit = static_cast<int>(i);
            UpdateEstimates(-1);
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
        values_.three = checked;
        UpdateEnabled();
        if (checked && isVisible()) boxes_[4]->setFocus(Qt::OtherFocusReason);
    });
}

void EstimateGrid::Load(const Estimates::Minutes& minutes, std::int32_t effortUnits) {
    values_.minutes = minutes;
    units_[static_cast<std::size_t>(Estimates::UnitOf(effortUnits))]->setChecked(true);
    three_->setChecked(minutes.optimistic < minutes.pessimistic);
    SetControl(effortUnits < 0, effortUnits != 0);
}

void EstimateGrid::SetControl(bool effortDriven, bool live) {
    values_.effortDriven = effortDriven;
    values_.live = live;
    for (std::size_t i = Estimates::kDays; i < units_.size(); ++i) {
        const Estimates::UnitKind& kind = Estimates::kUnits[i];
        units_[i]->setText(effortDriven ? kind.workCaption : kind.clockCaption);
    }
    UpdateEnabled();
    UpdateEstimates(-1);
}

void EstimateGrid::Type(int box, const std::string& text) {
    values_.Type(box, text);
    {
        // Their changes would write into the box that is being typed into.
        const QSignalBlocker unit(units_[static_cast<std::size_t>(values_.unit)]), three(three_);
        units_[static_cast<std::size_t>(values_.unit)]->setChecked(true);
        three_->setChecked(values_.three);
    }
    UpdateEnabled();
    UpdateEstimates(box);
}

void EstimateGrid::UpdateEstimates(int changed) {
    for (int i = 0; i < Estimates::kBoxes; ++i) {
        if (i != changed) boxes_[static_cast<std::size_t>(i)]->SetValue(values_.TextOf(i));
    }
}

void EstimateGrid::UpdateEnabled() {
    const bool live = values_.live;
    for (std::size_t i = 0; i < 3; ++i) {
        labels_[i]->setVisible(live && (i == 1 || values_.three));
        labels_[3 + i]->setVisible(live && (i == 1 || values_.manyRows));
    }
    for (int i = 0; i < Estimates::kBoxes; ++i)
        EnableTextBox(*boxes_[static_cast<std::size_t>(i)], values_.BoxLive(i));
    three_->setVisible(live);
    for (QRadioButton* option : units_) option->setVisible(live);
}

std::optional<EstimateGrid::Refusal> EstimateGrid::VerifyData() const {
    for (int i = 0; i < Estimates::kBoxes; ++i) {
        TextField* const box = boxes_[static_cast<std::size_t>(i)];
        if (!values_.BoxLive(i)) continue;
        if (const auto text = values_.Refusal(i, box->Value())) return Refusal{box, *text, "Invalid Number"};
    }
    return std::nullopt;
}

}  // namespace vortan
