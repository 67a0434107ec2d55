#pragma once

#include <cstdint>
#include <string>

#include "model/JournaledObject.h"
#include "model/Link.h"
#include "model/Money.h"
#include "model/Vshift.h"
#include "model/Vtemplate.h"
#include "model/WorkDays.h"

namespace vortan {

/// A person or thing that can be booked for work: master data, rates per hour for each kind of time, the
/// shift and the days of the week. Its bookings belong to the solver.
class Vresource : public JournaledObject<Vresource> {
  public:
    static constexpr int kVtype = 5;

    explicit Vresource(Workspace& workspace) : JournaledObject(workspace) { Reset(); }

    void Reset();

    Vtemplate* Template() const { return template_; }
    const JournalOwner* Journals() const { return template_; }
    /// The template in memory that has the resource in its list, or none.
    JournalOwner* Holder() const { return resourceID_ != 0 && template_ ? template_->Holder() : nullptr; }
    /// Set before the ResourceID. Also takes the template's first shift; in a later journal, the resource
    /// does not exist in the earlier ones.
    void SetTemplate(Vtemplate* value);
    std::int32_t ResourceID() const { return resourceID_; }
    /// Files the resource under its number; 0 takes it out of its template. Fault if the number is in use.
    void SetResourceID(std::int32_t id);
    const std::string& Description() const { return description_; }
    bool IsStub() const { return description_ == kStub; }
    void SetDescription(const std::string& value) { LetPlain(*this, description_, value); }

    std::string Department() const { return department_.At(Index()); }
    /// Trimmed; an empty one becomes "None".
    void SetDepartment(const std::string& value);
    std::string Title() const { return title_.At(Index()); }
    void SetTitle(const std::string& value) { Let(title_, value); }
    /// Rate of normal time.
    Money BurdenedRate() const { return burdenedRate_.At(Index()); }
    void SetBurdenedRate(Money value) { Let(burdenedRate_, value); }
    Money OvertimeRate() const { return overtimeRate_.At(Index()); }
    void SetOvertimeRate(Money value) { Let(overtimeRate_, value); }
    /// Rate of normal-shift time on a day that is not a work day of the resource.
    Money OffDayRate() const { return offDayRate_.At(Index()); }
    void SetOffDayRate(Money value) { Let(offDayRate_, value); }
    /// Rate of time outside normal time and overtime.
    Money HolidayRate() const { return holidayRate_.At(Index()); }
    void SetHolidayRate(Money value) { Let(holidayRate_, value); }
    Vshift* Shift() const { return shift_.At(Index()).Get(); }
    void SetShift(Vshift* value) { Let(shift_, Link<Vshift>(value)); }
    bool WorkDay(int day) const { return workDays_.Field(day).At(Index()); }
    void SetWorkDay(int day, bool value) { Let(workDays_.Field(day), value); }

    /// The shift's normal hours; 0 without a shift.
    float NormalHours() const { return Shift() ? Shift()->NormalHours() : 0; }

    std::string Key() const { return std::to_string(resourceID_); }
    static std::string ImageType() { return "r"; }
    std::string Tag() const { return ImageType() + Key(); }
    std::string BuildNodeText() const;
    /// Ends the resource from the active journal on; one that was never changed ends in all. It stays in
    /// the ResourceList.
    void Delete();

  private:
    friend class FieldList<Vresource>;
    friend class History;
    friend class Network;

    /// Behind the ResourceID.
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("Description", self.description_, std::string());
        visit("Include", self.include_, true);
        visit("Department", self.department_, std::string("None"));
        visit("Title", self.title_, std::string());
        visit("BurdenedRate", self.burdenedRate_, Money());
        visit("OvertimeRate", self.overtimeRate_, Money());
        visit("OffDayRate", self.offDayRate_, Money());
        visit("HolidayRate", self.holidayRate_, Money());
        visit("Shift", self.shift_, Link<Vshift>());
        WorkDays::Fields(self.workDays_, visit);
    }

    std::int32_t solveIndex_ = -1;  ///< in the network made last; means nothing outside of it
    std::int32_t resourceID_ = 0;
    Vtemplate* template_ = nullptr;
    std::string description_;
    Journaled<std::string> department_, title_;
    Journaled<Money> burdenedRate_, overtimeRate_, offDayRate_, holidayRate_;
    Journaled<Link<Vshift>> shift_;
    WorkDays workDays_;
};

}  // namespace vortan
