#pragma once

#include "model/Vtemplate.h"
#include "shell/forms/EntryForm.h"

namespace vortan {

/// Creates and changes a template.
class TemplateEntryForm : public EntryForm {
  public:
    static void StartAdd(Desktop& desktop);
    /// The object is that of the selected node.
    static void StartModify(Desktop& desktop);

    void NewDragNode() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }

  private:
    TemplateEntryForm(Desktop& desktop, Vtemplate* object, bool adding);

    void LoadData();
    bool SaveData();
    void FinishAdd();
    bool Finish() override;
    void FormUnload() override;

    Link<Vtemplate> object_;
    bool adding_;  // until the object is part of the plan
    TextField *name_, *description_, *viewPassword_, *modifyPassword_;
};

}  // namespace vortan
