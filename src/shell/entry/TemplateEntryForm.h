#pragma once

#include "model/Vtemplate.h"
#include "shell/forms/ObjectForm.h"

namespace vortan {

/// Creates and changes a template.
class TemplateEntryForm : public ObjectForm<Vtemplate> {
  public:
    static void StartAdd(Desktop& desktop);
    static void StartModify(Desktop& desktop, Vtemplate& object);

    void NewDragNode() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }

  private:
    TemplateEntryForm(Desktop& desktop, Vtemplate& object, bool adding);

    void LoadData();
    bool VerifyData() override;
    bool SaveData() override;
    void Announce(Desktop::Saving what) override;

    TextField *name_, *description_, *viewPassword_, *modifyPassword_;
};

}  // namespace vortan
