#pragma once

#include <QComboBox>

#include "model/Vtask.h"
#include "shell/forms/EntryForm.h"

namespace vortan {

/// Links another project into the active one, by a task that stands for it.
class SubprojectEntryForm : public EntryForm {
  public:
    static void StartAdd(Desktop& desktop);
    /// The object is that of the selected node.
    static void StartModify(Desktop& desktop);

    void NewDragNode() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }

  private:
    SubprojectEntryForm(Desktop& desktop, Vtask* object, bool adding);

    void LoadData();
    bool Finish() override;
    void FormUnload() override;

    Link<Vtask> object_;
    Vproject* owner_;  // the form does not outlive the project's being active
    bool adding_;      // until the object is part of the plan
    TextField* taskId_;
    QComboBox* project_;
};

}  // namespace vortan
