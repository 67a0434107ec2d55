#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/Change.h"
#include "model/DateTime.h"
#include "model/Journaled.h"
#include "model/VObject.h"

namespace vortan {

/// The journals of a project or template: a row of ascending dates, and which of them is active. All reads
/// and writes of per-journal fields below the owner go through `CurrentIndex`.
class JournalOwner : public VObject {
  public:
    using VObject::VObject;
    virtual ~JournalOwner() = default;

    /// 0 only until the first AddJournal.
    std::int32_t NumJournals() const { return numJournals_; }
    std::int32_t CurrentIndex() const { return currentIndex_; }
    /// Makes the journal at `index` active. Out of range: Fault.
    void SetCurrentIndex(std::int32_t index);
    /// Ascending; the single date 0 before the first AddJournal.
    const std::vector<DateTime>& JournalDates() const { return journalDates_; }

    /// Makes the journal of `date` active, adding it where it is missing. True if it was added. The new
    /// journal starts as a copy of the one before it, and the owner is `Dirty`; it asks for no solve.
    bool AddJournal(DateTime date);
    /// Removes the active journal. Fault if it is the only one; nothing changes then.
    void DeleteJournal();
    /// Moves the active journal to `date`, which must be later than the one before it (for the first:
    /// earlier than the next), else Fault and nothing changes.
    void ChangeJournal(DateTime date);
    /// The date of the active journal.
    DateTime Journal() const { return journalDates_[static_cast<std::size_t>(currentIndex_)]; }
    /// Activates the journal of exactly that date. Fault if there is none, with the last journal active.
    void SetJournal(DateTime date);
    bool JournalDefined(DateTime date) const;

    /// Takes over what a file says, checked: Fault if the numbers do not fit one another. Values of
    /// per-journal fields below the owner are cut or extended to the new count.
    void LoadJournals(std::int32_t count, std::vector<DateTime> dates);

    bool Dirty() const { return dirty_; }
    /// False when the owner has been saved or loaded. True where a user has confirmed something: it counts as
    /// a change, and asks for a solve, even if nothing differs. Changes themselves see to both (`Changing`).
    void SetDirty(bool value);

  protected:
    /// Tells of a change of the project or template itself.
    virtual void JournalsChanging() = 0;
    /// Follows a change of `NumJournals` by one at `CurrentIndex` in every per-journal field.
    virtual void ChangeNumJournals() = 0;
    /// Cuts or extends every per-journal field to `NumJournals`.
    virtual void FitJournals() = 0;
    void ResetJournals();

  private:
    friend class History;
    friend class Workspace;

    std::int32_t numJournals_ = 0;
    std::int32_t currentIndex_ = 0;
    std::vector<DateTime> journalDates_ = {DateTime()};
    bool dirty_ = false;
};

/// Writes a per-journal field of `object` in the journal in force of `owner`; without one, in all journals.
template <class T, class Field, class Value>
void LetField(T& object, const JournalOwner* owner, Field& field, const Value& value) {
    const std::int32_t current = owner ? owner->CurrentIndex() : 0;
    if (!field.Holds(value, current)) Changing(object, ChangeKind::Value);
    field.Let(value, current, owner ? owner->NumJournals() : 0);
}

}  // namespace vortan
