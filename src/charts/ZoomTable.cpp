#include "charts/ZoomTable.h"

#include <algorithm>

#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"

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

/// The task that holds a slot; none for a free one, and for a task that was deleted since the solve.
const Vtask* HolderOf(const Network& network, const SlotView& slot) {
    return slot.task < 0 ? nullptr : network.Tasks()[static_cast<std::size_t>(slot.task)].object.Get();
}

void UpdateKeyType(int& key, const Solver& solver, std::int32_t resource, std::int32_t day) {
    solver.TheBookings().ForEachSlot(resource, day, [&](const SlotView& slot) {
        if (key < kOverloadKey && HolderOf(solver.TheNetwork(), slot))
            key = std::max(key, SlotTypeOf(slot.kind));
    });
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
        const int weekday = WeekdayIndex(day);
        keys.push_back(weekday == 0 || weekday == 6 ? kWeekendKey : kWeekdayKey);
    }
    const auto resources = solver.TheNetwork().Resources();
    for (std::size_t i = 0; i < resources.size(); ++i) {
        const Vresource* resource = resources[i].object.Get();
        if (!resource || !resource->Template() || !resource->Include()) continue;
        const auto index = static_cast<std::int32_t>(i);
        std::int32_t from, to;
        solver.TheBookings().DayRange(index, from, to);
        for (std::int32_t day = std::max(from, first); day < std::min(to, last + 1); ++day)
            UpdateKeyType(keys[static_cast<std::size_t>(day - first)], solver, index, day);
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
    const Network& network = solver.TheNetwork();
    const std::int32_t index = network.IndexOf(&resource);
    if (index < 0) return;
    const auto timeOf = [](DateTime when) { return FormatDate(DateTime(when.Days() - when.WholeDay())); };
    const auto add = [&](const SlotView& slot) {
        const Vtask* task = HolderOf(network, slot);
        if (!task) return;
        window.AddRow();
        const int row = window.Rows() - 1;
        int col = 0;
        if (showResource) {
            window.SetCell(row, col++, resource.Template() ? resource.Template()->TemplateName() : "");
            window.SetCell(row, col++, resource.BuildNodeText());
        }
        const int type = SlotTypeOf(slot.kind);
        for (const std::string& text : {timeOf(slot.startTime), timeOf(slot.endTime),
                                        task->Project() ? task->Project()->BuildNodeText() : "",
                                        task->BuildNodeText(), std::string(RateText(type))}) {
            window.SetCell(row, col, text);
            window.SetCellColor(row, col++, LookOf(type).color);
        }
    };
    solver.TheBookings().ForEachSlot(index, static_cast<std::int32_t>(day.WholeDay()), add);
}

}  // namespace vortan
