#include "model/Vtask.h"

#include <algorithm>
#include <limits>

#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Workspace.h"

namespace vortan {

void Vtask::Reset() {
    // The lists are taken aside first: their members take themselves out of them one by one.
    Owner().FreeVlist(std::exchange(dependencyList_, {}));
    Owner().FreeVlist(std::exchange(assignmentList_, {}));
    SetTaskID(0);
    project_ = nullptr;
    description_.clear();
    subproject_ = {};
    include_.SetSingle(true);
    effortUnits_.SetSingle(-60);
    optimistic_.SetSingle(0);
    mostLikely_.SetSingle(0);
    pessimistic_.SetSingle(0);
    efficiency_.SetSingle(0.85);
    materialCost_.SetSingle({});
    laborCost_.SetSingle({});
    earlyStart_.SetSingle({});
    earlyFinish_.SetSingle({});
    lateStart_.SetSingle({});
    lateFinish_.SetSingle({});
    solveIndex = -1;
}

void Vtask::SetProject(Vproject* project) {
    project_ = project;
    if (project && project->CurrentIndex() > 0)
        include_.StartAt(project->CurrentIndex(), project->NumJournals());
}

void Vtask::SetTaskID(std::int32_t id) {
    const Section section("Vtask:TaskID [Property Let]");
    if (id == 0) {
        if (project_ && taskID_ != 0) project_->TaskListOfOwner().Remove(taskID_);
        project_ = nullptr;
        taskID_ = 0;
        return;
    }
    if (id == taskID_) return;
    if (!project_) AssertionFailed();
    if (project_->FindTask(id)) Refuse("This TaskID is already in use");
    if (taskID_ != 0) project_->TaskListOfOwner().Remove(taskID_);
    taskID_ = id;
    project_->TaskListOfOwner().Add(this, id);
}

void Vtask::SetSubproject(Vproject* project) {
    subproject_ = project;
    if (project) project->SetParent(project_);
}

std::int32_t Vtask::EffortMinutes(DateTime start, DateTime finish) const {
    const SolveService* solver = Owner().Solver();
    if (!project_ || !solver) return 0;
    std::vector<const Vresource*> seen;
    std::int32_t minutes = 0;
    for (const Vassignment* assignment : assignmentList_) {
        const Vresource* resource = assignment->ResourceRequired();
        if (!assignment->Include() || !resource) continue;
        if (std::find(seen.begin(), seen.end(), resource) != seen.end()) continue;
        seen.push_back(resource);
        minutes += solver->CountMinutes(*resource, *this, start, finish);
    }
    return minutes;
}

namespace {

Vdependency* ControlOf(const Vtask& task, std::size_t depth) {
    if (const Vproject* subproject = task.Subproject()) {
        if (depth == 0) return nullptr;  // subprojects that hold each other in a circle
        const Vtask* first = nullptr;
        for (const Vtask* candidate : subproject->TaskList()) {
            if (candidate->Include() && (!first || candidate->EarlyStart() < first->EarlyStart()))
                first = candidate;
        }
        return first ? ControlOf(*first, depth - 1) : nullptr;
    }
    Vdependency* control = nullptr;
    for (Vdependency* dependency : task.DependencyList()) {
        if (!dependency->Include() || dependency->ToPercent() != 0) continue;
        if (!control || dependency->DepDate() > control->DepDate()) control = dependency;
    }
    return control;
}

}  // namespace

Vdependency* Vtask::ControlDependency() const {
    return ControlOf(*this, Owner().ProjectList().size());
}

std::string Vtask::BuildNodeText() const {
    if (const Vproject* subproject = Subproject()) return Key() + ": " + subproject->BuildNodeText();
    return description_.empty() ? Key() : Key() + ": " + description_;
}

void Vtask::ChangeNumJournals() {
    if (!project_) return;
    ForEachField(ResizeField{project_->NumJournals(), project_->CurrentIndex()});
    for (Vdependency* dependency : dependencyList_) dependency->ChangeNumJournals();
    for (Vassignment* assignment : assignmentList_) assignment->ChangeNumJournals();
}

void Vtask::FitJournals() {
    if (!project_) return;
    ForEachField(FitField{project_->NumJournals()});
    for (Vdependency* dependency : dependencyList_) dependency->FitJournals();
    for (Vassignment* assignment : assignmentList_) assignment->FitJournals();
}

void Vtask::Delete() {
    if (Vproject* subproject = Subproject()) subproject->SetParent(nullptr);
    Vproject* project = project_;
    const std::int32_t count = project ? project->NumJournals() : 0;
    include_.EndAt(Index(), count, true);
    if (include_.AnyTrue(std::max(count, 1))) return;
    if (project) project->SetDirty(true);
    Owner().FreeVobject(this);
}

}  // namespace vortan
