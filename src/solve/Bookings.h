#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/DateTime.h"
#include "model/Money.h"
#include "solve/Network.h"

namespace vortan {

/// A stretch of one day of a resource, free or held by one task, as screens and files see it.
struct SlotView {
    DateTime startTime, endTime;
    SlotClass kind = SlotClass::Overload;
    std::int32_t task = -1;  ///< index in the network, -1 for a free slot
    Money laborCost;         ///< for a team of 1
};

/// The rounds in which a step books from a day, each of other time than those before it. A solve rule goes
/// as far as the round that has the number of its reach.
enum class Pass : std::uint8_t { NormalTime = 0, Overtime = 1, AnyTime = 2 };
constexpr bool Allows(SolveRule rule, Pass pass) {
    return static_cast<int>(pass) <= static_cast<int>(ReachOf(rule));
}

/// The schedules of all resources of a network: for every day that a run has touched, the chain of slots from
/// midnight to midnight, without gap or overlap. Preparing a day copies the pattern of its shift. Most days
/// of a plan are booked whole by one task, and such a day is one number until somebody needs its slots.
///
/// Besides, it remembers for each resource the days on which nothing is left to give, so that a task that
/// waits does not walk them one by one: Find gives the next day of the same weekday that may have something.
///
/// All memory is kept from run to run.
class Bookings {
  public:
    static constexpr Reach kReaches[] = {Reach::NormalTime, Reach::Overtime, Reach::WholeDay};

    /// Cost and finish that bookings add to; owned by the run.
    struct Account {
        std::int32_t task;
        double multiplier;  ///< size of the team, 1 in an ordinary solve
        double* finish;     ///< the task's clock, days; moved forward to the end of what is booked
        Money* sliceCost;
        Money* taskCost;
    };

    /// Forgets all bookings and takes on the resources of `network`, which must outlive the use of this.
    void Reset(const Network& network);

    /// Books up to `minutes` of the free time that `pass` allows, from `start` (days, not negative) to the
    /// end of its day, in time order. Returns the minutes booked. `interference` becomes true when allowed
    /// time was found held.
    std::int32_t Allocate(std::int32_t resource, double start, std::int32_t minutes, Pass pass,
                          const Account& account, bool& interference);

    /// Books all normal time of the wanted days from `day` on, as long as each of them is untouched, the
    /// slice needs more than `today` of it, and the want covers its normal time. Takes what it books off
    /// `remaining`. Returns the day that it stopped at.
    std::int32_t AllocateWholeDays(const Network::Want& want,
                                   const std::array<std::int32_t, kWeekdays>& today, std::int32_t day,
                                   std::int32_t& remaining, const Account& account);

    /// Books all normal time of an untouched day, if there is such time and it is no more than `minutes`.
    /// Returns the minutes booked, 0 if the day is not of that kind.
    std::int32_t AllocateWholeDay(std::int32_t resource, std::int32_t day, std::int32_t minutes,
                                  const Account& account);

    /// From now on everything that changes is noted, until Unsolve takes it back to the last bit: bookings,
    /// cuts and marks of empty days.
    void BeginTrial();
    void Unsolve();

    /// The slot that holds `when` as an inner point or as its start; its cost is left out.
    SlotView SlotAt(std::int32_t resource, double when);

    /// Remembers that the resource has nothing of that reach left on the day.
    void MarkEmpty(std::int32_t resource, std::int32_t day, Reach reach);
    /// The first day from `day` on, in steps of a week, that is not known to be empty.
    std::int32_t NextDay(std::int32_t resource, std::int32_t day, Reach reach);

    /// Calls `visit(const SlotView&)` on the slots of one day in time order; none for an untouched day.
    template <class Visit>
    void ForEachSlot(std::int32_t resource, std::int32_t day, Visit&& visit) const {
        const std::int32_t code = CodeAt(resource, day);
        if (code == kUntouched) return;
        double start = day;
        if (code < 0) {
            for (const auto& period : network_->PeriodsOf(KindOf(resource, day))) {
                const bool held = period.kind <= SlotClass::OffDay;
                const double end = day + period.end;
                visit(SlotView{DateTime(start), DateTime(end), period.kind, held ? HolderOf(code) : -1,
                               held ? CostOf(resource, period.kind, start, end, 1) : Money()});
                start = end;
            }
            return;
        }
        for (std::int32_t i = code - 1; i >= 0;) {
            const Slot& slot = slots_[Index(i)];
            const Money cost = slot.task < 0 ? Money() : CostOf(resource, slot.Kind(), start, slot.end, 1);
            visit(SlotView{DateTime(start), DateTime(slot.end), slot.Kind(), slot.task, cost});
            start = slot.end;
            i = slot.Next();
        }
    }
    /// What this takes on the heap.
    std::size_t MemoryBytes() const;
    /// The touched days of a resource lie in [first, last); empty when equal.
    void DayRange(std::int32_t resource, std::int32_t& first, std::int32_t& last) const;
    /// Whether a booking of this pass may use that kind of time.
    static bool Allowed(SlotClass kind, Pass pass) {
        return pass == Pass::AnyTime ||
               (pass == Pass::Overtime ? kind == SlotClass::Overtime : kind <= SlotClass::OffDay);
    }
    /// Whole minutes between two moments, each slot rounded on its own.
    static std::int32_t Minutes(double start, double end) {
        return RoundToInt32((end - start) * kMinutesPerDay);
    }

  private:
    static constexpr std::int32_t kUntouched = 0;
    static constexpr int kPageShift = 6;
    static constexpr std::int32_t kPageDays = 1 << kPageShift;

    /// The cost of a held slot follows from its length, so it is not kept.
    struct Slot {
        double end;
        std::int32_t task;          ///< -1 free
        std::uint32_t nextAndKind;  ///< (index of the next slot + 1) * 4 + kind

        std::int32_t Next() const { return static_cast<std::int32_t>(nextAndKind >> 2) - 1; }
        SlotClass Kind() const { return static_cast<SlotClass>(nextAndKind & 3); }
        static std::uint32_t Pack(std::int32_t next, SlotClass kind) {
            return static_cast<std::uint32_t>(next + 1) << 2 | static_cast<std::uint32_t>(kind);
        }
        void SetNext(std::int32_t next) { nextAndKind = Pack(next, Kind()); }
    };
    struct Day {
        std::int32_t code = kUntouched;  ///< the first slot of a chain + 1, or minus (task + 1) when that
                                         ///< task holds all normal time and nothing else is held
        std::int32_t skip = 0;           ///< next day to look at for normal time, 0 for the day itself
    };
    /// 64 days of a resource.
    struct Page {
        std::array<Day, kPageDays> days{};
        /// Skips for the longer reaches; index of a SkipPage for each, -1 for none yet.
        std::array<std::int32_t, std::size(kReaches) - 1> skips{-1, -1};

        void Clear() {
            days.fill(Day());
            skips.fill(-1);
        }
    };
    using SkipPage = std::array<std::int32_t, kPageDays>;
    struct Calendar {
        static constexpr std::int32_t kInline = 6;

        std::int32_t firstPage = 0, count = 0;
        std::array<std::int32_t, kInline> near{};  ///< index of a page, -1 for none
        std::vector<std::int32_t> far;             ///< all of them, once there are more than kInline

        std::int32_t* Pages() { return count > kInline ? far.data() : near.data(); }
        const std::int32_t* Pages() const { return count > kInline ? far.data() : near.data(); }
    };

    /// What a day had before a trial changed it: a skip, or the code.
    struct DayNote {
        static constexpr std::int32_t kCode = -1;

        std::int32_t resource, day;
        std::int32_t what;  ///< kCode, or the Reach of a skip
        std::int32_t value;
    };
    struct SlotNote {
        std::int32_t index;
        Slot slot;
    };

    static std::int32_t HolderOf(std::int32_t code) { return -code - 1; }
    const Network::DayPattern& KindOf(std::int32_t resource, std::int32_t day) const {
        return network_->DayOf(network_->WeekOf(resource), Index(WeekdayIndex(day)));
    }
    Money CostOf(std::int32_t resource, SlotClass kind, double start, double end, double multiplier) const {
        const double rate = network_->WeekOf(resource).rate[static_cast<std::size_t>(kind)];
        return Money::FromDouble(rate * (end - start) * 24 * multiplier);
    }
    /// Cost of all normal time of a day, on the days of kSteadyDays.
    Money WholeDayCost(std::int32_t resource, const Network::DayPattern& kind, double multiplier) const;
    /// Index of the page that holds the day, -1 for none.
    std::int32_t FindPage(std::int32_t resource, std::int32_t day) const {
        const Calendar& calendar = calendars_[Index(resource)];
        const std::int32_t at = (day >> kPageShift) - calendar.firstPage;
        return at < 0 || at >= calendar.count ? -1 : calendar.Pages()[at];
    }
    Page& PageFor(std::int32_t resource, std::int32_t day) {
        const std::int32_t page = FindPage(resource, day);
        return page < 0 ? AddPage(resource, day) : pages_[Index(page)];
    }
    Page& AddPage(std::int32_t resource, std::int32_t day);
    std::int32_t CodeAt(std::int32_t resource, std::int32_t day) const {
        const std::int32_t page = FindPage(resource, day);
        return page < 0 ? kUntouched : pages_[Index(page)].days[Index(day & (kPageDays - 1))].code;
    }
    Day& DayFor(std::int32_t resource, std::int32_t day) {
        return PageFor(resource, day).days[Index(day & (kPageDays - 1))];
    }
    /// First slot of the day's chain, which is made if need be.
    std::int32_t Chain(std::int32_t resource, std::int32_t day) {
        Day& entry = DayFor(resource, day);
        if (entry.code <= 0) {
            NoteDay(resource, day, DayNote::kCode, entry.code);
            MakeChain(entry, KindOf(resource, day), day);
        }
        return entry.code - 1;
    }
    void MakeChain(Day& entry, const Network::DayPattern& kind, std::int32_t day);
    /// Whether the day is untouched and all of its normal time is wanted.
    static bool CanBookWhole(const Day& entry, const Network::DayPattern& kind, std::int32_t minutes) {
        return entry.code == kUntouched && kind.normalMinutes != 0 && minutes >= kind.normalMinutes;
    }
    /// AddMinutes for a moment that is known to lie within `day`.
    static double EndOf(std::int32_t day, double start, std::int32_t minutes) {
        const auto sum = std::llrint((start - day) * kMinutesPerDay + static_cast<double>(minutes));
        return day + static_cast<double>(sum) / kMinutesPerDay;
    }
    template <bool kNotes>
    std::int32_t BookWholeDays(const Network::Want& want, const std::array<std::int32_t, kWeekdays>& today,
                               std::int32_t day, std::int32_t& remaining, const Account& account);
    void NoteWhole(std::int32_t resource, std::int32_t day, const Day& entry) {
        NoteDay(resource, day, static_cast<std::int32_t>(Reach::NormalTime), entry.skip);
        NoteDay(resource, day, DayNote::kCode, entry.code);
    }
    void NoteDay(std::int32_t resource, std::int32_t day, std::int32_t what, std::int32_t value) {
        if (trial_) [[unlikely]]
            dayNotes_.push_back({resource, day, what, value});
    }
    /// Slots that a trial has added need no note.
    void NoteSlot(std::int32_t slot) {
        if (slot < trialSlots_) [[unlikely]]
            slotNotes_.push_back({slot, slots_[Index(slot)]});
    }
    std::int32_t AddSlots(std::size_t count);
    std::int32_t Split(std::int32_t slot, double when);
    /// Where the page keeps the next day to look at.
    std::int32_t& SkipAt(Page& page, std::int32_t day, Reach reach);
    std::int32_t SkipOf(const Page& page, std::int32_t day, Reach reach) const {
        const auto at = Index(day & (kPageDays - 1));
        if (reach == Reach::NormalTime) return page.days[at].skip;
        const std::int32_t skips = page.skips[static_cast<std::size_t>(reach) - 1];
        return skips < 0 ? 0 : skipPages_[Index(skips)][at];
    }

    const Network* network_ = nullptr;
    std::vector<Calendar> calendars_;
    std::vector<Page> pages_;
    std::size_t pagesUsed_ = 0;
    std::vector<SkipPage> skipPages_;
    std::size_t skipPagesUsed_ = 0;
    std::vector<Slot> slots_;  ///< those up to slotsUsed_ are in use
    std::size_t slotsUsed_ = 0;
    bool trial_ = false;
    std::int32_t trialSlots_ = 0;  ///< slots in use when the trial began; 0 without one
    std::vector<DayNote> dayNotes_;
    std::vector<SlotNote> slotNotes_;
};

}  // namespace vortan
