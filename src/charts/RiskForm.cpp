#include "charts/RiskForm.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "charts/PageHeader.h"
#include "charts/PlotAxis.h"
#include "model/ErrTrap.h"
#include "model/ValueText.h"
#include "model/Vtask.h"

namespace vortan {
namespace {

constexpr Color kProbabilityCurve = 0x008000, kMostLikely = 0x000080, kCostCurve = 0x800000;
constexpr int kLineWidth = 2;  // pixels
constexpr int kPercentRow = 10;
constexpr int kTooClose = 3, kStair = 6;  // twips
constexpr double kPoint = 0.12;           // half of a point, in heights of the font
constexpr Color kGain = 0x70B070, kLoss = 0x7070D0;

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
    const auto choice = [this](const char* name, const char* caption, View view) {
        return Option{Option::Kind::Choice, name, caption, view_ == view,
                      [this, view](bool) { view_ = view; }};
    };
    OptionsFrame frame{"Frame1",
                       "Risk options",
                       {choice("ProbabilityOption", "Probability", View::Probability),
                        choice("TotalCostOption", "Total cost", View::TotalCost),
                        choice("JointOption", "Finish and cost", View::Joint)}};
    if (!results_.drivers.empty()) frame.options.push_back(choice("TornadoOption", "Tornado", View::Tornado));
    return frame;
}

Money RiskForm::HighestCost(const IterativeResults& results) {
    return *std::max_element(results.riskCosts.begin() + 1, results.riskCosts.end());
}

void RiskForm::Start() {
    const Section section("Risk:Start");
    if (!HasData(results_)) return;
    maxCost_ = std::max(maxCost_, HighestCost(results_));
    increment_ = ComputeIncrement(maxCost_.ToDouble());
    DateTime first = Date(1), last = Date(Iterations());
    if (view_ == View::Tornado) {
        first = last = Median();
        for (const RiskDriver* driver : Leading()) {
            first = std::min(first, AddDays(Median(), -driver->gainDays));
            last = std::max(last, AddDays(Median(), driver->lossDays));
        }
    }
    vwindow_.SetDateRange(first, last);
}

void RiskForm::LayOut() {
    const Section section("Risk:Vwindow_RedoLayout");
    workspace_.ThePlatform().StatusMessage("Building risk plot");
    vwindow_.ClearLayout();
    if (view_ == View::Tornado) {
        vwindow_.AddColumn("Task", Alignment::Left);
        vwindow_.AddTimeColumns();
        vwindow_.EndColumns();
        for (const RiskDriver* driver : Leading()) {
            vwindow_.AddRow();
            vwindow_.SetCell(vwindow_.Rows() - 1, 0, driver->task ? driver->task->BuildNodeText() : "");
        }
        vwindow_.AddRow();  // for the name of the line in the middle
        vwindow_.EndLayout(1, 0);
        return;
    }
    const bool costs = view_ != View::Probability;
    vwindow_.AddColumn(costs ? "Total cost" : "Probability", Alignment::RightBottom);
    vwindow_.AddTimeColumns();
    if (costs) {
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
    switch (view_) {
        case View::Probability:
            PlotProbability();
            break;
        case View::TotalCost:
            PlotTotalCost();
            break;
        case View::Joint:
            PlotJoint();
            break;
        case View::Tornado:
            PlotTornado();
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

/// A point for each run, and where half of them end and cost no more.
void RiskForm::PlotJoint() {
    const double reach = kPoint * vwindow_.Metrics().FontHeight();
    for (std::int32_t i = 1; i <= Iterations(); ++i) {
        const double x = vwindow_.DateToX(Date(i)), y = CostToY(Cost(i).ToDouble());
        vwindow_.DrawRect(x - reach, y - reach, x + reach, y + reach, kCostCurve, kCostCurve);
    }
    PlotMostLikely();
}

DateTime RiskForm::Median() const {
    return Date((Iterations() + 1) / 2);
}

std::vector<const RiskDriver*> RiskForm::Leading() const {
    constexpr double kMinute = 1.0 / kMinutesPerDay;
    constexpr std::size_t kMost = 12;
    std::vector<const RiskDriver*> leading;
    const auto swing = [](const RiskDriver* driver) { return driver->gainDays + driver->lossDays; };
    for (const RiskDriver& driver : results_.drivers)
        if (driver.gainKnown && driver.task && swing(&driver) >= kMinute) leading.push_back(&driver);
    std::stable_sort(leading.begin(), leading.end(),
                     [&](const RiskDriver* a, const RiskDriver* b) { return swing(a) > swing(b); });
    leading.resize(std::min(leading.size(), kMost));
    return leading;
}

/// A bar for each task, from the median finish with its optimistic estimate to that with its pessimistic one.
void RiskForm::PlotTornado() {
    const double middle = vwindow_.DateToX(Median());
    int row = 1;
    for (const RiskDriver* driver : Leading()) {
        const double high = vwindow_.RowPos(row), low = vwindow_.RowPos(row + 1), inset = (low - high) / 5;
        const double left = vwindow_.DateToX(AddDays(Median(), -driver->gainDays));
        const double right = vwindow_.DateToX(AddDays(Median(), driver->lossDays));
        vwindow_.DrawRect(left, high + inset, middle, low - inset, kBlack, kGain);
        vwindow_.DrawRect(middle, high + inset, right, low - inset, kBlack, kLoss);
        ++row;
    }
    vwindow_.DrawLine(middle, vwindow_.RowPos(1), middle, vwindow_.RowPos(row), kMostLikely, kLineWidth);
    const std::string name = "Median";
    vwindow_.DrawText(middle - vwindow_.TextWidth(name) / 2.0, vwindow_.RowPos(row), name, kMostLikely);
}

const RiskDriver* RiskForm::DriverAt(int y) const {
    const auto leading = Leading();
    const int row = vwindow_.RowAt(y);
    const bool one = view_ == View::Tornado && row >= 1 && row <= static_cast<int>(leading.size());
    return one ? leading[static_cast<std::size_t>(row - 1)] : nullptr;
}

ChartForm::Subject RiskForm::SubjectAt(int, int y) const {
    const RiskDriver* driver = DriverAt(y);
    return {driver ? driver->task.Get() : nullptr};
}

std::optional<ChartForm::SideList> RiskForm::Beside() const {
    if (results_.drivers.empty()) return std::nullopt;
    SideList list{
        "DriversList", "What drives it", {"Task", "Critical", "With finish", "With cost", "Gain"}, {}};
    for (const RiskDriver& driver : results_.drivers) {
        Vtask* task = driver.task.Get();
        if (!task) continue;
        const auto two = [](double number) {
            return FormatTwoDecimals(static_cast<float>(std::round(number * 100) / 100));
        };
        list.rows.push_back(
            {{task->BuildNodeText(), std::to_string(std::lround(driver.criticality * 100)) + "%",
              two(driver.finishCorrelation), two(driver.costCorrelation),
              driver.gainKnown ? FormatDuration(driver.gainDays, true) : ""},
             {task}});
    }
    return list;
}

std::string RiskForm::TipAt(int x, int y) const {
    if (const RiskDriver* driver = DriverAt(y); driver && driver->task) {
        return driver->task->BuildNodeText() +
               "\nWith its optimistic estimate: " + FormatDuration(driver->gainDays, true) +
               " earlier\nWith its pessimistic estimate: " + FormatDuration(driver->lossDays, true) +
               " later";
    }
    if (view_ == View::Tornado) return {};
    const int col = vwindow_.ColAt(x), row = vwindow_.RowAt(y);
    if (!HasData(results_) || col < 0 || row < 1 || !vwindow_.IsTimeColumn(col)) return {};
    const DateTime when = vwindow_.XToDate(x);
    const auto met = std::upper_bound(results_.riskDates.begin() + 1, results_.riskDates.end(), when) -
                     (results_.riskDates.begin() + 1);
    const auto percent = std::lround(static_cast<double>(met) * 100 / Iterations());
    if (view_ == View::Joint) {
        const double bottom = CostToY(0), step = bottom - CostToY(increment_);
        const Money cost = Money::FromDouble(std::max(0.0, (bottom - y) / step * increment_));
        const auto both = std::lround(results_.ChanceOfBoth(when, cost) * 100);
        return FormatDate(DateTime(when.WholeDay())) + "\n" +
               FormatCurrency(cost, workspace_.ThePlatform().CurrencySymbol()) + "\n" + std::to_string(both) +
               "% finish by then and cost no more";
    }
    return FormatDate(DateTime(when.WholeDay())) + "\n" + std::to_string(percent) + "% finish by then";
}

}  // namespace vortan
