#include "model/Vresource.h"

#include <algorithm>

#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/Workspace.h"

namespace vortan {

void Vresource::Reset() {
    SetResourceID(0);
    template_ = nullptr;
    description_.clear();
    include_.SetSingle(true);
    department_.SetSingle("None");
    title_.SetSingle("");
    burdenedRate_.SetSingle({});
    overtimeRate_.SetSingle({});
    offDayRate_.SetSingle({});
    holidayRate_.SetSingle({});
    shift_.SetSingle({});
    workDays_.Reset();
    solveIndex_ = -1;
}

void Vresource::SetTemplate(Vtemplate* value) {
    template_ = value;
    if (!value) return;
    if (value->CurrentIndex() > 0) include_.StartAt(value->CurrentIndex(), value->NumJournals());
    SetShift(value->ShiftList().empty() ? nullptr : value->ShiftList()[0]);
}

void Vresource::SetResourceID(std::int32_t id) {
    const Section section("Vresource:ResourceID [Property Let]");
    if (id == 0) {
        if (template_ && resourceID_ != 0) template_->ResourceListOfOwner().Remove(resourceID_);
        template_ = nullptr;
        resourceID_ = 0;
        return;
    }
    if (id == resourceID_) return;
    if (!template_) AssertionFailed();
    if (template_->FindResource(id)) Refuse("The Resource ID " + std::to_string(id) + " is already in use.");
    if (resourceID_ != 0) template_->ResourceListOfOwner().Remove(resourceID_);
    resourceID_ = id;
    template_->ResourceListOfOwner().Add(this, id);
}

void Vresource::SetDepartment(const std::string& value) {
    const auto first = value.find_first_not_of(' ');
    const std::string trimmed =
        first == std::string::npos ? "" : value.substr(first, value.find_last_not_of(' ') - first + 1);
    Let(department_, trimmed.empty() ? std::string("None") : trimmed);
}

std::string Vresource::BuildNodeText() const {
    return description_.empty() ? Key() : Key() + ": " + description_;
}

void Vresource::ChangeNumJournals() {
    if (template_) ForEachField(ResizeField{template_->NumJournals(), template_->CurrentIndex()});
}

void Vresource::FitJournals() {
    if (template_) ForEachField(FitField{template_->NumJournals()});
}

void Vresource::Delete() {
    const std::int32_t count = template_ ? template_->NumJournals() : 0;
    include_.EndAt(Index(), count, false);
}

}  // namespace vortan
