#pragma once

#include <vector>

#include "model/Change.h"

namespace vortan {

/// A screen, or anything else that follows changes of the model. All but one of the messages carry no
/// arguments: the listener reads what it needs from the Workspace.
class Listener {
  public:
    virtual ~Listener() = default;

    virtual void NewThisProject() {}
    virtual void NewThisTemplate() {}
    virtual void NewJournal() {}
    virtual void NewSolution() {}
    virtual void NewDragNode() {}
    /// What a command has changed, in that order; writes to one object in a row are one change.
    virtual void ObjectsChanged(const std::vector<Change>&) {}
};

}  // namespace vortan
