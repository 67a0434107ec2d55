#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "model/JournalOwner.h"
#include "model/Link.h"
#include "model/Money.h"
#include "model/NumberedList.h"

namespace vortan {

class Vresource;
class Vtask;

/// What a project's tasks may use beyond normal time, and what happens on a day that is short of it.
enum SolveRule : std::int32_t {
    kNormalHalt = 0,
    kNormalExtend = 1,
    kOvertimeHalt = 2,
    kOvertimeExtend = 3,
    kDayHalt = 4,  ///< up to 24 hours a day
    kDayExtend = 5,
    kUnlimited = 6,  ///< what does not fit counts as worked
};

/// The text of a solve rule, 0 to 6, as the entry screens list it. Out of range: Fault.
const char* SolveRuleText(std::int32_t rule);

/// A set of tasks with a name, a solve rule and a priority, in a row of dated journals.
class Vproject : public JournalOwner {
  public:
    static constexpr int kVtype = 4;

    explicit Vproject(Workspace& workspace);

    /// Returns all but `Dirty` to the defaults and frees the tasks.
    void Reset();

    const std::string& ProjectName() const { return projectName_; }
    /// Files the project under its new name. A name in use is altered until it is free (FixNameConflict).
    /// An empty name takes the project out of ProjectList.
    void SetProjectName(const std::string& name);
    const std::string& Description() const { return description_; }
    void SetDescription(const std::string& value) { description_ = value; }
    const std::string& ViewPassword() const { return viewPassword_; }
    void SetViewPassword(const std::string& value) { viewPassword_ = value; }
    const std::string& ModifyPassword() const { return modifyPassword_; }
    void SetModifyPassword(const std::string& value) { modifyPassword_ = value; }

    /// The journal that reports compare against.
    std::int32_t PlanIndex() const { return planIndex_; }
    /// Fault if there is no such journal.
    void SetPlanIndex(std::int32_t index);

    /// Solve order among projects: a text, compared as text.
    std::string Priority() const { return priority_.At(CurrentIndex()); }
    void SetPriority(const std::string& value) { LetField(priority_, value); }
    std::int32_t SolveRules() const { return solveRules_.At(CurrentIndex()); }
    void SetSolveRules(std::int32_t value) { LetField(solveRules_, static_cast<SolveRule>(value)); }
    /// The project that holds this one as a subproject.
    Vproject* Parent() const { return parent_.At(CurrentIndex()).Get(); }
    Vproject* ParentAt(std::int32_t journalIndex) const { return parent_.At(journalIndex).Get(); }
    void SetParent(Vproject* value) { LetField(parent_, Link<Vproject>(value)); }
    Vresource* Manager() const;
    void SetManager(Vresource* value);

    /// Ascending by TaskID.
    const NumberedList<Vtask>& TaskList() const { return taskList_; }
    /// A missing task is made as a stub, with the Description "<stub>".
    Vtask* FindOrCreateTask(std::int32_t id);
    Vtask* FindTask(std::int32_t id) const { return taskList_.Find(id); }
    /// Counts tasks that are not included in this journal too; 0 with no tasks.
    std::int32_t HighestTaskID() const;

    /// The outermost project; a project on a circle of parents is its own master.
    const Vproject* Master() const;
    Vproject* Master() { return const_cast<Vproject*>(std::as_const(*this).Master()); }
    /// Whether `project` is this project or stands on its chain of parents.
    bool DescendsFrom(const Vproject* project) const;
    Vproject* Project() { return this; }

    /// Over the tasks included in the active journal; date 0 with none.
    DateTime EarlyStart() const;
    DateTime EarlyFinish() const;
    DateTime LateStart() const;
    DateTime LateFinish() const;
    Money LaborCost() const;
    Money MaterialCost() const;
    /// As they stand in another journal.
    DateTime EarlyStartAt(std::int32_t journalIndex) const;
    DateTime EarlyFinishAt(std::int32_t journalIndex) const;

    /// The date of journal `index`, with a mark for the plan and the active journal.
    std::string JournalNodeText(std::int32_t index) const;
    std::string BuildNodeText() const;
    const std::string& Key() const { return projectName_; }
    std::string ImageType() const { return Parent() ? "s" : "p"; }
    std::string Tag() const { return ImageType() + Key(); }
    /// Takes the project out of ProjectList; the caller frees it.
    void Delete() { SetProjectName(""); }

    /// All stored fields behind the journal dates, in the order of the file.
    template <class Visitor>
    void ForEachField(Visitor&& visit) {
        visit("Priority", priority_);
        visit("SolveRules", solveRules_);
        visit("Parent", parent_);
        visit("Manager", manager_);
    }
    /// Used by a task that joins, leaves or changes its number.
    NumberedList<Vtask>& TaskListOfOwner() { return taskList_; }

    /// Index of this project in the network being built; means nothing outside of that.
    std::int32_t solveIndex = -1;

  protected:
    void ChangeNumJournals() override;
    void FitJournals() override;

  private:
    std::string projectName_, description_, viewPassword_, modifyPassword_;
    std::int32_t planIndex_ = 0;
    Journaled<std::string> priority_;
    Journaled<SolveRule> solveRules_;
    Journaled<Link<Vproject>> parent_;
    Journaled<Link<Vresource>> manager_;
    NumberedList<Vtask> taskList_;
};

}  // namespace vortan
