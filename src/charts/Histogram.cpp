#include "charts/Histogram.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "charts/PlotAxis.h"
#include "model/Vtemplate.h"

namespace vortan {
namespace {

constexpr std::int64_t kMillisecondsPerTenth = 360'000;
constexpr double kMillisecondsPerDay = 86'400'000;

std::size_t Index(std::int32_t number) {
    return static_cast<std::size_t>(number);
}

/// A moment of a day is not exact in binary; its millisecond is.
std::int64_t TenthsOf(const Vslot& slot) {
    return std::llround(DaysBetween(slot.startTime, slot.endTime) * kMillisecondsPerDay) /
           kMillisecondsPerTenth;
}

/// Files shares under rows, which come into being with the first.
class HistogramBuilder {
  public:
    HistogramBuilder(Histogram& histogram, bool byDepartment)
        : histogram_(histogram), byDepartment_(byDepartment) {}

    void Add(Vresource& resource, const Solver& solver) {
        const auto& bounds = histogram_.bounds;
        std::int32_t period = 0, row = -1;
        const DaySpan days{static_cast<std::int32_t>(bounds.front()),
                           static_cast<std::int32_t>(bounds.back())};
        for (const Vslot& slot : solver.HeldSlots(resource, days)) {
            if (row < 0) row = RowOf(resource);
            while (bounds[Index(period) + 1] <= slot.startTime.WholeDay()) ++period;
            auto& shares = histogram_.shares;
            const Link<Vtask> task(slot.taskRequired);
            if (shares.empty() || shares.back().row != row || shares.back().period != period ||
                !(shares.back().task == task))
                shares.push_back({row, period, task, 0});
            shares.back().tenths += TenthsOf(slot);
        }
    }

    /// The cells of the rows and the totals, from the shares.
    void Sum() {
        auto& shares = histogram_.shares;
        std::stable_sort(shares.begin(), shares.end(),
                         [](const auto& a, const auto& b) { return a.row < b.row; });
        histogram_.totals.assign(Index(histogram_.Periods()), 0);
        std::vector<std::int32_t> cellOf(Index(histogram_.Periods()), -1);  // in the row at hand
        for (std::size_t i = 0; i < shares.size();) {
            const std::int32_t at = shares[i].row;
            auto& cells = histogram_.rows[Index(at)].cells;
            for (; i < shares.size() && shares[i].row == at; ++i) {
                std::int32_t& cell = cellOf[Index(shares[i].period)];
                if (cell < 0) {
                    cell = static_cast<std::int32_t>(cells.size());
                    cells.push_back({shares[i].period, 0});
                }
                cells[Index(cell)].tenths += shares[i].tenths;
            }
            for (const auto& cell : cells) {
                cellOf[Index(cell.period)] = -1;
                histogram_.totals[Index(cell.period)] += cell.tenths;
            }
            std::sort(cells.begin(), cells.end(),
                      [](const auto& a, const auto& b) { return a.period < b.period; });
        }
    }

  private:
    std::int32_t RowOf(Vresource& resource) {
        auto& rows = histogram_.rows;
        const auto next = static_cast<std::int32_t>(rows.size());
        if (byDepartment_) {
            const auto [place, isNew] = departments_.emplace(resource.Department(), next);
            if (isNew) rows.push_back({place->first, place->first, {}, {}});
            return place->second;
        }
        rows.push_back({resource.Key(), resource.Description(), &resource, {}});
        return next;
    }

    Histogram& histogram_;
    bool byDepartment_;
    std::unordered_map<std::string, std::int32_t> departments_;
};

}  // namespace

HistogramChoices ChoicesOf(const Vtemplate& from) {
    HistogramChoices choices;
    std::set<std::string> known;
    for (const Vresource* resource : from.ResourceList()) {
        if (!resource->Include()) continue;
        if (known.insert(resource->Department()).second)
            choices.departments.push_back(resource->Department());
        choices.resources.emplace_back(resource->ResourceID(), resource->Description());
    }
    return choices;
}

const Histogram::Cell* Histogram::FindCell(const Row& row, std::int32_t period) const {
    const auto cell = std::lower_bound(row.cells.begin(), row.cells.end(), period,
                                       [](const Cell& each, std::int32_t at) { return each.period < at; });
    return cell != row.cells.end() && cell->period == period ? &*cell : nullptr;
}

Histogram BuildHistogram(const Vtemplate& from, const Solver& solver, std::vector<double> bounds,
                         bool byDepartment, const std::optional<HistogramFilter>& filter) {
    Histogram histogram;
    histogram.templateName = from.TemplateName();
    histogram.bounds = std::move(bounds);
    HistogramBuilder builder(histogram, byDepartment);
    for (Vresource* resource : from.ResourceList()) {
        if (resource->Include() && (!filter || filter->Takes(*resource))) builder.Add(*resource, solver);
    }
    builder.Sum();
    if (!histogram.totals.empty())
        histogram.maxHours =
            static_cast<double>(*std::max_element(histogram.totals.begin(), histogram.totals.end())) / 10;
    histogram.increment = ComputeIncrement(histogram.maxHours);
    return histogram;
}

}  // namespace vortan
