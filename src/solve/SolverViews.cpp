// What others ask of a Solver: views of its last solution.

#include <algorithm>

#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "solve/Solution.h"
#include "solve/Solver.h"

namespace vortan {

namespace {

std::string NameOf(const Vtask& task) {
    return "(" + (task.Project() ? task.Project()->BuildNodeText() : "") + ") " + task.BuildNodeText();
}

Vtask* HolderOf(const Network& network, const SlotView& slot) {
    return slot.task >= 0 ? network.Tasks()[Index(slot.task)].object.Get() : nullptr;
}

Vslot ViewOf(const SlotView& slot, Vtask* holder) {
    return {slot.startTime, slot.endTime, SlotTypeOf(slot.kind), holder, slot.laborCost};
}

Vslot ViewOf(const Network& network, const SlotView& slot) {
    return ViewOf(slot, HolderOf(network, slot));
}

/// Calls `visit(const SlotView&)` on the slots of a resource on these days, in time order.
template <class Visit>
void ForEachSlot(const Solution& standing, const Vresource& resource, DaySpan days, Visit&& visit) {
    const std::int32_t index = standing.network.IndexOf(&resource);
    if (index < 0) return;
    std::int32_t first, last;
    standing.bookings.DayRange(index, first, last);
    last = std::min(last, days.end);
    for (std::int32_t day = std::max(first, days.first); day < last; ++day)
        standing.bookings.ForEachSlot(index, day, visit);
}

}  // namespace

std::string Vslice::BuildNodeText() const {
    if (!task) return "<deleted>";
    const std::string text = NameOf(*task);
    if (fromPercent == 0 && toPercent == 100) return text;
    return std::to_string(fromPercent) + "% to " + std::to_string(toPercent) + "% of " + text;
}

std::string Vslot::BuildNodeText() const {
    std::string text = FormatDate(startTime) + " to " + FormatDate(endTime);
    if (!taskRequired) return text + " <available> ";
    const Vproject* project = taskRequired->Project();
    return text + " (" + (project ? project->ProjectName() : "") + ") " + taskRequired->BuildNodeText();
}

const Network& Solver::Order() const {
    return orderIsNext_ ? *next_ : standing_->network;
}

const std::vector<Link<Vtask>>& Solver::Circle() const {
    return Order().Circle();
}

std::int32_t Solver::SliceCount() const {
    return static_cast<std::int32_t>(Order().Slices().size());
}

Vslice Solver::Slice(std::int32_t index) const {
    const auto at = Index(index);
    const auto& slice = Order().Slices()[at];
    Vslice view;
    view.task = Order().Tasks()[Index(slice.task)].object.Get();
    view.fromPercent = slice.from;
    view.toPercent = slice.to;
    if (orderIsNext_) return view;
    view.earlyStart = DateTime(standing_->run.SliceStart()[at]);
    view.earlyFinish = DateTime(standing_->run.SliceFinish()[at]);
    view.laborCost = standing_->run.SliceCost()[at];
    if (standing_->reversed) {
        view.lateStart = DateTime(standing_->reverse.Slices()[at].start);
        view.lateFinish = DateTime(standing_->reverse.Slices()[at].finish);
    }
    return view;
}

SliceArrows Solver::Arrows() const {
    const auto slices = Order().Slices();
    SliceArrows arrows(slices.size());
    for (std::size_t i = 0; i < slices.size(); ++i) {
        const auto edges = Order().EdgesOf(slices[i]);  // the task's next slice first
        for (auto edge = edges.rbegin(); edge != edges.rend(); ++edge) {
            // A slice of or behind a circle has no place.
            if (edge->slice >= 0) arrows.Add(static_cast<std::int32_t>(i), edge->slice, edge->offset);
        }
    }
    return arrows;
}

std::vector<Vresource*> Solver::WantedResources() const {
    std::vector<Vresource*> resources;
    for (const auto& each : standing_->network.Resources()) {
        if (Vresource* resource = each.object.Get()) resources.push_back(resource);
    }
    return resources;
}

std::vector<Vslot> Solver::Slots(const Vresource& resource, DaySpan days) const {
    std::vector<Vslot> slots;
    ForEachSlot(*standing_, resource, days,
                [&](const SlotView& slot) { slots.push_back(ViewOf(standing_->network, slot)); });
    return slots;
}

std::vector<Vslot> Solver::HeldSlots(const Vresource& resource, DaySpan days) const {
    std::vector<Vslot> slots;
    // A task mostly holds several slots in a row, and is far away in memory.
    std::int32_t known = -1;
    Vtask* holder = nullptr;
    ForEachSlot(*standing_, resource, days, [&](const SlotView& slot) {
        if (slot.task < 0) return;
        if (slot.task != known) holder = HolderOf(standing_->network, slot);
        known = slot.task;
        if (holder) slots.push_back(ViewOf(slot, holder));
    });
    return slots;
}

std::vector<SlotSighting> Solver::Sightings() const {
    std::vector<SlotSighting> sightings;
    for (const auto& [slice, resource, slot] : standing_->run.Sightings()) {
        const Vresource* object = standing_->network.Resources()[Index(resource)].object.Get();
        sightings.push_back({slice, object, ViewOf(standing_->network, slot)});
    }
    return sightings;
}

std::int32_t Solver::CountMinutes(const Vresource& resource, const Vtask& task, DateTime from,
                                  DateTime to) const {
    const std::int32_t index = standing_->network.IndexOf(&task);
    std::int32_t minutes = 0;
    if (index < 0) return 0;
    const auto dayOf = [](DateTime when) {
        return static_cast<std::int32_t>(std::clamp<double>(when.WholeDay(), INT32_MIN, INT32_MAX - 1));
    };
    const DaySpan days{dayOf(from), dayOf(to) + 1};
    ForEachSlot(*standing_, resource, days, [&](const SlotView& slot) {
        if (slot.task == index) minutes += Bookings::Minutes(slot.startTime.Days(), slot.endTime.Days());
    });
    return minutes;
}

}  // namespace vortan
