#include "shell/entry/RateCalculatorForm.h"

#include <QLabel>
#include <utility>

#include "model/Conventions.h"
#include "model/NumberText.h"
#include "model/ValueText.h"

namespace vortan {
namespace {

// What an hour costs, in hourly wages. The multipliers of a shift are not meant by these.
constexpr double kBurdened = 1.5, kOvertime = 1.5, kOffDay = 2, kHoliday = 3;

/// Whatever the number of terms, results stand below each other.
constexpr int kResultColumn = 6;

}  // namespace

RateCalculatorForm* RateCalculatorForm::Start(Desktop& desktop, Money burdenedRate, Take take) {
    auto* form = new RateCalculatorForm(desktop, burdenedRate, std::move(take));
    form->ShowWith(*form->hourly_[0]);
    return form;
}

RateCalculatorForm::RateCalculatorForm(Desktop& desktop, Money burdenedRate, Take take)
    : EntryForm(desktop, "RateCalculatorForm", "Burdened Rate Calculator"), take_(std::move(take)) {
    BuildFormulas();
    burdenedMultiplier_->SetValue(PlainNumber(kBurdened));
    multipliers_[0]->SetValue(PlainNumber(kOvertime));
    multipliers_[1]->SetValue(PlainNumber(kOffDay));
    multipliers_[2]->SetValue(PlainNumber(kHoliday));
    hourly_[0]->SetValue(Currency(Money::FromDouble(burdenedRate.ToDouble() / kBurdened)));
}

TextField* RateCalculatorForm::Input(const char* name) {
    auto* box = new TextField(name, 12);
    box->setAlignment(Qt::AlignRight);
    connect(box, &QLineEdit::textChanged, this, Command("RateCalculator:Recompute", [this] { Recompute(); }));
    return box;
}

TextField* RateCalculatorForm::Result(const char* name) {
    auto* box = new TextField(name, 12);
    box->setAlignment(Qt::AlignRight);
    box->setReadOnly(true);
    box->setFocusPolicy(Qt::ClickFocus);
    results_.push_back(box);
    return box;
}

void RateCalculatorForm::AddFormula(QGridLayout& grid, const std::vector<Term>& terms) {
    const int row = grid.rowCount();
    for (std::size_t i = 0; i < terms.size(); ++i) {
        const Term& term = terms[i];
        const int column = i + 1 == terms.size() ? kResultColumn : static_cast<int>(i) * 2;
        auto* label = new QLabel(term.caption);
        label->setBuddy(term.box);
        grid.addWidget(label, row, column);
        grid.addWidget(term.box, row + 1, column);
        if (i > 0) grid.addWidget(new QLabel(term.sign), row + 1, column - 1);
    }
    grid.setRowMinimumHeight(row + 2, fontMetrics().height() * 2 / 3);
}

void RateCalculatorForm::BuildFormulas() {
    hourly_[0] = Input("HourlyRateText(0)");
    burdenedMultiplier_ = Input("BurdenedMultiplierText");
    multipliers_ = {Input("OvertimeMultiplierText"), Input("OffDayMultiplierText"),
                    Input("HolidayMultiplierText")};
    for (std::size_t i = 1; i < hourly_.size(); ++i) {
        hourly_[i] = Result(("HourlyRateText(" + std::to_string(i) + ")").c_str());
    }
    burdenedRate_ = {Result("BurdenedRateText(0)"), Result("BurdenedRateText(1)")};
    for (std::size_t i = 0; i < overhead_.size(); ++i) {
        overhead_[i] = Result(("OverheadText(" + std::to_string(i) + ")").c_str());
    }
    rates_ = {Result("OvertimeRateText"), Result("OffDayRateText"), Result("HolidayRateText")};

    auto* grid = new QGridLayout;
    grid->setVerticalSpacing(fontMetrics().height() / 6);
    AddFormula(*grid, {{"", "&Hourly rate", hourly_[0]},
                       {"×", "&Burdened multiplier", burdenedMultiplier_},
                       {"=", "Burdened rate", burdenedRate_[0]}});
    AddFormula(*grid, {{"", "Burdened rate", burdenedRate_[1]},
                       {"−", "Hourly rate", hourly_[1]},
                       {"=", "Overhead", overhead_[0]}});
    constexpr std::pair<const char*, const char*> kCaptions[] = {{"&Overtime multiplier", "Overtime rate"},
                                                                 {"Off &day multiplier", "Off day rate"},
                                                                 {"Ho&liday multiplier", "Holiday rate"}};
    for (std::size_t i = 0; i < rates_.size(); ++i) {
        AddFormula(*grid, {{"", "Hourly rate", hourly_[i + 2]},
                           {"×", kCaptions[i].first, multipliers_[i]},
                           {"+", "Overhead", overhead_[i + 1]},
                           {"=", kCaptions[i].second, rates_[i]}});
    }
    Body().addLayout(grid);
    Body().addStretch();
    for (TextField* box : results_) SetLive(*box, false);
}

void RateCalculatorForm::Recompute() {
    OkCommand().setEnabled(false);
    for (TextField* box : results_) box->clear();

    const auto hourly = ParseCurrency(hourly_[0]->Value(), CurrencySymbol());
    if (!hourly) return;
    for (std::size_t i = 1; i < hourly_.size(); ++i) hourly_[i]->SetValue(Currency(*hourly));

    const auto times = [&](double factor) { return Money::FromDouble(hourly->ToDouble() * factor); };
    const auto burdened = ParseNumber(PlainTyped(burdenedMultiplier_->Value()));
    if (!burdened) return;
    for (TextField* box : burdenedRate_) box->SetValue(Currency(times(*burdened)));
    const Money overhead = times(*burdened - 1);
    for (TextField* box : overhead_) box->SetValue(Currency(overhead));

    bool complete = true;
    for (std::size_t i = 0; i < rates_.size(); ++i) {
        if (const auto multiplier = ParseNumber(PlainTyped(multipliers_[i]->Value()))) {
            rates_[i]->SetValue(Currency(times(*multiplier) + overhead));
        } else {
            complete = false;
        }
    }
    OkCommand().setEnabled(complete);
}

bool RateCalculatorForm::Finish() {
    take_({burdenedRate_[0]->Value(), rates_[0]->Value(), rates_[1]->Value(), rates_[2]->Value()});
    return true;
}

}  // namespace vortan
