#pragma once

#include <string>

#include "model/Fault.h"
#include "support/CheckModel.h"
#include "support/ScriptedPlatform.h"

namespace vortan {

/// A solver that solves nothing: it tells how often the model asked for a solve.
class CountingSolver : public SolveService {
  public:
    SolveMode Mode() const override { return mode; }
    void RestartSolve() override { ++restarts; }
    void SuspendSolve() override {}
    void ResumeSolve() override {}
    void Clear() override { ++clears; }
    std::int32_t CountMinutes(const Vresource&, const Vtask&, DateTime, DateTime) const override { return 0; }

    SolveMode mode = SolveMode::Idle;
    int restarts = 0, clears = 0;
};

/// A workspace with short ways to fill it. Journals are dated day 1, 2, 3 ...; the first is active.
class ModelBench {
  public:
    ModelBench() { workspace.SetSolver(&solver); }
    ~ModelBench() { EXPECT_EQ(ModelFaults(workspace), ""); }

    Vproject* Project(const std::string& name, int journals = 1) {
        const Workspace::Quiet quiet(workspace);
        return WithJournals(workspace.FindOrCreateProject(name), journals);
    }
    Vtemplate* Template(const std::string& name, int journals = 1) {
        const Workspace::Quiet quiet(workspace);
        return WithJournals(workspace.FindOrCreateTemplate(name), journals);
    }
    /// A dependency on `required`, or on a date if that is none.
    Vdependency* Dependency(Vtask* task, Vtask* required, DateTime date = {}) {
        auto* dependency = workspace.NewVObject<Vdependency>();
        dependency->SetTask(task);
        dependency->SetTaskRequired(required);
        dependency->SetDepDate(date);
        return dependency;
    }
    Vassignment* Assignment(Vtask* task, Vresource* resource) {
        auto* assignment = workspace.NewVObject<Vassignment>();
        assignment->SetTask(task);
        assignment->SetResourceRequired(resource);
        return assignment;
    }

    ScriptedPlatform platform;
    Workspace workspace{platform};
    CountingSolver solver;

  private:
    template <class Owner>
    static Owner* WithJournals(Owner* owner, int journals) {
        for (int day = 1; day <= journals; ++day) owner->AddJournal(DateTime(day));
        owner->SetCurrentIndex(0);
        return owner;
    }
};

/// What `read` gives in each journal of `owner`, with blanks between; true reads 1, false 0.
template <class Read>
std::string InJournals(JournalOwner* owner, Read&& read) {
    const auto active = owner->CurrentIndex();
    std::string all;
    for (int i = 0; i < owner->NumJournals(); ++i) {
        owner->SetCurrentIndex(i);
        all += (i > 0 ? " " : "") + std::to_string(static_cast<int>(read()));
    }
    owner->SetCurrentIndex(active);
    return all;
}

/// The sentence of the refusal that `action` ends in, "none" if it ends normally.
template <class Action>
std::string RefusalOf(Action&& action) {
    try {
        action();
    } catch (const Fault& fault) {
        if (fault.Number() != Fault::kRefusal) ADD_FAILURE() << "Fault number " << fault.Number();
        return fault.Description();
    }
    return "none";
}

}  // namespace vortan
