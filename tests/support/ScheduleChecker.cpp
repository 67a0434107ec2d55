#include "support/ScheduleChecker.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

#include "model/Rounding.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "support/LoadedPlan.h"

namespace vortan {

namespace {

double Minutes(const Vslot& slot) {
    return static_cast<double>(RoundToInt32(DaysBetween(slot.startTime, slot.endTime) * kMinutesPerDay));
}

std::int64_t DayOf(DateTime date) {
    return static_cast<std::int64_t>(date.WholeDay());
}

bool IsNormal(const Vslot& slot) {
    return slot.slotType == 3 || slot.slotType == 4;
}

std::string NumberText(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

}  // namespace

ScheduleChecker::ScheduleChecker(const Workspace& workspace, const Solver& solver)
    : workspace_(workspace), solver_(solver) {
    CollectPieces();
    for (const Vtask* task : tasks_) CheckPercentages(task);
    if (!violations_.empty()) return;  // the rest relies on the pieces
    for (const Vtemplate* pool : workspace_.TemplateList()) {
        for (const Vresource* resource : pool->ResourceList()) CollectBookings(resource);
    }
    CheckOrder();
    for (const Vtask* task : tasks_) {
        if (task->Subproject()) {
            CheckLink(task);
            continue;
        }
        CheckDates(task);
        CheckCosts(task);
        CheckEffort(task);
        CheckDayLoads(task);
    }
    CheckLateDates();
    for (const Vproject* project : workspace_.ProjectList()) CheckProject(project);
}

void ScheduleChecker::Report(const std::string& what, const Vtask* task, double date,
                             const Vresource* resource) {
    std::string text = what + ":";
    if (task) text += " project " + task->Project()->ProjectName() + ", task " + task->Key();
    if (resource) text += ", resource " + resource->Template()->TemplateName() + "/" + resource->Key();
    if (date != 0) text += ", at " + DateText(DateTime(date));
    violations_.push_back(text);
}

void ScheduleChecker::Same(const std::string& what, double is, double should, const Vtask* task) {
    if (std::abs(is - should) > kTolerance) {
        Report(what + " is " + NumberText(is) + " and should be " + NumberText(should), task, should);
    }
}

void ScheduleChecker::SameMoney(const std::string& what, Money is, Money should, const Vtask* task) {
    if (is != should) {
        Report(what + " is " + NumberText(is.ToDouble()) + " and should be " + NumberText(should.ToDouble()),
               task);
    }
}

// Slices

void ScheduleChecker::CollectPieces() {
    for (const Vproject* project : workspace_.ProjectList()) {
        for (const Vtask* task : project->TaskList()) {
            if (task->Include()) tasks_.push_back(task);
        }
    }
    std::vector<std::pair<const Vtask*, std::size_t>> places;
    for (std::int32_t i = 0; i < solver_.SliceCount(); ++i) {
        Piece piece;
        static_cast<Vslice&>(piece) = solver_.Slice(i);
        piece.index = i;
        if (!piece.task || !piece.task->Include()) {
            Report("A slice of no included task", piece.task);
            continue;
        }
        Pieces& pieces = pieces_[piece.task];
        places.emplace_back(piece.task, pieces.size());
        pieces.push_back(piece);
    }
    for (const auto& [task, place] : places) order_.push_back(&pieces_[task][place]);
}

void ScheduleChecker::CheckPercentages(const Vtask* task) {
    std::set<int> cuts;
    for (const Vtask* other : tasks_) {
        for (const Vdependency* dependency : other->DependencyList()) {
            if (!dependency->Include()) continue;
            if (other == task && dependency->ToPercent() > 0) cuts.insert(dependency->ToPercent());
            if (dependency->TaskRequired() == task && dependency->FromPercent() < 100) {
                cuts.insert(dependency->FromPercent());
            }
        }
    }
    std::vector<std::pair<int, int>> wanted;
    int from = 0;
    for (const int cut : cuts) {
        wanted.emplace_back(from, cut);
        from = cut;
    }
    wanted.emplace_back(from, 100);
    std::vector<std::pair<int, int>> found;
    for (const Piece& piece : pieces_[task]) found.emplace_back(piece.fromPercent, piece.toPercent);
    if (found != wanted) Report("Cut into the wrong slices, or in the wrong order", task);
}

// Bookings

char ScheduleChecker::LettersOf(const Vresource* resource, const Vslot& slot) {
    const double day = slot.startTime.WholeDay();
    const auto period = [&](DateTime date, double nudge) {
        return static_cast<int>(std::floor((date.Days() - day) * 288 + nudge));
    };
    const char letter = resource->Shift()->Period(period(slot.startTime, 1e-5));
    for (int i = period(slot.startTime, 1e-5); i <= period(slot.endTime, -1e-5); ++i) {
        if (resource->Shift()->Period(i) != letter) return '?';
    }
    return letter;
}

void ScheduleChecker::CollectBookings(const Vresource* resource) {
    std::set<std::int64_t> days;
    double end = 0;
    for (const Vslot& slot : solver_.HeldSlots(*resource)) {
        if (slot.startTime.Days() < end - kTolerance) {
            Report("Two bookings overlap", slot.taskRequired, slot.startTime.Days(), resource);
        }
        end = slot.endTime.Days();
        days.insert(DayOf(slot.startTime));
        CheckBooking(resource, slot);
    }
    for (const std::int64_t day : days) CheckDay(resource, day);
}

void ScheduleChecker::CheckBooking(const Vresource* resource, const Vslot& slot) {
    const Vtask* task = slot.taskRequired;
    const double start = slot.startTime.Days();
    if (!task || !pieces_.count(task) || !IsEffort(*task)) {
        return Report("Held by a task that works nothing", task, start, resource);
    }
    const std::int32_t rule = task->Project()->SolveRules();
    if ((slot.slotType == 5 && rule < kOvertimeHalt) || (slot.slotType == 9 && rule < kDayHalt)) {
        Report("Kind of time that the solve rule does not allow", task, start, resource);
    }
    const Money rate = slot.slotType == 3   ? resource->BurdenedRate()
                       : slot.slotType == 4 ? resource->OffDayRate()
                       : slot.slotType == 5 ? resource->OvertimeRate()
                                            : resource->HolidayRate();
    const double cost = rate.ToDouble() * DaysBetween(slot.startTime, slot.endTime) * 24;
    if (std::abs(cost - slot.laborCost.ToDouble()) > 0.0001) {
        Report("Cost of a booking", task, start, resource);
    }
    booked_[task] += slot.laborCost;
    for (Piece& piece : pieces_[task]) {
        const bool inside = start >= piece.earlyStart.Days() - kTolerance &&
                            slot.endTime.Days() <= piece.earlyFinish.Days() + kTolerance;
        if (!inside || piece.fromPercent == piece.toPercent) continue;
        piece.booked += Minutes(slot);
        piece.cost += slot.laborCost;
        piece.minutes[DayOf(slot.startTime)][resource] += Minutes(slot);
        return;
    }
    Report("Booked outside the dates of the task's slices", task, start, resource);
}

void ScheduleChecker::CheckDay(const Vresource* resource, std::int64_t day) {
    double end = static_cast<double>(day);
    for (const Vslot& slot : solver_.Slots(*resource, static_cast<std::int32_t>(day))) {
        const double start = slot.startTime.Days();
        if (std::abs(start - end) > 1e-9) Report("A gap in a day", slot.taskRequired, start, resource);
        end = slot.endTime.Days();
        const char letter = LettersOf(resource, slot);
        const int type = letter == 'N'   ? (resource->WorkDay(Weekday(slot.startTime)) ? 3 : 4)
                         : letter == 'O' ? 5
                         : letter == '?' ? 0
                                         : 9;
        if (slot.slotType != type) Report("Not the shift's kind of time", slot.taskRequired, start, resource);
        if (!slot.taskRequired && slot.laborCost != Money()) {
            Report("A free slot costs something", nullptr, start, resource);
        }
    }
    if (std::abs(end - static_cast<double>(day + 1)) > 1e-9) {
        Report("A day does not end at midnight", nullptr, end, resource);
    }
}

// Order and dates

ScheduleChecker::Piece& ScheduleChecker::SourceOf(const Vdependency& dependency) {
    Pieces& pieces = pieces_[dependency.TaskRequired()];
    const auto at = std::find_if(pieces.rbegin(), pieces.rend(), [&](const Piece& piece) {
        return piece.toPercent == dependency.FromPercent();
    });
    return at == pieces.rend() ? pieces.back() : *at;
}

ScheduleChecker::Piece& ScheduleChecker::TargetOf(const Vdependency& dependency) {
    Pieces& pieces = pieces_[dependency.Task()];
    const auto at = std::find_if(pieces.begin(), pieces.end(), [&](const Piece& piece) {
        return piece.fromPercent == dependency.ToPercent();
    });
    return at == pieces.end() ? pieces.back() : *at;
}

/// The latest date that the task waits for at `percent`; what comes at or behind place `before` of the order
/// is not solved yet and counts as nothing.
double ScheduleChecker::LatestDate(const Vtask* task, int percent, int before) {
    double latest = 0;
    for (const Vdependency* dependency : task->DependencyList()) {
        if (!dependency->Include() || dependency->ToPercent() > percent) continue;
        double date = dependency->DepDate().Days();
        if (dependency->TaskRequired()) {
            const Piece& source = SourceOf(*dependency);
            date = source.index < before ? source.earlyFinish.Days() : 0;
        }
        latest = std::max(latest, date + dependency->Offset());
    }
    return latest;
}

void ScheduleChecker::CheckOrder() {
    std::vector<std::vector<const Piece*>> before(order_.size());
    const auto wait = [&](const Piece& source, const Piece& target) {
        if (source.index >= target.index) Report("In order ahead of what it waits for", target.task);
        before[static_cast<std::size_t>(target.index)].push_back(&source);
    };
    for (const Vtask* task : tasks_) {
        const Pieces& pieces = pieces_[task];
        for (std::size_t i = 1; i < pieces.size(); ++i) wait(pieces[i - 1], pieces[i]);
        if (task->Subproject()) {
            for (const Vtask* inner : task->Subproject()->TaskList()) {
                if (inner->Include()) wait(pieces_[inner].back(), pieces.front());
            }
            continue;
        }
        for (const Vdependency* dependency : task->DependencyList()) {
            if (dependency->Include() && dependency->TaskRequired()) {
                wait(SourceOf(*dependency), TargetOf(*dependency));
            }
        }
    }
    const Piece* last = nullptr;
    const auto rank = [](const Piece& piece) {
        const Vproject* project = piece.task->Project();
        return std::tuple(piece.wave, project->Priority(), project->ProjectName(), piece.task->TaskID());
    };
    for (Piece* piece : order_) {
        for (const Piece* source : before[static_cast<std::size_t>(piece->index)]) {
            piece->wave = std::max(piece->wave, source->wave + 1);
        }
        if (last && rank(*last) > rank(*piece)) Report("Not in the order of priority", piece->task);
        last = piece;
    }
}

void ScheduleChecker::CheckDates(const Vtask* task) {
    const Pieces& pieces = pieces_[task];
    double clock = 0, start = 0;
    for (const Piece& piece : pieces) {
        const double waits = LatestDate(task, piece.fromPercent, piece.index);
        // A task that starts on day 0 does not count as started, and its next slice sets the clock anew.
        Same("Early start", piece.earlyStart.Days(), start != 0 ? std::max(waits, clock) : waits, task);
        if (start == 0) start = piece.earlyStart.Days();
        clock = piece.earlyFinish.Days();
        if (clock < piece.earlyStart.Days()) Report("Finishes before it starts", task, clock);
        CheckFinish(piece);
    }
    Same("Early start of the task", task->EarlyStart().Days(), start, task);
    Same("Early finish of the task", task->EarlyFinish().Days(), clock, task);
    for (const Vdependency* dependency : task->DependencyList()) {
        if (!dependency->Include() || !dependency->TaskRequired()) continue;
        Same("Date of a dependency", dependency->DepDate().Days(), SourceOf(*dependency).earlyFinish.Days(),
             task);
    }
}

void ScheduleChecker::CheckFinish(const Piece& piece) {
    const Vtask* task = piece.task;
    const double start = piece.earlyStart.Days();
    if (task->EffortUnits() > 0) {
        const std::int32_t share =
            RoundToInt32(task->MostLikely() * (piece.toPercent - piece.fromPercent) / 100.0);
        Same("Finish of a calendar slice", piece.earlyFinish.Days(),
             std::max(start, AddMinutes(piece.earlyStart, share).Days()), task);
    } else if (task->EffortUnits() == 0) {
        double finish = LatestDate(task, 100, piece.index);
        if (finish == std::floor(finish)) finish += 1;
        Same("Finish of a dated slice", piece.earlyFinish.Days(), std::max(start, finish), task);
    }
}

void ScheduleChecker::CheckLink(const Vtask* task) {
    double start = 0, finish = 0;
    Money labor, material;
    bool any = false;
    for (const Vtask* inner : task->Subproject()->TaskList()) {
        if (!inner->Include()) continue;
        start = any ? std::min(start, inner->EarlyStart().Days()) : inner->EarlyStart().Days();
        finish = any ? std::max(finish, inner->EarlyFinish().Days()) : inner->EarlyFinish().Days();
        labor += inner->LaborCost();
        material += inner->MaterialCost();
        any = true;
    }
    Same("Early start of a link", task->EarlyStart().Days(), start, task);
    Same("Early finish of a link", task->EarlyFinish().Days(), finish, task);
    SameMoney("Labor cost of a link", task->LaborCost(), labor, task);
    if (any) SameMoney("Material cost of a link", task->MaterialCost(), material, task);
    for (const Piece& piece : pieces_[task]) {
        Same("Early start of a link's slice", piece.earlyStart.Days(), start, task);
        Same("Early finish of a link's slice", piece.earlyFinish.Days(), finish, task);
    }
}

// Effort and costs

void ScheduleChecker::CheckEffort(const Vtask* task) {
    if (!IsEffort(*task)) return;
    std::set<const Vresource*> team;
    for (const Vassignment* assignment : task->AssignmentList()) team.insert(assignment->ResourceRequired());
    for (const Piece& piece : pieces_[task]) {
        const double share = RoundToInt32(task->MostLikely() * (piece.toPercent - piece.fromPercent) / 100.0);
        const double over = piece.booked - share;
        const bool unlimited = task->Project()->SolveRules() == kUnlimited;
        if (over > 0 && over >= static_cast<double>(team.size())) {
            Report("Works " + NumberText(over) + " minutes too many", task, piece.earlyFinish.Days());
        }
        if (over < 0 && !unlimited) {
            Report("Works " + NumberText(-over) + " minutes too few", task, piece.earlyFinish.Days());
        }
        if (!unlimited) CheckFullness(piece);
    }
}

void ScheduleChecker::CheckCosts(const Vtask* task) {
    SameMoney("Labor cost of the task", task->LaborCost(), booked_[task], task);
    for (const Piece& piece : pieces_[task])
        SameMoney("Labor cost of a slice", piece.laborCost, piece.cost, task);
}

std::map<const Vresource*, std::int32_t> ScheduleChecker::Wanted(const Vtask* task, std::int64_t day) {
    std::map<const Vresource*, std::int32_t> wanted;
    const int weekday = Weekday(DateTime(static_cast<double>(day)));
    for (const Vassignment* assignment : task->AssignmentList()) {
        if (!assignment->Include() || !assignment->WorkDay(weekday)) continue;
        wanted[assignment->ResourceRequired()] += RoundToInt32(assignment->Hours() * 60);
    }
    return wanted;
}

void ScheduleChecker::CheckDayLoads(const Vtask* task) {
    for (const Piece& piece : pieces_[task]) {
        for (const auto& [day, loads] : piece.minutes) {
            auto wanted = Wanted(task, day);
            for (const auto& [resource, minutes] : loads) {
                if (minutes <= wanted[resource]) continue;
                Report("Books more of a day than is assigned", task, static_cast<double>(day), resource);
            }
        }
    }
}

/// No day passes on which the slice could have worked more in normal time.
void ScheduleChecker::CheckFullness(const Piece& piece) {
    const std::int32_t share =
        RoundToInt32(piece.task->MostLikely() * (piece.toPercent - piece.fromPercent) / 100.0);
    double left = share;
    const std::int64_t last = DayOf(piece.earlyFinish);
    for (std::int64_t day = DayOf(piece.earlyStart); day < last && left > 0; ++day) {
        double wanted = 0;
        for (const auto& [resource, minutes] : Wanted(piece.task, day)) wanted += minutes;
        if (wanted > 0) CheckTeamDay(piece, day, left > wanted);
        const auto loads = piece.minutes.find(day);
        if (loads == piece.minutes.end()) continue;
        for (const auto& [resource, minutes] : loads->second) left -= minutes;
    }
}

/// On a day that the whole team could fill, each member works what is assigned or leaves no normal minute
/// free. On another, on which the members share what is left, somebody works unless nobody can.
void ScheduleChecker::CheckTeamDay(const Piece& piece, std::int64_t day, bool team) {
    const auto loads = piece.minutes.find(day);
    if (!team && loads != piece.minutes.end()) return;
    const double from = std::max(piece.earlyStart.Days(), static_cast<double>(day));
    for (const auto& [resource, minutes] : Wanted(piece.task, day)) {
        double worked = 0;
        if (loads != piece.minutes.end()) {
            const auto load = loads->second.find(resource);
            if (load != loads->second.end()) worked = load->second;
        }
        if (worked < minutes && FreeNormalMinutes(SlotsOf(resource, day), from) >= 1 - kTolerance) {
            Report("Normal time left unused", piece.task, static_cast<double>(day), resource);
        }
    }
}

double ScheduleChecker::FreeNormalMinutes(const std::vector<Vslot>& slots, double from) {
    double minutes = 0;
    for (const Vslot& slot : slots) {
        if (slot.taskRequired || !IsNormal(slot)) continue;
        minutes +=
            std::max(0.0, slot.endTime.Days() - std::max(from, slot.startTime.Days())) * kMinutesPerDay;
    }
    return minutes;
}

std::vector<Vslot> ScheduleChecker::SlotsOf(const Vresource* resource, std::int64_t day) const {
    auto slots = solver_.Slots(*resource, static_cast<std::int32_t>(day));
    if (!slots.empty()) return slots;
    for (int i = 0; i < 288; ++i) {  // a day that nobody looked at is free
        Vslot slot;
        slot.startTime = DateTime(static_cast<double>(day) + i / 288.0);
        slot.endTime = DateTime(static_cast<double>(day) + (i + 1) / 288.0);
        slot.slotType = resource->Shift()->Period(i) == 'N' ? 3 : 9;
        slots.push_back(slot);
    }
    return slots;
}

// Late dates

double ScheduleChecker::PlanFinish(const Vproject* project) {
    const Vproject* master = project->Master();
    double finish = 0;
    for (const Vtask* task : master->TaskList()) {
        if (!task->IncludeAt(master->PlanIndex())) continue;
        finish = std::max(finish, task->EarlyFinishAt(master->PlanIndex()).Days());
    }
    return finish;
}

double ScheduleChecker::OffsetBetween(const Piece& before, const Piece& behind) {
    for (const Vdependency* dependency : behind.task->DependencyList()) {
        if (dependency->Include() && dependency->TaskRequired() == before.task &&
            dependency->FromPercent() == before.toPercent && dependency->ToPercent() == behind.fromPercent) {
            return dependency->Offset();
        }
    }
    return 0;
}

/// What a slice's late start leaves to those that it waits for.
void ScheduleChecker::LimitLateFinish(const Piece& piece) {
    const auto limit = [&](Piece& before) {
        before.lateLimit = std::min(before.lateLimit, piece.lateStart.Days() - OffsetBetween(before, piece));
    };
    Pieces& pieces = pieces_[piece.task];
    const auto place = static_cast<std::size_t>(&piece - pieces.data());
    if (place > 0) limit(pieces[place - 1]);
    if (piece.task->Subproject()) {
        if (place > 0) return;
        for (const Vtask* inner : piece.task->Subproject()->TaskList()) {
            if (inner->Include()) limit(pieces_[inner].back());
        }
        return;
    }
    for (const Vdependency* dependency : piece.task->DependencyList()) {
        if (!dependency->Include() || !dependency->TaskRequired()) continue;
        if (&TargetOf(*dependency) == &piece) limit(SourceOf(*dependency));
    }
}

void ScheduleChecker::CheckLateDates() {
    for (Piece* piece : order_) piece->lateLimit = PlanFinish(piece->task->Project());
    for (const Piece* piece : order_) LimitLateFinish(*piece);
    for (const Piece* piece : order_) {
        Same("Late finish", piece->lateFinish.Days(), piece->lateLimit, piece->task);
        const double duration =
            piece->task->Subproject() ? 0 : DaysBetween(piece->earlyStart, piece->earlyFinish);
        Same("Late start", piece->lateStart.Days(), piece->lateFinish.Days() - duration, piece->task);
    }
    for (const Vtask* task : tasks_) CheckLateDatesOfTask(task);
}

void ScheduleChecker::CheckLateDatesOfTask(const Vtask* task) {
    const Pieces& pieces = pieces_[task];
    if (task->Subproject()) {
        double start = 0, finish = 0, slack = 0;
        bool any = false;
        for (const Vtask* inner : task->Subproject()->TaskList()) {
            if (!inner->Include()) continue;
            const double room = DaysBetween(inner->EarlyFinish(), inner->LateFinish());
            slack = any ? std::min(slack, room) : room;
            start = any ? std::min(start, inner->EarlyStart().Days()) : inner->EarlyStart().Days();
            finish = std::max(finish, inner->EarlyFinish().Days());
            any = true;
        }
        Same("Late start of a link", task->LateStart().Days(), start + slack, task);
        Same("Late finish of a link", task->LateFinish().Days(), finish + slack, task);
        return;
    }
    // Of two slices that start at 0 percent, the one with the work counts.
    const Piece& first = pieces.size() > 1 && pieces[1].fromPercent == 0 ? pieces[1] : pieces[0];
    Same("Late start of the task", task->LateStart().Days(), first.lateStart.Days(), task);
    Same("Late finish of the task", task->LateFinish().Days(), pieces.back().lateFinish.Days(), task);
}

void ScheduleChecker::CheckProject(const Vproject* project) {
    Money labor, material;
    const Vtask* some = nullptr;
    for (const Vtask* task : project->TaskList()) {
        if (!task->Include()) continue;
        some = task;
        labor += task->LaborCost();
        material += task->MaterialCost();
        if (task->EarlyFinish() > project->EarlyFinish() || task->EarlyStart() < project->EarlyStart()) {
            Report("Outside the dates of its project", task);
        }
    }
    SameMoney("Labor cost of the project", project->LaborCost(), labor, some);
    SameMoney("Material cost of the project", project->MaterialCost(), material, some);
}

}  // namespace vortan
