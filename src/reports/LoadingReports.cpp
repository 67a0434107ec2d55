// What the resources of the active template are booked for, by whatever project, and what hangs on dates.

#include <algorithm>
#include <tuple>

#include "charts/PageHeader.h"
#include "model/Vdependency.h"
#include "model/Vresource.h"
#include "reports/Builders.h"

namespace vortan {
namespace {

/// What a resource is booked for by a task.
struct Vsummary {
    Vresource* resource;
    Vtask* task;
    DateTime startTime, endTime;  ///< of the first and the last slot
    float normalHours = 0, offDayHours = 0, overtimeHours = 0, overloadHours = 0;
};

/// Whole hours, halves to even.
float WholeHours(const Vslot& slot) {
    const std::int64_t length = MillisecondsOf(slot);
    std::int64_t hours = length / kMillisecondsPerHour;
    const std::int64_t rest = 2 * (length % kMillisecondsPerHour);
    if (rest > kMillisecondsPerHour || (rest == kMillisecondsPerHour && hours % 2 != 0)) ++hours;
    return static_cast<float>(hours);
}

void AddHours(Vsummary& summary, const Vslot& slot) {
    switch (slot.slotType) {
        case kNormalSlot:
            summary.normalHours += WholeHours(slot);
            break;
        case kOffDaySlot:
            summary.offDayHours += WholeHours(slot);
            break;
        case kOvertimeSlot:
            summary.overtimeHours += WholeHours(slot);
            break;
        case kOverloadSlot:
            summary.overloadHours += WholeHours(slot);
            break;
        default:
            break;
    }
}

/// A record for each pair of a resource of the active template and a task that holds slots of it which
/// `takes(slot)`, in the order in which they are met; `add(record, slot)` is called with each of the slots.
template <class Takes, class Add>
std::vector<Vsummary> Gather(const ReportSource& source, Takes&& takes, Add&& add) {
    std::vector<Vsummary> records;
    const Vtemplate* from = source.workspace.ThisTemplate();
    if (!from) return records;
    std::unordered_map<const Vtask*, std::size_t> recordOf;  // of the resource at hand
    for (Vresource* resource : from->ResourceList()) {
        if (!resource->Include()) continue;
        recordOf.clear();
        for (const Vslot& slot : source.solver.HeldSlots(*resource)) {
            if (!takes(slot)) continue;
            const auto [place, isNew] = recordOf.try_emplace(slot.taskRequired, records.size());
            if (isNew) records.push_back({resource, slot.taskRequired, slot.startTime, slot.endTime});
            Vsummary& record = records[place->second];
            record.startTime = std::min(record.startTime, slot.startTime);
            record.endTime = std::max(record.endTime, slot.endTime);
            add(record, slot);
        }
    }
    return records;
}

/// What records are sorted by: numbers as numbers, names by character code.
struct SortKey {
    std::string_view projectName;
    std::int32_t taskID, resourceID;
    const Vsummary* record;
};

std::vector<SortKey> SortedRecords(const std::vector<Vsummary>& records, bool byResource) {
    std::vector<SortKey> keys;
    keys.reserve(records.size());
    for (const Vsummary& each : records) {
        const Vproject* project = each.task->Project();
        keys.push_back({project ? std::string_view(project->ProjectName()) : std::string_view(),
                        each.task->TaskID(), each.resource->ResourceID(), &each});
    }
    std::sort(keys.begin(), keys.end(), [byResource](const SortKey& a, const SortKey& b) {
        if (byResource && a.resourceID != b.resourceID) return a.resourceID < b.resourceID;
        return std::tie(a.projectName, a.taskID, a.resourceID) <
               std::tie(b.projectName, b.taskID, b.resourceID);
    });
    return keys;
}

}  // namespace

Table BuildLoadingSummary(const ReportSource& source, bool byResource) {
    const TableColumn resource{"Resource", Alignment::Left}, project{"Project", Alignment::Left},
        task{"Task", Alignment::Left};
    std::vector<TableColumn> columns = byResource ? std::vector<TableColumn>{resource, project, task}
                                                  : std::vector<TableColumn>{project, task, resource};
    for (const char* title : {"From", "Until", "Normal", "Off day", "Overtime", "Overload", "Total"})
        columns.push_back({title, Alignment::Right});
    Table table("Loading summary", std::move(columns), 0);

    const std::vector<Vsummary> records = Gather(
        source, [](const Vslot&) { return true; }, AddHours);
    ProjectTexts projects;
    for (const SortKey& key : SortedRecords(records, byResource)) {
        const Vsummary& record = *key.record;
        RowWriter row(table, Link<Vtask>(record.task));
        if (byResource) row.Text(record.resource->BuildNodeText());
        row.Text(projects.Of(record.task->Project())).Text(record.task->BuildNodeText());
        if (!byResource) row.Text(record.resource->BuildNodeText());
        row.Date(record.startTime)
            .Date(record.endTime)
            .HoursOf(record.normalHours, true)
            .HoursOf(record.offDayHours, true)
            .HoursOf(record.overtimeHours, true)
            .HoursOf(record.overloadHours, true)
            .HoursOf(record.normalHours + record.offDayHours + record.overtimeHours + record.overloadHours,
                     false);
    }
    return table;
}

Table BuildOverageSpreadsheet(const ReportSource& source, bool includeOvertime) {
    Table table(std::string(includeOvertime ? "Overtime and overload" : "Overload") + " spreadsheet for " +
                    GetPageHeader(source.workspace),
                {{"Resource", Alignment::Left},
                 {"Project", Alignment::Left},
                 {"Task", Alignment::Left},
                 {"From", Alignment::Right},
                 {"Until", Alignment::Right}},
                0);
    const auto counts = [includeOvertime](const Vslot& slot) {
        return slot.slotType == kOverloadSlot || (includeOvertime && slot.slotType == kOvertimeSlot);
    };
    ProjectTexts projects;
    for (const Vsummary& record : Gather(source, counts, [](Vsummary&, const Vslot&) {})) {
        RowWriter(table, Link<Vtask>(record.task))
            .Text(record.resource->BuildNodeText())
            .Text(projects.Of(record.task->Project()))
            .Text(record.task->BuildNodeText())
            .Date(record.startTime)
            .Date(record.endTime);
    }
    return table;
}

Table BuildDateDependencySpreadsheet(const ReportSource& source) {
    Table table("Date Dependency Spreadsheet for " + GetPageHeader(source.workspace),
                {{"Project", Alignment::Left}, {"Task", Alignment::Left}, {"Dependency", Alignment::Right}},
                0);
    for (const Vproject* project : source.workspace.ProjectList()) {
        const std::string projectText = project->BuildNodeText();
        for (const Vtask* task : project->TaskList()) {
            if (!task->Include()) continue;
            for (Vdependency* dependency : task->DependencyList()) {
                // One whose task has been deleted hangs on nothing.
                if (!dependency->Include() || dependency->TaskRequired() || dependency->TaskRequiredDeleted())
                    continue;
                RowWriter(table, Link<Vdependency>(dependency))
                    .Text(projectText)
                    .Text(task->BuildNodeText())
                    .Text(dependency->BuildNodeText());
            }
        }
    }
    return table;
}

}  // namespace vortan
