#include "solve/Bookings.h"

#include <algorithm>

namespace vortan {

void Bookings::Reset(const Network& network) {
    network_ = &network;
    const std::size_t count = network.Resources().size();
    for (Calendar& calendar : calendars_) calendar.count = 0;
    calendars_.resize(count);
    pagesUsed_ = 0;
    skipPagesUsed_ = 0;
    slotsUsed_ = 0;
    trial_ = false;
    trialSlots_ = 0;
    dayNotes_.clear();
    slotNotes_.clear();
}

void Bookings::BeginTrial() {
    trial_ = true;
    trialSlots_ = static_cast<std::int32_t>(slotsUsed_);
}

/// Pages that were added stay: a page of untouched days is as good as none.
void Bookings::Unsolve() {
    // The last note first: the oldest value of what was changed several times must win.
    for (auto note = dayNotes_.rbegin(); note != dayNotes_.rend(); ++note) {
        Page& page = PageFor(note->resource, note->day);
        if (note->what == DayNote::kCode) {
            page.days[Index(note->day & (kPageDays - 1))].code = note->value;
        } else {
            SkipAt(page, note->day, static_cast<Reach>(note->what)) = note->value;
        }
    }
    for (auto note = slotNotes_.rbegin(); note != slotNotes_.rend(); ++note) {
        slots_[Index(note->index)] = note->slot;
    }
    slotsUsed_ = Index(trialSlots_);
    trial_ = false;
    trialSlots_ = 0;
    dayNotes_.clear();
    slotNotes_.clear();
}

std::size_t Bookings::MemoryBytes() const {
    std::size_t bytes = calendars_.capacity() * sizeof(Calendar) + pages_.capacity() * sizeof(Page) +
                        skipPages_.capacity() * sizeof(SkipPage) + slots_.capacity() * sizeof(Slot);
    for (const Calendar& calendar : calendars_) bytes += calendar.far.capacity() * sizeof(std::int32_t);
    return bytes;
}

Money Bookings::WholeDayCost(std::int32_t resource, const Network::DayPattern& kind,
                             double multiplier) const {
    if (multiplier == 1) return network_->WeekOf(resource).WholeDayCost(kind);
    Money cost;
    double start = kSteadyDays;
    for (const Network::Period& period : network_->PeriodsOf(kind)) {
        const double end = kSteadyDays + period.end;
        if (period.kind <= SlotClass::OffDay) cost += CostOf(resource, period.kind, start, end, multiplier);
        start = end;
    }
    return cost;
}

Bookings::Page& Bookings::AddPage(std::int32_t resource, std::int32_t day) {
    Calendar& calendar = calendars_[Index(resource)];
    const std::int32_t wanted = day >> kPageShift;
    if (calendar.count == 0) calendar.firstPage = wanted;
    const std::int32_t first = std::min(calendar.firstPage, wanted);
    const std::int32_t count = std::max(calendar.firstPage + calendar.count, wanted + 1) - first;
    if (count != calendar.count) {
        const std::int32_t shift = calendar.firstPage - first;
        if (count > Calendar::kInline) {
            std::vector<std::int32_t>& far = calendar.far;
            if (calendar.count <= Calendar::kInline) {
                far.assign(calendar.near.begin(), calendar.near.begin() + calendar.count);
            }
            far.insert(far.begin(), static_cast<std::size_t>(shift), -1);
            far.resize(static_cast<std::size_t>(count), -1);
        } else {
            auto& near = calendar.near;
            std::copy_backward(near.begin(), near.begin() + calendar.count,
                               near.begin() + shift + calendar.count);
            std::fill(near.begin(), near.begin() + shift, -1);
            std::fill(near.begin() + shift + calendar.count, near.begin() + count, -1);
        }
        calendar.firstPage = first;
        calendar.count = count;
    }
    if (pagesUsed_ == pages_.size()) pages_.emplace_back();
    pages_[pagesUsed_].Clear();
    calendar.Pages()[wanted - first] = static_cast<std::int32_t>(pagesUsed_);
    return pages_[pagesUsed_++];
}

std::int32_t& Bookings::SkipAt(Page& page, std::int32_t day, Reach reach) {
    const auto at = Index(day & (kPageDays - 1));
    if (reach == Reach::NormalTime) return page.days[at].skip;
    std::int32_t& skips = page.skips[static_cast<std::size_t>(reach) - 1];
    if (skips < 0) {
        skips = static_cast<std::int32_t>(skipPagesUsed_);
        if (skipPagesUsed_ == skipPages_.size()) skipPages_.emplace_back();
        skipPages_[skipPagesUsed_++].fill(0);
    }
    return skipPages_[Index(skips)][at];
}

/// Room for `count` slots in a row. Returns the index of the first.
std::int32_t Bookings::AddSlots(std::size_t count) {
    const std::size_t first = slotsUsed_;
    slotsUsed_ += count;
    if (slotsUsed_ > slots_.size()) slots_.resize(std::max(slotsUsed_, 2 * slots_.size()));
    return static_cast<std::int32_t>(first);
}

void Bookings::MakeChain(Day& entry, const Network::DayPattern& kind, std::int32_t day) {
    const std::int32_t holder = entry.code < 0 ? HolderOf(entry.code) : -1;
    const std::int32_t first = AddSlots(Index(kind.periodCount));
    Slot* slot = &slots_[Index(first)];
    std::int32_t next = first;
    for (const Network::Period& period : network_->PeriodsOf(kind)) {
        *slot++ = Slot{day + period.end, period.kind <= SlotClass::OffDay ? holder : -1,
                       Slot::Pack(++next, period.kind)};
    }
    (slot - 1)->SetNext(-1);
    entry.code = first + 1;
}

/// Cuts a slot in two at `when`; the new right part is free. Returns its index.
std::int32_t Bookings::Split(std::int32_t slot, double when) {
    const std::int32_t right = AddSlots(1);
    NoteSlot(slot);
    Slot& left = slots_[Index(slot)];
    slots_[Index(right)] = Slot{left.end, -1, left.nextAndKind};
    left.end = when;
    left.SetNext(right);
    return right;
}

std::int32_t Bookings::Allocate(std::int32_t resource, double start, std::int32_t minutes, Pass pass,
                                const Account& account, bool& interference) {
    const auto day = static_cast<std::int32_t>(start);
    std::int32_t index = Chain(resource, day);
    const Slot* slots = slots_.data();  // anew after each Split
    double slotStart = day;
    while (slots[index].end <= start) {
        slotStart = slots[index].end;
        index = slots[index].Next();
        if (index < 0) return 0;
    }
    std::int32_t booked = 0;
    while (minutes > 0) {
        const SlotClass kind = slots[index].Kind();
        if (Allowed(kind, pass)) {
            if (slots[index].task >= 0) {
                interference = true;
            } else {
                if (slotStart < start) {
                    index = Split(index, start);
                    slotStart = start;
                }
                const double end = EndOf(day, slotStart, minutes);
                if (slots_[Index(index)].end > end) Split(index, end);
                slots = slots_.data();
                Slot& slot = slots_[Index(index)];
                NoteSlot(index);
                const std::int32_t used = Minutes(slotStart, slot.end);
                booked += used;
                minutes -= used;
                slot.task = account.task;
                const Money cost = CostOf(resource, kind, slotStart, slot.end, account.multiplier);
                *account.sliceCost += cost;
                *account.taskCost += cost;
                if (*account.finish < slot.end) *account.finish = slot.end;
            }
        }
        slotStart = slots[index].end;
        index = slots[index].Next();
        if (index < 0) break;
    }
    return booked;
}

std::int32_t Bookings::AllocateWholeDays(const Network::Want& want,
                                         const std::array<std::int32_t, kWeekdays>& today, std::int32_t day,
                                         std::int32_t& remaining, const Account& account) {
    if (day < kSteadyDays) return day;
    return trial_ || account.multiplier != 1 ? BookWholeDays<true>(want, today, day, remaining, account)
                                             : BookWholeDays<false>(want, today, day, remaining, account);
}

/// An ordinary solve spends much of its time in here, so what only the trials need is left out then.
template <bool kNotes>
std::int32_t Bookings::BookWholeDays(const Network::Want& want,
                                     const std::array<std::int32_t, kWeekdays>& today, std::int32_t day,
                                     std::int32_t& remaining, const Account& account) {
    const Network::ResourceWeek& week = network_->WeekOf(want.resource);
    auto weekday = Index(WeekdayIndex(day));
    Day* days = nullptr;  // of the present page
    std::int32_t left = remaining;
    Money sliceCost = *account.sliceCost, taskCost = *account.taskCost;
    for (; day < 2 * kSteadyDays; ++day) {
        if (want.minutes[weekday] > 0) {
            if (left <= today[weekday]) break;
            const Network::DayPattern& kind = network_->DayOf(week, weekday);
            if (!days) days = PageFor(want.resource, day).days.data();
            Day& entry = days[day & (kPageDays - 1)];
            if (!CanBookWhole(entry, kind, want.minutes[weekday])) break;
            if constexpr (kNotes) NoteWhole(want.resource, day, entry);
            entry = Day{-account.task - 1, day + kWeekdays};
            const Money cost =
                kNotes ? WholeDayCost(want.resource, kind, account.multiplier) : week.WholeDayCost(kind);
            sliceCost += cost;
            taskCost += cost;
            left -= kind.normalMinutes;
        }
        weekday = weekday + 1 == kWeekdays ? 0 : weekday + 1;
        if ((day & (kPageDays - 1)) == kPageDays - 1) days = nullptr;
    }
    remaining = left;
    *account.sliceCost = sliceCost;
    *account.taskCost = taskCost;
    return day;
}

std::int32_t Bookings::AllocateWholeDay(std::int32_t resource, std::int32_t day, std::int32_t minutes,
                                        const Account& account) {
    if (day < kSteadyDays || day >= 2 * kSteadyDays) return 0;
    const Network::DayPattern& kind = KindOf(resource, day);
    Day& entry = DayFor(resource, day);
    if (!CanBookWhole(entry, kind, minutes)) return 0;
    NoteWhole(resource, day, entry);
    entry = Day{-account.task - 1, day + kWeekdays};
    const Money cost = WholeDayCost(resource, kind, account.multiplier);
    *account.sliceCost += cost;
    *account.taskCost += cost;
    const double end = day + kind.normalEnd;
    if (*account.finish < end) *account.finish = end;
    return kind.normalMinutes;
}

SlotView Bookings::SlotAt(std::int32_t resource, double when) {
    const auto day = static_cast<std::int32_t>(when);
    std::int32_t index = Chain(resource, day);
    double start = day;
    while (slots_[Index(index)].end <= when) {
        const std::int32_t next = slots_[Index(index)].Next();
        if (next < 0) break;
        start = slots_[Index(index)].end;
        index = next;
    }
    const Slot& slot = slots_[Index(index)];
    return {DateTime(start), DateTime(slot.end), slot.Kind(), slot.task, Money()};
}

void Bookings::MarkEmpty(std::int32_t resource, std::int32_t day, Reach reach) {
    std::int32_t& skip = SkipAt(PageFor(resource, day), day, reach);
    NoteDay(resource, day, static_cast<std::int32_t>(reach), skip);
    skip = day + kWeekdays;
}

std::int32_t Bookings::NextDay(std::int32_t resource, std::int32_t day, Reach reach) {
    // Chains of skips are halved on the way, so that they stay short.
    const auto skipOf = [&](std::int32_t page, std::int32_t at) {
        return page < 0 ? 0 : SkipOf(pages_[Index(page)], at, reach);
    };
    for (;;) {
        const std::int32_t page = FindPage(resource, day);
        const std::int32_t next = skipOf(page, day);
        if (next == 0) return day;
        const std::int32_t further = skipOf(FindPage(resource, next), next);
        if (further == 0) return next;
        NoteDay(resource, day, static_cast<std::int32_t>(reach), next);
        day = SkipAt(pages_[Index(page)], day, reach) = further;
    }
}

void Bookings::DayRange(std::int32_t resource, std::int32_t& first, std::int32_t& last) const {
    const Calendar& calendar = calendars_[Index(resource)];
    first = calendar.firstPage << kPageShift;
    last = first + (calendar.count << kPageShift);
}

}  // namespace vortan
