#pragma once

#include <cstdint>

#include "model/DateTime.h"

namespace vortan {

class Vresource;
class Vtask;

/// Where the background solve stands.
enum class SolveMode : int {
    Idle = 0,              ///< the solution is complete, or there is nothing to solve
    Running = 1,           ///< a solve is running
    Halted = 2,            ///< halted on a problem; the status text tells which
    Restart = 3,           ///< a restart is due: the timer is armed, or a running solve must give up
    SuspendedRunning = 4,  ///< suspended while a solve was running
    Suspended = 5,         ///< suspended with no solve running
    Iterating = 6,         ///< a risk or crash solve is running; events are not served
};

/// What the model asks of the solver, which lies a layer above it.
class SolveService {
  public:
    virtual ~SolveService() = default;

    virtual SolveMode Mode() const = 0;
    /// Asks for a new solve: something that matters to the schedule has changed.
    virtual void RestartSolve() = 0;
    /// Holds the solve off during a long change of the model, until ResumeSolve.
    virtual void SuspendSolve() = 0;
    virtual void ResumeSolve() = 0;
    /// Drops everything that refers to model objects; memory is about to be cleared.
    virtual void Clear() = 0;
    /// Minutes that `resource` is booked for `task` on the days of `from` to `to`, both included whole.
    virtual std::int32_t CountMinutes(const Vresource& resource, const Vtask& task, DateTime from,
                                      DateTime to) const = 0;
};

}  // namespace vortan
