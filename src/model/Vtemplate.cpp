#include "model/Vtemplate.h"

#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Workspace.h"

namespace vortan {

Vtemplate::Vtemplate(Workspace& workspace) : JournalOwner(workspace) {
    Reset();
}

void Vtemplate::Reset() {
    Owner().FreeVlist(std::vector<Vshift*>(shiftList_.begin(), shiftList_.end()));
    shiftList_.Clear();
    Owner().FreeVlist(resourceList_.TakeAll());
    SetTemplateName("");
    description_.clear();
    viewPassword_.clear();
    modifyPassword_.clear();
    ResetJournals();
    SetDirty(false);
}

void Vtemplate::SetTemplateName(const std::string& name) {
    const Section section("Vtemplate:TemplateName [Property Let]");
    if (name == templateName_) return;
    auto& list = Owner().TemplateList();
    if (!name.empty() && list.Find(name))
        Refuse("There is already a template with the name \"" + name + "\"");
    const bool joins = templateName_.empty();
    if (!joins) {
        Changing(*this, name.empty() ? ChangeKind::Left : ChangeKind::Refiled);
        list.Remove(templateName_);
    }
    templateName_ = name;
    if (!name.empty()) list.Add(this, name);
    if (joins) Changing(*this, ChangeKind::Joined);
}

Vresource* Vtemplate::FindOrCreateResource(std::int32_t id) {
    if (Vresource* resource = resourceList_.Find(id)) return resource;
    Vresource* resource = Owner().NewVObject<Vresource>();
    resource->SetTemplate(this);
    resource->SetResourceID(id);
    resource->SetDescription(kStub);
    return resource;
}

Vshift* Vtemplate::FindOrCreateShift(const std::string& name) {
    if (Vshift* shift = shiftList_.Find(name)) return shift;
    Vshift* shift = Owner().NewVObject<Vshift>();
    shift->SetTemplate(this);
    shift->SetShiftName(name);
    return shift;
}

std::int32_t Vtemplate::HighestResourceID() const {
    std::int32_t highest = 0;
    for (const Vresource* resource : resourceList_) {
        if (resource->Include()) highest = resource->ResourceID();
    }
    return highest;
}

std::string Vtemplate::JournalNodeText(std::int32_t index) const {
    return FormatDate(JournalDates().at(static_cast<std::size_t>(index)));
}

void Vtemplate::ChangeNumJournals() {
    for (Vresource* resource : resourceList_) resource->ChangeNumJournals();
}

void Vtemplate::FitJournals() {
    for (Vresource* resource : resourceList_) resource->FitJournals();
}

}  // namespace vortan
