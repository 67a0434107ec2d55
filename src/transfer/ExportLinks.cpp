// Dependencies as links and constraints.

#include <algorithm>
#include <cmath>

#include "model/ValueText.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "transfer/PlanExport.h"

namespace vortan {

namespace {

constexpr int kFinish = 100;

/// "5 Dig, from 30 % to 50 %, 2 days later"
std::string LinkText(const Vdependency& dependency) {
    std::string text = "Link";
    if (const Vtask* required = dependency.TaskRequired())
        text += " from " + std::to_string(dependency.FromPercent()) + " % of task " +
                std::to_string(required->TaskID()) + " " + required->Description();
    else
        text += " from " + FormatDate(dependency.DepDate());
    text += " to " + std::to_string(dependency.ToPercent()) + " %";
    if (dependency.Offset() != 0) text += ", offset " + FormatDuration(dependency.Offset(), true);
    return text;
}

/// The end of a task that a percentage is nearer to.
bool AtFinish(int percent) {
    return percent * 2 >= kFinish;
}

MLinkType TypeOf(bool fromFinish, bool toFinish) {
    return fromFinish ? (toFinish ? MLinkType::FF : MLinkType::FS)
                      : (toFinish ? MLinkType::SF : MLinkType::SS);
}

}  // namespace

void PlanExport::ExportDependencies() {
    transfer_.StartCount("Exporting dependencies", static_cast<std::int64_t>(rows_.size()));
    for (std::size_t at = 1; at < rows_.size(); ++at) {
        const Vtask& task = *rows_[at].task;
        if (task.Include()) {
            for (const Vdependency* dependency : task.DependencyList()) {
                if (dependency->Include()) ExportDependency(at, *dependency);
            }
        }
        transfer_.IncrementCount();
    }
}

void PlanExport::ExportDependency(std::size_t at, const Vdependency& dependency) {
    const Vtask& task = *rows_[at].task;
    const Vtask* required = dependency.TaskRequired();
    if (!required) {
        if (!dependency.TaskRequiredDeleted()) return ExportDate(at, dependency);
        return Lose(task, LinkText(dependency), "its prerequisite has been deleted", "Left out");
    }
    const auto found = rowOf_.find(required);
    if (found == rowOf_.end()) {
        Lose(task, LinkText(dependency),
             "the prerequisite is in project " +
                 (required->Project() ? required->Project()->ProjectName() : std::string()) +
                 ", which is not part of the export",
             "Written as a constraint, of the date that it gave");
        return ExportDate(at, dependency);
    }
    for (std::size_t above = rows_[at].parent; above != 0; above = rows_[above].parent) {
        if (above != found->second) continue;
        return Lose(task, LinkText(dependency), "a task cannot wait for a summary that it is part of",
                    "Left out");
    }
    const int from = dependency.FromPercent(), to = dependency.ToPercent();
    const double offset = dependency.Offset();
    MLink link;
    link.PredecessorUID = FileRow(found->second).UID;
    link.Type = TypeOf(AtFinish(from), AtFinish(to));
    const bool partFrom = from != 0 && from != kFinish;
    if (partFrom && offset == 0) {
        link.Lag = AtFinish(from) ? from - kFinish : from;
        link.LagFormat = static_cast<int>(MFormat::Percent);
    } else if (offset != 0) {
        link.Lag = std::round(offset * kMinutesPerDay * 10) / 10;
        link.LagFormat = static_cast<int>(MFormat::ElapsedDays);
    }
    if ((to != 0 && to != kFinish) || (partFrom && offset != 0)) {
        Lose(task, LinkText(dependency),
             partFrom && offset != 0 ? "a link there has either a percentage or a lag"
                                     : "a link there ends at the start or the finish",
             std::string("Written as ") + LinkTypeText(link.Type) +
                 (offset != 0 ? " with the offset"
                  : partFrom  ? " with the percentage of the prerequisite"
                              : ""));
    }
    std::vector<MLink>& links = FileRow(at).Links;
    if (std::any_of(links.begin(), links.end(),
                    [&](const MLink& each) { return each.PredecessorUID == link.PredecessorUID; })) {
        Lose(task, LinkText(dependency), "that program keeps one link between two tasks",
             "Written beside the other one");
    }
    links.push_back(link);
}

/// A date is a constraint, of which a task has one: the latest to the start, else the latest to the finish.
void PlanExport::ExportDate(std::size_t at, const Vdependency& dependency) {
    MTask& row = FileRow(at);
    const Vtask& task = *rows_[at].task;
    const int to = dependency.ToPercent();
    // To the second, as the file has it.
    const DateTime date =
        FromParts(ToParts(InRange(&task, AddDays(dependency.DepDate(), dependency.Offset()))));
    const auto type = AtFinish(to) ? MConstraint::FinishNoEarlierThan : MConstraint::StartNoEarlierThan;
    const auto number = static_cast<std::int32_t>(type);
    if (to != 0 && to != kFinish)
        Lose(task, LinkText(dependency), "a date there holds the start or the finish",
             AtFinish(to) ? "Written as Finish No Earlier Than" : "Written as Start No Earlier Than");
    if (row.ConstraintType == 0) {
        row.ConstraintType = number;
        row.ConstraintDate = date;
        return;
    }
    const bool starts = type == MConstraint::StartNoEarlierThan;
    const bool better = number == row.ConstraintType ? date > row.ConstraintDate : starts;
    Lose(task, better ? "Constraint of " + FormatDate(row.ConstraintDate) : LinkText(dependency),
         "a task there has one date", "Left out");
    if (!better) return;
    row.ConstraintType = number;
    row.ConstraintDate = date;
}

}  // namespace vortan
