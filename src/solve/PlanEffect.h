#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "model/DateTime.h"
#include "model/Link.h"
#include "model/Money.h"
#include "model/Vtask.h"
#include "model/Workspace.h"
#include "solve/Solver.h"

namespace vortan {

/// What differs between two solutions.
struct PlanEffect {
    struct Finish {
        std::string project;  ///< its name
        DateTime before, now;
    };
    /// A task that was there before and is now, with another start or finish.
    struct Moved {
        Link<Vtask> task;
        DateTime startBefore, finishBefore, startNow, finishNow;
    };
    std::vector<Finish> finishes;         ///< of projects that end at another time
    std::vector<Moved> moved;             ///< in the order of the projects and of their numbers
    std::int32_t added = 0, removed = 0;  ///< tasks
    Money labor, material;                ///< dearer by

    bool IsNone() const {
        return finishes.empty() && moved.empty() && added == 0 && removed == 0 && labor == Money() &&
               material == Money();
    }
};

/// "Finish of Shed 9/10/2001 -> 9/12/2001; 3 tasks moved; labor +$120.00", "Nothing moved".
std::string EffectText(const PlanEffect& effect);

/// Remembers the dates and costs of a solution until the next one comes. Of tasks that stand for a subproject
/// the dates count and the costs do not, which their tasks have.
class PlanWatch {
  public:
    /// What the complete solution says now against the last call. Empty with the first one, in another
    /// journal, and when other projects are in memory than before.
    PlanEffect Compare(const Workspace& workspace, const Solver& solver);
    /// The next call is the first.
    void Forget() { isFirst_ = true; }

  private:
    struct Entry {
        Link<Vtask> task;
        DateTime start, finish;
    };
    struct Sum {
        Link<Vproject> project;
        std::string name;
        DateTime finish;
    };
    struct State {
        std::vector<Entry> tasks;
        std::vector<Sum> projects;
        Money labor, material;
        DateTime journal;
    };
    static void Take(const Workspace& workspace, const Solver& solver, State& state);
    static void CompareTasks(const State& before, const State& now, PlanEffect& effect);

    State before_, now_;
    bool isFirst_ = true;
};

}  // namespace vortan
