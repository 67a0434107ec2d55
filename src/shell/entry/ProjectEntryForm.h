#pragma once

#include <QComboBox>
#include <QRadioButton>
#include <array>

#include "model/Vproject.h"
#include "shell/forms/EntryForm.h"

namespace vortan {

/// Creates and changes a project. Rule, priority and passwords can be given to its subprojects and to the
/// whole tree of its master at once.
class ProjectEntryForm : public EntryForm {
  public:
    static void StartAdd(Desktop& desktop);
    /// Without a project: the active one.
    static void StartModify(Desktop& desktop, Vproject* project = nullptr);

    void NewDragNode() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }

  private:
    ProjectEntryForm(Desktop& desktop, Vproject* object, bool adding);

    void LayOut();
    void LoadData();
    void SaveData(int priority);
    bool Chosen(const Vproject& project) const;
    bool Finish() override;
    void FormUnload() override;

    Link<Vproject> object_;
    bool adding_;  // until the object is part of the plan
    TextField *name_, *description_, *manager_, *priority_, *viewPassword_, *modifyPassword_;
    DateField* initialJournal_;
    QComboBox* solveRules_;
    QWidget* applyFrame_;
    std::array<QRadioButton*, 3> apply_{};
};

}  // namespace vortan
