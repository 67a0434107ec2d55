// Resources, their calendars, and who works on what.

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "model/Vassignment.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "transfer/PlanExport.h"
#include "transfer/VortanParts.h"

namespace vortan {

namespace {

/// A calendar of that program has at most so many working times a day.
constexpr std::size_t kMostTimes = 5;
constexpr unsigned kMondayToFriday = 0x3E;
constexpr double kUnitParts = 10000;  ///< as exactly as units are written
constexpr std::int32_t kPeriodMinutes = 60 / Vshift::kPeriodsPerHour;

unsigned WeekdaysOf(const Vresource& resource) {
    unsigned bits = 0;
    for (int day = 1; day <= 7; ++day) bits |= resource.WorkDay(day) ? 1U << (day - 1) : 0;
    return bits;
}

/// The first and the last moment that the format knows.
const DateTime kFirstMoment = FromParts({1984, 1, 1, 0, 0, 0});
const DateTime kLastRate = FromParts({2049, 12, 31, 23, 59, 0});

MRate RateOf(int table, Money standard, Money overtime) {
    MRate rate;
    rate.Table = table;
    rate.From = kFirstMoment;
    rate.To = kLastRate;
    rate.StandardRate = standard.ToDouble();
    rate.OvertimeRate = overtime.ToDouble();
    return rate;
}

/// Every resource that a row of links names, as a visitor of fields.
struct ResourcesNamed {
    const std::function<void(Vresource*)>& each;
    template <class Field>
    void operator()(const char*, const Field&) {}
    void operator()(const char*, const Journaled<Link<Vresource>>& field) {
        for (int i = 0; i < field.Count(); ++i) {
            if (Vresource* resource = field.At(i).Get()) each(resource);
        }
    }
};

/// The shifts that the rows of a template's resources name.
struct ShiftsNamed {
    std::vector<const Vshift*>& shifts;
    template <class Field>
    void operator()(const char*, const Field&) {}
    void operator()(const char*, const Journaled<Link<Vshift>>& field) {
        for (int i = 0; i < field.Count(); ++i) {
            const Vshift* shift = field.At(i).Get();
            if (shift && std::find(shifts.begin(), shifts.end(), shift) == shifts.end())
                shifts.push_back(shift);
        }
    }
};

}  // namespace

/// The resources that the plan names in any journal, in the order of the rows.
void PlanExport::CollectWanted(std::vector<Vresource*>& wanted) const {
    std::unordered_set<const Vresource*> known;
    const std::function<void(Vresource*)> add = [&](Vresource* resource) {
        if (resource->Template() && known.insert(resource).second) wanted.push_back(resource);
    };
    ResourcesNamed visit{add};
    for (const Vproject* project : projects_) {
        std::as_const(*project).ForEachField(visit);
        for (const Vtask* task : project->TaskList()) {
            for (const Vassignment* assignment : task->AssignmentList())
                std::as_const(*assignment).ForEachField(visit);
        }
    }
}

/// Those of the active template, and of others that tasks want somebody of.
void PlanExport::ExportResources() {
    std::vector<MWorkingTime> times = {{480, 720}, {780, 1020}};
    MCalendar& standard = file_.Calendars.emplace_back();
    standard.UID = file_.CalendarUID = 1;
    standard.Name = "Standard";
    for (std::size_t day = 2; day <= 6; ++day) standard.Weekday[day] = {true, true, times};
    std::vector<Vresource*> wanted;
    CollectWanted(wanted);
    std::unordered_set<const Vresource*> named(wanted.begin(), wanted.end());
    const auto addOf = [&](Vtemplate& owner) {
        AddTemplate(owner);
        for (Vresource* resource : owner.ResourceList()) {
            if (named.contains(resource) || resource->Include()) {
                ExportResource(*resource);
            } else {
                losses_.Add(
                    "Resource " + std::to_string(resource->ResourceID()) + " " + resource->Description(),
                    "All of it", "it is not in the active journal", "Left out");
            }
        }
    };
    if (Vtemplate* active = workspace_.ThisTemplate()) addOf(*active);
    for (Vtemplate* owner : workspace_.TemplateList()) {
        const bool isNamed = std::any_of(wanted.begin(), wanted.end(),
                                         [&](const Vresource* each) { return each->Template() == owner; });
        if (owner != workspace_.ThisTemplate() && isNamed) addOf(*owner);
    }
}

void PlanExport::AddTemplate(Vtemplate& owner) {
    templates_.push_back(&owner);
    plan_.templates.push_back(&owner);
    auto& shifts = plan_.shifts.emplace_back(owner.ShiftList().begin(), owner.ShiftList().end());
    ShiftsNamed visit{shifts};
    for (const Vresource* resource : owner.ResourceList()) resource->ForEachField(visit);
}

void PlanExport::ExportResource(Vresource& resource) {
    MResource& row = file_.Resources.emplace_back();
    row.UID = row.ID = static_cast<std::int32_t>(file_.Resources.size());
    plan_.resources.emplace(&resource, row.UID);
    row.Name = ShownName(resource.Description());
    row.Group = ShownName(resource.Department());
    row.Code = ShownName(resource.Title());
    row.StandardRate = resource.BurdenedRate().ToDouble();
    row.OvertimeRate = resource.OvertimeRate().ToDouble();
    row.Rates = {RateOf(0, resource.BurdenedRate(), resource.OvertimeRate()),
                 RateOf(1, resource.OffDayRate(), resource.OffDayRate()),
                 RateOf(2, resource.HolidayRate(), resource.HolidayRate())};
    row.CalendarUID = CalendarFor(resource);
    row.Text30 = EncodeResource(plan_, row, resource);
}

std::int32_t PlanExport::CalendarFor(const Vresource& resource) {
    const std::int32_t base = BaseCalendarFor(resource.Shift(), WeekdaysOf(resource));
    calendarOf_.emplace(&resource, base);
    MCalendar& own = file_.Calendars.emplace_back();
    own.UID = static_cast<std::int32_t>(file_.Calendars.size());
    own.Name = ShownName(resource.Description());
    own.IsBaseCalendar = false;
    own.BaseCalendarUID = base;
    return own.UID;
}

/// Work days and shift as a calendar that many resources may share.
std::int32_t PlanExport::BaseCalendarFor(const Vshift* shift, unsigned weekdays) {
    const auto [at, isNew] = baseCalendars_.try_emplace({shift, weekdays}, 0);
    if (!isNew) return at->second;
    MCalendar calendar;
    calendar.UID = at->second = static_cast<std::int32_t>(file_.Calendars.size()) + 1;
    const std::string shiftName = shift ? ShownName(shift->ShiftName()) : "";
    calendar.Name = shiftName.empty() ? "No shift" : shiftName;
    if (weekdays != kMondayToFriday) {
        calendar.Name += " ";
        for (int day = 0; day < 7; ++day) {
            if ((weekdays >> day & 1) != 0)
                calendar.Name += std::string("SuMoTuWeThFrSa").substr(2 * std::size_t(day), 2);
        }
    }
    const std::string name = calendar.Name;
    for (int number = 2; std::any_of(file_.Calendars.begin(), file_.Calendars.end(),
                                     [&](const MCalendar& each) { return each.Name == calendar.Name; });
         ++number) {
        calendar.Name = name + " " + std::to_string(number);
    }
    const auto times = shift ? TimesOf(*shift, calendar.Name) : std::vector<MWorkingTime>();
    for (std::size_t day = 1; day <= 7; ++day) {
        const bool works = (weekdays >> (day - 1) & 1) != 0 && !times.empty();
        calendar.Weekday[day] = {true, works, works ? times : std::vector<MWorkingTime>()};
    }
    file_.Calendars.push_back(calendar);
    return calendar.UID;
}

/// The normal time of a shift, with the shortest breaks taken out where there are too many.
std::vector<MWorkingTime> PlanExport::TimesOf(const Vshift& shift, const std::string& calendar) {
    std::vector<MWorkingTime> times;
    for (int period = 0; period < Vshift::kHours * Vshift::kPeriodsPerHour; ++period) {
        if (shift.Period(period) != 'N') continue;
        const std::int32_t from = period * kPeriodMinutes;
        if (!times.empty() && times.back().To == from) {
            times.back().To = from + kPeriodMinutes;
        } else {
            times.push_back({from, from + kPeriodMinutes});
        }
    }
    if (times.size() > kMostTimes)
        losses_.Add("Shift " + shift.ShiftName(), "Breaks", "a day there has at most five working times",
                    "The shortest breaks count as working time in calendar " + calendar);
    while (times.size() > kMostTimes) {
        std::size_t shortest = 1;
        for (std::size_t i = 2; i < times.size(); ++i) {
            if (times[i].From - times[i - 1].To < times[shortest].From - times[shortest - 1].To) shortest = i;
        }
        times[shortest - 1].To = times[shortest].To;
        times.erase(times.begin() + static_cast<std::ptrdiff_t>(shortest));
    }
    return times;
}

void PlanExport::ExportAssignments() {
    transfer_.StartCount("Exporting assignments", static_cast<std::int64_t>(rows_.size()));
    assignmentRanges_.assign(rows_.size(), {0, 0});
    for (std::size_t at = 1; at < rows_.size(); ++at) {
        const Vtask& task = *rows_[at].task;
        assignmentRanges_[at].first = file_.Assignments.size();
        if (task.Include()) {
            double weekly = 0;
            const auto hours = [](const Vassignment& each) {
                double sum = 0;
                for (int day = 1; day <= 7; ++day) sum += each.WorkDay(day) ? each.Hours() : 0;
                return sum;
            };
            for (const Vassignment* each : task.AssignmentList())
                weekly += each->Include() ? hours(*each) : 0;
            for (const Vassignment* each : task.AssignmentList()) {
                if (each->Include()) ExportAssignment(task, *each, weekly > 0 ? hours(*each) / weekly : 0);
            }
        }
        assignmentRanges_[at].second = file_.Assignments.size();
        transfer_.IncrementCount();
    }
}

void PlanExport::ExportAssignment(const Vtask& task, const Vassignment& assignment, double share) {
    const auto resource = plan_.resources.find(assignment.ResourceRequired());
    if (resource == plan_.resources.end()) {
        Lose(task, "An assignment without a resource", "there is nobody to assign", "Left out");
        return;
    }
    MAssignment& row = file_.Assignments.emplace_back();
    row.UID = static_cast<std::int32_t>(file_.Assignments.size());
    row.TaskUID = plan_.tasks.at(&task);
    row.ResourceUID = resource->second;
    row.Units = std::round(static_cast<double>(assignment.PercentOfWeek()) * kUnitParts) / kUnitParts;
    for (std::size_t day = 0; day < kDayKinds; ++day)
        row.Flag[day + 1] = assignment.WorkDay(static_cast<int>(day));
    row.Flag[10] = true;  // the days are in the flags
    if (task.EffortUnits() < 0) row.Work = std::round(task.MostLikely() * share);
}

}  // namespace vortan
