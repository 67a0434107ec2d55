#include "solve/CrashSolve.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "model/Rounding.h"
#include "model/Vassignment.h"
#include "model/Vtask.h"

namespace vortan {

namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();
// Above this a slice would not end before the calendar does, whatever its team.
constexpr double kMostMinutes = std::numeric_limits<std::int32_t>::max();

/// What is left of a team's output when its size is `multiplier`: the effort of a task grows by the reverse.
double OutputFactor(double efficiency, float multiplier) {
    return multiplier == 1 ? 1 : std::pow(efficiency, static_cast<double>(multiplier) - 1);
}

}  // namespace

CrashSolve::CrashSolve(const Solver& solver, std::int32_t project, float teamIncrement)
    : standing_(solver.Standing()),
      network_(standing_.network),
      project_(project),
      teamIncrement_(teamIncrement) {
    PrepareSlices();
}

void CrashSolve::PrepareSlices() {
    const auto slices = network_.Slices();
    const ForwardRun& stands = standing_.run;
    slices_.resize(slices.size());
    for (std::size_t i = 0; i < slices.size(); ++i) {
        const auto& piece = slices[i];
        const auto& task = network_.Tasks()[Index(piece.task)];
        const Vtask& object = *task.object.Get();
        Slice& slice = slices_[i];
        slice.efficiency = object.Efficiency();
        slice.hundredths = static_cast<double>(task.mostLikely) * (piece.to - piece.from);
        slice.mostLikelyDuration = stands.SliceFinish()[i] - stands.SliceStart()[i];
        slice.mostLikelyCost = stands.SliceCost()[i];
        // An efficiency of 0 or less says nothing about larger teams, and a link gains nothing by itself.
        slice.mayCrash = network_.Projects()[Index(task.project)].master == project_ && task.subproject < 0 &&
                         !object.AssignmentList().empty() && piece.from != piece.to && slice.efficiency > 0 &&
                         slice.efficiency < 1 && task.effortUnits < 0 && task.mostLikely != 0;
    }
}

/// Marks the slices on the longest path of the project that a larger team could shorten. Whether there are
/// any.
bool CrashSolve::SetCrashableFlags(const ForwardRun& forward, const ReverseRun& reverse) {
    const auto slackOf = [&](std::size_t i) { return reverse.Slices()[i].finish - forward.SliceFinish()[i]; };
    double least = kNever;
    const auto slices = network_.Slices();
    for (std::size_t i = 0; i < slices.size(); ++i) {
        const auto& task = network_.Tasks()[Index(slices[i].task)];
        if (network_.Projects()[Index(task.project)].master == project_) least = std::min(least, slackOf(i));
    }
    bool any = false;
    for (std::size_t i = 0; i < slices.size(); ++i) {
        slices_[i].crashable = slices_[i].mayCrash && slackOf(i) <= least;
        any = any || slices_[i].crashable;
    }
    return any;
}

void CrashSolve::Run(bool quick, IterationWatch& watch) {
    watch_ = &watch;
    Record(standing_.run, -1);
    const ForwardRun* forward = &standing_.run;
    const ReverseRun* reverse = &standing_.reverse;
    while (SetCrashableFlags(*forward, *reverse)) {
        const std::int32_t best = TrialWalk(quick);
        if (best < 0 || Stop(0)) return;
        slices_[Index(best)].multiplier += teamIncrement_;
        if (!FinalWalk(quick)) return;
        standing_.PlanFinishes(run_.Clocks(), planFinish_);
        reverse_.Run(network_, run_, planFinish_, [] { return false; });
        forward = &run_;
        reverse = &reverse_;
        Record(run_, best);
    }
}

void CrashSolve::ResetPriorToSolve(bool quick) {
    if (!quick) bookings_.Reset(network_);
    run_.Prepare(network_, bookings_);
    run_.Begin(this);
}

/// Places all slices as they are, trying each candidate with a larger team on the way. Returns the one whose
/// gain of time is the cheapest, -1 if none gains any or the walk ended early.
std::int32_t CrashSolve::TrialWalk(bool quick) {
    ResetPriorToSolve(quick);
    std::int32_t best = -1;
    double bestDelta = 0, progress = 0;  // money per day won
    int count = 0;
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(slices_.size()); ++i) {
        const Slice& slice = slices_[Index(i)];
        if (!slice.crashable) {
            if (!Place(quick, i)) return -1;
            continue;
        }
        ++count;
        progress -= static_cast<double>(slice.multiplier) * std::log(slice.efficiency);
        double crashedFinish = kNever;
        Money extraCost;
        if (!TryAndPlace(quick, i, crashedFinish, extraCost)) return -1;
        const double finish = run_.SliceFinish()[Index(i)];
        if (!(crashedFinish < finish)) continue;
        const double delta = extraCost.ToDouble() / (finish - crashedFinish);
        if (best < 0 || delta < bestDelta) {
            best = i;
            bestDelta = delta;
        }
    }
    nearness_ = count == 0 ? 0 : std::min(progress / count, 1.0);
    if (firstNearness_ == 0) firstNearness_ = nearness_;
    return best;
}

bool CrashSolve::FinalWalk(bool quick) {
    ResetPriorToSolve(quick);
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(slices_.size()); ++i) {
        if (!Place(quick, i)) return false;
    }
    return true;
}

/// Places a candidate, and finds when it would finish with a larger team and how much more that costs.
/// `crashedFinish` is left alone if that cannot be placed.
bool CrashSolve::TryAndPlace(bool quick, std::int32_t slice, double& crashedFinish, Money& extraCost) {
    const Slice& each = slices_[Index(slice)];
    const float larger = each.multiplier + teamIncrement_;
    if (quick) {
        // The start of a slice does not depend on its team.
        if (!Place(quick, slice)) return false;
        const Scaled scaled = ScaleTo(each, larger);
        crashedFinish = run_.SliceStart()[Index(slice)] + scaled.days;
        extraCost = scaled.cost - run_.SliceCost()[Index(slice)];
        return true;
    }
    double finish = 0;
    Money taskCost;
    if (SetTeam(slice, larger) && run_.TrySlice(slice, finish, taskCost) == ForwardRun::Outcome::Done)
        crashedFinish = finish;
    if (!Place(quick, slice)) return false;
    extraCost = taskCost - run_.Clocks()[Index(network_.Slices()[Index(slice)].task)].laborCost;
    return true;
}

bool CrashSolve::Place(bool quick, std::int32_t slice) {
    const Slice& each = slices_[Index(slice)];
    if (quick) {
        const Scaled scaled = ScaleTo(each, each.multiplier);
        run_.PlaceScaled(slice, scaled.days, scaled.cost);
        return true;
    }
    if (each.mayCrash) SetTeam(slice, each.multiplier);
    const auto outcome = run_.SolveOneSlice(slice);
    if (outcome == ForwardRun::Outcome::Done) return true;
    if (outcome != ForwardRun::Outcome::Stopped) failure_ = outcome;
    return false;
}

CrashSolve::Scaled CrashSolve::ScaleTo(const Slice& slice, float multiplier) {
    if (multiplier == 1) return {slice.mostLikelyDuration, slice.mostLikelyCost};
    const double output = OutputFactor(slice.efficiency, multiplier);
    return {slice.mostLikelyDuration / (output * multiplier),
            Money::FromDouble(slice.mostLikelyCost.ToDouble() / output)};
}

/// False if the work would be beyond all measure.
bool CrashSolve::SetTeam(std::int32_t slice, float multiplier) {
    const Slice& each = slices_[Index(slice)];
    const double minutes =
        each.hundredths / OutputFactor(each.efficiency, multiplier) / 100 / static_cast<double>(multiplier);
    if (!(std::abs(minutes) < kMostMinutes)) return false;
    run_.SetUseMinutes(slice, RoundToInt32(minutes));
    run_.SetMultiplier(slice, multiplier);
    return true;
}

void CrashSolve::Record(const ForwardRun& forward, std::int32_t slice) {
    const auto totals = ForwardRun::Totals(network_.Projects()[Index(project_)], forward.Clocks());
    Vcrash& record = crashList_.emplace_back();
    record.endDate = DateTime(totals.finish);
    record.totalCost = totals.laborCost + totals.materialCost;
    if (slice < 0) return;
    const auto& piece = network_.Slices()[Index(slice)];
    record.task = network_.Tasks()[Index(piece.task)].object;
    record.fromPercent = piece.from;
    record.toPercent = piece.to;
    record.multiplier = slices_[Index(slice)].multiplier;
}

bool CrashSolve::Stop(std::int32_t) {
    const int percent = std::min(static_cast<int>(100 * nearness_), 99);
    const double room = 1 - firstNearness_;
    return watch_->Cancelled(percent, room > 0 ? std::max(nearness_ - firstNearness_, 0.0) / room : 0);
}

}  // namespace vortan
