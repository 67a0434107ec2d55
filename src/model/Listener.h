#pragma once

namespace vortan {

/// A screen, or anything else that follows changes of the model. Messages carry no arguments: the listener
/// reads what it needs from the Workspace.
class Listener {
  public:
    virtual ~Listener() = default;

    virtual void NewThisProject() {}
    virtual void NewThisTemplate() {}
    virtual void NewJournal() {}
    virtual void NewSolution() {}
    virtual void NewDragNode() {}
};

}  // namespace vortan
