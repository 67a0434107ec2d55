#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "model/Change.h"
#include "model/FieldList.h"
#include "model/VObject.h"
#include "model/ValueText.h"

namespace vortan {

class JournalOwner;
class Vtemplate;

/// The working day of a template: for each five-minute period of 24 hours one letter for its kind of time
/// (N normal, O overtime, B break, X overload; any other letter counts as X), and four rate multipliers that
/// are stored and edited with it. A shift is the same in all journals.
class Vshift : public VObject, public FieldList<Vshift> {
  public:
    static constexpr int kVtype = 6;
    static constexpr int kHours = 24;
    static constexpr int kPeriodsPerHour = 12;

    explicit Vshift(Workspace& workspace) : VObject(workspace) { Reset(); }

    /// Leaves the default day: normal from 8 to 12 and 13 to 17, a break at noon, overtime from 17 to 21.
    void Reset();

    Vtemplate* Template() const { return template_; }
    /// Set before the name, which files the shift in the template's ShiftList.
    void SetTemplate(Vtemplate* value) { template_ = value; }
    /// The template in memory that has the shift in its list, or none.
    JournalOwner* Holder() const;

    const std::string& ShiftName() const { return shiftName_; }
    /// Files the shift under its new name. Fault if another shift of the template has it. An empty name
    /// takes the shift out of its template.
    void SetShiftName(const std::string& name);

    /// The name that it had before it was taken out of its template. Resources may still work it, so a file
    /// keeps it, under this name.
    const std::string& FormerName() const { return formerName_; }

    /// The letters of one hour, 12 of them as a rule. `hour` outside 0 to 23: Fault.
    const std::string& Matrix(int hour) const;
    void SetMatrix(int hour, const std::string& letters);
    /// The kind of time of period 0 to 287: one of N, O, B, X.
    char Period(int period) const;

    float BurdenedMultiplier() const { return burdenedMultiplier_; }
    void SetBurdenedMultiplier(float value) { LetPlain(*this, burdenedMultiplier_, value); }
    float OvertimeMultiplier() const { return overtimeMultiplier_; }
    void SetOvertimeMultiplier(float value) { LetPlain(*this, overtimeMultiplier_, value); }
    float OffDayMultiplier() const { return offDayMultiplier_; }
    void SetOffDayMultiplier(float value) { LetPlain(*this, offDayMultiplier_, value); }
    const std::string& HolidayMultiplier() const { return holidayMultiplier_; }
    void SetHolidayMultiplier(const std::string& value) { LetPlain(*this, holidayMultiplier_, value); }

    /// Hours of normal time a day, rounded to tenths.
    float NormalHours() const;

    const std::string& Key() const { return shiftName_; }
    const std::string& BuildNodeText() const { return shiftName_; }
    static std::string ImageType() { return "h"; }
    std::string Tag() const { return ImageType() + Key(); }
    /// Takes the shift out of its template. Resources that use it keep it, so it is not to be freed.
    void Delete() { SetShiftName(""); }

  private:
    friend class FieldList<Vshift>;
    friend class History;

    /// Behind the name. Normal from 8 to 12 and 13 to 17, a break at noon, overtime from 17 to 21.
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("BurdenedMultiplier", self.burdenedMultiplier_, 1.5F);
        visit("OvertimeMultiplier", self.overtimeMultiplier_, 1.5F);
        visit("OffDayMultiplier", self.offDayMultiplier_, 2.0F);
        visit("HolidayMultiplier", self.holidayMultiplier_, "3");
        for (int hour = 0; hour < kHours; ++hour) {
            const bool normal = (hour >= 8 && hour <= 11) || (hour >= 13 && hour <= 16);
            const bool overtime = hour >= 17 && hour <= 20;
            const char letter = normal ? 'N' : overtime ? 'O' : hour == 12 ? 'B' : 'X';
            visit(HourName(hour, true).c_str(), self.matrix_[static_cast<std::size_t>(hour)],
                  std::string(kPeriodsPerHour, letter));
        }
    }

    float burdenedMultiplier_, overtimeMultiplier_, offDayMultiplier_;
    std::string holidayMultiplier_;
    Vtemplate* template_ = nullptr;
    std::string shiftName_, formerName_;
    std::array<std::string, kHours> matrix_;
};

}  // namespace vortan
