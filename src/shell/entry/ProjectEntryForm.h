#pragma once

#include <QComboBox>
#include <QRadioButton>
#include <array>

#include "model/Vproject.h"
#include "shell/forms/ObjectForm.h"

namespace vortan {

/// Creates and changes a project. Rule, priority and passwords can be given to its subprojects and to the
/// whole tree of its master at once.
class ProjectEntryForm : public ObjectForm<Vproject> {
  public:
    static void StartAdd(Desktop& desktop);
    static void StartModify(Desktop& desktop, Vproject& object);

    void NewDragNode() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }

  private:
    ProjectEntryForm(Desktop& desktop, Vproject& object, bool adding);

    void LayOut();
    void LoadData();
    bool VerifyData() override;
    bool SaveData() override;
    void Announce(Desktop::Saving what) override;
    bool Chosen(const Vproject& project) const;

    // What was read.
    int priorityRead_ = 0;
    DateTime journalRead_;
    TextField *name_, *description_, *manager_, *priority_, *viewPassword_, *modifyPassword_;
    DateField* initialJournal_;
    QComboBox* solveRules_;
    QWidget* applyFrame_;
    std::array<QRadioButton*, 3> apply_{};
};

}  // namespace vortan
