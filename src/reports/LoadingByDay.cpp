// The hours of each resource of the active template, task by task, on the days of a month.

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>

#include "model/ValueText.h"
#include "model/Vresource.h"
#include "reports/Builders.h"

namespace vortan {
namespace {

constexpr std::int32_t kFirstDayColumn = 2;
constexpr std::size_t kMostDays = 31;

DateTime MonthOf(DateTime date) {
    const DateParts parts = ToParts(DateTime(date.WholeDay()));
    return FromParts({parts.year, parts.month, 1});
}

std::int32_t DaysIn(DateTime month) {
    const DateParts parts = ToParts(month);
    int days = 28;
    while (ValidDate(parts.year, parts.month, days + 1)) ++days;
    return days;
}

DateTime MonthBeside(DateTime month, int step) {
    const DateParts parts = ToParts(MonthOf(month));
    const int months = parts.year * 12 + parts.month - 1 + step;
    const int year = months / 12, number = months % 12 + 1;
    return ValidDate(year, number, 1) ? FromParts({year, number, 1}) : MonthOf(month);
}

/// The start of the first slot that a resource of the active template is booked for.
std::optional<DateTime> FirstBooking(const ReportSource& source) {
    std::optional<DateTime> first;
    if (const Vtemplate* from = source.workspace.ThisTemplate()) {
        for (const Vresource* resource : from->ResourceList()) {
            if (!resource->Include()) continue;
            const auto slots = source.solver.HeldSlots(*resource);
            if (!slots.empty()) first = std::min(first.value_or(slots[0].startTime), slots[0].startTime);
        }
    }
    return first;
}

DateTime MonthToShow(const ReportSource& source) {
    if (source.month.IsSet()) return MonthOf(source.month);
    const Vproject* project = source.workspace.ThisProject();
    const DateTime start = project ? project->EarlyStart() : DateTime();
    if (start.IsSet()) return MonthOf(start);
    return MonthOf(FirstBooking(source).value_or(source.workspace.ThePlatform().Now()));
}

/// The hours of a day as they are shown: tenths, none where nothing was added.
using DayTenths = std::array<std::int32_t, kMostDays>;
constexpr std::int32_t kNothing = -1;

/// Adds a slot to hours that are rounded after each addition. Rounding goes by the seven digits that a
/// single precision number is good for, halves away from zero.
void AddSlot(std::int32_t& tenths, const Vslot& slot) {
    const double before = std::max(tenths, 0) / 10.0;
    const auto hours = static_cast<float>(before + static_cast<double>(MillisecondsOf(slot)) /
                                                       static_cast<double>(kMillisecondsPerHour));
    const std::int64_t digits = hours < 1 ? 10'000'000 : hours < 10 ? 1'000'000 : 100'000;
    const std::int64_t sevenDigits = std::llround(double{hours} * static_cast<double>(digits));
    tenths = static_cast<std::int32_t>((sevenDigits * 10 + digits / 2) / digits);
}

/// The bookings of one resource in the month.
struct ResourceMonth {
    struct TaskDays {
        Vtask* task;
        DayTenths days;
    };
    /// By the text of the project, then by TaskID; what agrees in both shares a row.
    std::map<std::pair<std::string_view, std::int32_t>, TaskDays> tasks;
    std::array<int, kMostDays> highestType{};  ///< of those that are not normal; 0 none

    void Add(const Vslot& slot, std::size_t day, ProjectTexts& projects) {
        if (!last_ || lastTask_ != slot.taskRequired) {
            Vtask* task = slot.taskRequired;
            const auto [place, isNew] = tasks.try_emplace({projects.Of(task->Project()), task->TaskID()});
            if (isNew) {
                place->second.task = task;
                place->second.days.fill(kNothing);
            }
            last_ = &place->second;
            lastTask_ = task;
        }
        AddSlot(last_->days[day], slot);
        if (slot.slotType != kNormalSlot) highestType[day] = std::max(highestType[day], slot.slotType);
    }

  private:
    TaskDays* last_ = nullptr;
    const Vtask* lastTask_ = nullptr;
};

void AddDayCell(Table& table, std::int32_t row, std::size_t day, std::int32_t tenths) {
    std::string text = std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
    table.SetCell(row, kFirstDayColumn + static_cast<std::int32_t>(day), std::move(text),
                  HourCount{tenths / 10.0});
}

/// A row for each project, followed by those of its tasks.
void AddTaskRows(Table& table, Vresource& resource, const ResourceMonth& month, DayTenths& totals) {
    const std::string name = resource.BuildNodeText();
    const std::string_view* project = nullptr;
    for (const auto& [key, each] : month.tasks) {
        if (!project || *project != key.first) {
            project = &key.first;
            RowWriter(table, Link<Vresource>(&resource)).Text(name).Text(std::string(key.first));
        }
        const std::int32_t row = table.AddRow(Link<Vtask>(each.task));
        table.SetCell(row, 0, name);
        table.SetCell(row, 1, "- " + each.task->BuildNodeText());
        for (std::size_t day = 0; day < kMostDays; ++day) {
            if (each.days[day] == kNothing) continue;
            AddDayCell(table, row, day, each.days[day]);
            totals[day] += each.days[day];
        }
    }
}

void AddTotalRow(Table& table, Vresource& resource, const ResourceMonth& month, const DayTenths& totals) {
    const std::int32_t row = table.AddRow(Link<Vresource>(&resource));
    table.SetCell(row, 0, resource.BuildNodeText());
    table.SetCell(row, 1, "Total");
    for (std::size_t day = 0; day < kMostDays; ++day) {
        if (totals[day] > 0) AddDayCell(table, row, day, totals[day]);
        if (month.highestType[day] != 0) {
            table.marks.push_back(
                {row, kFirstDayColumn + static_cast<std::int32_t>(day), month.highestType[day]});
        }
    }
}

}  // namespace

DateTime MonthBefore(DateTime month) {
    return MonthBeside(month, -1);
}

DateTime MonthAfter(DateTime month) {
    return MonthBeside(month, 1);
}

std::string MonthText(DateTime month) {
    constexpr const char* names[] = {"January", "February", "March",     "April",   "May",      "June",
                                     "July",    "August",   "September", "October", "November", "December"};
    const DateParts parts = ToParts(month);
    return std::string(names[parts.month - 1]) + " " + std::to_string(parts.year);
}

Table BuildLoadingByDay(const ReportSource& source) {
    const DateTime month = MonthToShow(source);
    const std::int32_t days = DaysIn(month);
    std::vector<TableColumn> columns{{"Resource", Alignment::Left}, {"Project/Task", Alignment::Left}};
    columns.insert(columns.end(), static_cast<std::size_t>(days), {MonthText(month), Alignment::DayColumn});
    Table table("Loading by the day", std::move(columns), kFirstDayColumn);
    table.month = month;
    table.firstRowFixed = true;
    RowWriter numbers(table);
    numbers.Skip(kFirstDayColumn);
    for (std::int32_t day = 1; day <= days; ++day) numbers.Number(day);

    const auto first = static_cast<std::int32_t>(month.Days());
    const Vtemplate* from = source.workspace.ThisTemplate();
    if (!from) return table;
    ProjectTexts projects;
    for (Vresource* resource : from->ResourceList()) {
        if (!resource->Include()) continue;
        ResourceMonth booked;
        for (const Vslot& slot : source.solver.HeldSlots(*resource, {first, first + days}))
            booked.Add(slot, static_cast<std::size_t>(slot.startTime.WholeDay() - first), projects);
        if (booked.tasks.empty()) continue;
        DayTenths totals{};
        AddTaskRows(table, *resource, booked, totals);
        AddTotalRow(table, *resource, booked, totals);
    }
    return table;
}

}  // namespace vortan
