#include "support/ScheduleChecker.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "support/LoadedPlan.h"

namespace vortan {

namespace {

constexpr double kTolerance = 1e-6;  // days

struct Piece : Vslice {
    std::int32_t index = 0;  ///< place in the solve order
};

class Checker {
  public:
    Checker(const Workspace& workspace, const Solver& solver) : solver_(solver) {
        for (std::int32_t i = 0; i < solver.SliceCount(); ++i) {
            const Vslice slice = solver.Slice(i);
            pieces_[slice.task].push_back({slice, i});
        }
        for (const Vtemplate* pool : workspace.TemplateList()) {
            for (const Vresource* resource : pool->ResourceList()) CheckBookings(*resource);
        }
        for (const Vproject* project : workspace.ProjectList()) CheckProject(*project);
    }
    std::vector<std::string> violations;

  private:
    void Require(bool holds, const char* rule, const Vtask* task, DateTime date = DateTime()) {
        if (holds) return;
        violations.push_back(std::string(rule) + ": " + NameOf(task) +
                             (date.IsSet() ? ", at " + DateText(date) : ""));
    }

    /// Time is booked once, for a slice that lasts then, of a kind that the solve rule allows, at its rate.
    void CheckBookings(const Vresource& resource) {
        DateTime end;
        for (const Vslot& slot : solver_.HeldSlots(resource)) {
            const Vtask* task = slot.taskRequired;
            Require(slot.startTime >= end, "Booked twice", task, slot.startTime);
            end = slot.endTime;
            booked_[task] += slot.laborCost;
            const auto& pieces = pieces_[task];
            Require(std::any_of(pieces.begin(), pieces.end(),
                                [&](const Piece& piece) {
                                    return slot.startTime >= AddDays(piece.earlyStart, -kTolerance) &&
                                           slot.endTime <= AddDays(piece.earlyFinish, kTolerance);
                                }),
                    "Booked outside of its slices", task, slot.startTime);
            const SolveRule rule = task->Project()->SolveRules();
            Require(slot.slotType <= 4 ||
                        rule >= (slot.slotType == 5 ? SolveRule::OvertimeHalt : SolveRule::DayHalt),
                    "Kind of time that the solve rule does not allow", task, slot.startTime);
            const Money rate = slot.slotType == 3   ? resource.BurdenedRate()
                               : slot.slotType == 4 ? resource.OffDayRate()
                               : slot.slotType == 5 ? resource.OvertimeRate()
                                                    : resource.HolidayRate();
            const double cost = rate.ToDouble() * DaysBetween(slot.startTime, slot.endTime) * 24;
            Require(std::abs(cost - slot.laborCost.ToDouble()) <= 0.0001, "Cost of a booking", task,
                    slot.startTime);
        }
    }

    void CheckProject(const Vproject& project) {
        for (const Vtask* task : project.TaskList()) {
            if (!task->Include()) continue;
            CheckSlices(*task);
            if (const Vproject* inner = task->Subproject()) {
                CheckLink(*task, *inner);
            } else {
                Require(task->LaborCost() == booked_[task], "Labor cost of the task", task);
                for (const Vdependency* dependency : task->DependencyList()) CheckDependency(*dependency);
            }
        }
    }

    /// From 0 to 100 percent in order, each behind the one before. A slice on day 0 does not count as a
    /// start.
    void CheckSlices(const Vtask& task) {
        const auto& pieces = pieces_[&task];
        if (pieces.empty()) return Require(false, "Not in order", &task);
        int percent = 0;
        DateTime start, clock;
        Money cost;
        for (const Piece& piece : pieces) {
            const bool behind = !start.IsSet() || task.Subproject() || piece.earlyStart >= clock;
            Require(piece.fromPercent == percent, "Cut into the wrong slices", &task);
            Require(behind && piece.earlyFinish >= piece.earlyStart,
                    "Slices overlap or end before they start", &task, piece.earlyStart);
            percent = piece.toPercent;
            if (!start.IsSet()) start = piece.earlyStart;
            clock = piece.earlyFinish;
            cost += piece.laborCost;
        }
        Require(percent == 100, "Cut into the wrong slices", &task);
        Require(task.EarlyStart() == start, "Early start", &task);
        Require(task.EarlyFinish() == clock, "Early finish", &task);
        Require(task.Subproject() || cost == task.LaborCost(), "Labor costs of the slices", &task);
    }

    /// No slice at or behind `ToPercent` begins before the dependency allows it.
    void CheckDependency(const Vdependency& dependency) {
        const Vtask* task = dependency.Task();
        if (!dependency.Include()) return;
        const Piece* source = nullptr;
        if (const Vtask* required = dependency.TaskRequired()) {
            for (const Piece& piece : pieces_[required]) {
                if (piece.toPercent == dependency.FromPercent()) source = &piece;
            }
            if (!source) return Require(false, "Not cut where a task waits for it", required);
            Require(dependency.DepDate() == source->earlyFinish, "Date of a dependency", task);
        }
        const DateTime from = AddDays(dependency.DepDate(), dependency.Offset() - kTolerance);
        for (const Piece& piece : pieces_[task]) {
            if (piece.fromPercent < dependency.ToPercent()) continue;
            Require(!source || source->index < piece.index, "In order ahead of what it waits for", task);
            Require(piece.earlyStart >= from, "Starts before a dependency allows it", task, piece.earlyStart);
        }
    }

    void CheckLink(const Vtask& link, const Vproject& inner) {
        Money labor;
        for (const Vtask* task : inner.TaskList()) {
            if (!task->Include()) continue;
            labor += task->LaborCost();
            Require(link.EarlyStart() <= task->EarlyStart() && link.EarlyFinish() >= task->EarlyFinish(),
                    "Outside of what stands for it", task);
            Require(pieces_[task].back().index < pieces_[&link].front().index,
                    "In order behind what stands for it", task);
        }
        Require(labor == link.LaborCost(), "Labor cost of a link", &link);
    }

    const Solver& solver_;
    std::map<const Vtask*, std::vector<Piece>> pieces_;
    std::map<const Vtask*, Money> booked_;
};

}  // namespace

std::vector<std::string> ScheduleViolations(const Workspace& workspace, const Solver& solver) {
    return Checker(workspace, solver).violations;
}

}  // namespace vortan
