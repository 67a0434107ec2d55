#include "solve/Bookings.h"

#include <algorithm>
#include <cstring>

namespace vortan {

namespace {

// From this day on, the end of a five-minute cell of a shift and the same minute reached by AddMinutes are
// the same number; before it, they can differ in the last bit, and a booking can leave a sliver behind.
constexpr std::int32_t kFirstExactDay = 1024;

}  // namespace

void Bookings::Reset(const Network& network) {
    network_ = &network;
    const std::size_t count = network.Resources().size();
    for (std::size_t i = 0; i < std::min(count, calendars_.size()); ++i) calendars_[i].pages.clear();
    calendars_.resize(count);
    pagesUsed_ = 0;
    slots_.clear();
}

Bookings::Page& Bookings::PageFor(std::int32_t resource, std::int32_t day) {
    Calendar& calendar = calendars_[static_cast<std::size_t>(resource)];
    const std::int32_t wanted = day >> kPageShift;
    if (calendar.pages.empty()) calendar.firstPage = wanted;
    if (wanted < calendar.firstPage) {
        calendar.pages.insert(calendar.pages.begin(), static_cast<std::size_t>(calendar.firstPage - wanted),
                              -1);
        calendar.firstPage = wanted;
    }
    const auto at = static_cast<std::size_t>(wanted - calendar.firstPage);
    if (at >= calendar.pages.size()) calendar.pages.resize(at + 1, -1);
    if (calendar.pages[at] < 0) {
        if (pagesUsed_ == pages_.size()) pages_.emplace_back();
        std::memset(&pages_[pagesUsed_], 0, sizeof(Page));
        calendar.pages[at] = static_cast<std::int32_t>(pagesUsed_++);
    }
    return pages_[static_cast<std::size_t>(calendar.pages[at])];
}

std::int32_t Bookings::Chain(std::int32_t resource, std::int32_t day) {
    std::int32_t& code = PageFor(resource, day).code[day & (kPageDays - 1)];
    if (code > 0) return code - 1;
    const std::int32_t holder = code < 0 ? HolderOf(code) : -1;
    const auto first = static_cast<std::int32_t>(slots_.size());
    const auto periods = network_->PeriodsOf(PatternOf(resource, day));
    slots_.resize(slots_.size() + periods.size());
    Slot* slot = &slots_[static_cast<std::size_t>(first)];
    double start = day;
    std::int32_t next = first;
    for (const Network::Period& period : periods) {
        const bool held = holder >= 0 && period.kind <= SlotClass::OffDay;
        slot->end = day + period.end;
        slot->task = held ? holder : -1;
        slot->cost = held ? CostOf(resource, period.kind, start, slot->end, 1) : Money();
        slot->nextAndKind = static_cast<std::uint32_t>(period.kind);
        slot->SetNext(++next);
        start = slot->end;
        ++slot;
    }
    (slot - 1)->SetNext(-1);
    code = first + 1;
    return first;
}

/// Cuts a slot in two at `when`; the new right part is free. Returns its index.
std::int32_t Bookings::Split(std::int32_t slot, double when) {
    const auto right = static_cast<std::int32_t>(slots_.size());
    Slot copy = slots_[static_cast<std::size_t>(slot)];
    copy.task = -1;
    copy.cost = Money();
    slots_.push_back(copy);
    Slot& left = slots_[static_cast<std::size_t>(slot)];
    left.end = when;
    left.SetNext(right);
    return right;
}

std::int32_t Bookings::Allocate(std::int32_t resource, double start, std::int32_t minutes, int pass,
                                const Account& account, bool& interference) {
    const auto day = static_cast<std::int32_t>(start);
    std::int32_t index = Chain(resource, day);
    double slotStart = day;
    while (slots_[static_cast<std::size_t>(index)].end <= start) {
        slotStart = slots_[static_cast<std::size_t>(index)].end;
        const std::int32_t next = slots_[static_cast<std::size_t>(index)].Next();
        if (next < 0) return 0;
        index = next;
    }
    std::int32_t booked = 0;
    while (minutes > 0) {
        const SlotClass kind = slots_[static_cast<std::size_t>(index)].Kind();
        if (Allowed(kind, pass)) {
            if (slots_[static_cast<std::size_t>(index)].task >= 0) {
                interference = true;
            } else {
                if (slotStart < start) {
                    index = Split(index, start);
                    slotStart = start;
                }
                const double end = AddMinutes(DateTime(slotStart), minutes).Days();
                if (slots_[static_cast<std::size_t>(index)].end > end) Split(index, end);
                Slot& slot = slots_[static_cast<std::size_t>(index)];
                const std::int32_t used = Minutes(slotStart, slot.end);
                booked += used;
                minutes -= used;
                slot.task = account.task;
                slot.cost = CostOf(resource, kind, slotStart, slot.end, account.multiplier);
                *account.sliceCost += slot.cost;
                *account.taskCost += slot.cost;
                if (*account.finish < slot.end) *account.finish = slot.end;
            }
        }
        const Slot& slot = slots_[static_cast<std::size_t>(index)];
        slotStart = slot.end;
        index = slot.Next();
        if (index < 0) break;
    }
    return booked;
}

std::int32_t Bookings::AllocateWholeDay(std::int32_t resource, std::int32_t day, std::int32_t minutes,
                                        const Account& account) {
    const auto& pattern = PatternOf(resource, day);
    if (pattern.normalMinutes == 0 || minutes < pattern.normalMinutes || account.multiplier != 1 ||
        day < kFirstExactDay) {
        return 0;
    }
    Page& page = PageFor(resource, day);
    std::int32_t& code = page.code[day & (kPageDays - 1)];
    if (code != kUntouched) return 0;
    code = -account.task - 1;
    page.skip[kNormalTime][day & (kPageDays - 1)] = day + kWeekdays;
    const SlotClass kind = pattern.NormalKind();
    double end = day;
    for (const auto& period : network_->NormalPeriodsOf(pattern)) {
        end = day + period.end;
        const Money cost = CostOf(resource, kind, day + period.start, end, 1);
        *account.sliceCost += cost;
        *account.taskCost += cost;
    }
    if (*account.finish < end) *account.finish = end;
    return pattern.normalMinutes;
}

SlotView Bookings::SlotAt(std::int32_t resource, double when) {
    const auto day = static_cast<std::int32_t>(when);
    std::int32_t index = Chain(resource, day);
    double start = day;
    while (slots_[static_cast<std::size_t>(index)].end <= when) {
        const std::int32_t next = slots_[static_cast<std::size_t>(index)].Next();
        if (next < 0) break;
        start = slots_[static_cast<std::size_t>(index)].end;
        index = next;
    }
    const Slot& slot = slots_[static_cast<std::size_t>(index)];
    return {DateTime(start), DateTime(slot.end), slot.Kind(), slot.task, slot.cost};
}

void Bookings::MarkEmpty(std::int32_t resource, std::int32_t day, int reach) {
    PageFor(resource, day).skip[reach][day & (kPageDays - 1)] = day + kWeekdays;
}

bool Bookings::IsEmpty(std::int32_t resource, std::int32_t day, int reach) {
    const Page* page = FindPage(resource, day);
    return page && page->skip[reach][day & (kPageDays - 1)] != 0;
}

std::int32_t Bookings::NextDay(std::int32_t resource, std::int32_t day, int reach) {
    // Chains of skips are halved on the way, so that they stay short.
    for (;;) {
        Page* page = const_cast<Page*>(FindPage(resource, day));
        if (!page) return day;
        std::int32_t& skip = page->skip[reach][day & (kPageDays - 1)];
        if (skip == 0) return day;
        if (const Page* nextPage = FindPage(resource, skip)) {
            if (const std::int32_t further = nextPage->skip[reach][skip & (kPageDays - 1)]) skip = further;
        }
        day = skip;
    }
}

Money Bookings::Unbook(std::int32_t resource, std::int32_t day, std::int32_t task, double from, double to) {
    Money freed;
    if (CodeAt(resource, day) == kUntouched) return freed;
    double start = day;
    for (std::int32_t index = Chain(resource, day); index >= 0;) {
        Slot& slot = slots_[static_cast<std::size_t>(index)];
        if (slot.task == task && start >= from && slot.end <= to) {
            freed += slot.cost;
            slot.task = -1;
            slot.cost = Money();
        }
        start = slot.end;
        index = slot.Next();
    }
    // What is known of empty days of this resource no longer holds.
    for (const std::int32_t page : calendars_[static_cast<std::size_t>(resource)].pages) {
        if (page >= 0) std::memset(pages_[static_cast<std::size_t>(page)].skip, 0, sizeof(Page::skip));
    }
    return freed;
}

void Bookings::DayRange(std::int32_t resource, std::int32_t& first, std::int32_t& last) const {
    const Calendar& calendar = calendars_[static_cast<std::size_t>(resource)];
    first = calendar.firstPage << kPageShift;
    last = first + (static_cast<std::int32_t>(calendar.pages.size()) << kPageShift);
}

}  // namespace vortan
