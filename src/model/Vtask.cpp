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
    ResetFields();
    solveIndex_ = -1;
}

void Vtask::SetProject(Vproject* project) {
    project_ = project;
    Begin();
}

void Vtask::SetTaskID(std::int32_t id) {
    const Section section("Vtask:TaskID [Property Let]");
    if (id == 0) {
        if (project_ && taskID_ != 0) {
            Changing(*this, ChangeKind::Left);
            project_->taskList_.Remove(taskID_);
        }
        project_ = nullptr;
        taskID_ = 0;
        return;
    }
    if (id == taskID_) return;
    if (!project_) AssertionFailed();
    if (project_->FindTask(id)) Refuse("This TaskID is already in use");
    const bool joins = taskID_ == 0;
    if (!joins) {
        Changing(*this, ChangeKind::Refiled);
        project_->taskList_.Remove(taskID_);
    }
    taskID_ = id;
    project_->taskList_.Add(this, id);
    if (joins) Changing(*this, ChangeKind::Joined);
}

void Vtask::SetSubproject(Vproject* project) {
    LetPlain(*this, subproject_, Link<Vproject>(project));
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
    JournaledObject::ChangeNumJournals();
    for (Vdependency* dependency : dependencyList_) dependency->ChangeNumJournals();
    for (Vassignment* assignment : assignmentList_) assignment->ChangeNumJournals();
}

void Vtask::FitJournals() {
    JournaledObject::FitJournals();
    for (Vdependency* dependency : dependencyList_) dependency->FitJournals();
    for (Vassignment* assignment : assignmentList_) assignment->FitJournals();
}

void Vtask::Delete() {
    if (Vproject* subproject = Subproject()) subproject->SetParent(nullptr);
    if (!End(true)) Owner().FreeVobject(this);
}

}  // namespace vortan
