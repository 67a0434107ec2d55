#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "model/FieldList.h"
#include "model/JournalOwner.h"
#include "model/Link.h"
#include "model/Money.h"
#include "model/NumberedList.h"

namespace vortan {

class Vresource;
class Vtask;

/// What a project's tasks may use beyond normal time, and what happens on a day that is short of it. The
/// numbers are those of the files.
enum class SolveRule : std::int32_t {
    NormalHalt = 0,
    NormalExtend = 1,
    OvertimeHalt = 2,
    OvertimeExtend = 3,
    DayHalt = 4,  ///< up to 24 hours a day
    DayExtend = 5,
    Unlimited = 6,  ///< what does not fit counts as worked
};
constexpr int kSolveRules = 7;

/// What of a day may be drawn on, each including the one before.
enum class Reach : std::uint8_t { NormalTime = 0, Overtime = 1, WholeDay = 2 };
constexpr Reach ReachOf(SolveRule rule) {
    return rule <= SolveRule::NormalExtend     ? Reach::NormalTime
           : rule <= SolveRule::OvertimeExtend ? Reach::Overtime
                                               : Reach::WholeDay;
}
/// Whether the solve halts on a day that is short because of another task.
constexpr bool Halts(SolveRule rule) {
    return rule == SolveRule::NormalHalt || rule == SolveRule::OvertimeHalt || rule == SolveRule::DayHalt;
}

/// The text of a solve rule as the entry screens list it. Out of range: Fault.
const char* SolveRuleText(SolveRule rule);

/// A set of tasks with a name, a solve rule and a priority, in a row of dated journals.
class Vproject : public JournalOwner, public FieldList<Vproject> {
  public:
    static constexpr int kVtype = 4;

    explicit Vproject(Workspace& workspace);

    /// Returns all but `Dirty` to the defaults and frees the tasks.
    void Reset();

    /// The project itself, as long as it is in ProjectList.
    JournalOwner* Holder() { return projectName_.empty() ? nullptr : this; }

    const std::string& ProjectName() const { return projectName_; }
    /// Files the project under its new name. A name in use is altered until it is free (FixNameConflict).
    /// An empty name takes the project out of ProjectList.
    void SetProjectName(const std::string& name);
    const std::string& Description() const { return description_; }
    void SetDescription(const std::string& value) { LetPlain(*this, description_, value); }
    const std::string& ViewPassword() const { return viewPassword_; }
    void SetViewPassword(const std::string& value) { LetPlain(*this, viewPassword_, value); }
    const std::string& ModifyPassword() const { return modifyPassword_; }
    void SetModifyPassword(const std::string& value) { LetPlain(*this, modifyPassword_, value); }

    /// The journal that reports compare against.
    std::int32_t PlanIndex() const { return planIndex_; }
    /// Fault if there is no such journal.
    void SetPlanIndex(std::int32_t index);

    /// Solve order among projects: a text, compared as text.
    std::string Priority() const { return priority_.At(CurrentIndex()); }
    void SetPriority(const std::string& value) { LetField(*this, this, priority_, value); }
    SolveRule SolveRules() const { return solveRules_.At(CurrentIndex()); }
    void SetSolveRules(SolveRule value) { LetField(*this, this, solveRules_, value); }
    /// The project that holds this one as a subproject.
    Vproject* Parent() const { return parent_.At(CurrentIndex()).Get(); }
    Vproject* ParentAt(std::int32_t journalIndex) const { return parent_.At(journalIndex).Get(); }
    void SetParent(Vproject* value) { LetField(*this, this, parent_, Link<Vproject>(value)); }
    Vresource* Manager() const;
    void SetManager(Vresource* value);

    /// Ascending by TaskID.
    const NumberedList<Vtask>& TaskList() const { return taskList_; }
    /// Whether the project was mentioned, by a link in a file, and never described.
    bool IsStub() const { return description_ == kStub; }
    /// A missing task is made as a stub.
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
    /// Takes the project out of ProjectList; the caller frees it. Its subprojects, which have no parent then,
    /// count as changed.
    void Delete();

  protected:
    void JournalsChanging() override { Changing(*this, ChangeKind::Journals); }
    void ChangeNumJournals() override;
    void FitJournals() override;

  private:
    friend class FieldList<Vproject>;
    friend class History;
    friend class Network;
    friend class Vtask;

    /// Behind the journal dates.
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("Priority", self.priority_, std::string("1"));
        visit("SolveRules", self.solveRules_, SolveRule::NormalHalt);
        visit("Parent", self.parent_, Link<Vproject>());
        visit("Manager", self.manager_, Link<Vresource>());
    }
    struct Span;
    Span SpanAt(std::int32_t journalIndex) const;

    std::int32_t solveIndex_ = -1;  ///< in the network made last; means nothing outside of it
    std::string projectName_, description_, viewPassword_, modifyPassword_;
    std::int32_t planIndex_ = 0;
    Journaled<std::string> priority_;
    Journaled<SolveRule> solveRules_;
    Journaled<Link<Vproject>> parent_;
    Journaled<Link<Vresource>> manager_;
    NumberedList<Vtask> taskList_;
};

}  // namespace vortan
