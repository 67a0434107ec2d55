#pragma once

#include <string>

#include "model/JournalOwner.h"
#include "model/KeyedList.h"
#include "model/NumberedList.h"

namespace vortan {

class Vresource;
class Vshift;

/// A pool of resources and the shifts they work, shared by any number of projects, with journals of its own
/// that follow those of the projects.
class Vtemplate : public JournalOwner {
  public:
    static constexpr int kVtype = 10;

    explicit Vtemplate(Workspace& workspace);

    /// Returns everything to the defaults and frees shifts and resources.
    void Reset();

    /// The template itself, as long as it is in TemplateList.
    JournalOwner* Holder() { return templateName_.empty() ? nullptr : this; }

    const std::string& TemplateName() const { return templateName_; }
    /// Files the template under its new name. Fault if another one has it: nothing changes. An empty name
    /// takes the template out of TemplateList.
    void SetTemplateName(const std::string& name);
    const std::string& Description() const { return description_; }
    void SetDescription(const std::string& value) { LetPlain(*this, description_, value); }
    const std::string& ViewPassword() const { return viewPassword_; }
    void SetViewPassword(const std::string& value) { LetPlain(*this, viewPassword_, value); }
    const std::string& ModifyPassword() const { return modifyPassword_; }
    void SetModifyPassword(const std::string& value) { LetPlain(*this, modifyPassword_, value); }

    /// Ascending by ResourceID.
    const NumberedList<Vresource>& ResourceList() const { return resourceList_; }
    const KeyedList<Vshift>& ShiftList() const { return shiftList_; }
    /// A missing resource is made as a stub.
    Vresource* FindOrCreateResource(std::int32_t id);
    Vresource* FindResource(std::int32_t id) const { return resourceList_.Find(id); }
    Vshift* FindOrCreateShift(const std::string& name);
    /// Among the resources included in the active journal; 0 with none.
    std::int32_t HighestResourceID() const;

    std::string JournalNodeText(std::int32_t index) const;
    const std::string& BuildNodeText() const { return templateName_; }
    const std::string& Key() const { return templateName_; }
    static std::string ImageType() { return "l"; }
    std::string Tag() const { return ImageType() + Key(); }
    /// Takes the template out of TemplateList; the caller frees it.
    void Delete() { SetTemplateName(""); }

  protected:
    void JournalsChanging() override { Changing(*this, ChangeKind::Journals); }
    void ChangeNumJournals() override;
    void FitJournals() override;

  private:
    friend class History;
    friend class Vresource;
    friend class Vshift;

    std::string templateName_, description_, viewPassword_, modifyPassword_;
    NumberedList<Vresource> resourceList_;
    KeyedList<Vshift> shiftList_;
};

}  // namespace vortan
