#pragma once

#include <QComboBox>

#include "model/Vtask.h"
#include "shell/forms/ObjectForm.h"

namespace vortan {

/// Links another project into a project, by a task that stands for it.
class SubprojectEntryForm : public ObjectForm<Vtask> {
  public:
    static void StartAdd(Desktop& desktop, Vproject& owner);
    static void StartModify(Desktop& desktop, Vtask& object);

    void NewDragNode() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }

  private:
    SubprojectEntryForm(Desktop& desktop, Vtask& object, Vproject& owner, bool adding);

    void LoadData();
    bool VerifyData() override;
    void Join() override { object_->SetProject(&owner_); }
    bool SaveData() override;
    void Announce(Desktop::Saving) override { desktop_.workspace.BroadcastNewThisProject(); }

    Vproject& owner_;  // the form does not outlive the project's being active
    // What was read.
    std::int32_t idRead_ = 0;
    Vproject* subprojectRead_ = nullptr;
    TextField* taskId_;
    QComboBox* project_;
};

}  // namespace vortan
