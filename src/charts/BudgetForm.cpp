#include "charts/BudgetForm.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "charts/PageHeader.h"
#include "charts/PlotAxis.h"
#include "charts/Twips.h"
#include "model/ErrTrap.h"
#include "model/ValueText.h"

namespace vortan {
namespace {

constexpr int kLineWidth = 2;      // pixels
constexpr double kTooClose = 3;    // twips
constexpr double kTipReach = 90;   // twips from the curve
constexpr double kKeyLine = 1.25;  // of a line of text

}  // namespace

BudgetForm::BudgetForm(Workspace& workspace, const TextMetrics& metrics)
    : ChartForm(Vwindow::Style::Time, metrics), workspace_(workspace) {
    vwindow_.WideTimeColumns = true;
}

void BudgetForm::Start() {
    const Section section("Budget:Start");
    const Vproject* project = workspace_.ThisProject();
    if (!project) return;
    choice_.ApplyRules(clicked_, project->PlanIndex() != project->CurrentIndex());
    SetRange(*project);
}

std::string BudgetForm::MakeCaption() const {
    const char* what = choice_.earnedValue               ? "Earned value"
                       : choice_.plan && choice_.current ? "Plan and current"
                       : choice_.plan                    ? "Plan"
                                                         : "Current";
    return std::string(what) + " for " + GetPageHeader(workspace_);
}

/// Wide enough for the curves: that of a plan may lie outside of the dates of the journal in force, and all
/// end at the end of a day.
void BudgetForm::SetRange(const Vproject& project) {
    DateTime start, end;
    GetDateRange(workspace_, start, end, true);
    const DateTime planStart = project.EarlyStartAt(project.PlanIndex());
    const DateTime planEnd = project.EarlyFinishAt(project.PlanIndex());
    if (planStart.IsSet()) {
        start = start.IsSet() ? std::min(start, planStart) : planStart;
        end = std::max(end, planEnd);
    }
    if (end.IsSet()) end = DateTime(end.WholeDay() + 1);
    vwindow_.SetDateRange(start, end);
}

ChartForm::OptionsFrame BudgetForm::Frame() {
    const auto box = [this](const char* name, const char* caption, bool& value) -> Option {
        return {Option::Kind::Check, name, caption, value, [this, name, &value](bool on) {
                    value = on;
                    clicked_ = name;
                }};
    };
    auto& costs = choice_.costs;
    return {"BudgetOptionsFrame",
            "Budget options",
            {box("PlanCheck", "Plan", choice_.plan), box("CurrentCheck", "Current", choice_.current),
             box("EarnedValueCheck", "Earned value", choice_.earnedValue),
             box("MaterialCostCheck", "Material cost", costs[0]),
             box("LaborCostCheck", "Labor cost", costs[1]), box("TotalCostCheck", "Total cost", costs[2]),
             box("ProjectPastTodayCheck", "Project past today line", choice_.pastToday)}};
}

void BudgetForm::LayOut() {
    const Section section("Budget:Vwindow_RedoLayout");
    workspace_.ThePlatform().StatusMessage("Building budget plot");
    data_ = {};
    if (const Vproject* project = workspace_.ThisProject()) {
        data_ = {BuildBudget(*project, choice_), MakeCaption()};
        journal_ = project->Journal();
    }
    vwindow_.ClearLayout();
    vwindow_.AddColumn("Dollars", Alignment::RightBottom);
    vwindow_.AddTimeColumns();
    const std::string symbol = workspace_.ThePlatform().CurrencySymbol();
    AddAxisRows(vwindow_, data_.maxCost.ToDouble(), data_.increment,
                [&](double value) { return FormatCurrency(Money::FromDouble(value), symbol); });
    vwindow_.EndLayout(1, static_cast<double>(data_.curves.size()) + 1);
}

void BudgetForm::Draw() {
    const Section section("Budget:Vwindow_RedoGraphics");
    for (std::size_t i = 0; i < data_.curves.size(); ++i) {
        PlotCurve(data_.curves[i]);
        DrawKeyEntry(data_.curves[i], i);
    }
    DrawNames();
    if (workspace_.ThisProject()) vwindow_.DrawDateLine(journal_, kBlack);
    vwindow_.EndGraphics();
    workspace_.ThePlatform().StatusMessage("");
}

double BudgetForm::CostToY(Money cost) const {
    return AxisY(vwindow_, cost.ToDouble() / data_.increment);
}

double BudgetForm::DayToX(std::int32_t day) const {
    return std::clamp(vwindow_.DateToX(DateTime(day)), vwindow_.ColPos(1), vwindow_.ColPos(vwindow_.Cols()));
}

std::int32_t BudgetForm::LastDrawn(const Budget::Curve& curve) const {
    if (!curve.cut) return curve.LastDay();
    // The last day that begins before the journal's date.
    return std::min(curve.LastDay(), static_cast<std::int32_t>(std::ceil(journal_.Days())) - 1);
}

/// Days so close that nobody could tell them apart are passed over, and level days are one line.
void BudgetForm::PlotCurve(const Budget::Curve& curve) {
    double x = DayToX(curve.firstDay), y = CostToY({});
    const std::int32_t last = LastDrawn(curve);
    for (std::int32_t day = curve.firstDay; day <= last; ++day) {
        const Money sum = curve.At(day);
        const double nextX = DayToX(day + 1), nextY = CostToY(sum);
        const bool close = std::abs(nextX - x) < kTooClose && std::abs(nextY - y) < kTooClose;
        const bool goesOnLevel = nextY == y && curve.At(day + 1) == sum;
        if (day < last && (close || goesOnLevel)) continue;
        vwindow_.DrawLine(x, y, nextX, nextY, curve.color, kLineWidth);
        x = nextX;
        y = nextY;
    }
    if (!curve.cut) return;
    const double endX = DayToX(curve.LastDay() + 1), endY = CostToY(curve.sums.back());
    vwindow_.DrawRect(endX - kTwipsPerPixel, endY - kTwipsPerPixel, endX + kTwipsPerPixel,
                      endY + kTwipsPerPixel, curve.color, curve.color);
}

void BudgetForm::DrawKeyEntry(const Budget::Curve& curve, std::size_t entry) {
    const double letter = vwindow_.TextHeight(), left = vwindow_.TextWidth("X");
    const double right = left + vwindow_.TextWidth("XXXXX");
    const double lines = static_cast<double>(data_.curves.size() - entry) - 0.5;
    const double y = vwindow_.RowPos(vwindow_.Rows()) - lines * letter * kKeyLine;
    vwindow_.DrawLine(left, y, right, y, curve.color, kLineWidth);
    vwindow_.DrawText(right + vwindow_.TextWidth("X"), y - 0.5 * letter, curve.label, curve.color);
}

/// At the ends of the curves, for who cannot tell their colours apart; right of it where there is room, and
/// clear of each other.
void BudgetForm::DrawNames() {
    struct Name {
        const Budget::Curve* curve;
        double x, y, right;
    };
    const double letter = kSmallText * vwindow_.TextHeight(), gap = kSmallText * vwindow_.TextWidth("X");
    std::vector<Name> names;
    for (const auto& curve : data_.curves) {
        const std::int32_t last = LastDrawn(curve);
        if (last < curve.firstDay) continue;
        const double width = kSmallText * vwindow_.TextWidth(curve.label);
        const double endX = DayToX(last + 1), endY = CostToY(curve.At(last));
        const bool behind = endX + gap + width <= vwindow_.ColPos(vwindow_.Cols());
        const double x = behind ? endX + gap : std::max<double>(endX - width, vwindow_.ColPos(1));
        names.push_back({&curve, x, behind ? endY - letter / 2 : endY - letter, x + width});
    }
    std::stable_sort(names.begin(), names.end(), [](const Name& a, const Name& b) { return a.y < b.y; });
    for (auto name = names.begin(); name != names.end(); ++name) {
        for (auto above = names.begin(); above != name; ++above) {
            if (name->x < above->right && above->x < name->right)
                name->y = std::max(name->y, above->y + letter);
        }
        vwindow_.DrawSmallText(name->x, name->y, name->curve->label, name->curve->color);
    }
}

std::string BudgetForm::TipAt(int x, int y) const {
    const int col = vwindow_.ColAt(x), row = vwindow_.RowAt(y);
    if (!vwindow_.IsComplete() || col < 1 || row < 1 || row >= vwindow_.Rows() - 1) return {};
    const DateTime when = vwindow_.XToDate(x);
    const auto day = static_cast<std::int32_t>(when.WholeDay());
    const Budget::Curve* nearest = nullptr;
    double least = kTipReach;
    for (const auto& curve : data_.curves) {
        if (day < curve.firstDay || day > LastDrawn(curve)) continue;
        const double from = CostToY(curve.At(day - 1)), to = CostToY(curve.At(day));
        const double away = std::abs(from + (to - from) * (when.Days() - day) - y);
        if (away < least) {
            least = away;
            nearest = &curve;
        }
    }
    if (!nearest) return {};
    const std::string symbol = workspace_.ThePlatform().CurrencySymbol();
    std::string tip = FormatShortDate(DateTime(day)) + "\n" + nearest->label + ": " +
                      FormatCurrency(nearest->At(day), symbol);
    if (const Budget::Curve* other = data_.Counterpart(*nearest); other && !choice_.earnedValue) {
        const Budget::Curve &plan = nearest->ofPlan ? *nearest : *other,
                            &current = nearest->ofPlan ? *other : *nearest;
        tip += "\nCurrent less plan: " + FormatCurrency(current.At(day) - plan.At(day), symbol);
    }
    return tip;
}

}  // namespace vortan
