#pragma once

#include <cstdint>
#include <string>

#include "model/Link.h"
#include "model/Money.h"
#include "model/Vshift.h"
#include "model/Vtemplate.h"
#include "model/WorkDays.h"

namespace vortan {

/// A person or thing that can be booked for work: master data, rates per hour for each kind of time, the
/// shift and the days of the week. Its bookings belong to the solver.
class Vresource : public VObject {
  public:
    static constexpr int kVtype = 5;

    explicit Vresource(Workspace& workspace) : VObject(workspace) { Reset(); }

    void Reset();

    Vtemplate* Template() const { return template_; }
    /// Set before the ResourceID. Also takes the template's first shift; in a later journal, the resource
    /// does not exist in the earlier ones.
    void SetTemplate(Vtemplate* value);
    std::int32_t ResourceID() const { return resourceID_; }
    /// Files the resource under its number; 0 takes it out of its template. Fault if the number is in use.
    void SetResourceID(std::int32_t id);
    const std::string& Description() const { return description_; }
    void SetDescription(const std::string& value) { description_ = value; }

    bool Include() const { return include_.At(Index()); }
    void SetInclude(bool value) { Let(include_, value); }
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
    void ChangeNumJournals();
    void FitJournals();
    /// Ends the resource from the active journal on; one that was never changed ends in all. It stays in
    /// the ResourceList.
    void Delete();

    /// All stored fields behind the ResourceID, in the order of the file.
    template <class Visitor>
    void ForEachField(Visitor&& visit) {
        visit("Description", description_);
        visit("Include", include_);
        visit("Department", department_);
        visit("Title", title_);
        visit("BurdenedRate", burdenedRate_);
        visit("OvertimeRate", overtimeRate_);
        visit("OffDayRate", offDayRate_);
        visit("HolidayRate", holidayRate_);
        visit("Shift", shift_);
        workDays_.ForEachField(visit);
    }

  private:
    friend class Network;

    std::int32_t Index() const { return template_ ? template_->CurrentIndex() : 0; }
    template <class Field, class T>
    void Let(Field& field, T value) {
        if (template_) {
            template_->LetField(field, value);
        } else {
            field.SetSingle(value);
        }
    }

    std::int32_t solveIndex_ = -1;  ///< in the network made last; means nothing outside of it
    std::int32_t resourceID_ = 0;
    Vtemplate* template_ = nullptr;
    std::string description_;
    JournaledInclude include_;
    Journaled<std::string> department_, title_;
    Journaled<Money> burdenedRate_, overtimeRate_, offDayRate_, holidayRate_;
    Journaled<Link<Vshift>> shift_;
    WorkDays workDays_;
};

}  // namespace vortan
