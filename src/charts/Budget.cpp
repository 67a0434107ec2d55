#include "charts/Budget.h"

#include <algorithm>
#include <cmath>

#include "charts/PlotAxis.h"
#include "model/Vtask.h"

namespace vortan {
namespace {

struct Style {
    const char* label;
    Color color;
};
// By kind of cost: the plan in pale colours, the journal in force in dark ones.
constexpr Style kPlan[] = {{"Plan Material", 0x6464FF}, {"Plan Labor", 0x64FF64}, {"Plan Total", 0xFF6464}};
constexpr Style kCurrent[] = {
    {"Current Material", 0x0000C8}, {"Current Labor", 0x00C800}, {"Current Total", 0xC80000}};
constexpr Style kBudgeted = {"BCWS", 0x800000}, kEarned = {"BCWP", 0x008000}, kActual = {"ACWP", 0x000080};

Money CostOf(const Vtask& task, CostKind kind, std::int32_t journal) {
    if (kind == CostKind::Material) return task.MaterialCostAt(journal);
    if (kind == CostKind::Labor) return task.LaborCostAt(journal);
    return task.MaterialCostAt(journal) + task.LaborCostAt(journal);
}

Money CostOf(const Vproject& project, std::int32_t journal) {
    Money sum;
    for (const Vtask* task : project.TaskList())
        if (task->IncludeAt(journal)) sum += CostOf(*task, CostKind::Total, journal);
    return sum;
}

/// One of `parts` equal parts, rounded to the ten-thousandth, ties to even.
Money Part(Money whole, std::int64_t parts) {
    const std::int64_t units = whole.Units();
    std::int64_t part = units / parts;
    const std::int64_t rest = std::abs(units % parts);
    const bool up = rest > parts - rest || (rest == parts - rest && part % 2 != 0);
    if (up) part += units < 0 ? -1 : 1;
    return Money::FromUnits(part);
}

/// What is added to the sum on each day of a journal's range.
class DayCosts {
  public:
    DayCosts(const Vproject& project, std::int32_t journal)
        : first_(project.EarlyStartAt(journal).WholeDay()),
          costs_(static_cast<std::size_t>(project.EarlyFinishAt(journal).WholeDay() - first_) + 1) {}

    /// What falls outside of the range is left out.
    void Add(double day, Money cost) {
        if (day >= first_ && day < first_ + static_cast<double>(costs_.size())) At(day) += cost;
    }
    /// The same amount on each day from `begin` to before `end`.
    void AddDaily(double begin, double end, Money cost) {
        begin = std::max(begin, first_);
        end = std::min(end, first_ + static_cast<double>(costs_.size()));
        if (begin >= end) return;
        if (rates_.empty()) rates_.resize(costs_.size() + 1);
        rates_[static_cast<std::size_t>(begin - first_)] += cost;
        rates_[static_cast<std::size_t>(end - first_)] -= cost;
    }
    void SumUp(Budget::Curve& curve) {
        curve.firstDay = static_cast<std::int32_t>(first_);
        Money rate, sum;
        for (std::size_t i = 0; i < costs_.size(); ++i) {
            if (!rates_.empty()) rate += rates_[i];
            sum += costs_[i] + rate;
            curve.sums.push_back(sum);
        }
    }

  private:
    Money& At(double day) { return costs_[static_cast<std::size_t>(day - first_)]; }

    double first_;
    std::vector<Money> costs_, rates_;  ///< `rates_`: by how much the daily amount changes
};

void Finish(Budget& budget, const Vproject& project, Budget::Curve curve, DayCosts& days, bool whole) {
    days.SumUp(curve);
    curve.cut = !whole && curve.LastDay() >= project.Journal().Days();
    budget.curves.push_back(std::move(curve));
}

Budget::Curve NewCurve(const Style& style, CostKind kind, bool ofPlan) {
    return {style.label, style.color, kind, ofPlan, false, 0, {}};
}

void AddSpread(Budget& budget, const Vproject& project, CostKind kind, bool ofPlan, bool whole) {
    const std::int32_t journal = ofPlan ? project.PlanIndex() : project.CurrentIndex();
    DayCosts days(project, journal);
    for (const Vtask* task : project.TaskList()) {
        const DateTime start = task->EarlyStartAt(journal), finish = task->EarlyFinishAt(journal);
        if (!task->IncludeAt(journal) || !(start < finish)) continue;
        const double begin = start.WholeDay(), end = std::ceil(finish.Days());
        const auto count = static_cast<std::int64_t>(end - begin);
        for (const CostKind each : {CostKind::Material, CostKind::Labor}) {
            if (kind == CostKind::Total || kind == each)
                days.AddDaily(begin, end, Part(CostOf(*task, each, journal), count));
        }
    }
    const auto at = static_cast<std::size_t>(kind);
    Finish(budget, project, NewCurve((ofPlan ? kPlan : kCurrent)[at], kind, ofPlan), days, whole);
}

/// Costs of one journal on the days on which tasks finish in another.
void AddEarned(Budget& budget, const Vproject& project, const Style& style, CostKind kind, std::int32_t costs,
               std::int32_t dates, bool whole) {
    DayCosts days(project, dates);
    for (const Vtask* task : project.TaskList()) {
        if (task->IncludeAt(costs) && task->IncludeAt(dates))
            days.Add(task->EarlyFinishAt(dates).WholeDay(), CostOf(*task, kind, costs));
    }
    Finish(budget, project, NewCurve(style, kind, &style == &kBudgeted), days, whole);
}

}  // namespace

void BudgetChoice::ApplyRules(std::string_view clicked, bool replanned) {
    if (!replanned) current = false;
    bool& total = costs[static_cast<std::size_t>(CostKind::Total)];
    if (!costs[0] && !costs[1]) total = true;
    if (!plan && !current && !earnedValue) plan = true;
    if (earnedValue && (plan || current)) {
        if (clicked == "PlanCheck" || clicked == "CurrentCheck") {
            earnedValue = false;
        } else {
            plan = current = false;
        }
    }
    if (earnedValue && std::count(costs.begin(), costs.end(), true) > 1) {
        const bool material = clicked == "MaterialCostCheck", labor = clicked == "LaborCostCheck";
        costs = {material, labor, !material && !labor};
    }
}

Money Budget::Curve::At(std::int32_t day) const {
    if (day < firstDay || sums.empty()) return {};
    return sums[std::min(static_cast<std::size_t>(day - firstDay), sums.size() - 1)];
}

const Budget::Curve* Budget::Counterpart(const Curve& curve) const {
    const auto found = std::find_if(curves.begin(), curves.end(), [&](const Curve& other) {
        return other.kind == curve.kind && other.ofPlan != curve.ofPlan;
    });
    return found == curves.end() ? nullptr : &*found;
}

Budget BuildBudget(const Vproject& project, const BudgetChoice& choice) {
    const std::int32_t plan = project.PlanIndex(), current = project.CurrentIndex();
    Budget budget;
    budget.project = project.ProjectName();
    budget.maxCost = std::max(CostOf(project, plan), CostOf(project, current));
    budget.increment = ComputeIncrement(budget.maxCost.ToDouble());
    for (const CostKind kind : {CostKind::Material, CostKind::Labor, CostKind::Total}) {
        if (!choice.costs[static_cast<std::size_t>(kind)]) continue;
        if (choice.earnedValue) {
            AddEarned(budget, project, kBudgeted, kind, plan, plan, true);
            AddEarned(budget, project, kEarned, kind, plan, current, choice.pastToday);
            AddEarned(budget, project, kActual, kind, current, current, choice.pastToday);
            continue;
        }
        if (choice.plan) AddSpread(budget, project, kind, true, true);
        if (choice.current) AddSpread(budget, project, kind, false, choice.pastToday);
    }
    return budget;
}

}  // namespace vortan
