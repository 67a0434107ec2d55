#pragma once

#include <cstdint>
#include <string>

#include "model/JournaledObject.h"
#include "model/Link.h"
#include "model/Vtask.h"
#include "model/WorkDays.h"

namespace vortan {

class Vresource;

/// Ties a resource to a task for `Hours` a day on chosen days of the week.
class Vassignment : public JournaledObject<Vassignment> {
  public:
    static constexpr int kVtype = 1;

    explicit Vassignment(Workspace& workspace) : JournaledObject(workspace) { Reset(); }

    void Reset();

    Vtask* Task() const { return myTask_; }
    /// Joins that task's AssignmentList. In a later journal, it does not exist in the earlier ones.
    void SetTask(Vtask* task);
    Vproject* Project() const { return myTask_ ? myTask_->Project() : nullptr; }
    const JournalOwner* Journals() const { return Project(); }
    /// The project in memory that the task is part of, or none.
    JournalOwner* Holder() const { return myTask_ ? myTask_->Holder() : nullptr; }

    Vresource* ResourceRequired() const;
    /// With a project, also takes over the resource's normal hours and work days.
    void SetResourceRequired(Vresource* value);
    /// Hours of the resource per working day of the assignment.
    double Hours() const { return hours_.At(Index()); }
    void SetHours(double value) { Let(hours_, value); }
    /// `day` is 0 Holiday, 1 Sunday to 7 Saturday, 8 Shutdown.
    bool WorkDay(int day) const { return workDays_.Field(day).At(Index()); }
    /// The weekdays it works on in the journal in force: bit 0 Sunday to 6 Saturday.
    unsigned WeekdaysNow() const { return workDays_.WeekdaysAt(Index()); }
    void SetWorkDay(int day, bool value) { Let(workDays_.Field(day), value); }

    /// Share of the resource's normal week that the assignment takes; 0 for a resource without one.
    float PercentOfWeek() const;

    /// Unique in the running program; not stored.
    std::string Key() const { return std::to_string(Id()); }
    static std::string ImageType() { return "a"; }
    std::string Tag() const { return ImageType() + Key(); }
    std::string BuildNodeText() const;
    /// As Vdependency::Delete.
    void Delete();

  private:
    friend class FieldList<Vassignment>;
    friend class History;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("Include", self.include_, true);
        visit("ResourceRequired", self.resourceRequired_, Link<Vresource>());
        visit("Hours", self.hours_, 0);
        WorkDays::Fields(self.workDays_, visit);
    }

    Vtask* myTask_ = nullptr;
    Journaled<Link<Vresource>> resourceRequired_;
    Journaled<double> hours_;
    WorkDays workDays_;
};

}  // namespace vortan
