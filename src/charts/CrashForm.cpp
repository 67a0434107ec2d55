#include "charts/CrashForm.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "charts/PageHeader.h"
#include "charts/PlotAxis.h"
#include "model/ErrTrap.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtask.h"

namespace vortan {
namespace {

constexpr Color kCostCurve = 0x800000;
constexpr int kLineWidth = 2;  // pixels

bool SameSlice(const Vcrash& a, const Vcrash& b) {
    return a.task.Get() == b.task.Get() && a.fromPercent == b.fromPercent;
}

/// Of records with live tasks.
bool StandsBefore(const Vcrash& a, const Vcrash& b) {
    const auto key = [](const Vcrash& crash) {
        const Vtask& task = *crash.task.Get();
        return std::tuple(-crash.multiplier, task.Project()->ProjectName(), task.TaskID(),
                          -crash.fromPercent);
    };
    return key(a) < key(b);
}

}  // namespace

CrashForm::CrashForm(const Workspace& workspace, const std::vector<Vcrash>& crashList,
                     const TextMetrics& metrics)
    : ChartForm(Vwindow::Style::Time, metrics), workspace_(workspace), crashList_(crashList) {
    vwindow_.WideTimeColumns = true;
    vwindow_.ToolTip = "Click on a date to see what it takes to finish by then";
}

std::string CrashForm::Caption() const {
    return "Crash analysis for " + GetPageHeader(workspace_);
}

ChartForm::OptionsFrame CrashForm::Frame() {
    const auto choose = [this](bool totalCost) {
        return [this, totalCost](bool) { totalCost_ = totalCost; };
    };
    return {"Frame1",
            "Crash options",
            {{Option::Kind::Choice, "CrashCostOption", "Crash cost", !totalCost_, choose(false)},
             {Option::Kind::Choice, "TotalCostOption", "Total cost", totalCost_, choose(true)}}};
}

void CrashForm::Start() {
    const Section section("Crash:Start");
    if (crashList_.empty()) return;
    baseCost_ = totalCost_ ? Money() : crashList_.front().totalCost;
    maxCost_ = crashList_.back().totalCost - baseCost_;
    increment_ = ComputeIncrement(maxCost_.ToDouble());
    vwindow_.SetDateRange(crashList_.back().endDate, crashList_.front().endDate);
}

void CrashForm::LayOut() {
    const Section section("Crash:Vwindow_RedoLayout");
    workspace_.ThePlatform().StatusMessage("Building crash plot");
    vwindow_.ClearLayout();
    vwindow_.AddColumn("Total cost", Alignment::RightBottom);
    vwindow_.AddTimeColumns();
    const std::string symbol = workspace_.ThePlatform().CurrencySymbol();
    AddAxisRows(vwindow_, maxCost_.ToDouble(), increment_,
                [&](double value) { return FormatCurrency(Money::FromDouble(value), symbol); });
    vwindow_.EndLayout(1, 2);
}

void CrashForm::Draw() {
    const Section section("Crash:Vwindow_RedoGraphics");
    PlotCost();
    vwindow_.EndGraphics();
    workspace_.ThePlatform().StatusMessage("");
}

double CrashForm::CostToY(Money cost) const {
    return AxisY(vwindow_, (cost - baseCost_).ToDouble() / increment_);
}

void CrashForm::PlotCost() {
    for (std::size_t i = 1; i < crashList_.size(); ++i) {
        const Vcrash &from = crashList_[i - 1], &to = crashList_[i];
        vwindow_.DrawLine(vwindow_.DateToX(from.endDate), CostToY(from.totalCost),
                          vwindow_.DateToX(to.endDate), CostToY(to.totalCost), kCostCurve, kLineWidth);
    }
}

void CrashForm::DateClick(DateTime clicked) {
    const Section section("Crash:Vwindow_DateClick");
    if (crashList_.size() < 2 || !ShowCrashData) return;
    const std::size_t step = FindStep(crashList_, clicked);
    ShowCrashData(crashList_[step].endDate, MultipliersAt(crashList_, step));
}

std::size_t CrashForm::FindStep(const std::vector<Vcrash>& crashList, DateTime clicked) {
    std::size_t step = crashList.size() - 1;
    while (step > 1 && crashList[step].endDate < clicked) --step;
    return step;
}

std::vector<Vcrash> CrashForm::MultipliersAt(const std::vector<Vcrash>& crashList, std::size_t step) {
    std::vector<Vcrash> list;
    for (std::size_t i = step; i >= 1; --i) {
        const Vcrash& crash = crashList[i];
        // The latest step of a slice comes first. A task may have been deleted since the solve.
        const bool known = std::any_of(list.begin(), list.end(),
                                       [&](const Vcrash& other) { return SameSlice(other, crash); });
        if (crash.task.Get() && !known) list.push_back(crash);
    }
    std::sort(list.begin(), list.end(), StandsBefore);
    return list;
}

}  // namespace vortan
