#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/KeyedList.h"
#include "model/Link.h"
#include "model/Listener.h"
#include "model/ObjectPool.h"
#include "model/Platform.h"
#include "model/SolveService.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"

namespace vortan {

/// Everything that a running program has loaded: any number of projects and templates, which of them are
/// active, the pools from which all model objects come, and who listens to changes. A program or a test can
/// have as many as it likes; they share nothing.
class Workspace {
  public:
    /// `platform` must outlive the Workspace.
    explicit Workspace(Platform& platform) : platform_(platform) {}
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    Platform& ThePlatform() const { return platform_; }

    KeyedList<Vproject>& ProjectList() { return projectList_; }
    const KeyedList<Vproject>& ProjectList() const { return projectList_; }
    KeyedList<Vtemplate>& TemplateList() { return templateList_; }
    const KeyedList<Vtemplate>& TemplateList() const { return templateList_; }
    Vproject* ThisProject() const { return thisProject_.Get(); }
    void SetThisProject(Vproject* project) { thisProject_ = project; }
    Vtemplate* ThisTemplate() const { return thisTemplate_.Get(); }
    void SetThisTemplate(Vtemplate* value) { thisTemplate_ = value; }

    /// An object of class T in its reset state.
    template <class T>
    T* NewVObject() {
        return Pool<T>().Take(*this, ++lastId_);
    }
    /// Resets the object and takes it back. Does nothing for none.
    template <class T>
    void FreeVobject(T* object) {
        if (!object) return;
        object->Reset();
        Pool<T>().GiveBack(object);
    }
    /// Takes back all members of a list of the caller's own.
    template <class List>
    void FreeVlist(const List& list) {
        for (auto* object : list) FreeVobject(object);
    }
    /// Returns to the state at start-up. Listeners stay.
    void FreeAllMemory();

    /// None for an empty name. A missing project is made as a stub, with the Description "<stub>".
    Vproject* FindOrCreateProject(const std::string& name);
    Vtemplate* FindOrCreateTemplate(const std::string& name);
    /// Changes a name that is taken: "Alpha" to "Alpha(B)", "Alpha(B)" to "Alpha(C)".
    static void FixNameConflict(std::string& name);

    // Guards, which show their own warning and return false.
    bool ThisProjectSet();
    bool ThisTemplateSet();
    /// Whether there is an active project with a complete solution.
    bool ThisProjectSolved();
    void WarnNotInMemory(bool isTemplate);
    /// The answer of every command that has no function yet.
    void NotReadyYet();

    /// The solver registers itself; without one, changes ask for no solve.
    void SetSolver(SolveService* solver) { solver_ = solver; }
    SolveService* Solver() const { return solver_; }
    SolveMode Mode() const { return solver_ ? solver_->Mode() : SolveMode::Idle; }
    void RestartSolve() {
        if (solver_) solver_->RestartSolve();
    }

    // A listener may register or unregister, itself or another, while a message is being delivered. One
    // that registers meanwhile gets the next message, one that unregisters gets nothing more.
    void AddListener(Listener* listener) { listeners_.push_back(listener); }
    void RemoveListener(Listener* listener);
    void BroadcastNewThisProject() { Broadcast(&Listener::NewThisProject); }
    void BroadcastNewThisTemplate() { Broadcast(&Listener::NewThisTemplate); }
    void BroadcastNewJournal() { Broadcast(&Listener::NewJournal); }
    void BroadcastNewSolution() { Broadcast(&Listener::NewSolution); }
    void BroadcastNewDragNode() { Broadcast(&Listener::NewDragNode); }

    /// Name last given to File/Open, File/Save or a recent-file entry.
    std::string LastFileName;
    /// Directory that the file dialogs offer.
    std::string FileDialogPath;
    /// Period of the automatic backup in minutes; 0 is off.
    int BackupMinutes = 0;

  private:
    template <class T>
    ObjectPool<T>& Pool();
    void Broadcast(void (Listener::*message)());

    Platform& platform_;
    SolveService* solver_ = nullptr;
    KeyedList<Vproject> projectList_;
    KeyedList<Vtemplate> templateList_;
    Link<Vproject> thisProject_;
    Link<Vtemplate> thisTemplate_;
    std::vector<Listener*> listeners_;
    int broadcasting_ = 0;
    std::uint32_t lastId_ = 0;

    ObjectPool<Vassignment> assignments_;
    ObjectPool<Vdependency> dependencies_;
    ObjectPool<Vproject> projects_;
    ObjectPool<Vresource> resources_;
    ObjectPool<Vshift> shifts_;
    ObjectPool<Vtask> tasks_;
    ObjectPool<Vtemplate> templates_;
};

template <>
inline ObjectPool<Vassignment>& Workspace::Pool() {
    return assignments_;
}
template <>
inline ObjectPool<Vdependency>& Workspace::Pool() {
    return dependencies_;
}
template <>
inline ObjectPool<Vproject>& Workspace::Pool() {
    return projects_;
}
template <>
inline ObjectPool<Vresource>& Workspace::Pool() {
    return resources_;
}
template <>
inline ObjectPool<Vshift>& Workspace::Pool() {
    return shifts_;
}
template <>
inline ObjectPool<Vtask>& Workspace::Pool() {
    return tasks_;
}
template <>
inline ObjectPool<Vtemplate>& Workspace::Pool() {
    return templates_;
}

/// Start and finish of the active project; with `includeFirstJournal`, widened to cover its dates in the
/// first journal. Date 0 without a project.
void GetDateRange(const Workspace& workspace, DateTime& start, DateTime& finish, bool includeFirstJournal);

}  // namespace vortan
