#pragma once

#include <QComboBox>

#include "model/Vassignment.h"
#include "model/Vresource.h"
#include "shell/forms/EntryForm.h"

namespace vortan {

/// Creates and changes an assignment. Another template chosen here becomes the active one, and stays it; the
/// trees select nothing then, so the form keeps task and assignment itself.
class AssignmentEntryForm : public EntryForm {
  public:
    /// The task is that of the selected node.
    static void StartAdd(Desktop& desktop);
    /// The object is that of the selected node.
    static void StartModify(Desktop& desktop);

    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }

  private:
    AssignmentEntryForm(Desktop& desktop, Vassignment* object, Vtask* task, bool adding);

    void LoadData();
    void BuildResourceList();
    void TemplateComboClick();
    void ResourceIdComboClick();
    Vresource* FindResource() const;
    void SaveData(Vresource& resource, double hours);
    bool Finish() override;
    void FormUnload() override;

    Link<Vassignment> object_;
    Link<Vtask> task_;
    bool adding_;             // until the object is part of the plan
    Link<Vresource> chosen_;  // whose defaults were taken over last
    QComboBox *template_, *resource_;
    TextField* hours_;
    WorkDayChecks* workDays_;
};

}  // namespace vortan
