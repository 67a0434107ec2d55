#pragma once

#include <atomic>
#include <chrono>
#include <string>

#include "model/DateTime.h"
#include "solve/Solver.h"

namespace vortan {

/// Who shows the progress of an iterative solve, and may cancel it.
class IterativeProgress {
  public:
    static constexpr double kUnknown = -1;

    virtual ~IterativeProgress() = default;
    /// Called on the thread that asked for the solve, a few times a second. `percent` is 0 to 99,
    /// `secondsLeft` may be kUnknown. True cancels the solve.
    virtual bool Report(int percent, double secondsLeft) = 0;
    /// Called ahead of Report where there is something to tell: the best finish so far, and one that cannot
    /// be beaten.
    virtual void Found(DateTime /*finish*/, DateTime /*bound*/) {}
};

/// The clock of one iterative solve: keeps the status text and asks the progress, but not too often.
class IterationWatch {
  public:
    /// `verb` begins the status text. `progress` may be none.
    IterationWatch(Solver& solver, std::string verb, IterativeProgress* progress,
                   std::chrono::milliseconds interval)
        : solver_(solver), verb_(std::move(verb)), progress_(progress), interval_(interval) {
        Show(0);
    }

    /// Of a thread beside the one that asked: shows nothing, and ends when `stop` says so.
    IterationWatch(Solver& solver, const std::atomic<bool>& stop)
        : solver_(solver), progress_(nullptr), interval_(0), stop_(&stop), quiet_(true) {}

    /// Ends the work, too, when `stop` says so, which is no cancel.
    void StopWith(const std::atomic<bool>* stop) { stop_ = stop; }

    /// `done` is the part of the work that is behind, 0 to 1. True: the solve was cancelled, or is to end.
    bool Cancelled(int percent, double done) {
        if (stop_ && *stop_) return true;
        if (quiet_) return false;
        if (percent > shown_) Show(percent);
        if (cancelled_ || !progress_) return cancelled_;
        const auto now = Clock::now();
        if (now - last_ < interval_) return false;
        const double passed = std::chrono::duration<double>(now - start_).count();
        const double left = done > 0 ? passed * (1 - done) / done : IterativeProgress::kUnknown;
        if (finish_.IsSet()) progress_->Found(finish_, bound_);
        cancelled_ = progress_->Report(shown_, left);
        last_ = Clock::now();
        return cancelled_;
    }
    bool WasCancelled() const { return cancelled_; }
    /// For the next report.
    void Tell(DateTime finish, DateTime bound) {
        finish_ = finish;
        bound_ = bound;
    }

  private:
    using Clock = std::chrono::steady_clock;

    void Show(int percent) {
        shown_ = percent;
        solver_.SetSolveMessage(verb_ + " " + std::to_string(percent) + "% ...");
    }

    Solver& solver_;
    std::string verb_;
    IterativeProgress* progress_;
    std::chrono::milliseconds interval_;
    Clock::time_point start_ = Clock::now(), last_ = start_;
    int shown_ = 0;
    DateTime finish_, bound_;
    bool cancelled_ = false;
    const std::atomic<bool>* stop_ = nullptr;
    bool quiet_ = false;
};

}  // namespace vortan
