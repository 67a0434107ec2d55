#pragma once

#include <cstdint>
#include <string>

#include "model/JournaledObject.h"
#include "model/Vtask.h"

namespace vortan {

/// A rule of one task: it cannot reach `ToPercent` of itself until `FromPercent` of another task is reached,
/// or, without another task, until a date; `Offset` calendar days later (or earlier).
class Vdependency : public JournaledObject<Vdependency> {
  public:
    static constexpr int kVtype = 2;

    explicit Vdependency(Workspace& workspace) : JournaledObject(workspace) { Reset(); }

    void Reset();

    /// The task that depends.
    Vtask* Task() const { return myTask_; }
    /// Joins that task's DependencyList. In a later journal, it does not exist in the earlier ones.
    void SetTask(Vtask* task);
    Vproject* Project() const { return myTask_ ? myTask_->Project() : nullptr; }
    const JournalOwner* Journals() const { return Project(); }
    /// The project in memory that the task is part of, or none.
    JournalOwner* Holder() const { return myTask_ ? myTask_->Holder() : nullptr; }

    /// Without a TaskRequired the date that controls the task, with one the date that the solve found.
    DateTime DepDate() const { return depDate_.At(Index()); }
    void SetDepDate(DateTime value) { Let(depDate_, value); }
    /// Writes the date that a solve found, which is no change of the plan.
    void SetFoundDate(DateTime value) { LetResult(depDate_, value); }
    /// The prerequisite, which may be in another project; none for a date dependency and for a deleted task.
    Vtask* TaskRequired() const { return taskRequired_.At(Index()).Get(); }
    void SetTaskRequired(Vtask* value) { Let(taskRequired_, Link<Vtask>(value)); }
    /// Whether there was a prerequisite that has been deleted.
    bool TaskRequiredDeleted() const { return taskRequired_.At(Index()).IsDeleted(); }
    std::uint8_t FromPercent() const { return fromPercent_.At(Index()); }
    void SetFromPercent(std::uint8_t value) { Let(fromPercent_, value); }
    std::uint8_t ToPercent() const { return toPercent_.At(Index()); }
    void SetToPercent(std::uint8_t value) { Let(toPercent_, value); }
    double Offset() const { return offset_.At(Index()); }
    void SetOffset(double value) { Let(offset_, value); }

    /// The stored terms but for the date, all read at once.
    struct Terms {
        Link<Vtask> taskRequired;
        double offset;
        std::uint8_t fromPercent, toPercent;
    };
    Terms TermsNow() const {
        const std::int32_t index = Index();
        return {taskRequired_.At(index), offset_.At(index), fromPercent_.At(index), toPercent_.At(index)};
    }

    /// Unique in the running program; not stored.
    std::string Key() const { return std::to_string(Id()); }
    static std::string ImageType() { return "d"; }
    std::string Tag() const { return ImageType() + Key(); }
    std::string BuildNodeText() const;
    /// Ends the dependency from the journal in force on; one that was never changed ends in all. When no
    /// journal holds it any more it goes back to the pool.
    void Delete();

  private:
    friend class FieldList<Vdependency>;
    friend class History;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("Include", self.include_, true);
        visit("DepDate", self.depDate_, DateTime());
        visit("TaskRequired", self.taskRequired_, Link<Vtask>());
        visit("FromPercent", self.fromPercent_, 100);
        visit("ToPercent", self.toPercent_, 0);
        visit("Offset", self.offset_, 0);
    }

    Vtask* myTask_ = nullptr;
    Journaled<DateTime> depDate_;
    Journaled<Link<Vtask>> taskRequired_;
    Journaled<std::uint8_t> fromPercent_, toPercent_;
    Journaled<double> offset_;
};

}  // namespace vortan
