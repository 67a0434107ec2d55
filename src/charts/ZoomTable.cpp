#include "charts/ZoomTable.h"

#include <algorithm>

#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "solve/Solver.h"

namespace vortan {
namespace {

constexpr DayKeyLook kLooks[kDayKeys] = {
    {"Weekday", 0xFFFFFF},  {"Weekend", 0xE0E0E0},     {"Normal", 0xC0FFC0},
    {"Off day", 0xFFFF00},  {"Overtime", 0xC0C000},    {"Holiday", 0x00FFFF},
    {"Shutdown", 0xC0E0FF}, {"Unavailable", 0xFFC0FF}, {"Overload", 0x8080FF}};

/// The last column of the table.
const char* RateText(int slotType) {
    switch (slotType) {
        case 3:
            return "Normal";
        case 4:
            return "OffDay";
        case 5:
            return "Overtime";
        case 6:
            return "Holiday";
        case 9:
            return "Overload";
        default:
            return "";
    }
}

}  // namespace

const DayKeyLook& LookOf(int key) {
    if (key < 1 || key > kDayKeys) AssertionFailed();
    return kLooks[key - 1];
}

std::vector<int> DayKeysOfYear(const Solver& solver, int year) {
    const auto first = static_cast<std::int32_t>(FromParts({year, 1, 1}).Days());
    const auto last = static_cast<std::int32_t>(FromParts({year, 12, 31}).Days());
    std::vector<int> keys;
    for (std::int32_t day = first; day <= last; ++day) {
        const int weekday = Weekday(DateTime(day));
        keys.push_back(weekday == 1 || weekday == 7 ? kWeekendKey : kWeekdayKey);
    }
    for (const Vresource* resource : solver.WantedResources()) {
        if (!resource->Template() || !resource->Include()) continue;
        for (const Vslot& slot : solver.HeldSlots(*resource, {first, last + 1})) {
            int& key = keys[static_cast<std::size_t>(slot.startTime.WholeDay() - first)];
            key = std::max(key, slot.slotType);
        }
    }
    return keys;
}

void StartZoomVwindow(Vwindow& window, bool showResource) {
    window.ClearLayout();
    if (showResource) {
        window.AddColumn("Template", Alignment::Left);
        window.AddColumn("Resource", Alignment::Left);
    }
    window.AddColumn("From", Alignment::Right);
    window.AddColumn("Until", Alignment::Right);
    window.AddColumn("Project", Alignment::Left);
    window.AddColumn("Task", Alignment::Left);
    window.AddColumn("Rate", Alignment::Left);
    window.EndColumns();
}

void FillInZoomVwindow(Vwindow& window, bool showResource, const Solver& solver, const Vresource& resource,
                       DateTime day) {
    const auto timeOf = [](DateTime when) { return FormatDate(DateTime(when.Days() - when.WholeDay())); };
    const auto number = static_cast<std::int32_t>(day.WholeDay());
    for (const Vslot& slot : solver.HeldSlots(resource, {number, number + 1})) {
        const Vtask* task = slot.taskRequired;
        window.AddRow();
        const int row = window.Rows() - 1;
        int col = 0;
        if (showResource) {
            window.SetCell(row, col++, resource.Template() ? resource.Template()->TemplateName() : "");
            window.SetCell(row, col++, resource.BuildNodeText());
        }
        for (const std::string& text : {timeOf(slot.startTime), timeOf(slot.endTime),
                                        task->Project() ? task->Project()->BuildNodeText() : "",
                                        task->BuildNodeText(), std::string(RateText(slot.slotType))}) {
            window.SetCell(row, col, text);
            window.SetCellColor(row, col++, LookOf(slot.slotType).color);
        }
    }
}

}  // namespace vortan
