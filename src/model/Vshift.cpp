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
    ResetFields();
}

JournalOwner* Vshift::Holder() const {
    return template_ && !shiftName_.empty() ? template_->Holder() : nullptr;
}

void Vshift::SetShiftName(const std::string& name) {
    const Section section("Vshift:ShiftName [Property Let]");
    if (name == shiftName_ && !name.empty()) return;
    if (!name.empty() && template_ && template_->ShiftList().Find(name)) {
        Refuse("The Shift name \"" + name + "\" is already in use.");
    }
    const bool joins = shiftName_.empty();
    if (template_ && !joins) {
        Changing(*this, name.empty() ? ChangeKind::Left : ChangeKind::Refiled);
        template_->shiftList_.Remove(shiftName_);
    }
    if (name.empty() && !shiftName_.empty()) formerName_ = shiftName_;
    shiftName_ = name;
    if (name.empty()) {
        template_ = nullptr;
    } else if (template_) {
        template_->shiftList_.Add(this, name);
        if (joins) Changing(*this, ChangeKind::Joined);
    }
}

const std::string& Vshift::Matrix(int hour) const {
    if (hour < 0 || hour >= kHours) {
        RefuseIn("Vshift:Matrix [Property Get]", "There is no hour " + std::to_string(hour) + " in a shift");
    }
    return matrix_[static_cast<std::size_t>(hour)];
}

void Vshift::SetMatrix(int hour, const std::string& letters) {
    Matrix(hour);  // which refuses an hour that there is not
    LetPlain(*this, matrix_[static_cast<std::size_t>(hour)], letters);
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
