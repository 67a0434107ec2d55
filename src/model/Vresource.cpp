#include "model/Vresource.h"

#include <algorithm>

#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/Workspace.h"

namespace vortan {

void Vresource::Reset() {
    SetResourceID(0);
    template_ = nullptr;
    ResetFields();
    solveIndex_ = -1;
}

void Vresource::SetTemplate(Vtemplate* value) {
    template_ = value;
    if (!value) return;
    Begin();
    SetShift(value->ShiftList().empty() ? nullptr : value->ShiftList()[0]);
}

void Vresource::SetResourceID(std::int32_t id) {
    const Section section("Vresource:ResourceID [Property Let]");
    if (id == 0) {
        if (template_ && resourceID_ != 0) {
            Changing(*this, ChangeKind::Left);
            template_->resourceList_.Remove(resourceID_);
        }
        template_ = nullptr;
        resourceID_ = 0;
        return;
    }
    if (id == resourceID_) return;
    if (!template_) AssertionFailed();
    if (template_->FindResource(id)) Refuse("The Resource ID " + std::to_string(id) + " is already in use.");
    const bool joins = resourceID_ == 0;
    if (!joins) {
        Changing(*this, ChangeKind::Refiled);
        template_->resourceList_.Remove(resourceID_);
    }
    resourceID_ = id;
    template_->resourceList_.Add(this, id);
    if (joins) Changing(*this, ChangeKind::Joined);
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

void Vresource::Delete() {
    End(false);
}

}  // namespace vortan
