#include "model/Vproject.h"

#include <algorithm>
#include <limits>

#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Workspace.h"

namespace vortan {

const char* SolveRuleText(SolveRule rule) {
    static constexpr const char* kTexts[kSolveRules] = {"Normal only, halt if more needed",
                                                        "Normal only, extend if more needed",
                                                        "Normal and overtime, halt if more needed",
                                                        "Normal and overtime, extend if more needed",
                                                        "Up to 24 hours, halt if more needed",
                                                        "Up to 24 hours, extend if more needed",
                                                        "Unlimited hours per day"};
    if (rule < SolveRule::NormalHalt || rule > SolveRule::Unlimited)
        RefuseIn("Vproject:SolveRuleText", "Assertion failed");
    return kTexts[static_cast<int>(rule)];
}

Vproject::Vproject(Workspace& workspace) : JournalOwner(workspace) {
    Reset();
}

void Vproject::Reset() {
    Owner().FreeVlist(taskList_.TakeAll());
    SetProjectName("");
    description_.clear();
    viewPassword_.clear();
    modifyPassword_.clear();
    planIndex_ = 0;
    ResetJournals();
    ResetFields();
}

void Vproject::SetProjectName(const std::string& name) {
    if (name == projectName_) return;
    auto& list = Owner().ProjectList();
    std::string free = name;
    while (!free.empty() && list.Find(free)) Workspace::FixNameConflict(free);
    const bool joins = projectName_.empty();
    if (!joins) {
        Changing(*this, free.empty() ? ChangeKind::Left : ChangeKind::Refiled);
        list.Remove(projectName_);
    }
    projectName_ = free;
    if (!free.empty()) list.Add(this, free);
    if (joins) Changing(*this, ChangeKind::Joined);
}

void Vproject::SetPlanIndex(std::int32_t index) {
    const Section section("Vproject:PlanIndex [Property Let]");
    if (index < 0 || index >= std::max(NumJournals(), 1)) AssertionFailed();
    LetPlain(*this, planIndex_, index);
}

Vresource* Vproject::Manager() const {
    return manager_.At(CurrentIndex()).Get();
}

void Vproject::SetManager(Vresource* value) {
    LetField(*this, this, manager_, Link<Vresource>(value));
}

Vtask* Vproject::FindOrCreateTask(std::int32_t id) {
    if (Vtask* task = taskList_.Find(id)) return task;
    Vtask* task = Owner().NewVObject<Vtask>();
    task->SetProject(this);
    task->SetTaskID(id);
    task->SetDescription(kStub);
    return task;
}

std::int32_t Vproject::HighestTaskID() const {
    return taskList_.empty() ? 0 : taskList_[taskList_.size() - 1]->TaskID();
}

const Vproject* Vproject::Master() const {
    const Vproject* project = this;
    // A chain of parents longer than the list of projects runs in a circle.
    for (std::size_t steps = Owner().ProjectList().size() + 1; steps > 0; --steps) {
        const Vproject* parent = project->Parent();
        if (!parent) return project;
        project = parent;
    }
    return this;
}

bool Vproject::DescendsFrom(const Vproject* project) const {
    const Vproject* ancestor = this;
    for (std::size_t steps = Owner().ProjectList().size() + 1; ancestor && steps > 0; --steps) {
        if (ancestor == project) return true;
        ancestor = ancestor->Parent();
    }
    return false;
}

void Vproject::Delete() {
    for (Vproject* child : Owner().ProjectList()) {
        if (child->Parent() == this) Changing(*child, ChangeKind::Value);
    }
    SetProjectName("");
}

/// What the dates of a project derive from its tasks.
struct Vproject::Span {
    bool any = false;
    DateTime start, finish;
    double leastSlack = 0;  ///< days
};

Vproject::Span Vproject::SpanAt(std::int32_t journalIndex) const {
    Span span;
    for (const Vtask* task : taskList_) {
        if (!task->IncludeAt(journalIndex)) continue;
        const DateTime start = task->EarlyStartAt(journalIndex), finish = task->EarlyFinishAt(journalIndex);
        const double slack = DaysBetween(finish, task->LateFinishAt(journalIndex));
        span = span.any ? Span{true, std::min(span.start, start), std::max(span.finish, finish),
                               std::min(span.leastSlack, slack)}
                        : Span{true, start, finish, slack};
    }
    return span;
}

DateTime Vproject::EarlyStart() const {
    return EarlyStartAt(CurrentIndex());
}
DateTime Vproject::EarlyFinish() const {
    return EarlyFinishAt(CurrentIndex());
}
DateTime Vproject::LateStart() const {
    const Span span = SpanAt(CurrentIndex());
    return AddDays(span.start, span.leastSlack);
}
DateTime Vproject::LateFinish() const {
    const Span span = SpanAt(CurrentIndex());
    return AddDays(span.finish, span.leastSlack);
}
DateTime Vproject::EarlyStartAt(std::int32_t journalIndex) const {
    return SpanAt(journalIndex).start;
}
DateTime Vproject::EarlyFinishAt(std::int32_t journalIndex) const {
    return SpanAt(journalIndex).finish;
}

Money Vproject::LaborCost() const {
    Money sum;
    for (const Vtask* task : taskList_) {
        if (task->Include()) sum += task->LaborCost();
    }
    return sum;
}

Money Vproject::MaterialCost() const {
    Money sum;
    for (const Vtask* task : taskList_) {
        if (task->Include()) sum += task->MaterialCost();
    }
    return sum;
}

std::string Vproject::JournalNodeText(std::int32_t index) const {
    const std::string date = FormatDate(JournalDates().at(static_cast<std::size_t>(index)));
    if (index == planIndex_ && index == CurrentIndex()) return date + " [Plan only]";
    if (index == planIndex_) return date + " [Plan]";
    if (index == CurrentIndex()) return date + " [Current]";
    return date;
}

std::string Vproject::BuildNodeText() const {
    return description_.empty() ? projectName_ : projectName_ + ": " + description_;
}

void Vproject::ChangeNumJournals() {
    planIndex_ = std::min(planIndex_, NumJournals() - 1);
    ForEachField(ResizeField{NumJournals(), CurrentIndex()});
    for (Vtask* task : taskList_) task->ChangeNumJournals();
}

void Vproject::FitJournals() {
    planIndex_ = std::min(planIndex_, std::max(NumJournals() - 1, 0));
    ForEachField(FitField{NumJournals()});
    for (Vtask* task : taskList_) task->FitJournals();
}

}  // namespace vortan
