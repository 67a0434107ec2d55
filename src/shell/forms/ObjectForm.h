#pragma once

#include <utility>

#include "shell/forms/EntryForm.h"

namespace vortan {

/// An entry form for one object: one of a plan, or a new one, which joins a plan upon Ok alone and goes back
/// to its pool otherwise. Ok marks the project or template of the object as changed, which asks for a solve.
template <class T>
class ObjectForm : public EntryForm {
  protected:
    ObjectForm(Desktop& desktop, const char* name, const char* caption, T& object, bool adding)
        : EntryForm(desktop, name, caption), object_(&object), adding_(adding) {}

    /// Reads what was typed. False after a complaint; nothing has been changed then.
    virtual bool VerifyData() = 0;
    /// Makes a new object part of the plan.
    virtual void Join() {}
    /// Writes what VerifyData has read. True if the object may stand elsewhere among its siblings now.
    virtual bool SaveData() = 0;
    /// Tells the screens.
    virtual void Announce(Desktop::Saving what) { desktop_.ObjectSaved(object_.Get(), what); }
    void FormUnload() override {
        if (adding_) desktop_.workspace.FreeVobject(object_.Get());
    }

    Link<T> object_;
    bool adding_;  // until the object is part of the plan

  private:
    bool Finish() final {
        if (!VerifyData()) return false;
        const bool added = std::exchange(adding_, false);
        if (added) Join();
        const bool moved = SaveData();
        Owner().SetDirty(true);
        Announce(added ? Desktop::Saving::Added : moved ? Desktop::Saving::Moved : Desktop::Saving::Changed);
        return true;
    }
    JournalOwner& Owner() const {
        T& object = *object_.Get();
        if constexpr (requires { object.Project(); }) {
            return *object.Project();
        } else if constexpr (requires { object.Template(); }) {
            return *object.Template();
        } else {
            return object;
        }
    }
};

}  // namespace vortan
