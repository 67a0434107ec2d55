#include "model/Vshift.h"

#include <algorithm>
#include <cmath>

#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/Vtemplate.h"

namespace vortan {

void Vshift::Reset() {
    SetShiftName("");
    formerName_.clear();
    burdenedMultiplier_ = 1.5F;
    overtimeMultiplier_ = 1.5F;
    offDayMultiplier_ = 2;
    holidayMultiplier_ = "3";
    for (int hour = 0; hour < kHours; ++hour) {
        const bool normal = (hour >= 8 && hour <= 11) || (hour >= 13 && hour <= 16);
        const bool overtime = hour >= 17 && hour <= 20;
        const char letter = normal ? 'N' : overtime ? 'O' : hour == 12 ? 'B' : 'X';
        matrix_[static_cast<std::size_t>(hour)].assign(kPeriodsPerHour, letter);
    }
}

void Vshift::SetShiftName(const std::string& name) {
    const Section section("Vshift:ShiftName [Property Let]");
    if (name == shiftName_ && !name.empty()) return;
    if (!name.empty() && template_ && template_->ShiftList().Find(name)) {
        Refuse("The Shift name \"" + name + "\" is already in use.");
    }
    if (template_ && !shiftName_.empty()) template_->ShiftListOfOwner().Remove(shiftName_);
    if (name.empty() && !shiftName_.empty()) formerName_ = shiftName_;
    shiftName_ = name;
    if (name.empty()) {
        template_ = nullptr;
    } else if (template_) {
        template_->ShiftListOfOwner().Add(this, name);
    }
}

const std::string& Vshift::Matrix(int hour) const {
    if (hour < 0 || hour >= kHours) {
        RefuseIn("Vshift:Matrix [Property Get]", "There is no hour " + std::to_string(hour) + " in a shift");
    }
    return matrix_[static_cast<std::size_t>(hour)];
}

void Vshift::SetMatrix(int hour, const std::string& letters) {
    const_cast<std::string&>(Matrix(hour)) = letters;
}

char Vshift::Period(int period) const {
    const std::string& row = Matrix(period / kPeriodsPerHour);
    const auto column = static_cast<std::size_t>(period % kPeriodsPerHour);
    const char letter = column < row.size() ? row[column] : 'X';
    return letter == 'N' || letter == 'O' || letter == 'B' ? letter : 'X';
}

float Vshift::NormalHours() const {
    std::ptrdiff_t normal = 0;
    for (const std::string& row : matrix_) normal += std::count(row.begin(), row.end(), 'N');
    return static_cast<float>(std::floor((static_cast<double>(normal) + 0.6) / 1.2) / 10);
}

}  // namespace vortan
