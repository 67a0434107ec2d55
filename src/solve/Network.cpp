#include "solve/Network.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "model/Rounding.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"

namespace vortan {

namespace {

SlotClass NormalKind(bool workDay) {
    return workDay ? SlotClass::Normal : SlotClass::OffDay;
}

SlotClass ClassOf(char letter, bool workDay) {
    switch (letter) {
        case 'N':
            return NormalKind(workDay);
        case 'O':
            return SlotClass::Overtime;
        default:
            return SlotClass::Overload;
    }
}

std::int32_t AddSaturating(std::int32_t a, std::int32_t b) {
    const auto sum = std::int64_t{a} + b;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(sum, std::numeric_limits<std::int32_t>::min(),
                                                              std::numeric_limits<std::int32_t>::max()));
}

bool HasNormalPeriod(const Vshift& shift) {
    for (int hour = 0; hour < Vshift::kHours; ++hour) {
        const std::string& row = shift.Matrix(hour);
        if (row.substr(0, Vshift::kPeriodsPerHour).find('N') != std::string::npos) return true;
    }
    return false;
}

/// Whether a number of days is a whole number of minutes, but for the noise of the last bits.
bool IsOnMinuteGrid(double days) {
    if (days == 0) return true;
    if (!(days > -kLastDay && days < kLastDay)) return false;
    const double minutes = days * kMinutesPerDay;
    return std::abs(minutes - static_cast<double>(std::llrint(minutes))) < 1e-3;
}

using Kind = SolveProblem::Kind;

}  // namespace

int SlotTypeOf(SlotClass kind) {
    static constexpr int kTypes[] = {3, 4, 5, 9};
    return kTypes[static_cast<int>(kind)];
}

void Network::BeginCheck() {
    projects_.clear();
    tasks_.clear();
    sources_.clear();
    pending_.clear();
    wants_.clear();
    wantResources_.clear();
    resources_.clear();
    resourceWeeks_.clear();
    patterns_.clear();
    periods_.clear();
    normalPeriods_.clear();
    onMinuteGrid_ = true;
    ranked_ = false;
    slices_.clear();
    edges_.clear();
    circle_.clear();
    lastShift_ = nullptr;
    lastHasNormalTime_ = false;
}

void Network::AddProject(Vproject* project) {
    Project& added = projects_.emplace_back();
    added.object = project;
    added.rule = project->SolveRules();
    added.firstTask = static_cast<std::int32_t>(tasks_.size());
}

std::optional<SolveProblem> Network::AddTask(Vtask* object) {
    Task& task = tasks_.emplace_back();
    task.object = object;
    task.project = static_cast<std::int32_t>(projects_.size()) - 1;
    task.effortUnits = object->EffortUnits();
    task.optimistic = object->Optimistic();
    task.mostLikely = object->MostLikely();
    task.pessimistic = object->Pessimistic();
    task.materialCost = object->MaterialCost();
    task.rank = object->SolveRank();
    ranked_ = ranked_ || task.rank != 0;
    task.firstSource = static_cast<std::int32_t>(sources_.size());
    task.firstWant = static_cast<std::int32_t>(wants_.size());
    const Vproject* subproject = object->Subproject();
    if (subproject && subproject->Parent() != object->Project())
        return SolveProblem{.kind = Kind::ClaimedSubproject, .task = object};
    if (auto problem = CheckDependencies(object, task)) return problem;
    if (subproject) return std::nullopt;

    const bool canWork = AddAssignments(object, task);
    if (task.effortUnits < 0 && task.mostLikely > 0) {
        const auto& assignments = object->AssignmentList();
        if (std::none_of(assignments.begin(), assignments.end(),
                         [](const Vassignment* a) { return a->Include() && a->Hours() > 0; })) {
            return SolveProblem{.kind = Kind::EffortWithoutResources, .task = object};
        }
        if (!canWork) return SolveProblem{.kind = Kind::NoWorkingTime, .task = object};
    }
    return std::nullopt;
}

std::optional<SolveProblem> Network::CheckDependencies(Vtask* object, Task& task) {
    const bool isLink = object->Subproject() != nullptr;
    bool toStart = false;
    Vdependency* missing = nullptr;
    for (Vdependency* dependency : object->DependencyList()) {
        if (!dependency->Include()) continue;
        const Vdependency::Terms terms = dependency->TermsNow();
        Vtask* required = terms.taskRequired.Get();
        Source& source = sources_.emplace_back();
        source.object = dependency;
        source.fromPercent = terms.fromPercent;
        source.toPercent = terms.toPercent;
        source.offset = terms.offset;
        source.date = required ? 0 : dependency->DepDate().Days();
        pending_.push_back({required, -1});
        onMinuteGrid_ = onMinuteGrid_ && IsOnMinuteGrid(source.date) && IsOnMinuteGrid(source.offset);
        if (source.toPercent == 0) toStart = true;
        if (isLink) continue;
        if (required && required->Subproject() && source.fromPercent != 0 && source.fromPercent != 100) {
            return SolveProblem{.kind = Kind::PartOfSubproject, .dependency = dependency};
        }
        const bool gone =
            required ? !required->Project() || !required->Include() : terms.taskRequired.IsDeleted();
        if (gone && !missing) missing = dependency;
    }
    task.sourceCount = static_cast<std::int32_t>(sources_.size()) - task.firstSource;
    if (missing) return SolveProblem{.kind = Kind::MissingPrerequisite, .dependency = missing};
    if (!toStart && !isLink) return SolveProblem{.kind = Kind::MissingToStart, .task = object};
    return std::nullopt;
}

/// Neighbouring tasks mostly share a shift, so the last answer is kept.
bool Network::HasNormalTime(const Vshift* shift) {
    if (shift != lastShift_) {
        lastShift_ = shift;
        lastHasNormalTime_ = shift && HasNormalPeriod(*shift);
    }
    return lastHasNormalTime_;
}

/// Collects what the assignments want of each resource by weekday. Returns whether at least one of them can
/// ever give a minute of normal time.
bool Network::AddAssignments(Vtask* object, Task& task) {
    bool canWork = false;
    for (const Vassignment* assignment : object->AssignmentList()) {
        Vresource* resource = assignment->ResourceRequired();
        if (!resource) continue;
        const auto begin = wantResources_.begin() + task.firstWant;
        const auto known = std::find(begin, wantResources_.end(), resource);
        const auto wantIndex = static_cast<std::size_t>(known - wantResources_.begin());
        if (known == wantResources_.end()) {
            wantResources_.push_back(resource);
            wants_.emplace_back();
        }
        if (!assignment->Include()) continue;  // but it has given its resource a place in the order
        const std::int32_t minutes = RoundToInt32(assignment->Hours() * 60);
        Want& want = wants_[wantIndex];
        const unsigned workDays = assignment->WeekdaysNow();
        for (std::size_t w = 0; w < kWeekdays; ++w) {
            if ((workDays >> w & 1) == 0) continue;
            want.minutes[w] = AddSaturating(want.minutes[w], minutes);
            task.today[w] = AddSaturating(task.today[w], minutes);
        }
        if (!canWork && workDays != 0 && minutes > 0) canWork = HasNormalTime(resource->Shift());
    }
    std::size_t kept = Index(task.firstWant);
    for (std::size_t i = kept; i < wants_.size(); ++i) {
        unsigned any = 0, wanted = 0;
        for (std::size_t w = 0; w < kWeekdays; ++w) {
            any |= static_cast<unsigned>(wants_[i].minutes[w]);
            wanted |= static_cast<unsigned>(wants_[i].minutes[w] > 0) << w;
        }
        task.wantedDays |= static_cast<std::uint8_t>(wanted);
        if (any == 0) continue;
        if (kept != i) {
            wants_[kept] = wants_[i];
            wantResources_[kept] = wantResources_[i];
        }
        ++kept;
    }
    if (kept != wants_.size()) {
        wants_.resize(kept);
        wantResources_.resize(kept);
    }
    task.wantCount = static_cast<std::int32_t>(wants_.size()) - task.firstWant;
    return canWork;
}

std::int32_t Network::FindOrAddPattern(const Vshift* shift, bool workDay) {
    for (std::size_t i = 0; i < patterns_.size(); ++i) {
        if (patterns_[i].shift == shift && patterns_[i].workDay == workDay)
            return static_cast<std::int32_t>(i);
    }
    DayPattern pattern;
    pattern.shift = shift;
    pattern.workDay = workDay;
    pattern.firstPeriod = static_cast<std::int32_t>(periods_.size());
    constexpr int cells = Vshift::kHours * Vshift::kPeriodsPerHour;
    const auto letter = [shift](int cell) { return shift ? shift->Period(cell) : 'X'; };
    pattern.firstNormal = static_cast<std::int32_t>(normalPeriods_.size());
    int begin = 0;
    double start = 0;
    for (int cell = 1; cell <= cells; ++cell) {
        if (cell < cells && letter(cell) == letter(begin)) continue;
        const SlotClass kind = ClassOf(letter(begin), workDay);
        const double end = static_cast<double>(cell) / Vshift::kPeriodsPerHour / Vshift::kHours;
        periods_.push_back({end, kind});
        if (kind <= SlotClass::OffDay) {
            pattern.normalMinutes += (cell - begin) * (60 / Vshift::kPeriodsPerHour);
            normalPeriods_.push_back({start, end});
            pattern.normalEnd = end;
        }
        begin = cell;
        start = end;
    }
    pattern.normalCount = static_cast<std::int32_t>(normalPeriods_.size()) - pattern.firstNormal;
    pattern.periodCount = static_cast<std::int32_t>(periods_.size()) - pattern.firstPeriod;
    patterns_.push_back(pattern);
    return static_cast<std::int32_t>(patterns_.size()) - 1;
}

void Network::AddResource(Vresource* object) {
    resources_.emplace_back().object = object;
    ResourceWeek& week = resourceWeeks_.emplace_back();
    week.rate = {object->BurdenedRate().ToDouble(), object->OffDayRate().ToDouble(),
                 object->OvertimeRate().ToDouble(), object->HolidayRate().ToDouble()};
    for (const bool workDay : {false, true}) {
        const std::int32_t at = FindOrAddPattern(object->Shift(), workDay);
        const DayPattern& pattern = patterns_[Index(at)];
        const double rate = week.rate[static_cast<std::size_t>(NormalKind(workDay))];
        week.pattern[workDay ? 1 : 0] = at;
        for (std::int32_t i = 0; i < pattern.normalCount; ++i) {
            const NormalPeriod& period = normalPeriods_[Index(pattern.firstNormal + i)];
            const double days = (kSteadyDays + period.end) - (kSteadyDays + period.start);
            week.wholeDayCost[workDay ? 1 : 0] += Money::FromDouble(rate * days * 24);
        }
    }
    for (int w = 0; w < kWeekdays; ++w)
        if (object->WorkDay(w + 1)) week.workDays |= static_cast<std::uint8_t>(1U << w);
}

}  // namespace vortan
