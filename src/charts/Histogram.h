#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "model/Link.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "solve/Solver.h"

namespace vortan {

/// Which resources a histogram shows: those of these departments, and these by their ResourceID.
struct HistogramFilter {
    std::set<std::string> departments;
    std::set<std::int32_t> resources;

    bool Takes(const Vresource& resource) const {
        return resources.count(resource.ResourceID()) > 0 || departments.count(resource.Department()) > 0;
    }
};

/// What there is to choose from in the journal in force, in the order of the resources.
struct HistogramChoices {
    std::vector<std::string> departments;
    std::vector<std::pair<std::int32_t, std::string>> resources;  ///< ResourceID and description
};
HistogramChoices ChoicesOf(const Vtemplate& from);

/// The hours that tasks, of whatever project, hold of the resources of a template, by resource or department
/// and by period. Counted in tenths of an hour, each held slot cut to tenths on its own.
struct Histogram {
    struct Cell {
        std::int32_t period;
        std::int64_t tenths;
    };
    struct Row {
        std::string key, label;
        Link<Vresource> resource;  ///< none: a department
        std::vector<Cell> cells;   ///< ascending by period; those with a slot, however short
    };
    /// What a task holds of a row in a period; a task may have several there.
    struct Share {
        std::int32_t row, period;
        Link<Vtask> task;
        std::int64_t tenths;
    };

    std::string templateName;
    std::vector<double> bounds{0};       ///< where periods begin, and the end of the last; whole days
    std::vector<Row> rows;               ///< in the order in which something of theirs is first held
    std::vector<std::int64_t> totals;    ///< tenths by period
    std::vector<Share> shares;           ///< ascending by row
    double maxHours = 0, increment = 1;  ///< the highest total, and the hours of one row of the axis

    std::int32_t Periods() const { return static_cast<std::int32_t>(bounds.size()) - 1; }
    /// None if the row has no slot there.
    const Cell* FindCell(const Row& row, std::int32_t period) const;
};

/// Of the last solution. `bounds` as in Histogram; without `filter` all included resources.
Histogram BuildHistogram(const Vtemplate& from, const Solver& solver, std::vector<double> bounds,
                         bool byDepartment, const std::optional<HistogramFilter>& filter);

}  // namespace vortan
