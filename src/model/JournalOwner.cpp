#include "model/JournalOwner.h"

#include <algorithm>

#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/History.h"
#include "model/ValueText.h"
#include "model/Workspace.h"

namespace vortan {

void JournalOwner::SetCurrentIndex(std::int32_t index) {
    const Section section("JournalOwner:CurrentIndex [Property Let]");
    if (index < 0 || index >= std::max(numJournals_, 1)) AssertionFailed();
    currentIndex_ = index;
}

bool JournalOwner::AddJournal(DateTime date) {
    if (numJournals_ == 0) {
        JournalsChanging();
        numJournals_ = 1;
        currentIndex_ = 0;
        journalDates_ = {date};
        return true;
    }
    const auto later = std::find_if(journalDates_.begin(), journalDates_.end(),
                                    [date](DateTime each) { return each >= date; });
    currentIndex_ = static_cast<std::int32_t>(later - journalDates_.begin());
    if (later != journalDates_.end() && *later == date) return false;
    JournalsChanging();
    Owner().TheHistory().JournalMoves(*this, static_cast<std::size_t>(currentIndex_), date, false);
    journalDates_.insert(journalDates_.begin() + currentIndex_, date);
    ++numJournals_;
    ChangeNumJournals();
    return true;
}

void JournalOwner::DeleteJournal() {
    const Section section("JournalOwner:DeleteJournal");
    if (numJournals_ < 2) Refuse("At least one journal must remain");
    JournalsChanging();
    Owner().TheHistory().JournalMoves(*this, static_cast<std::size_t>(currentIndex_), Journal(), true);
    journalDates_.erase(journalDates_.begin() + currentIndex_);
    --numJournals_;
    ChangeNumJournals();
    currentIndex_ = std::min(currentIndex_, numJournals_ - 1);
}

void JournalOwner::ChangeJournal(DateTime date) {
    const Section section("JournalOwner:ChangeJournal");
    const auto current = static_cast<std::size_t>(currentIndex_);
    if (currentIndex_ > 0) {
        if (date <= journalDates_[current - 1]) {
            Refuse("The new date must be later than the previous journal's date of " +
                   FormatDate(journalDates_[current - 1]) + ".");
        }
    } else if (numJournals_ > 1 && date >= journalDates_[1]) {
        Refuse("The new date must be earlier than the next journal's date of " +
               FormatDate(journalDates_[1]) + ".");
    }
    if (journalDates_[current] != date) JournalsChanging();
    journalDates_[current] = date;
}

void JournalOwner::SetJournal(DateTime date) {
    const Section section("JournalOwner:Journal [Property Let]");
    if (Journal() == date) return;
    for (std::int32_t i = 0; i < numJournals_; ++i) {
        currentIndex_ = i;
        if (Journal() == date) return;
    }
    Refuse("The specified journal does not exist");
}

bool JournalOwner::JournalDefined(DateTime date) const {
    return numJournals_ > 0 &&
           std::find(journalDates_.begin(), journalDates_.end(), date) != journalDates_.end();
}

void JournalOwner::LoadJournals(std::int32_t count, std::vector<DateTime> dates) {
    const Section section("JournalOwner:LoadJournals");
    if (count < 0 || dates.size() != static_cast<std::size_t>(std::max(count, 1))) {
        Refuse("NumJournals is " + std::to_string(count) + " but there are " + std::to_string(dates.size()) +
               " JournalDates");
    }
    for (std::size_t i = 1; i < dates.size(); ++i) {
        if (dates[i] == dates[i - 1]) Refuse("Two journals have the date " + FormatDate(dates[i]));
    }
    numJournals_ = count;
    journalDates_ = std::move(dates);
    currentIndex_ = 0;
    FitJournals();
}

void JournalOwner::SetDirty(bool value) {
    dirty_ = value;
    if (value) Owner().RestartSolve();
}

void JournalOwner::ResetJournals() {
    numJournals_ = 0;
    currentIndex_ = 0;
    journalDates_ = {DateTime()};
}

}  // namespace vortan
