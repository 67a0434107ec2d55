#include "model/Workspace.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "model/History.h"
#include "model/ObjectPool.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"

namespace vortan {

struct Workspace::Pools {
    template <class T>
    ObjectPool<T>& Of() {
        return std::get<ObjectPool<T>>(all);
    }
    // Projects and templates come first: they free what they own when all is taken back, so what is left
    // are objects that never found an owner.
    std::tuple<ObjectPool<Vproject>, ObjectPool<Vtemplate>, ObjectPool<Vtask>, ObjectPool<Vdependency>,
               ObjectPool<Vassignment>, ObjectPool<Vresource>, ObjectPool<Vshift>>
        all;
};

Workspace::Workspace(Platform& platform)
    : platform_(platform), pools_(std::make_unique<Pools>()), history_(std::make_unique<History>(*this)) {}
Workspace::~Workspace() = default;

Vproject* Workspace::ThisProject() const {
    return thisProject_.Get();
}
void Workspace::SetThisProject(Vproject* project) {
    thisProject_ = project;
}
Vtemplate* Workspace::ThisTemplate() const {
    return thisTemplate_.Get();
}
void Workspace::SetThisTemplate(Vtemplate* value) {
    thisTemplate_ = value;
}

template <class T>
T* Workspace::NewVObject() {
    return pools_->Of<T>().Take(*this, ++lastId_);
}
template <class T>
void Workspace::FreeVobject(T* object) {
    if (!object) return;
    object->Reset();
    pools_->Of<T>().GiveBack(object);
}
template <class T>
void Workspace::Revive(T* object, std::uint32_t id) {
    pools_->Of<T>().Revive(object, id);
}
template <class T>
void Workspace::Release(T* object) {
    pools_->Of<T>().Release(object);
}

void Workspace::FreeAllMemory() {
    const Quiet quiet(*this);
    history_->Clear();
    changes_.clear();
    thisProject_ = {};
    thisTemplate_ = {};
    if (solver_) solver_->Clear();
    std::apply([](auto&... pool) { (pool.GiveBackAll(), ...); }, pools_->all);
    projectList_.Clear();
    templateList_.Clear();
    history_->Clear();  // giving back has changed them
}

Vproject* Workspace::FindOrCreateProject(const std::string& name) {
    if (name.empty()) return nullptr;
    if (Vproject* project = projectList_.Find(name)) return project;
    Vproject* project = NewVObject<Vproject>();
    project->SetProjectName(name);
    project->SetDescription(kStub);
    return project;
}

Vtemplate* Workspace::FindOrCreateTemplate(const std::string& name) {
    if (name.empty()) return nullptr;
    if (Vtemplate* found = templateList_.Find(name)) return found;
    Vtemplate* made = NewVObject<Vtemplate>();
    made->SetTemplateName(name);
    return made;
}

void Workspace::FixNameConflict(std::string& name) {
    const std::size_t size = name.size();
    const bool suffixed = size >= 3 && name[size - 1] == ')' && name[size - 3] == '(';
    // Behind the last character of ASCII a second suffix begins: one byte more would be no text.
    if (!suffixed || static_cast<unsigned char>(name[size - 2]) >= 0x7F) name += "(A)";
    ++name[name.size() - 2];
}

bool Workspace::ThisProjectSet() {
    if (ThisProject()) return true;
    WarnNotInMemory(false);
    return false;
}

bool Workspace::ThisTemplateSet() {
    if (ThisTemplate()) return true;
    WarnNotInMemory(true);
    return false;
}

void Workspace::WarnNotInMemory(bool isTemplate) {
    const std::string what = isTemplate ? "template" : "project";
    const std::string title = isTemplate ? "Template" : "Project";
    platform_.MessageBox(
        "There are no " + what + "s loaded in memory.\n\nPlease use the File menu to Open a file " +
            "containing one or more " + what + "s, or use the " + title + " menu to create a New one.",
        "No " + title + "s in Memory", BoxIcon::Warning, BoxButtons::Ok);
}

bool Workspace::ThisProjectSolved() {
    if (!ThisProjectSet()) return false;
    const SolveMode mode = Mode();
    if (mode == SolveMode::Idle) return true;
    if (mode == SolveMode::Halted) {
        platform_.MessageBox(
            "The requested operation cannot be performed until the error in solve is corrected.",
            "Solve Error", BoxIcon::Warning, BoxButtons::Ok);
    } else {
        platform_.MessageBox(
            "The requested operation cannot be performed until the background solve is complete.",
            "Waiting For Solve To Complete", BoxIcon::Warning, BoxButtons::Ok);
    }
    return false;
}

void Workspace::NotReadyYet() {
    platform_.MessageBox("This feature has not yet been implemented.", "Not Ready Yet", BoxIcon::Warning,
                         BoxButtons::Ok);
}

void Workspace::RemoveListener(Listener* listener) {
    const auto at = std::find(listeners_.begin(), listeners_.end(), listener);
    if (at == listeners_.end()) return;
    if (broadcasting_ > 0) {
        *at = nullptr;
    } else {
        listeners_.erase(at);
    }
}

void Workspace::Broadcast(const std::function<void(Listener&)>& message) {
    struct Depth {
        Workspace& workspace;
        explicit Depth(Workspace& w) : workspace(w) { ++workspace.broadcasting_; }
        ~Depth() {
            if (--workspace.broadcasting_ == 0) std::erase(workspace.listeners_, nullptr);
        }
    } depth(*this);
    const std::size_t count = listeners_.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (listeners_[i]) message(*listeners_[i]);
    }
}

void Workspace::DeliverChanges() {
    if (changes_.empty()) return;
    const auto changes = std::exchange(changes_, {});
    Broadcast([&](Listener& listener) { listener.ObjectsChanged(changes); });
}

template <class T>
void Workspace::Tell(T& object, ChangeKind kind) {
    JournalOwner* holder = object.Holder();
    if (!holder || quiet_ > 0) return;
    holder->dirty_ = true;
    if (kind != ChangeKind::Journals) RestartSolve();
    if (listeners_.empty()) return;
    const Change change{Link<T>(&object), kind};
    if (changes_.empty() || changes_.back() != change) changes_.push_back(change);
}

template <class T>
void Changing(T& object, ChangeKind kind) {
    Workspace& workspace = object.Owner();
    if (object.Holder()) workspace.history_->Before(object, kind);
    workspace.Tell(object, kind);
}

// NOLINTBEGIN(bugprone-macro-parentheses): a type
#define VORTAN_OBJECT(T)                                \
    template T* Workspace::NewVObject<T>();             \
    template void Workspace::FreeVobject(T*);           \
    template void Workspace::Revive(T*, std::uint32_t); \
    template void Workspace::Release(T*);               \
    template void Workspace::Tell(T&, ChangeKind);      \
    template void Changing(T&, ChangeKind);
VORTAN_OBJECT(Vassignment)
VORTAN_OBJECT(Vdependency)
VORTAN_OBJECT(Vproject)
VORTAN_OBJECT(Vresource)
VORTAN_OBJECT(Vshift)
VORTAN_OBJECT(Vtask)
VORTAN_OBJECT(Vtemplate)
#undef VORTAN_OBJECT
// NOLINTEND(bugprone-macro-parentheses)

void GetDateRange(const Workspace& workspace, DateTime& start, DateTime& finish, bool includeFirstJournal) {
    const Vproject* project = workspace.ThisProject();
    start = finish = DateTime();
    if (!project) return;
    start = project->EarlyStart();
    finish = project->EarlyFinish();
    if (!includeFirstJournal || project->CurrentIndex() == 0) return;
    const DateTime firstStart = project->EarlyStartAt(0);
    finish = std::max(finish, project->EarlyFinishAt(0));
    // A journal without tasks has no dates, which is not the same as very early ones.
    if (firstStart.IsSet()) start = start.IsSet() ? std::min(start, firstStart) : firstStart;
}

}  // namespace vortan
