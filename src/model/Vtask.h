#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/JournaledObject.h"
#include "model/Vproject.h"

namespace vortan {

class Vassignment;
class Vdependency;

/// One activity of a project: an amount of work, or a stretch of calendar time, with dependencies that say
/// when and assignments that say who. Estimates are minutes for the whole task. A task with a Subproject
/// stands for that project. Results of the solve are written back into the same record.
class alignas(64) Vtask : public JournaledObject<Vtask> {
  public:
    static constexpr int kVtype = 9;

    explicit Vtask(Workspace& workspace) : JournaledObject(workspace) { Reset(); }

    /// Frees dependencies and assignments, leaves the project, restores the defaults.
    void Reset();

    Vproject* Project() const { return project_; }
    const JournalOwner* Journals() const { return project_; }
    /// The project in memory that has the task in its list, or none.
    JournalOwner* Holder() const { return taskID_ != 0 && project_ ? project_->Holder() : nullptr; }
    /// Set before the TaskID. In a later journal, the task does not exist in the earlier ones.
    void SetProject(Vproject* project);
    std::int32_t TaskID() const { return taskID_; }
    /// Files the task under its number; 0 takes it out of its project. Fault if the number is in use.
    void SetTaskID(std::int32_t id);
    /// The project that this task stands for, or none.
    Vproject* Subproject() const { return subproject_.Get(); }
    /// Also makes this task's project the parent of `project`, if there is one.
    void SetSubproject(Vproject* project);

    const std::string& Description() const { return description_; }
    bool IsStub() const { return description_ == kStub; }
    void SetDescription(const std::string& value) { LetPlain(*this, description_, value); }

    /// Kind and unit of the estimates: negative is effort, positive calendar time, the magnitude the minutes
    /// per unit; 0 has no estimate, its dates come from dependencies.
    std::int32_t EffortUnits() const { return effortUnits_.At(Index()); }
    std::int32_t EffortUnitsAt(std::int32_t journalIndex) const { return effortUnits_.At(journalIndex); }
    void SetEffortUnits(std::int32_t value) { Let(effortUnits_, value); }
    std::int32_t Optimistic() const { return optimistic_.At(Index()); }
    std::int32_t OptimisticAt(std::int32_t journalIndex) const { return optimistic_.At(journalIndex); }
    void SetOptimistic(std::int32_t value) { Let(optimistic_, value); }
    std::int32_t MostLikely() const { return mostLikely_.At(Index()); }
    std::int32_t MostLikelyAt(std::int32_t journalIndex) const { return mostLikely_.At(journalIndex); }
    void SetMostLikely(std::int32_t value) { Let(mostLikely_, value); }
    std::int32_t Pessimistic() const { return pessimistic_.At(Index()); }
    std::int32_t PessimisticAt(std::int32_t journalIndex) const { return pessimistic_.At(journalIndex); }
    void SetPessimistic(std::int32_t value) { Let(pessimistic_, value); }
    /// How well a larger team scales, between 0 and 1.
    double Efficiency() const { return efficiency_.At(Index()); }
    void SetEfficiency(double value) { Let(efficiency_, value); }
    Money MaterialCost() const { return materialCost_.At(Index()); }
    Money MaterialCostAt(std::int32_t journalIndex) const { return materialCost_.At(journalIndex); }
    void SetMaterialCost(Money value) { Let(materialCost_, value); }

    // What a solve finds. To write it is no change of the plan.
    /// The material cost of a task that stands for a subproject.
    void SetSubprojectCost(Money value) { LetResult(materialCost_, value); }
    Money LaborCost() const { return laborCost_.At(Index()); }
    Money LaborCostAt(std::int32_t journalIndex) const { return laborCost_.At(journalIndex); }
    void SetLaborCost(Money value) { LetResult(laborCost_, value); }
    DateTime EarlyStart() const { return earlyStart_.At(Index()); }
    DateTime EarlyStartAt(std::int32_t journalIndex) const { return earlyStart_.At(journalIndex); }
    void SetEarlyStart(DateTime value) { LetResult(earlyStart_, value); }
    DateTime EarlyFinish() const { return earlyFinish_.At(Index()); }
    DateTime EarlyFinishAt(std::int32_t journalIndex) const { return earlyFinish_.At(journalIndex); }
    void SetEarlyFinish(DateTime value) { LetResult(earlyFinish_, value); }
    DateTime LateStart() const { return lateStart_.At(Index()); }
    DateTime LateStartAt(std::int32_t journalIndex) const { return lateStart_.At(journalIndex); }
    void SetLateStart(DateTime value) { LetResult(lateStart_, value); }
    DateTime LateFinish() const { return lateFinish_.At(Index()); }
    DateTime LateFinishAt(std::int32_t journalIndex) const { return lateFinish_.At(journalIndex); }
    void SetLateFinish(DateTime value) { LetResult(lateFinish_, value); }

    /// In order of creation.
    const std::vector<Vdependency*>& DependencyList() const { return dependencyList_; }
    const std::vector<Vassignment*>& AssignmentList() const { return assignmentList_; }

    /// Minutes worked on the days of `start` to `finish`, over the distinct resources of the included
    /// assignments. 0 without a project or a solver.
    std::int32_t EffortMinutes(DateTime start, DateTime finish) const;
    /// The dependency that decides when the task starts, or none.
    Vdependency* ControlDependency() const;

    std::string Key() const { return std::to_string(taskID_); }
    std::string ImageType() const { return Subproject() ? "s" : "t"; }
    std::string Tag() const { return ImageType() + Key(); }
    std::string BuildNodeText() const;
    void ChangeNumJournals();
    void FitJournals();
    /// Ends the task from the journal in force on. When no earlier journal holds it either, it leaves the
    /// project and goes back to the pool: the pointer is not to be used afterwards.
    void Delete();

  private:
    friend class FieldList<Vtask>;
    friend class History;
    friend class Network;
    friend class Vdependency;
    friend class Vassignment;

    /// Behind the TaskID.
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("Subproject", self.subproject_, Link<Vproject>());
        visit("Description", self.description_, std::string());
        visit("Include", self.include_, true);
        visit("EffortUnits", self.effortUnits_, -60);
        visit("Optimistic", self.optimistic_, 0);
        visit("MostLikely", self.mostLikely_, 0);
        visit("Pessimistic", self.pessimistic_, 0);
        visit("Efficiency", self.efficiency_, 0.85);
        visit("MaterialCost", self.materialCost_, Money());
        visit("LaborCost", self.laborCost_, Money());
        visit("EarlyStart", self.earlyStart_, DateTime());
        visit("EarlyFinish", self.earlyFinish_, DateTime());
        visit("LateStart", self.lateStart_, DateTime());
        visit("LateFinish", self.lateFinish_, DateTime());
    }

    // What a dependency of another task asks of this one shares a cache line.
    std::int32_t taskID_ = 0;
    std::int32_t solveIndex_ = -1;  ///< in the network made last; means nothing outside of it
    Vproject* project_ = nullptr;
    Link<Vproject> subproject_;
    std::vector<Vdependency*> dependencyList_;
    std::vector<Vassignment*> assignmentList_;
    Journaled<std::int32_t> effortUnits_, optimistic_, mostLikely_, pessimistic_;
    Journaled<double> efficiency_;
    Journaled<Money> materialCost_, laborCost_;
    Journaled<DateTime> earlyStart_, earlyFinish_, lateStart_, lateFinish_;
    std::string description_;
};

}  // namespace vortan
