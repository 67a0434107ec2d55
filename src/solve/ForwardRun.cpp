#include "solve/ForwardRun.h"

#include <algorithm>

namespace vortan {

namespace {

std::size_t Index(std::int32_t i) {
    return static_cast<std::size_t>(i);
}

bool IsMidnight(double days) {
    return days == DateTime(days).WholeDay();
}

bool RuleHalts(std::int32_t rule) {
    return rule == kNormalHalt || rule == kOvertimeHalt || rule == kDayHalt;
}

}  // namespace

void ForwardRun::Prepare(const Network& network, Bookings& bookings) {
    network_ = &network;
    bookings_ = &bookings;
    const auto slices = network.Slices();
    const auto tasks = network.Tasks();
    sliceStart_.assign(slices.size(), 0);
    sliceFinish_.assign(slices.size(), 0);
    sliceCost_.assign(slices.size(), Money());
    multiplier_.assign(slices.size(), 1.0F);
    useMinutes_.resize(slices.size());
    for (std::size_t i = 0; i < slices.size(); ++i) useMinutes_[i] = slices[i].useMinutes;
    clocks_.resize(tasks.size());
    for (std::size_t i = 0; i < tasks.size(); ++i) clocks_[i] = Clock{0, 0, Money(), tasks[i].materialCost};
    begun_ = 0;
    sightings_.clear();
    problemTask_ = problemResource_ = -1;
}

ForwardRun::Outcome ForwardRun::SolveAllSlices(Poll* poll) {
    Begin(poll);
    const auto count = static_cast<std::int32_t>(network_->Slices().size());
    for (std::int32_t slice = 0; slice < count; ++slice) {
        begun_ = slice + 1;
        if (const Outcome outcome = SolveOneSlice(slice); outcome != Outcome::Done) return outcome;
    }
    return Outcome::Done;
}

/// When the task may reach `percent`, by all its dependencies up to there.
double ForwardRun::FindLatestDate(const Network::Task& task, int percent) const {
    double latest = 0;
    for (const auto& source : network_->SourcesOf(task)) {
        if (source.toPercent > percent) continue;
        const double date = source.slice >= 0 ? sliceFinish_[Index(source.slice)] : source.date;
        latest = std::max(latest, date + source.offset);
    }
    return latest;
}

ForwardRun::Outcome ForwardRun::SolveOneSlice(std::int32_t slice) {
    if (--pollIn_ <= 0) {
        pollIn_ = kStepsPerPoll;
        if (poll_ && poll_->Stop(slice)) return Outcome::Stopped;
    }
    const Network::Slice& piece = network_->Slices()[Index(slice)];
    const Network::Task& task = network_->Tasks()[Index(piece.task)];
    if (task.subproject >= 0) {
        SolveSubproject(slice);
        return Outcome::Done;
    }
    Clock& clock = clocks_[Index(piece.task)];
    double start = FindLatestDate(task, piece.from);
    if (start > kLastDay) return Halt(Outcome::NoTime, piece.task);
    if (clock.start == 0) {
        clock.start = clock.finish = start;
    } else if (clock.finish > start) {
        start = clock.finish;
    } else {
        clock.finish = start;
    }
    sliceStart_[Index(slice)] = start;
    if (task.effortUnits < 0) {
        const Outcome outcome = Work(slice);
        if (outcome == Outcome::Stopped) return outcome;  // the network may be gone
        if (piece.task == watched_) Record(slice);
        if (outcome != Outcome::Done) return outcome;
    } else {
        double target;
        if (task.effortUnits == 0) {
            target = FindLatestDate(task, 100);
            if (IsMidnight(target)) target += 1;
        } else {
            target = AddMinutes(DateTime(clock.finish), useMinutes_[Index(slice)]).Days();
        }
        if (target > kLastDay + 1) return Halt(Outcome::NoTime, piece.task);
        // Nothing is booked, so the clock needs no day by day walk.
        clock.finish = std::max(clock.finish, target);
    }
    sliceFinish_[Index(slice)] = clock.finish;
    return Outcome::Done;
}

ForwardRun::Outcome ForwardRun::TrySlice(std::int32_t slice, double& finish, Money& taskCost) {
    const auto at = Index(slice);
    Clock& clock = clocks_[Index(network_->Slices()[at].task)];
    const Clock clockBefore = clock;
    bookings_->BeginTrial();
    const Outcome outcome = SolveOneSlice(slice);
    if (outcome == Outcome::Stopped) return outcome;
    bookings_->Unsolve();
    finish = sliceFinish_[at];
    taskCost = clock.laborCost;
    clock = clockBefore;
    sliceStart_[at] = sliceFinish_[at] = 0;
    sliceCost_[at] = Money();
    return outcome;
}

void ForwardRun::PlaceScaled(std::int32_t slice, double days, Money cost) {
    const auto at = Index(slice);
    const Network::Slice& piece = network_->Slices()[at];
    const Network::Task& task = network_->Tasks()[Index(piece.task)];
    if (task.subproject >= 0) return SolveSubproject(slice);
    sliceStart_[at] = FindLatestDate(task, piece.from);
    sliceFinish_[at] = sliceStart_[at] + days;
    sliceCost_[at] = cost;
    Clock& clock = clocks_[Index(piece.task)];
    clock.laborCost += cost;
    clock.finish = sliceFinish_[at];
}

const char* ForwardRun::ShortageText(std::int32_t rule) {
    return rule == kNormalHalt     ? "Overtime needed"
           : rule == kOvertimeHalt ? "Overload detected"
                                   : "Overload > 24 hours";
}

ForwardRun::Clock ForwardRun::Totals(const Network::Project& project, const std::vector<Clock>& clocks) {
    if (project.taskCount == 0) return {};
    Clock totals = clocks[Index(project.firstTask)];
    for (std::int32_t t = project.firstTask + 1; t < project.firstTask + project.taskCount; ++t) {
        const Clock& clock = clocks[Index(t)];
        totals.start = std::min(totals.start, clock.start);
        totals.finish = std::max(totals.finish, clock.finish);
        totals.laborCost += clock.laborCost;
        totals.materialCost += clock.materialCost;
    }
    return totals;
}

/// A link takes its dates and costs from the tasks of its subproject, which all lie before it in the order.
void ForwardRun::SolveSubproject(std::int32_t slice) {
    const std::int32_t link = network_->Slices()[Index(slice)].task;
    Clock& clock = clocks_[Index(link)];
    const auto& project = network_->Projects()[Index(network_->Tasks()[Index(link)].subproject)];
    if (project.taskCount > 0) clock = Totals(project, clocks_);
    sliceStart_[Index(slice)] = clock.start;
    sliceFinish_[Index(slice)] = clock.finish;
}

void ForwardRun::Record(std::int32_t slice) {
    const Network::Task& task = network_->Tasks()[Index(watched_)];
    const auto first = static_cast<std::int32_t>(sliceStart_[Index(slice)]);
    const auto last = static_cast<std::int32_t>(clocks_[Index(watched_)].finish);
    for (const auto& want : network_->WantsOf(task)) {
        for (std::int32_t day = first; day <= last; ++day) {
            bookings_->ForEachSlot(want.resource, day, [&](const SlotView& slot) {
                sightings_.push_back({slice, want.resource, slot});
            });
        }
    }
}

/// Moves the clock of an effort slice forward, a day a step, until its minutes are placed.
ForwardRun::Outcome ForwardRun::Work(std::int32_t slice) {
    const std::int32_t taskIndex = network_->Slices()[Index(slice)].task;
    const Network::Task& task = network_->Tasks()[Index(taskIndex)];
    Clock& clock = clocks_[Index(taskIndex)];
    account_ = {taskIndex, static_cast<double>(multiplier_[Index(slice)]), &clock.finish,
                &sliceCost_[Index(slice)], &clock.laborCost};
    std::int32_t remaining = useMinutes_[Index(slice)];
    while (remaining > 0) {
        if (--pollIn_ <= 0) {
            pollIn_ = kStepsPerPoll;
            if (poll_ && poll_->Stop(slice)) return Outcome::Stopped;
        }
        if (IsMidnight(clock.finish)) WorkWholeDays(task, remaining);
        if (IsMidnight(clock.finish)) {
            clock.finish = NextUsefulDay(task, remaining, static_cast<std::int32_t>(clock.finish));
        }
        if (clock.finish > kLastDay) return Halt(Outcome::NoTime, taskIndex);
        const double stepStart = clock.finish;
        if (!SolveSomeMore(task, remaining, stepStart)) {
            problemDate_ = stepStart;
            return Halt(Outcome::Halted, taskIndex);
        }
    }
    return Outcome::Done;
}

/// The common course of a task in the quick: as long as a lone resource finds each wanted day untouched and
/// needs all its normal time, books the day whole. Does what SolveSomeMore would, a day a step.
void ForwardRun::WorkWholeDays(const Network::Task& task, std::int32_t& remaining) {
    if (task.wantCount != 1 || task.wantedDays == 0) return;
    const auto day = static_cast<std::int32_t>(*account_.finish);
    *account_.finish =
        bookings_->AllocateWholeDays(network_->WantsOf(task).front(), task.today, day, remaining, account_);
}

/// One day of one slice, or what is left of the day. False on a shortage that the solve rule does not bear.
bool ForwardRun::SolveSomeMore(const Network::Task& task, std::int32_t& remaining, double stepStart) {
    if (task.wantCount == 1 && network_->OnMinuteGrid()) return SolveAlone(task, remaining, stepStart);
    const auto day = static_cast<std::int32_t>(stepStart);
    const auto weekday = Index(WeekdayIndex(day));
    members_.clear();
    for (const auto& want : network_->WantsOf(task)) {
        members_.push_back({want.resource, want.minutes[weekday], false, false, false});
    }
    std::int64_t today = task.today[weekday];
    if (remaining > today) {
        TeamSolve(task, remaining, today, stepStart);
    } else {
        PiecemealSolve(task, remaining, today, stepStart);
    }
    if (remaining > 0) *account_.finish = day + 1;
    if (today <= 0) return true;
    const std::int32_t rule = network_->Projects()[Index(task.project)].rule;
    if (rule == kUnlimited) {
        // What others hold counts as worked, though no slot holds it. The clock stands at midnight even if
        // that ends the slice.
        std::int64_t left = remaining;
        for (const Member& member : members_) {
            if (member.interference) left -= member.minutesLeft;
        }
        remaining = static_cast<std::int32_t>(std::max<std::int64_t>(left, INT32_MIN));
        return true;
    }
    if (!RuleHalts(rule)) return true;
    for (const Member& member : members_) {
        if (member.interference && member.minutesLeft > 0) {
            problemResource_ = member.resource;
            problemMinutesLeft_ = member.minutesLeft;
            return false;
        }
    }
    return true;  // the shortage comes from the shift, not from another task
}

/// SolveSomeMore for a task that wants one resource, in a network of whole minutes: TeamSolve without the
/// team, and PiecemealSolve as a single booking, since all its stretches are free or held as a whole.
bool ForwardRun::SolveAlone(const Network::Task& task, std::int32_t& remaining, double stepStart) {
    const Network::Want& want = network_->WantsOf(task).front();
    const std::int32_t resource = want.resource;
    const auto day = static_cast<std::int32_t>(stepStart);
    const bool wholeDay = stepStart == day;
    const auto weekday = Index(WeekdayIndex(day));
    const std::int32_t wanted = want.minutes[weekday];
    std::int64_t today = task.today[weekday];
    bool interference = false;
    if (remaining <= today) {
        // Held time is not asked for, so it is no shortage.
        const std::int32_t got =
            bookings_->Allocate(resource, stepStart, remaining, 0, account_, interference);
        remaining -= got;
        if (remaining <= 0) return true;
        if (wholeDay && got == 0 && wanted > 0) bookings_->MarkEmpty(resource, day, Bookings::kNormalTime);
        *account_.finish = day + 1;
        return true;
    }

    const std::int32_t rule = network_->Projects()[Index(task.project)].rule;
    std::int32_t left = wanted;
    for (int pass = 0; pass <= 4 && pass <= rule; pass += 2) {
        if (left <= 0 || (pass > 0 && !interference)) break;
        std::int32_t got = 0;
        if (pass == 0 && wholeDay) got = bookings_->AllocateWholeDay(resource, day, left, account_);
        if (got == 0) {
            got = bookings_->Allocate(resource, stepStart, left, pass, account_, interference);
            if (got == 0 && pass == 0 && wholeDay) bookings_->MarkEmpty(resource, day, Bookings::kNormalTime);
        }
        left -= got;
        remaining -= got;
        today -= got;
        if (today <= 0) break;
    }
    if (remaining > 0) *account_.finish = day + 1;
    if (today <= 0) return true;
    if (rule == kUnlimited) {
        if (interference) remaining -= left;
        return true;
    }
    // Every pass of the rule has been tried, from midnight on: what gave nothing has nothing left.
    if (wholeDay && rule >= kOvertimeHalt && left > 0 && left == wanted) {
        bookings_->MarkEmpty(resource, day, rule / 2);
    }
    if (!RuleHalts(rule) || !interference || left <= 0) return true;
    problemResource_ = resource;
    problemMinutesLeft_ = left;
    return false;
}

/// A day that holds less than the slice needs: each resource books as much of its own day as it can. Only one
/// that another task hinders goes on to overtime and beyond.
void ForwardRun::TeamSolve(const Network::Task& task, std::int32_t& remaining, std::int64_t& today,
                           double start) {
    const std::int32_t rule = network_->Projects()[Index(task.project)].rule;
    const auto day = static_cast<std::int32_t>(start);
    const bool wholeDay = start == day;
    bool stopped = false;
    for (int pass = 0; pass <= 4 && pass <= rule && !stopped; pass += 2) {
        for (Member& member : members_) {
            if (member.minutesLeft <= 0 || (pass > 0 && !member.interference)) continue;
            std::int32_t got = 0;
            if (pass == 0 && wholeDay) {
                got = bookings_->AllocateWholeDay(member.resource, day, member.minutesLeft, account_);
            }
            if (got == 0) {
                got = bookings_->Allocate(member.resource, start, member.minutesLeft, pass, account_,
                                          member.interference);
                if (got == 0 && pass == 0 && wholeDay) {
                    bookings_->MarkEmpty(member.resource, day, Bookings::kNormalTime);
                }
            }
            member.minutesLeft -= got;
            remaining -= got;
            today -= got;
        }
        stopped = today <= 0;
    }
    if (!wholeDay || stopped || rule < kOvertimeHalt || rule == kUnlimited) return;
    // Every pass of the rule has been tried from midnight on: who gave nothing has nothing left.
    const auto weekday = Index(WeekdayIndex(day));
    const auto wants = network_->WantsOf(task);
    for (std::size_t i = 0; i < members_.size(); ++i) {
        const Member& member = members_[i];
        if (member.minutesLeft > 0 && member.minutesLeft == wants[i].minutes[weekday]) {
            bookings_->MarkEmpty(member.resource, day, rule / 2);
        }
    }
}

/// What is left fits into the day: the team works through it in stretches in which all who are free work side
/// by side and share the rest evenly. A stretch ends at the first boundary of any member's slot, and when a
/// member has used up its minutes. Held time is not asked for, so overtime comes in only where the rounding
/// of a stretch ran into a held slot.
void ForwardRun::PiecemealSolve(const Network::Task& task, std::int32_t& remaining, std::int64_t& today,
                                double start) {
    const std::int32_t rule = network_->Projects()[Index(task.project)].rule;
    const double midnight = DateTime(start).WholeDay() + 1;
    for (int pass = 0; pass <= 2 && pass <= rule && remaining > 0; pass += 2) {
        for (double cursor = start; remaining > 0 && cursor < midnight;) {
            cursor = WorkStretch(pass, cursor, midnight, remaining, today);
        }
    }
    if (remaining <= 0 || !IsMidnight(start)) return;
    for (const Member& member : members_) {
        if (member.minutesLeft > 0 && !member.gave) {
            bookings_->MarkEmpty(member.resource, static_cast<std::int32_t>(start), Bookings::kNormalTime);
        }
    }
}

/// One stretch of PiecemealSolve from `cursor` on. Returns its end.
double ForwardRun::WorkStretch(int pass, double cursor, double limit, std::int32_t& remaining,
                               std::int64_t& today) {
    std::int32_t free = 0;
    for (Member& member : members_) {
        member.free = false;
        if (member.minutesLeft <= 0 || (pass > 0 && !member.interference)) continue;
        const SlotView slot = bookings_->SlotAt(member.resource, cursor);
        limit = std::min(limit, slot.endTime.Days());
        if (!Bookings::Allowed(slot.kind, pass) || slot.task >= 0) continue;
        member.free = member.gave = true;
        ++free;
        limit = std::min(limit, AddMinutes(DateTime(cursor), member.minutesLeft).Days());
    }
    if (free == 0) return limit;
    std::int64_t each = Bookings::Minutes(cursor, limit);
    if (each * free > remaining) each = (std::int64_t{remaining} + free - 1) / free;
    for (Member& member : members_) {
        if (!member.free) continue;
        const std::int32_t got = bookings_->Allocate(member.resource, cursor, static_cast<std::int32_t>(each),
                                                     pass, account_, member.interference);
        member.minutesLeft -= got;
        remaining -= got;
        today -= got;
    }
    return limit;
}

/// Which time a day of this weekday could be given from: Bookings::Reach, or -1 if the day must be walked
/// whatever is held, because a shortage halts or counts as worked.
int ForwardRun::ReachOn(const Network::Task& task, std::int32_t remaining, int weekday) const {
    if (remaining <= task.today[Index(weekday)]) return Bookings::kNormalTime;
    const std::int32_t rule = network_->Projects()[Index(task.project)].rule;
    if (RuleHalts(rule) || rule == kUnlimited) return -1;
    return rule / 2;
}

/// The first day from `day` on at which the step might do more than let the day pass.
std::int32_t ForwardRun::NextUsefulDay(const Network::Task& task, std::int32_t remaining, std::int32_t day) {
    constexpr auto never = static_cast<std::int32_t>(kLastDay) + 1;
    if (task.wantedDays == 0) return never;
    const auto wants = network_->WantsOf(task);
    std::int32_t best = never;
    int weekday = WeekdayIndex(day);
    // A day behind the best one found so far cannot give an earlier one.
    for (std::int32_t d = day; d < std::min(day + kWeekdays, best); ++d) {
        if ((task.wantedDays >> weekday & 1) != 0) {
            const int reach = ReachOn(task, remaining, weekday);
            if (reach < 0) return d;
            for (const auto& want : wants) {
                if (want.minutes[Index(weekday)] <= 0) continue;
                best = std::min(best, bookings_->NextDay(want.resource, d, reach));
            }
        }
        weekday = weekday + 1 == kWeekdays ? 0 : weekday + 1;
    }
    return best;
}

}  // namespace vortan
