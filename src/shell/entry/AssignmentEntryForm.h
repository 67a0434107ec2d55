#pragma once

#include <QComboBox>

#include "model/Vassignment.h"
#include "model/Vresource.h"
#include "shell/forms/ObjectForm.h"

namespace vortan {

/// Creates and changes an assignment. Another template chosen here becomes the active one, and stays it.
class AssignmentEntryForm : public ObjectForm<Vassignment> {
  public:
    static void StartAdd(Desktop& desktop, Vtask& task);
    static void StartModify(Desktop& desktop, Vassignment& object);

    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }

  private:
    AssignmentEntryForm(Desktop& desktop, Vassignment& object, Vtask& task, bool adding);

    void LoadData();
    void BuildResourceList();
    void TemplateComboClick();
    void ResourceIdComboClick();
    Vresource* FindResource() const;
    bool VerifyData() override;
    void Join() override { object_->SetTask(task_.Get()); }
    bool SaveData() override;

    Link<Vtask> task_;
    Link<Vresource> chosen_;  // whose defaults were taken over last
    QComboBox *template_, *resource_;
    TextField* hours_;
    WorkDayChecks* workDays_;
    // What was read.
    Vresource* resourceRead_ = nullptr;
    double hoursRead_ = 0;
};

}  // namespace vortan
