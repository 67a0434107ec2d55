#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "model/Money.h"
#include "solve/Bookings.h"
#include "solve/Network.h"

namespace vortan {

/// One forward pass over a network: places the slices in order, moving each task's clock forward day by day
/// and booking resources as it goes. A slice that comes second gets what is left; the solve rule of its
/// project decides what happens then. Touches no model object, and allocates nothing once it has run.
class ForwardRun {
  public:
    enum class Outcome {
        Done,
        Stopped,  ///< the caller's poll said so
        Halted,   ///< a resource held by another task could not give its hours, under a halting rule
        NoTime,   ///< a clock would pass the last day of the calendar
    };
    struct Clock {
        double start = 0, finish = 0;  ///< days; 0 is not solved
        Money laborCost, materialCost;
    };
    /// A slot of a resource that the watched task wants, as it stood when a slice of the task was done.
    struct Sighting {
        std::int32_t slice, resource;
        SlotView slot;
    };
    /// Asked every few hundred steps whether to stop. `slice` is the one in work. If it says so, the network
    /// and all that this refers to may be gone.
    class Poll {
      public:
        virtual ~Poll() = default;
        virtual bool Stop(std::int32_t slice) = 0;
    };

    /// Takes all slices at their most likely minutes and a team of 1. `network` and `bookings`, which must
    /// have been reset to it, are used until the next Prepare.
    void Prepare(const Network& network, Bookings& bookings);
    /// Places all slices in order.
    Outcome SolveAllSlices(Poll* poll);

    // For passes that place the slices one by one, in order, behind Prepare and Begin.
    void Begin(Poll* poll) {
        poll_ = poll;
        pollIn_ = kStepsPerPoll;
    }
    void SetUseMinutes(std::int32_t slice, std::int32_t minutes) { useMinutes_[Index(slice)] = minutes; }
    /// The size of the slice's team.
    void SetMultiplier(std::int32_t slice, float multiplier) { multiplier_[Index(slice)] = multiplier; }
    Outcome SolveOneSlice(std::int32_t slice);
    /// SolveOneSlice for a look: everything is taken back, unless it is stopped. Tells when the slice would
    /// finish and what its task would have cost up to there.
    Outcome TrySlice(std::int32_t slice, double& finish, Money& taskCost);
    /// Places a slice on its dependencies alone, for that many days: no resource, calendar or slice of the
    /// same task holds it back. Links are placed as ever.
    void PlaceScaled(std::int32_t slice, double days, Money cost);

    /// Records what one task found on the days of its slices in the next pass; -1 records nothing.
    void Watch(std::int32_t task) { watched_ = task; }
    const std::vector<Sighting>& Sightings() const { return sightings_; }

    // Results by slice and by task; 0 where the pass has not come.
    const std::vector<double>& SliceStart() const { return sliceStart_; }
    const std::vector<double>& SliceFinish() const { return sliceFinish_; }
    const std::vector<Money>& SliceCost() const { return sliceCost_; }
    const std::vector<Clock>& Clocks() const { return clocks_; }
    /// First start, last finish and costs of a project's tasks.
    static Clock Totals(const Network::Project& project, const std::vector<Clock>& clocks);
    /// How many slices the pass has begun, the one that it halted on included.
    std::int32_t SlicesBegun() const { return begun_; }

    /// What a halt under that rule is.
    static SolveProblem::Kind ShortageUnder(SolveRule rule);
    // Of a halt.
    std::int32_t ProblemTask() const { return problemTask_; }
    std::int32_t ProblemResource() const { return problemResource_; }
    std::int32_t ProblemMinutesLeft() const { return problemMinutesLeft_; }
    double ProblemDate() const { return problemDate_; }

  private:
    static constexpr int kStepsPerPoll = 512;

    struct Member {
        std::int32_t resource;
        std::int32_t minutesLeft;
        bool interference;  ///< a wanted period was held by another task
        bool free;          ///< works in the present stretch
        bool gave;          ///< was free in some stretch of the day
    };

    void SolveSubproject(std::int32_t slice);
    double FindLatestDate(const Network::Task& task, int percent) const;
    Outcome Work(std::int32_t slice);
    bool SolveSomeMore(const Network::Task& task, std::int32_t& remaining, double stepStart);
    bool SolveAlone(const Network::Task& task, std::int32_t& remaining, double stepStart);
    void WorkWholeDays(const Network::Task& task, std::int32_t& remaining);
    void TeamSolve(const Network::Task& task, std::int32_t& remaining, std::int64_t& today, double start);
    void PiecemealSolve(const Network::Task& task, std::int32_t& remaining, std::int64_t& today,
                        double start);
    std::int32_t BookDay(std::int32_t resource, double start, std::int32_t minutes, Pass pass,
                         bool& interference);
    double WorkStretch(Pass pass, double cursor, double limit, std::int32_t& remaining, std::int64_t& today);
    std::int32_t NextUsefulDay(const Network::Task& task, std::int32_t remaining, std::int32_t day);
    std::optional<Reach> ReachOn(const Network::Task& task, std::int32_t remaining, int weekday) const;
    SolveRule RuleOf(const Network::Task& task) const {
        return network_->Projects()[Index(task.project)].rule;
    }
    Outcome Halt(Outcome outcome, std::int32_t task) {
        problemTask_ = task;
        return outcome;
    }
    void Record(std::int32_t slice);

    const Network* network_ = nullptr;
    Bookings* bookings_ = nullptr;
    std::vector<double> sliceStart_, sliceFinish_;
    std::vector<Money> sliceCost_;
    std::vector<Clock> clocks_;
    std::vector<std::int32_t> useMinutes_;
    std::vector<float> multiplier_;
    std::vector<Member> members_;
    Bookings::Account account_{};
    Poll* poll_ = nullptr;
    int pollIn_ = 0;
    std::int32_t begun_ = 0;
    std::int32_t watched_ = -1;
    std::vector<Sighting> sightings_;
    std::int32_t problemTask_ = -1, problemResource_ = -1, problemMinutesLeft_ = 0;
    double problemDate_ = 0;
};

}  // namespace vortan
