#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/Vtask.h"
#include "model/Workspace.h"
#include "solve/Solver.h"

namespace vortan {

/// Holds a completed solve against the rules that every schedule must keep, from the model and the public
/// views of the solver alone. Nothing here finds a schedule; it only says what is wrong with one.
class ScheduleChecker {
  public:
    ScheduleChecker(const Workspace& workspace, const Solver& solver);

    /// One sentence for each rule broken, naming project, task, resource and date; empty: all is well.
    const std::vector<std::string>& Violations() const { return violations_; }

  private:
    static constexpr double kTolerance = 1e-6;  ///< days

    struct Piece : Vslice {
        int index = 0;         ///< place in the solve order
        int wave = 0;          ///< slices on the longest chain before it
        double booked = 0;     ///< minutes
        Money cost;            ///< of its slots
        double lateLimit = 0;  ///< what successors and the plan's finish allow, days
        std::map<std::int64_t, std::map<const Vresource*, double>> minutes;  ///< by day
    };
    using Pieces = std::vector<Piece>;

    void Report(const std::string& what, const Vtask* task, double date = 0,
                const Vresource* resource = nullptr);
    void Same(const std::string& what, double is, double should, const Vtask* task);
    void SameMoney(const std::string& what, Money is, Money should, const Vtask* task);
    static bool IsEffort(const Vtask& task) { return !task.Subproject() && task.EffortUnits() < 0; }

    void CollectPieces();
    void CheckPercentages(const Vtask* task);
    void CollectBookings(const Vresource* resource);
    void CheckBooking(const Vresource* resource, const Vslot& slot);
    void CheckDay(const Vresource* resource, std::int64_t day);
    static char LettersOf(const Vresource* resource, const Vslot& slot);

    Piece& SourceOf(const Vdependency& dependency);
    Piece& TargetOf(const Vdependency& dependency);
    double LatestDate(const Vtask* task, int percent, int before);

    void CheckOrder();
    void CheckDates(const Vtask* task);
    void CheckFinish(const Piece& piece);
    void CheckLink(const Vtask* task);
    void CheckEffort(const Vtask* task);
    void CheckCosts(const Vtask* task);
    void CheckDayLoads(const Vtask* task);
    void CheckFullness(const Piece& piece);
    void CheckTeamDay(const Piece& piece, std::int64_t day, bool team);
    static double FreeNormalMinutes(const std::vector<Vslot>& slots, double from);
    std::vector<Vslot> SlotsOf(const Vresource* resource, std::int64_t day) const;
    static std::map<const Vresource*, std::int32_t> Wanted(const Vtask* task, std::int64_t day);

    void CheckLateDates();
    void LimitLateFinish(const Piece& piece);
    void CheckLateDatesOfTask(const Vtask* task);
    void CheckProject(const Vproject* project);
    static double PlanFinish(const Vproject* project);
    static double OffsetBetween(const Piece& before, const Piece& behind);

    const Workspace& workspace_;
    const Solver& solver_;
    std::vector<const Vtask*> tasks_;  ///< included ones
    std::unordered_map<const Vtask*, Pieces> pieces_;
    std::unordered_map<const Vtask*, Money> booked_;
    std::vector<Piece*> order_;
    std::vector<std::string> violations_;
};

}  // namespace vortan
