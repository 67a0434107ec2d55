// The import of resources, their rates, calendars and shifts.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "model/Conventions.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtemplate.h"
#include "transfer/ImportPlan.h"

namespace vortan {
namespace {

constexpr int kPeriods = Vshift::kHours * Vshift::kPeriodsPerHour;
constexpr int kMinutesPerPeriod = 5;
constexpr int kLongestBreak = 120 / kMinutesPerPeriod;
constexpr int kOvertime =
    240 / kMinutesPerPeriod;  // behind the normal time of a day, as usual shifts have it

using Day = std::string;  // a letter for each period

int PeriodOf(std::int32_t minute) {
    return std::clamp((minute + kMinutesPerPeriod / 2) / kMinutesPerPeriod, 0, kPeriods);
}

/// Normal time as told, a break in short gaps, some hours of overtime behind it, overload else.
Day LettersOf(const std::vector<MWorkingTime>& times) {
    Day day(kPeriods, 'X');
    for (const MWorkingTime& time : times)
        for (int i = PeriodOf(time.From); i < PeriodOf(time.To); ++i) day[static_cast<std::size_t>(i)] = 'N';
    for (std::size_t end = day.find_first_not_of('N', day.find('N')); end != Day::npos;) {
        const std::size_t next = std::min(day.find('N', end), day.size());
        const bool isBreak = next < day.size() && next - end <= kLongestBreak;
        const std::size_t until = isBreak ? next : std::min<std::size_t>(next, end + kOvertime);
        std::fill(day.begin() + static_cast<std::ptrdiff_t>(end),
                  day.begin() + static_cast<std::ptrdiff_t>(until), isBreak ? 'B' : 'O');
        end = next == day.size() ? Day::npos : day.find_first_not_of('N', next);
    }
    return day;
}

bool SameNormalTime(const Vshift& shift, const Day& day) {
    for (int i = 0; i < kPeriods; ++i)
        if ((shift.Period(i) == 'N') != (day[static_cast<std::size_t>(i)] == 'N')) return false;
    return true;
}

std::string TimesText(const std::vector<MWorkingTime>& times) {
    std::string text;
    for (const MWorkingTime& time : times) {
        for (const std::int32_t minute : {time.From, time.To}) {
            text += text.empty() ? "" : minute == time.From ? ", " : "-";
            text +=
                std::to_string(minute / 60) + (minute % 60 < 10 ? ":0" : ":") + std::to_string(minute % 60);
        }
    }
    return text;
}

bool SameTimes(const std::vector<MWorkingTime>& a, const std::vector<MWorkingTime>& b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(),
        [](const MWorkingTime& x, const MWorkingTime& y) { return x.From == y.From && x.To == y.To; });
}

std::string RateText(double amount, double hours) {
    std::array<char, 400> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), amount / hours,
                                   std::chars_format::fixed, 6);
    return std::string(digits.data(), end.ptr) + "/h";
}

}  // namespace

Money FixRate(const std::string& text, const std::string& currencySymbol) {
    const std::string amount = text.substr(0, text.find('/'));
    const auto money = ParseCurrency(amount, currencySymbol);
    if (!money) Refuse("The rate \"" + text + "\" is not an amount of money.");
    return *money;
}

/// The text of a rate has its unit behind the amount, and nobody looks at it; so it is given by the hour.
Money PlanImport::RateOf(double amount, std::int32_t format) const {
    const UseConventions plain;
    return FixRate(RateText(amount, time_.HoursOf(format)), "");
}

void PlanImport::MakeTemplate() {
    plan_.resources = workspace_.ThisTemplate();
    if (plan_.resources) return;
    plan_.newTemplate = true;
    plan_.templateName = "Resources";
    plan_.resources = workspace_.NewVObject<Vtemplate>();
    plan_.resources->AddJournal(DateTime(workspace_.ThePlatform().Now().WholeDay()));
    auto* shift = workspace_.NewVObject<Vshift>();
    shift->SetTemplate(plan_.resources);
    shift->SetShiftName("Standard");
}

void PlanImport::ImportResources() {
    // Numbers that a resource of the file has are left to it.
    for (const MResource& each : file_.Resources)
        if (each.ID > 0) usedIDs_.insert(each.ID);
    for (const Vresource* each : plan_.resources->ResourceList()) usedIDs_.insert(each->ResourceID());
    for (const MResource& each : file_.Resources) {
        if (each.IsNull) {
            Lose(Name(each), "Empty row", "It holds nothing", "Left out");
        } else if (each.ID != 0 || !each.Name.empty()) {
            ImportResource(each);
        }
        CheckCancel();
    }
}

bool PlanImport::FindSamePerson(const MResource& source) {
    Vresource* known = plan_.newTemplate ? nullptr : plan_.resources->FindResource(source.ID);
    if (!known || known->Description() != source.Name) return false;
    plan_.resourceOf[source.UID] = known;
    if (known->BurdenedRate() != RateOf(source.StandardRate, source.StandardRateFormat))
        Lose(Name(source), "Standard rate", "The resource is in the template already",
             "The rate of the template stays");
    return true;
}

std::int32_t PlanImport::FreeResourceID(const MResource& source) {
    const std::int32_t marked = IsVortan(source.Text30) ? VortanNumber(source.Text30) : 0;
    const std::int32_t wanted = marked > 0 ? marked : source.ID;
    const bool taken = plan_.resources->FindResource(wanted) || givenIDs_.contains(wanted);
    if (wanted > 0 && !taken) return wanted;
    std::int64_t id = std::max(wanted, 0) + std::int64_t{1};
    const auto inUse = [this](std::int64_t number) {
        const auto small = static_cast<std::int32_t>(number);
        return usedIDs_.contains(small) || givenIDs_.contains(small);
    };
    while (id <= std::numeric_limits<std::int32_t>::max() && inUse(id)) ++id;
    if (id > std::numeric_limits<std::int32_t>::max())
        Refuse("The Resource ID " + std::to_string(wanted) + " is already in use.");
    if (wanted > 0 || source.ID != 0)
        Lose(Name(source), "Resource ID " + std::to_string(wanted),
             wanted > 0 ? "It is in use" : "Numbers begin at 1", "It has the ID " + std::to_string(id));
    usedIDs_.insert(static_cast<std::int32_t>(id));
    return static_cast<std::int32_t>(id);
}

void PlanImport::ImportResource(const MResource& source) {
    if (source.Type != static_cast<std::int32_t>(MResourceType::Work)) {
        const bool material = source.Type == static_cast<std::int32_t>(MResourceType::Material);
        Lose(Name(source), material ? "Material resource" : "Cost resource", "Resources are who works",
             "Its cost is material cost of its tasks");
        return;
    }
    if (plan_.resourceOf.contains(source.UID)) {
        Lose(Name(source), "Resource", "Its UID " + std::to_string(source.UID) + " is used twice",
             "Left out");
        return;
    }
    if (FindSamePerson(source)) return;
    const std::int32_t id = FreeResourceID(source);
    auto* resource = workspace_.NewVObject<Vresource>();
    plan_.resourceOf[source.UID] = resource;
    newIDs_[source.UID] = id;
    givenIDs_.insert(id);
    resource->SetTemplate(plan_.resources);
    if (plan_.newTemplate) resource->SetResourceID(id);
    resource->SetDescription(source.Name);
    resource->SetDepartment(source.Group);
    resource->SetTitle(source.Code);
    SetRates(source, *resource);
    SetCalendar(source, *resource);
    if (source.MaxUnits > 1 + 1e-9)
        Lose(Name(source), "Units " + PlainNumber(source.MaxUnits * 100) + "%",
             "A resource is one of its kind", "It is one");
    if (source.HasAvailability)
        Lose(Name(source), "Availability that changes", "A resource is there all the time", "Left out");
    if (!source.Notes.empty()) Lose(Name(source), "Notes", "Resources have none", "Left out");
}

void PlanImport::SetRates(const MResource& source, Vresource& resource) {
    resource.SetBurdenedRate(RateOf(source.StandardRate, source.StandardRateFormat));
    const Money overtime = RateOf(source.OvertimeRate, source.OvertimeRateFormat);
    resource.SetOvertimeRate(overtime);
    resource.SetOffDayRate(overtime);
    resource.SetHolidayRate(overtime);
    ListRates(source);
}

/// The earliest period of the first table is what the resource itself tells.
void PlanImport::ListRates(const MResource& source) {
    const MRate* first = nullptr;
    for (const MRate& rate : source.Rates)
        if (rate.Table == 0 && (!first || rate.From < first->From)) first = &rate;
    for (const MRate& rate : source.Rates) {
        const bool empty = rate.StandardRate == 0 && rate.OvertimeRate == 0 && rate.CostPerUse == 0;
        if (&rate == first || (rate.Table != 0 && empty)) continue;
        const std::string table(1, static_cast<char>('A' + std::clamp(rate.Table, 0, 4)));
        Lose(Name(source),
             "Rate " + PlainNumber(rate.StandardRate / time_.HoursOf(rate.StandardRateFormat)) +
                 " an hour from " + FormatShortDate(rate.From) + " (table " + table + ")",
             rate.Table == 0 ? "A rate holds for a whole journal" : "There are no tables of rates",
             "Left out");
    }
}

const MCalendar* PlanImport::FindCalendar(std::int32_t uid) const {
    const auto found = std::find_if(file_.Calendars.begin(), file_.Calendars.end(),
                                    [uid](const MCalendar& c) { return c.UID == uid; });
    return found == file_.Calendars.end() ? nullptr : &*found;
}

/// A shift of the template that has the same normal time, or a new one.
Vshift* PlanImport::ShiftFor(const std::string& name, const MDay& day) {
    const Day letters = LettersOf(day.Times);
    for (Vshift* shift : plan_.resources->ShiftList())
        if (SameNormalTime(*shift, letters)) return shift;
    for (const auto& [shift, given] : newShifts_)
        if (SameNormalTime(*shift, letters)) return shift;
    std::string free = name.empty() ? "Shift" : name;
    const auto taken = [&] {
        return plan_.resources->ShiftList().Find(free) ||
               std::any_of(newShifts_.begin(), newShifts_.end(),
                           [&](const auto& each) { return each.second == free; });
    };
    while (taken()) Workspace::FixNameConflict(free);
    auto* shift = workspace_.NewVObject<Vshift>();
    for (int hour = 0; hour < Vshift::kHours; ++hour)
        shift->SetMatrix(hour, letters.substr(static_cast<std::size_t>(hour) * Vshift::kPeriodsPerHour,
                                              Vshift::kPeriodsPerHour));
    if (plan_.newTemplate) {
        shift->SetTemplate(plan_.resources);
        shift->SetShiftName(free);
    }
    newShifts_.emplace_back(shift, free);
    return shift;
}

/// The calendar of a resource says what differs from its base.
void PlanImport::SetCalendar(const MResource& source, Vresource& resource) {
    const MCalendar* own = FindCalendar(source.CalendarUID);
    const MCalendar* calendar = own ? own : FindCalendar(file_.CalendarUID);
    if (!calendar) return;
    std::array<const MDay*, 8> days{};
    std::string name;
    constexpr int mostBases = 10;
    for (int step = 0; calendar && step < mostBases; ++step) {
        for (std::size_t d = 1; d <= 7; ++d)
            if (!days[d] && calendar->Weekday[d].Given) days[d] = &calendar->Weekday[d];
        name = calendar->Name;
        calendar = calendar->BaseCalendarUID > 0 && calendar->BaseCalendarUID != calendar->UID
                       ? FindCalendar(calendar->BaseCalendarUID)
                       : nullptr;
    }
    const MDay* usual = nullptr;
    long most = 0;
    for (std::size_t d = 1; d <= 7; ++d) {
        const auto same = [&](const MDay* other) {
            return other && other->Working && days[d] && SameTimes(other->Times, days[d]->Times);
        };
        const bool works = days[d] && days[d]->Working && !days[d]->Times.empty();
        if (days[d]) resource.SetWorkDay(static_cast<int>(d), works);
        const long count = works ? std::count_if(days.begin() + 1, days.end(), same) : 0;
        if (count > most) {
            most = count;
            usual = days[d];
        }
    }
    if (!usual) return;
    resource.SetShift(ShiftFor(name, *usual));
    for (std::size_t d = 1; d <= 7; ++d) {
        if (days[d] && days[d]->Working && !days[d]->Times.empty() &&
            !SameTimes(days[d]->Times, usual->Times))
            Lose(Name(source),
                 std::string("Hours of ") + DayName(static_cast<int>(d)) + ": " + TimesText(days[d]->Times),
                 "A shift is the same on all days", "It works " + TimesText(usual->Times));
    }
}

void PlanImport::ListCalendars() {
    for (const MCalendar& each : file_.Calendars) {
        const std::string name = "Calendar " + each.Name;
        for (const MException& exception : each.Exceptions) {
            const bool oneDay = exception.From == exception.To || !exception.To.IsSet();
            Lose(name,
                 (exception.Name.empty() ? "Exception " : exception.Name + " ") +
                     FormatShortDate(exception.From) +
                     (oneDay ? "" : " to " + FormatShortDate(exception.To)) +
                     (exception.Day.Working ? ", working " + TimesText(exception.Day.Times) : ""),
                 "Templates have no days of their own", "Left out");
        }
        if (each.HasWorkWeeks) Lose(name, "Work weeks of their own", "Weeks are all alike", "Left out");
        std::vector<MWorkingTime> odd;
        for (const MDay& day : each.Weekday)
            for (const MWorkingTime& time : day.Times)
                if (time.From % kMinutesPerPeriod != 0 || time.To % kMinutesPerPeriod != 0)
                    odd.push_back(time);
        if (!odd.empty())
            Lose(name, "Times " + TimesText(odd), "Shifts have steps of five minutes", "Rounded");
    }
}

}  // namespace vortan
