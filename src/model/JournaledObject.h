#pragma once

#include <algorithm>

#include "model/FieldList.h"
#include "model/JournalOwner.h"

namespace vortan {

/// What tasks, dependencies, assignments and resources have in common: they exist, and have values, in the
/// journals of the project or template that `T::Journals()` tells; with none, in a single one.
template <class T>
class JournaledObject : public VObject, public FieldList<T> {
  public:
    using VObject::VObject;

    /// Whether the object exists in the journal in force.
    bool Include() const { return include_.At(Index()); }
    bool IncludeAt(std::int32_t journalIndex) const { return include_.At(journalIndex); }
    void SetInclude(bool value) { Let(include_, value); }

    /// Follows a journal that was added or removed.
    void ChangeNumJournals() {
        if (const JournalOwner* owner = Self().Journals())
            this->ForEachField(ResizeField{owner->NumJournals(), owner->CurrentIndex()});
    }
    /// Cuts or extends every row to the number of journals.
    void FitJournals() {
        if (const JournalOwner* owner = Self().Journals()) this->ForEachField(FitField{owner->NumJournals()});
    }

  protected:
    /// Of the journal in force.
    std::int32_t Index() const {
        const JournalOwner* owner = Self().Journals();
        return owner ? owner->CurrentIndex() : 0;
    }
    template <class Field, class Value>
    void Let(Field& field, const Value& value) {
        LetField(Self(), Self().Journals(), field, value);
    }
    /// Writes what a solve found, which is no change of the plan.
    template <class Field, class Value>
    void LetResult(Field& field, const Value& value) {
        const JournalOwner* owner = Self().Journals();
        field.Let(value, Index(), owner ? owner->NumJournals() : 0);
    }

    /// An object that joins a project or template in a later journal does not exist in the earlier ones.
    void Begin() {
        const JournalOwner* owner = Self().Journals();
        if (owner && owner->CurrentIndex() > 0) include_.StartAt(owner->CurrentIndex(), owner->NumJournals());
    }
    /// Ends the object from the journal in force on; in earlier journals it counts as `before` if it was
    /// never changed. Returns whether a journal still has it.
    bool End(bool before) {
        const JournalOwner* owner = Self().Journals();
        const std::int32_t count = std::max(owner ? owner->NumJournals() : 0, 1);
        Changing(Self(), ChangeKind::Value);
        include_.EndAt(Index(), count, before);
        return include_.AnyTrue(count);
    }

    JournaledInclude include_;

  private:
    T& Self() { return static_cast<T&>(*this); }
    const T& Self() const { return static_cast<const T&>(*this); }
};

}  // namespace vortan
