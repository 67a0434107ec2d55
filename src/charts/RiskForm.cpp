#include "charts/RiskForm.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "charts/PageHeader.h"
#include "charts/PlotAxis.h"
#include "model/ErrTrap.h"
#include "model/ValueText.h"

namespace vortan {
namespace {

constexpr Color kProbabilityCurve = 0x008000, kMostLikely = 0x000080, kCostCurve = 0x800000;
constexpr int kLineWidth = 2;  // pixels
constexpr int kPercentRow = 10;
constexpr int kTooClose = 3, kStair = 6;  // twips

}  // namespace

RiskForm::RiskForm(const Workspace& workspace, const IterativeResults& results, Money highestCost,
                   const TextMetrics& metrics)
    : ChartForm(Vwindow::Style::Time, metrics),
      workspace_(workspace),
      results_(results),
      maxCost_(highestCost) {
    vwindow_.WideTimeColumns = true;
}

std::string RiskForm::Caption() const {
    return std::to_string(Iterations()) + " iterations for " + GetPageHeader(workspace_);
}

ChartForm::OptionsFrame RiskForm::Frame() {
    const auto choose = [this](bool totalCost) {
        return [this, totalCost](bool) { totalCost_ = totalCost; };
    };
    return {"Frame1",
            "Risk options",
            {{Option::Kind::Choice, "ProbabilityOption", "Probability", !totalCost_, choose(false)},
             {Option::Kind::Choice, "TotalCostOption", "Total cost", totalCost_, choose(true)}}};
}

Money RiskForm::HighestCost(const IterativeResults& results) {
    return *std::max_element(results.riskCosts.begin() + 1, results.riskCosts.end());
}

void RiskForm::Start() {
    const Section section("Risk:Start");
    if (!HasData(results_)) return;
    maxCost_ = std::max(maxCost_, HighestCost(results_));
    increment_ = ComputeIncrement(maxCost_.ToDouble());
    vwindow_.SetDateRange(Date(1), Date(Iterations()));
}

void RiskForm::LayOut() {
    const Section section("Risk:Vwindow_RedoLayout");
    workspace_.ThePlatform().StatusMessage("Building risk plot");
    vwindow_.ClearLayout();
    vwindow_.AddColumn(totalCost_ ? "Total cost" : "Probability", Alignment::RightBottom);
    vwindow_.AddTimeColumns();
    if (totalCost_) {
        const std::string symbol = workspace_.ThePlatform().CurrencySymbol();
        AddAxisRows(vwindow_, maxCost_.ToDouble(), increment_,
                    [&](double value) { return FormatCurrency(Money::FromDouble(value), symbol); });
    } else {
        AddAxisRows(vwindow_, 100, kPercentRow,
                    [](double value) { return std::to_string(std::lround(value)) + "%"; });
    }
    vwindow_.EndLayout(1, 2);
}

void RiskForm::Draw() {
    const Section section("Risk:Vwindow_RedoGraphics");
    if (totalCost_) {
        PlotTotalCost();
    } else {
        PlotProbability();
    }
    vwindow_.EndGraphics();
    workspace_.ThePlatform().StatusMessage("");
}

double RiskForm::IndexToY(std::int32_t iterations) const {
    const auto percent = static_cast<float>(iterations * 100.0 / Iterations());
    return AxisY(vwindow_, percent / kPercentRow);
}

double RiskForm::CostToY(double cost) const {
    return AxisY(vwindow_, cost / increment_);
}

/// Dates so close that nobody could tell them apart are passed over; far ones make stairs.
void RiskForm::PlotProbability() {
    const auto y = [this](std::int32_t i) { return static_cast<int>(std::lround(IndexToY(i))); };
    int x0 = vwindow_.ColPos(1), y0 = y(0);
    for (std::int32_t i = 1; i <= Iterations(); ++i) {
        const int x1 = vwindow_.DateToX(Date(i)), y1 = y(i);
        if (std::abs(x1 - x0) < kTooClose && std::abs(y1 - y0) < kTooClose && i != Iterations()) continue;
        if (std::abs(x1 - x0) > kStair) {
            vwindow_.DrawLine(x0, y0, x1, y0, kProbabilityCurve, kLineWidth);
            vwindow_.DrawLine(x1, y0, x1, y1, kProbabilityCurve, kLineWidth);
        } else {
            vwindow_.DrawLine(x0, y0, x1, y1, kProbabilityCurve, kLineWidth);
        }
        x0 = x1;
        y0 = y1;
    }
    vwindow_.DrawLine(x0, y0, vwindow_.ColPos(vwindow_.Cols()), y0, kProbabilityCurve, kLineWidth);
    PlotMostLikely();
}

/// A line through all rows into the footer, with its name below.
void RiskForm::PlotMostLikely() {
    const double x = vwindow_.DateToX(Date(0)), letters = vwindow_.Metrics().FontHeight();
    const double bottom = vwindow_.RowPos(vwindow_.Rows() - 1) + letters;
    const std::string name = "Most likely";
    vwindow_.DrawLine(x, vwindow_.RowPos(1), x, bottom, kMostLikely, kLineWidth);
    vwindow_.DrawText(x - vwindow_.TextWidth(name) / 2.0, bottom, name, kMostLikely);
    vwindow_.DrawTriangle(x - letters / 10, bottom - letters / 2, x + letters / 10, bottom, kMostLikely,
                          kMostLikely, Apex::Down);
}

/// For each day on which runs end, an upright line from the cheapest to the dearest, and lines from mean to
/// mean.
void RiskForm::PlotTotalCost() {
    double previousX = 0, previousY = 0;
    for (std::int32_t first = 1, next = 1; first <= Iterations(); first = next) {
        const double day = Date(first).WholeDay();
        Money least = Cost(first), most = least;
        double sum = 0;
        for (next = first; next <= Iterations() && Date(next).WholeDay() == day; ++next) {
            least = std::min(least, Cost(next));
            most = std::max(most, Cost(next));
            sum += Cost(next).ToDouble();
        }
        const double x = vwindow_.DateToX(DateTime(day + 0.5)), y = CostToY(sum / (next - first));
        if (first > 1) vwindow_.DrawLine(previousX, previousY, x, y, kCostCurve, kLineWidth);
        vwindow_.DrawLine(x, CostToY(most.ToDouble()), x, CostToY(least.ToDouble()), kCostCurve, kLineWidth);
        previousX = x;
        previousY = y;
    }
}

std::string RiskForm::TipAt(int x, int y) const {
    const int col = vwindow_.ColAt(x), row = vwindow_.RowAt(y);
    if (!HasData(results_) || col < 0 || row < 1 || !vwindow_.IsTimeColumn(col)) return {};
    const DateTime when = vwindow_.XToDate(x);
    const auto met = std::upper_bound(results_.riskDates.begin() + 1, results_.riskDates.end(), when) -
                     (results_.riskDates.begin() + 1);
    const auto percent = std::lround(static_cast<double>(met) * 100 / Iterations());
    return FormatDate(DateTime(when.WholeDay())) + "\n" + std::to_string(percent) + "% finish by then";
}

}  // namespace vortan
