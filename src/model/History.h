#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <unordered_set>
#include <variant>
#include <vector>

#include "model/Change.h"
#include "model/DateTime.h"

namespace vortan {

class JournalOwner;
class VObject;
class Workspace;

/// What commands have changed, so that it can be taken back and done again, in steps of one command each.
///
/// It hears of every change through `Changing`, before the change is made, and keeps what the object was: the
/// bytes of its fields, where it stood in its list, that it was not there. So no command does anything for
/// it, and none can be forgotten. Taking a step back swaps each of these with what is there now, in reverse,
/// which makes the step that does it again. An object that a step brings back is the same object, with its
/// old identity, so links to it read as before.
///
/// What a solve finds is no change: whoever takes a step back solves again.
class History {
  public:
    explicit History(Workspace& workspace) : workspace_(workspace) {}
    ~History();

    /// Whether changes are kept; not at first, since only a program with a user has a use for it.
    void SetKept(bool kept);

    /// A command has ended: what changed since the last call is a step, if anything did. What was undone
    /// before cannot be done again from then on.
    void EndStep();
    /// What changed since the last call is no step of its own but goes with the last one, or is forgotten if
    /// there is none: the solver has added what a command left out, as a journal of a template.
    void JoinStep();
    /// What the step would take back or do again: "Delete task 7"; none: empty.
    std::string UndoName() const { return undo_.empty() ? "" : undo_.back().name; }
    std::string RedoName() const { return redo_.empty() ? "" : redo_.back().name; }
    /// False if there is no step. The owners of what changes are `Dirty`, and a solve is asked for.
    bool Undo() { return Move(undo_, redo_); }
    bool Redo() { return Move(redo_, undo_); }
    /// A file is about to be read over what the project or template and all below it hold.
    template <class Owner>
    void KeepWhole(Owner& owner);
    /// Forgets everything, as when memory is cleared.
    void Clear();
    /// Bytes kept at most, in both directions; the oldest step goes first.
    void SetLimit(std::size_t bytes);
    std::size_t Bytes() const { return bytes_; }

  private:
    friend class JournalOwner;
    template <class T>
    friend void Changing(T& object, ChangeKind kind);

    using Object =
        std::variant<Vproject*, Vtemplate*, Vtask*, Vdependency*, Vassignment*, Vresource*, Vshift*>;

    enum class What : std::uint8_t {
        Fields,   ///< what it held, and that it was there
        Absent,   ///< it was not there at all
        Place,    ///< where it stood among its kind
        Nowhere,  ///< it stood in no list
        Journal,  ///< its owner did not have, or had, a journal
    };
    struct Detail {
        std::uint32_t id = 0;       ///< of Fields
        VObject* parent = nullptr;  ///< of Place; none for projects and templates
        std::int32_t number = 0;    ///< of Place: a task's or resource's
        std::size_t index = 0;      ///< of Place in a list in order of creation; of Journal
        std::string text;           ///< the fields, as bytes; or the name that it had in its place
        bool removed = false;       ///< of Journal: it is gone
        DateTime date;
    };
    /// One thing as it was.
    struct Entry {
        Object object;
        What what;
        std::unique_ptr<Detail> detail;
    };
    /// What is chosen: no change of a plan, but what a planner looks at, and a file keeps it.
    struct Choice {
        Link<Vproject> project;
        Link<Vtemplate> owner;
        std::vector<std::pair<Link<Vproject>, std::int32_t>> projects;    ///< with their journal in force
        std::vector<std::pair<Link<Vtemplate>, std::int32_t>> templates;  ///< likewise
    };
    struct Step {
        std::string name;
        std::vector<Entry> entries;
        std::size_t bytes = 0;
        Choice before;
    };
    /// An object of the step that runs, for its name.
    struct Named {
        Object object;
        std::string label;
        bool absent, included;
    };
    class Access;

    template <class T>
    void Before(T& object, ChangeKind kind);
    /// Before a journal joins `owner` at `index`, or is removed from there.
    void JournalMoves(JournalOwner& owner, std::size_t index, DateTime date, bool removed);
    template <class T>
    void KeepFields(T& object);
    template <class T>
    void KeepPlace(T& object, bool first = false);
    /// What leaves with the owner that leaves.
    template <class T>
    void KeepAllOf(T& object);
    template <class T>
    void Join(T& object);
    void Add(Entry entry);
    template <class T>
    void Note(T& object, bool absent);

    Choice ChoiceNow() const;
    void Choose(const Choice& choice);
    bool Move(std::deque<Step>& from, std::deque<Step>& to);
    Entry Swap(Entry& entry);
    void Push(std::deque<Step>& steps, Step step);
    void Drop(Step& step);
    void DropAll(std::deque<Step>& steps);
    std::string NameOfStep() const;

    Workspace& workspace_;
    bool kept_ = false;
    Step now_;                               ///< of the command that runs
    Choice choice_;                          ///< when the last command had ended
    std::unordered_set<const void*> known_;  ///< whose fields are in `now_` since journals came or went
    std::vector<Named> named_;               ///< the first few objects of `now_`
    std::deque<Step> undo_, redo_;
    std::size_t limit_ = 64U << 20, bytes_ = 0;
};

}  // namespace vortan
