#include "model/History.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>
#include <type_traits>
#include <utility>

#include "model/HistoryBytes.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "model/Workspace.h"

namespace vortan {
namespace {

constexpr std::size_t kEntryBytes = 32, kDetailBytes = 128, kMostNamed = 16;

template <class T>
constexpr bool kIsOwner = std::is_base_of_v<JournalOwner, T>;

}  // namespace

/// What the history does with objects past their setters.
class History::Access {
  public:
    // ---- fields

    template <class T, class Visitor>
    static void Visit(T& object, Visitor&& visit) {
        using Plain = std::remove_const_t<T>;
        if constexpr (kIsOwner<Plain>) {
            visit("", object.description_);
            visit("", object.viewPassword_);
            visit("", object.modifyPassword_);
            visit("", object.numJournals_);
        }
        if constexpr (std::is_same_v<Plain, Vproject>) visit("", object.planIndex_);
        if constexpr (std::is_same_v<Plain, Vshift>) visit("", object.formerName_);
        if constexpr (!std::is_same_v<Plain, Vtemplate>) object.ForEachField(visit);
    }
    template <class T>
    static std::string Fields(const T& object) {
        std::string bytes;
        BytesWriter writer(bytes);
        Visit(object, writer);
        if constexpr (kIsOwner<T>) {
            writer.Put(object.journalDates_.size());
            for (const DateTime date : object.journalDates_) writer.Put(date);
        }
        return bytes;
    }
    template <class T>
    static void SetFields(T& object, const std::string& bytes) {
        BytesReader reader(bytes);
        Visit(object, reader);
        if constexpr (kIsOwner<T>) {
            const auto count = reader.Take<std::size_t>();
            object.journalDates_.clear();
            for (std::size_t i = 0; i < count; ++i) object.journalDates_.push_back(reader.Take<DateTime>());
        }
    }

    /// As in the pool, but for its place.
    template <class T>
    static void Blank(T& object) {
        if constexpr (kIsOwner<T>) {
            object.description_.clear();
            object.viewPassword_.clear();
            object.modifyPassword_.clear();
            object.ResetJournals();
        }
        if constexpr (std::is_same_v<T, Vproject>) object.planIndex_ = 0;
        if constexpr (std::is_same_v<T, Vshift>) object.formerName_.clear();
        if constexpr (!std::is_same_v<T, Vtemplate>) object.ResetFields();
    }

    // ---- places

    template <class List, class T>
    static std::size_t IndexIn(const List& list, const T& object) {
        const auto at = std::find(list.begin(), list.end(), &object);
        return at == list.end() ? 0 : static_cast<std::size_t>(at - list.begin());
    }
    static std::vector<Vdependency*>& ListOf(Vdependency&, Vtask& task) { return task.dependencyList_; }
    static std::vector<Vassignment*>& ListOf(Vassignment&, Vtask& task) { return task.assignmentList_; }
    static KeyedList<Vproject>& ListOf(Vproject& project) { return project.Owner().ProjectList(); }
    static KeyedList<Vtemplate>& ListOf(Vtemplate& owner) { return owner.Owner().TemplateList(); }
    static std::string& NameOf(Vproject& project) { return project.projectName_; }
    static std::string& NameOf(Vtemplate& owner) { return owner.templateName_; }

    /// Whether the object stands in its list, and then where.
    static bool Where(Vtask& task, Detail& place) {
        place.parent = task.project_;
        place.number = task.taskID_;
        return task.project_ && task.taskID_ != 0;
    }
    static bool Where(Vresource& resource, Detail& place) {
        place.parent = resource.template_;
        place.number = resource.resourceID_;
        return resource.template_ && resource.resourceID_ != 0;
    }
    static bool Where(Vshift& shift, Detail& place) {
        place.parent = shift.template_;
        place.text = shift.shiftName_;
        if (!shift.template_ || shift.shiftName_.empty()) return false;
        place.index = IndexIn(shift.template_->shiftList_, shift);
        return true;
    }
    template <class T>
    requires(std::is_same_v<T, Vdependency> ||
             std::is_same_v<T, Vassignment>) static bool Where(T& child, Detail& place) {
        place.parent = child.myTask_;
        if (!child.myTask_) return false;
        place.index = IndexIn(ListOf(child, *child.myTask_), child);
        return true;
    }
    template <class T>
    requires(kIsOwner<T>) static bool Where(T& owner, Detail& place) {
        place.text = NameOf(owner);
        if (place.text.empty()) return false;
        place.index = IndexIn(ListOf(owner), owner);
        return true;
    }

    static void Take(Vtask& task) {
        task.project_->taskList_.Remove(std::exchange(task.taskID_, 0));
        task.project_ = nullptr;
    }
    static void Take(Vresource& resource) {
        resource.template_->resourceList_.Remove(std::exchange(resource.resourceID_, 0));
        resource.template_ = nullptr;
    }
    static void Take(Vshift& shift) {
        shift.template_->shiftList_.Remove(shift.shiftName_);
        shift.shiftName_.clear();
        shift.template_ = nullptr;
    }
    template <class T>
    requires(std::is_same_v<T, Vdependency> || std::is_same_v<T, Vassignment>) static void Take(T& child) {
        std::erase(ListOf(child, *child.myTask_), &child);
        child.myTask_ = nullptr;
    }
    template <class T>
    requires(kIsOwner<T>) static void Take(T& owner) {
        ListOf(owner).Remove(NameOf(owner));
        NameOf(owner).clear();
    }

    static void Put(Vtask& task, const Detail& place) {
        task.project_ = static_cast<Vproject*>(place.parent);
        task.taskID_ = place.number;
        task.project_->taskList_.Add(&task, place.number);
    }
    static void Put(Vresource& resource, const Detail& place) {
        resource.template_ = static_cast<Vtemplate*>(place.parent);
        resource.resourceID_ = place.number;
        resource.template_->resourceList_.Add(&resource, place.number);
    }
    static void Put(Vshift& shift, const Detail& place) {
        shift.template_ = static_cast<Vtemplate*>(place.parent);
        shift.shiftName_ = place.text;
        shift.template_->shiftList_.Insert(&shift, place.text, place.index);
    }
    template <class T>
    requires(std::is_same_v<T, Vdependency> ||
             std::is_same_v<T, Vassignment>) static void Put(T& child, const Detail& place) {
        child.myTask_ = static_cast<Vtask*>(place.parent);
        auto& list = ListOf(child, *child.myTask_);
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(std::min(place.index, list.size())), &child);
    }
    template <class T>
    requires(kIsOwner<T>) static void Put(T& owner, const Detail& place) {
        NameOf(owner) = place.text;
        ListOf(owner).Insert(&owner, place.text, place.index);
    }

    // ---- journals

    static void MoveJournal(JournalOwner& owner, const Detail& detail) {
        const auto at = owner.journalDates_.begin() + static_cast<std::ptrdiff_t>(detail.index);
        owner.currentIndex_ = static_cast<std::int32_t>(detail.index);
        if (detail.removed) {
            owner.journalDates_.insert(at, detail.date);
            ++owner.numJournals_;
        } else {
            owner.journalDates_.erase(at);
            --owner.numJournals_;
        }
        owner.ChangeNumJournals();
        owner.currentIndex_ = std::min(owner.currentIndex_, owner.numJournals_ - 1);
    }

    // ---- names

    static std::string Label(const Vproject& project) { return "project " + project.ProjectName(); }
    static std::string Label(const Vtemplate& owner) { return "template " + owner.TemplateName(); }
    static std::string Label(const Vtask& task) { return "task " + task.Key(); }
    static std::string Label(const Vresource& resource) { return "resource " + resource.Key(); }
    static std::string Label(const Vshift& shift) { return "shift " + shift.ShiftName(); }
    static std::string Label(const Vdependency& dependency) { return "dependency" + Of(dependency.Task()); }
    static std::string Label(const Vassignment& assignment) { return "assignment" + Of(assignment.Task()); }

  private:
    static std::string Of(const Vtask* task) { return task ? " of task " + task->Key() : ""; }
};

namespace {

template <class T>
bool Included(const T& object) {
    if constexpr (requires { object.Include(); }) return object.Include();
    return true;
}

}  // namespace

// ---- what is kept

void History::Add(Entry entry) {
    std::visit([](auto* object) { ++object->VObject::holds_; }, entry.object);
    now_.bytes += kEntryBytes;
    if (entry.detail) now_.bytes += kDetailBytes + entry.detail->text.capacity();
    now_.entries.push_back(std::move(entry));
}

template <class T>
void History::Note(T& object, bool absent) {
    if (named_.size() < kMostNamed)
        named_.push_back({&object, Access::Label(object), absent, Included(object)});
}

template <class T>
void History::KeepFields(T& object) {
    if (!known_.insert(&object).second) return;
    Note(object, false);
    auto detail = std::make_unique<Detail>();
    detail->id = object.Id();
    detail->text = Access::Fields(object);
    Add({&object, What::Fields, std::move(detail)});
}

/// `first`: whatever its index, it is taken off the front of its list.
template <class T>
void History::KeepPlace(T& object, bool first) {
    auto detail = std::make_unique<Detail>();
    if (!Access::Where(object, *detail)) return Add({&object, What::Nowhere, nullptr});
    if (first) detail->index = 0;
    Add({&object, What::Place, std::move(detail)});
}

namespace {

/// Calls `visit` for all that belongs to the object, in the order of its lists.
template <class T, class Visitor>
void ForAllOf(T& object, const Visitor& visit) {
    if constexpr (std::is_same_v<T, Vproject>) {
        for (Vtask* task : object.TaskList()) {
            ForAllOf(*task, visit);
            visit(*task);
        }
    }
    if constexpr (std::is_same_v<T, Vtemplate>) {
        for (Vshift* shift : object.ShiftList()) visit(*shift);
        for (Vresource* resource : object.ResourceList()) visit(*resource);
    }
    if constexpr (std::is_same_v<T, Vtask>) {
        for (Vdependency* dependency : object.DependencyList()) visit(*dependency);
        for (Vassignment* assignment : object.AssignmentList()) visit(*assignment);
    }
}

}  // namespace

template <class T>
void History::KeepAllOf(T& object) {
    ForAllOf(object, [this](auto& below) {
        this->KeepFields(below);
        KeepPlace(below, true);
    });
}

template <class Owner>
void History::KeepWhole(Owner& owner) {
    if (!kept_) return;
    KeepFields(owner);
    ForAllOf(owner, [this](auto& below) { this->KeepFields(below); });
}
template void History::KeepWhole(Vproject&);
template void History::KeepWhole(Vtemplate&);

template <class T>
void History::Join(T& object) {
    // An object that moves to another list was known in this step before it left the first.
    if (known_.insert(&object).second) {
        Note(object, true);
        Add({&object, What::Absent, nullptr});
    }
    Add({&object, What::Nowhere, nullptr});
}

template <class T>
void History::Before(T& object, ChangeKind kind) {
    if (!kept_) return;
    if (kind == ChangeKind::Joined) {
        Join(object);
        // Below an owner that was made aside nothing has joined yet.
        ForAllOf(object, [this](auto& below) { this->Join(below); });
        return;
    }
    KeepFields(object);
    if (kind == ChangeKind::Left) {
        if constexpr (kIsOwner<T>) KeepAllOf(object);
    }
    if (kind == ChangeKind::Left || kind == ChangeKind::Refiled) KeepPlace(object);
}

void History::JournalMoves(JournalOwner& owner, std::size_t index, DateTime date, bool removed) {
    if (!kept_) return;
    auto detail = std::make_unique<Detail>();
    detail->index = index;
    detail->date = date;
    detail->removed = removed;
    if (auto* project = dynamic_cast<Vproject*>(&owner)) {
        Add({project, What::Journal, std::move(detail)});
    } else {
        Add({static_cast<Vtemplate*>(&owner), What::Journal, std::move(detail)});
    }
    known_.clear();
}

// ---- steps

History::~History() {
    Clear();
}

void History::SetKept(bool kept) {
    kept_ = kept;
    Clear();
}

void History::EndStep() {
    if (!kept_) return;
    if (!now_.entries.empty()) {
        now_.name = NameOfStep();
        now_.before = std::move(choice_);
        known_.clear();
        named_.clear();
        DropAll(redo_);
        Push(undo_, std::exchange(now_, {}));
    }
    choice_ = ChoiceNow();
}

void History::JoinStep() {
    if (now_.entries.empty()) return;
    DropAll(redo_);
    if (undo_.empty()) {
        now_.bytes = 0;
        Drop(now_);
    } else {
        Step& last = undo_.back();
        last.entries.insert(last.entries.end(), std::make_move_iterator(now_.entries.begin()),
                            std::make_move_iterator(now_.entries.end()));
        last.bytes += now_.bytes;
        bytes_ += now_.bytes;
    }
    now_ = {};
    known_.clear();
    named_.clear();
    choice_ = ChoiceNow();
}

/// Of its first object that came, went or moved; else of the journal that came or went; else of the first.
std::string History::NameOfStep() const {
    std::string name;
    std::size_t best = SIZE_MAX;
    const auto journal = std::find_if(now_.entries.begin(), now_.entries.end(),
                                      [](const Entry& entry) { return entry.what == What::Journal; });
    if (journal != now_.entries.end()) {
        name = journal->detail->removed ? "Delete journal" : "New journal";
        best = std::variant_size_v<Object>;
    }
    for (const Named& named : named_) {
        const std::size_t rank = named.object.index();
        const auto [verb, structural] = std::visit(
            [&named](auto* object) -> std::pair<const char*, bool> {
                if (named.absent) return {"New", true};
                if (object->Id() == 0 || !object->Holder() || (named.included && !Included(*object)))
                    return {"Delete", true};
                return {"Change", false};
            },
            named.object);
        const std::size_t score = rank + (structural ? 0 : std::variant_size_v<Object>);
        if (score >= best) continue;
        best = score;
        const std::string label =
            named.absent ? std::visit([](const auto* object) { return Access::Label(*object); }, named.object)
                         : named.label;
        name = std::string(verb) + " " + label;
    }
    return name;
}

void History::SetLimit(std::size_t bytes) {
    limit_ = bytes;
}

void History::Push(std::deque<Step>& steps, Step step) {
    bytes_ += step.bytes;
    steps.push_back(std::move(step));
    while (bytes_ > limit_ && !(undo_.empty() && redo_.empty())) {
        auto& longest = undo_.empty() ? redo_ : undo_;
        Drop(longest.front());
        longest.pop_front();
    }
}

/// What no step wants any more goes back to its pool.
void History::Drop(Step& step) {
    bytes_ -= std::min(bytes_, step.bytes);
    for (const Entry& entry : step.entries) {
        std::visit(
            [this](auto* object) {
                if (--object->VObject::holds_ == 0 && object->Id() == 0) workspace_.Release(object);
            },
            entry.object);
    }
}

void History::DropAll(std::deque<Step>& steps) {
    for (Step& step : steps) Drop(step);
    steps.clear();
}

void History::Clear() {
    DropAll(undo_);
    DropAll(redo_);
    now_.bytes = 0;
    Drop(now_);
    now_ = {};
    known_.clear();
    named_.clear();
    choice_ = kept_ ? ChoiceNow() : Choice();
}

// ---- there and back

History::Choice History::ChoiceNow() const {
    Choice choice{workspace_.ThisProject(), workspace_.ThisTemplate(), {}, {}};
    for (Vproject* each : workspace_.ProjectList()) choice.projects.emplace_back(each, each->CurrentIndex());
    for (Vtemplate* each : workspace_.TemplateList())
        choice.templates.emplace_back(each, each->CurrentIndex());
    return choice;
}

void History::Choose(const Choice& choice) {
    const auto choose = [](const auto& owners) {
        for (const auto& [owner, index] : owners) {
            if (owner && index < std::max(owner->NumJournals(), 1)) owner->SetCurrentIndex(index);
        }
    };
    choose(choice.projects);
    choose(choice.templates);
    if (choice.project) workspace_.SetThisProject(choice.project.Get());
    if (choice.owner) workspace_.SetThisTemplate(choice.owner.Get());
}

bool History::Move(std::deque<Step>& from, std::deque<Step>& to) {
    EndStep();
    if (from.empty()) return false;
    Step step = std::move(from.back());
    from.pop_back();
    bytes_ -= step.bytes;
    Step back;
    back.name = step.name;
    back.before = ChoiceNow();
    for (auto entry = step.entries.rbegin(); entry != step.entries.rend(); ++entry) {
        back.entries.push_back(Swap(*entry));
        back.bytes += kEntryBytes;
        if (const auto& detail = back.entries.back().detail)
            back.bytes += kDetailBytes + detail->text.capacity();
    }
    Choose(step.before);
    choice_ = ChoiceNow();
    Push(to, std::move(back));
    return true;
}

/// Makes the thing what it was; returns what it is now. The hold that the entry has on the object passes on.
History::Entry History::Swap(Entry& entry) {
    return std::visit(
        [&](auto* object) -> Entry {
            workspace_.Tell(*object, ChangeKind::Value);
            Entry now{object, What::Absent, nullptr};
            switch (entry.what) {
                case What::Fields:
                case What::Absent:
                    if (object->Id() != 0) {
                        now.what = What::Fields;
                        now.detail = std::make_unique<Detail>();
                        now.detail->id = object->Id();
                        now.detail->text = Access::Fields(*object);
                    }
                    if (entry.what == What::Absent) {
                        Access::Blank(*object);
                        workspace_.Revive(object, 0);
                    } else {
                        workspace_.Revive(object, entry.detail->id);
                        Access::SetFields(*object, entry.detail->text);
                    }
                    break;
                case What::Place:
                case What::Nowhere: {
                    auto place = std::make_unique<Detail>();
                    now.what = What::Nowhere;
                    if (Access::Where(*object, *place)) {
                        now.what = What::Place;
                        now.detail = std::move(place);
                        Access::Take(*object);
                    }
                    if (entry.what == What::Place) Access::Put(*object, *entry.detail);
                    break;
                }
                case What::Journal:
                    if constexpr (kIsOwner<std::remove_pointer_t<decltype(object)>>)
                        Access::MoveJournal(*object, *entry.detail);
                    now.what = What::Journal;
                    now.detail = std::move(entry.detail);
                    now.detail->removed = !now.detail->removed;
                    break;
            }
            workspace_.Tell(*object, ChangeKind::Value);
            return now;
        },
        entry.object);
}

template void History::Before(Vassignment&, ChangeKind);
template void History::Before(Vdependency&, ChangeKind);
template void History::Before(Vproject&, ChangeKind);
template void History::Before(Vresource&, ChangeKind);
template void History::Before(Vshift&, ChangeKind);
template void History::Before(Vtask&, ChangeKind);
template void History::Before(Vtemplate&, ChangeKind);

}  // namespace vortan
