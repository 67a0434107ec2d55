#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "model/Change.h"
#include "model/KeyedList.h"
#include "model/Link.h"
#include "model/Listener.h"
#include "model/Platform.h"
#include "model/SolveService.h"

namespace vortan {

class History;

/// Everything that a running program has loaded: any number of projects and templates, which of them are
/// active, the pools from which all model objects come, and who listens to changes. A program or a test can
/// have as many as it likes; they share nothing.
class Workspace {
  public:
    /// `platform` must outlive the Workspace.
    explicit Workspace(Platform& platform);
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    Platform& ThePlatform() const { return platform_; }

    KeyedList<Vproject>& ProjectList() { return projectList_; }
    const KeyedList<Vproject>& ProjectList() const { return projectList_; }
    KeyedList<Vtemplate>& TemplateList() { return templateList_; }
    const KeyedList<Vtemplate>& TemplateList() const { return templateList_; }
    Vproject* ThisProject() const;
    void SetThisProject(Vproject* project);
    Vtemplate* ThisTemplate() const;
    void SetThisTemplate(Vtemplate* value);

    /// An object of class T, one of the seven of a plan, in its reset state.
    template <class T>
    T* NewVObject();
    /// Resets the object and takes it back. Does nothing for none.
    template <class T>
    void FreeVobject(T* object);
    /// Takes back all members of a list of the caller's own.
    template <class List>
    void FreeVlist(const List& list) {
        for (auto* object : list) FreeVobject(object);
    }
    /// Returns to the state at start-up. Listeners stay.
    void FreeAllMemory();

    /// None for an empty name. A missing project is made as a stub.
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

    /// Tells the listeners what has changed since the last call. The desktop calls it when a command has
    /// ended.
    void DeliverChanges();
    /// While one of these lives nothing counts as a change, as when a file is read.
    class Quiet {
      public:
        explicit Quiet(Workspace& workspace) : workspace_(workspace) { ++workspace_.quiet_; }
        ~Quiet() { --workspace_.quiet_; }
        Quiet(const Quiet&) = delete;
        Quiet& operator=(const Quiet&) = delete;

      private:
        Workspace& workspace_;
    };

    /// What commands have changed; kept when a program asks for it.
    History& TheHistory() { return *history_; }

    /// Name last given to File/Open, File/Save or a recent-file entry.
    std::string LastFileName;
    /// Directory that the file dialogs offer.
    std::string FileDialogPath;
    /// Period of the automatic backup in minutes; 0 is off.
    int BackupMinutes = 0;

  private:
    template <class T>
    friend void Changing(T& object, ChangeKind kind);
    friend class History;
    struct Pools;

    /// What `Changing` does beside the history.
    template <class T>
    void Tell(T& object, ChangeKind kind);
    // For the history, of objects that it holds.
    template <class T>
    void Revive(T* object, std::uint32_t id);
    template <class T>
    void Release(T* object);

    void Broadcast(const std::function<void(Listener&)>& message);

    Platform& platform_;
    SolveService* solver_ = nullptr;
    KeyedList<Vproject> projectList_;
    KeyedList<Vtemplate> templateList_;
    Link<Vproject> thisProject_;
    Link<Vtemplate> thisTemplate_;
    std::vector<Listener*> listeners_;
    int broadcasting_ = 0;
    std::vector<Change> changes_;  ///< not yet told; kept only while somebody listens
    int quiet_ = 0;
    std::uint32_t lastId_ = 0;

    std::unique_ptr<Pools> pools_;
    std::unique_ptr<History> history_;
};

/// Start and finish of the active project; with `includeFirstJournal`, widened to cover its dates in the
/// first journal. Date 0 without a project.
void GetDateRange(const Workspace& workspace, DateTime& start, DateTime& finish, bool includeFirstJournal);

}  // namespace vortan
